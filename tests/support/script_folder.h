// A copy of the shipped mapper scripts that a test can spoil.
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

class ScriptFolder
{
public:
    // `name`: of the folder, which may be several levels deep.
    explicit ScriptFolder(const QString &name = "mapper") : m_path(m_temporary.filePath(name))
    {
        const QDir shipped(SHIPPED_SCRIPTS);
        const QStringList files = shipped.entryList({"*.nut"}, QDir::Files);
        bool isCopied = !files.isEmpty() && QDir().mkpath(m_path);
        for (const QString &file : files)
            isCopied = isCopied && QFile::copy(shipped.filePath(file), filePath(file));
        if (!isCopied)
            qFatal("the shipped scripts cannot be copied");
    }

    QString path() const { return m_path; }
    QString filePath(const QString &file) const { return m_path + "/" + file; }

    void write(const QString &file, const QByteArray &text)
    {
        QFile script(filePath(file));
        if (!script.open(QIODevice::WriteOnly) || script.write(text) != text.size())
            qFatal("cannot write the script");
    }

    void remove(const QString &file)
    {
        if (!QFile::remove(filePath(file)))
            qFatal("cannot remove the script");
    }

private:
    QTemporaryDir m_temporary;
    QString m_path;
};
