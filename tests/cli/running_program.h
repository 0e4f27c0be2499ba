// The built command-line program while it runs, to press Ctrl-C at what it says.
#pragma once

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

#include <csignal>

class RunningProgram
{
public:
    // `variable` chooses the reader; the other one that could is not set.
    void start(const QStringList &arguments, const QString &variable, const QString &value)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove("GBDRIVER_VIRTUAL_READER");
        environment.remove("GBDRIVER_DRIVES");
        environment.insert(variable, value);
        m_process.setProcessEnvironment(environment);
        m_process.start(CLI_PROGRAM, arguments);
    }

    // Reads on. Returns: true once the program said `text` on standard error.
    bool said(const QByteArray &text)
    {
        m_messages += m_process.readAllStandardError();
        return m_messages.contains(text);
    }

    bool interrupt() { return send(SIGINT); }
    bool send(int signal) { return sendSignal(m_process.processId(), signal); }

    // Whether the program has a handler of its own for the signal; before that it would be ended.
    bool hears(int signal)
    {
        // Until then it is a copy of the test, which has handlers as well.
        if (!m_process.waitForStarted())
            return false;
        QFile status(QString("/proc/%1/status").arg(m_process.processId()));
        if (!status.open(QIODevice::ReadOnly))
            return false;
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("SigCgt:"))
                return (line.mid(7).trimmed().toULongLong(nullptr, 16) >> (signal - 1) & 1) != 0;
        }
        return false;
    }

    // True once no signal is on its way to the program any more.
    bool hasNoticedSignals() const
    {
        QFile status(QStringLiteral("/proc/%1/status").arg(m_process.processId()));
        return status.open(QIODevice::ReadOnly) &&
               status.readAll().contains("\nShdPnd:\t0000000000000000\n");
    }

    // True once the program has ended, by itself or not.
    bool hasEnded() const { return m_process.state() == QProcess::NotRunning; }

    // Exit code; -1 if a signal ended the program.
    int exitCode() const
    {
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

    QString messages()
    {
        said({});
        return QString::fromLocal8Bit(m_messages);
    }
    QString answers() { return QString::fromLocal8Bit(m_process.readAllStandardOutput()); }

    qint64 processId() const { return m_process.processId(); }

    static bool sendSignal(qint64 process, int signal)
    {
        return process > 0 && ::kill(static_cast<pid_t>(process), signal) == 0;
    }

private:
    QProcess m_process;
    QByteArray m_messages;
};
