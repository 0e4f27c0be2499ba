#include "mount_bench.h"

#include "samples.h"

#include "virtual/image_generator.h"
#include "virtual/save_file.h"

#include <QDir>
#include <QJsonDocument>

using namespace virtual_reader;

bool isMounted(const QString &folder)
{
    QFile mounts("/proc/self/mountinfo");
    if (!mounts.open(QIODevice::ReadOnly))
        qFatal("cannot read the list of mounts");
    return mounts.readAll().contains(" " + QFile::encodeName(folder) + " ");
}

QString MountBench::prepare()
{
    if (!QFile::exists("/dev/fuse"))
        return "this test needs FUSE: /dev/fuse is missing";
    if (!QFile::exists(READER_PROGRAM))
        return "gbdriver-virtual-reader is not built";
    m_image = gbImage({0x1B, kMiB, 32 * 1024, "MOUNTED", 17});
    m_folder = std::make_unique<QTemporaryDir>();
    if (!QDir(m_folder->path()).mkdir("mnt"))
        return "no folder can be made";
    m_mountPoint = QDir(path("mnt")).canonicalPath();
    std::string error;
    return replaceFile(path("game.gb").toStdString(), m_image, &error)
               ? QString()
               : QString::fromStdString(error);
}

bool MountBench::isDone()
{
    const bool isClean = m_program == nullptr || unmount();
    m_folder.reset();
    return isClean;
}

bool MountBench::mountReader(QStringList arguments)
{
    arguments =
        QStringList{"--mount", m_mountPoint, "--cart", path("game.gb"), "--log", path("log")} +
        arguments;
    m_program = std::make_unique<QProcess>();
    m_program->setProcessChannelMode(QProcess::MergedChannels);
    m_program->start(READER_PROGRAM, arguments);
    QByteArray output;
    while (!output.contains('\n') && m_program->waitForReadyRead(kDeadlineMs))
        output += m_program->readAll();
    if (output == "mounted " + QFile::encodeName(m_mountPoint) + "\n")
        return true;
    qWarning("%s", output.constData());
    return false;
}

bool MountBench::unmount(int signal)
{
    if (m_program->state() == QProcess::Running)
        ::kill(static_cast<pid_t>(m_program->processId()), signal);
    const bool ended =
        m_program->waitForFinished(kDeadlineMs) || m_program->state() == QProcess::NotRunning;
    const bool clean = ended && m_program->exitStatus() == QProcess::NormalExit &&
                       m_program->exitCode() == 0 && !isMounted(m_mountPoint);
    if (!clean)
        qWarning("%s", m_program->readAll().constData());
    m_program.reset();
    return clean;
}

bool MountBench::send(const ByteVector &run)
{
    Descriptor command(file("CMD.CMD"), O_WRONLY | O_TRUNC);
    return ::write(command, run.data(), run.size()) == ssize_t(run.size()) && command.close() == 0;
}

ByteVector MountBench::readDump(off_t offset, std::size_t length)
{
    AlignedBuffer buffer(length);
    Descriptor dump(file("DUMP.ROM"), O_RDONLY | O_DIRECT);
    const ssize_t count = ::pread(dump, buffer.data(), length, offset);
    return count < 0 ? ByteVector() : ByteVector(buffer.data(), buffer.data() + count);
}

QList<QJsonObject> MountBench::logLines(const QString &operation) const
{
    QFile log(path("log"));
    if (!log.open(QIODevice::ReadOnly))
        qFatal("no log");
    QList<QJsonObject> result;
    for (const QByteArray &line : log.readAll().split('\n')) {
        if (line.isEmpty())
            continue;
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        if (object.isEmpty())
            qFatal("no JSON: %s", line.constData());
        if (object["op"] == operation)
            result.append(object);
    }
    return result;
}
