// A desktop session that one program takes part in, and that can be ended.
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

class SessionManager
{
public:
    SessionManager() = default;
    ~SessionManager();

    // Returns: why it does not start; empty on success.
    QString start();

    // Arguments before those of a program that is to take part.
    QStringList starter() const { return {"env", "SESSION_MANAGER=" + m_address}; }

    // "end" asks the program whether the session may end, "die" tells it that it does.
    void say(const QByteArray &line);
    // What the program did next: "joined", "cancelled" (the session is to go on), "saved" (the
    // session may end), "left". Waits for it; empty if nothing comes.
    QString answer();

private:
    QString m_address;
    QProcess m_process;
};
