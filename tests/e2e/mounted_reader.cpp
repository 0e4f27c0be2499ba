#include "mounted_reader.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QThread>

namespace
{

constexpr int kMountMs = 30000;
constexpr int kUnmountMs = 30000;
constexpr int kLookMs = 3000; // a program's glance at all mounts is shorter
constexpr int kPauseMs = 20;

QString failure(const QString &what, QProcess &process)
{
    return what + QStringLiteral(": ") + process.errorString() + QLatin1Char(' ') +
           QString::fromLocal8Bit(process.readAllStandardError());
}

} // namespace

MountedReader::MountedReader() : MountedReader({VIRTUAL_READER_PROGRAM}) {}

MountedReader::MountedReader(const QStringList &program) : m_program(program) {}

MountedReader::~MountedReader()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(kUnmountMs))
        m_process.kill();
}

QString MountedReader::start(const QString &cartPath, const QString &savePath,
                             const QStringList &options)
{
    QStringList arguments = {"--mount",         m_folder.path(), "--label",
                             "READER",          "--log",         m_logFolder.filePath("log"),
                             "--strict-sectors"};
    if (!cartPath.isEmpty())
        arguments << "--cart" << cartPath;
    if (!savePath.isEmpty())
        arguments << "--save" << savePath;
    m_process.start(m_program.first(), m_program.mid(1) + arguments + options);
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(kMountMs))
            return failure("The virtual reader cannot be mounted (is FUSE there?)", m_process);
    }
    const QByteArray line = m_process.readLine();
    return line.startsWith("mounted ") ? QString()
                                       : failure(QString::fromLocal8Bit(line), m_process);
}

QString MountedReader::unmount()
{
    const QString refusal = unmountFolder(m_folder.path());
    if (refusal.isEmpty() && !m_process.waitForFinished(kUnmountMs))
        return failure("The virtual reader does not end", m_process);
    return refusal;
}

bool MountedReader::waitForEnd()
{
    return m_process.state() == QProcess::NotRunning || m_process.waitForFinished(kUnmountMs);
}

QString MountedReader::declaration() const
{
    return "E=" + m_folder.path() + ":READER";
}

QVector<QJsonObject> MountedReader::operations() const
{
    QVector<QJsonObject> operations;
    QFile log(m_logFolder.filePath("log"));
    if (!log.open(QIODevice::ReadOnly))
        return operations;
    const QList<QByteArray> lines = log.readAll().split('\n');
    // What stands behind the last line break is empty, or a line that is just being written.
    for (int i = 0; i + 1 < lines.size(); ++i)
        operations << QJsonDocument::fromJson(lines[i]).object();
    return operations;
}

QString unmountFolder(const QString &folder)
{
    QElapsedTimer clock;
    clock.start();
    for (;;) {
        QProcess unmount;
        unmount.start("fusermount3", {"-u", folder});
        if (unmount.waitForFinished(kUnmountMs) && unmount.exitCode() == 0)
            return QString();
        if (clock.hasExpired(kLookMs))
            return failure("fusermount3 -u", unmount);
        QThread::msleep(kPauseMs);
    }
}

int countCommandRuns(const QVector<QJsonObject> &operations)
{
    int count = 0;
    for (const QJsonObject &operation : operations)
        count += operation["op"] == "command";
    return count;
}

int countReads(const QVector<QJsonObject> &operations, const QString &file)
{
    int count = 0;
    for (const QJsonObject &operation : operations)
        count += operation["op"] == "read" && operation["file"] == file;
    return count;
}
