// The mounted reader, used through plain system calls by a process that knows nothing of it.
#include "virtual/image_generator.h"
#include "virtual/save_file.h"

#include "command_blocks.h"
#include "files.h"
#include "test_class.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string>

using namespace virtual_reader;

namespace
{

constexpr int kDeadlineMs = 20000;
constexpr std::size_t kMiB = 1024 * 1024;

// Page-aligned memory, as unbuffered reads want it.
class AlignedBuffer
{
public:
    explicit AlignedBuffer(std::size_t size)
        : m_bytes(
              static_cast<std::uint8_t *>(std::aligned_alloc(4096, (size + 4095) / 4096 * 4096)))
    {
        std::fill_n(m_bytes.get(), size, std::uint8_t{0});
    }
    std::uint8_t *data() { return m_bytes.get(); }

private:
    struct Free {
        void operator()(std::uint8_t *bytes) const { std::free(bytes); }
    };
    std::unique_ptr<std::uint8_t, Free> m_bytes;
};

// A descriptor that closes itself.
class Descriptor
{
public:
    Descriptor(const QString &path, int flags)
        : m_descriptor(::open(QFile::encodeName(path).constData(), flags, 0644)), m_errno(errno)
    {
    }
    ~Descriptor() { close(); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    operator int() const { return m_descriptor; }
    int openError() const { return m_errno; }
    int close()
    {
        const int result = m_descriptor >= 0 ? ::close(m_descriptor) : 0;
        m_descriptor = -1;
        return result;
    }

private:
    int m_descriptor;
    int m_errno;
};

bool isMounted(const QString &folder)
{
    QFile mounts("/proc/self/mountinfo");
    if (!mounts.open(QIODevice::ReadOnly))
        qFatal("cannot read the list of mounts");
    return mounts.readAll().contains(" " + QFile::encodeName(folder) + " ");
}

} // namespace

class ReaderMountTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void showsExactlyThreeFiles();
    void consecutiveUnbufferedReadsBothReachTheReader();
    void bufferedReadsAreNeverStale();
    void largeReadsArriveWhole_data();
    void largeReadsArriveWhole();
    void commandTakesEffectWhenSynced();
    void commandTakesEffectWhenClosed();
    void truncatingOpenIsAsGood();
    void shorterRunInPlaceHasNoOldBlocksBehindIt();
    void descriptorCanStayOpenBetweenCommands();
    void readOnlyDescriptorDoesNotTrigger();
    void wholeDumpEqualsTheImage();
    void strictSectorsRefuseOddUnbufferedReads();
    void withoutStrictSectorsOddReadsAreServed();
    void failedCommandIsAnError();
    void pulledOutReaderIsOnlyErrors();
    void nothingCanBeMadeOrRemoved();
    void dataFilesAreReadOnly();
    void commandFileHasALimit();
    void saveFileIsWrittenBackBeforeCloseReturns();
    void identityAndLabelAreTakenOver();
    void signalsUnmount_data();
    void signalsUnmount();
    void unmountingFromOutsideEndsTheProgram();
    void backgroundProcessServesAfterTheParentEnded();
    void badMountPointsAreExplained_data();
    void badMountPointsAreExplained();
    void imageIsMade();

private:
    QString file(const char *name) const { return m_mountPoint + "/" + name; }
    QString path(const char *name) const { return m_folder->filePath(name); }
    bool mountReader(QStringList arguments = {});
    bool unmount(int signal = SIGTERM);
    bool send(const ByteVector &run);
    ByteVector readDump(off_t offset, std::size_t length);
    QList<QJsonObject> logLines(const QString &operation) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QProcess> m_program;
    QString m_mountPoint;
    ByteVector m_image;
};

void ReaderMountTest::initTestCase()
{
    QVERIFY2(QFile::exists("/dev/fuse"), "this test needs FUSE: /dev/fuse is missing");
    QVERIFY2(QFile::exists(READER_PROGRAM), "gbdriver-virtual-reader is not built");
    m_image = gbImage({0x1B, kMiB, 32 * 1024, "MOUNTED", 17});
}

void ReaderMountTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    QVERIFY(QDir(m_folder->path()).mkdir("mnt"));
    m_mountPoint = QDir(path("mnt")).canonicalPath();
    std::string error;
    QVERIFY2(replaceFile(path("game.gb").toStdString(), m_image, &error), error.c_str());
}

void ReaderMountTest::cleanup()
{
    if (m_program != nullptr)
        QVERIFY(unmount());
    m_folder.reset();
}

bool ReaderMountTest::mountReader(QStringList arguments)
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

bool ReaderMountTest::unmount(int signal)
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

bool ReaderMountTest::send(const ByteVector &run)
{
    Descriptor command(file("CMD.CMD"), O_WRONLY | O_TRUNC);
    return ::write(command, run.data(), run.size()) == ssize_t(run.size()) && command.close() == 0;
}

ByteVector ReaderMountTest::readDump(off_t offset, std::size_t length)
{
    AlignedBuffer buffer(length);
    Descriptor dump(file("DUMP.ROM"), O_RDONLY | O_DIRECT);
    const ssize_t count = ::pread(dump, buffer.data(), length, offset);
    return count < 0 ? ByteVector() : ByteVector(buffer.data(), buffer.data() + count);
}

// The operations of one kind in the log so far; a line that is no JSON object fails the test.
QList<QJsonObject> ReaderMountTest::logLines(const QString &operation) const
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

void ReaderMountTest::showsExactlyThreeFiles()
{
    QVERIFY(mountReader());
    const QDir folder(m_mountPoint);
    QCOMPARE(folder.entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name),
             (QStringList{"CMD.CMD", "DUMP.ROM", "K-DRIVER.DMP"}));
    QCOMPARE(QFileInfo(file("CMD.CMD")).size(), qint64(0));
    QCOMPARE(QFileInfo(file("DUMP.ROM")).size(), qint64(kMiB));
    QCOMPARE(QFileInfo(file("K-DRIVER.DMP")).size(), qint64(65536));
    QVERIFY(send(selectGb()));
    QCOMPARE(QFileInfo(file("CMD.CMD")).size(), qint64(1024));
    Descriptor command(file("CMD.CMD"), O_RDONLY);
    ByteVector bytes(2000);
    QCOMPARE(::read(command, bytes.data(), bytes.size()), ssize_t(1024));
    bytes.resize(1024);
    QVERIFY(bytes == selectGb());
}

void ReaderMountTest::consecutiveUnbufferedReadsBothReachTheReader()
{
    QVERIFY(mountReader());
    QVERIFY(send(selectGb()));
    Descriptor dump(file("DUMP.ROM"), O_RDONLY | O_DIRECT);
    AlignedBuffer buffer(4096);
    QCOMPARE(::pread(dump, buffer.data(), 4096, 0x4000), ssize_t(4096));
    QCOMPARE(littleEndian(buffer.data(), 4), 32U); // bank 1
    QVERIFY(send(gbWriteBlock(0x2000, 2)));
    QCOMPARE(::pread(dump, buffer.data(), 4096, 0x4000), ssize_t(4096));
    QCOMPARE(littleEndian(buffer.data(), 4), 64U); // bank 2
    const auto reads = logLines("read");
    QCOMPARE(reads.size(), 2);
    for (const QJsonObject &read : reads) {
        QCOMPARE(read["file"].toString(), QString("DUMP.ROM"));
        QCOMPARE(read["offset"].toInt(), 0x4000);
        QCOMPARE(read["length"].toInt(), 4096);
        QCOMPARE(read["unbuffered"].toBool(), true);
    }
}

void ReaderMountTest::bufferedReadsAreNeverStale()
{
    QVERIFY(mountReader());
    QVERIFY(send(selectGb()));
    Descriptor dump(file("DUMP.ROM"), O_RDONLY);
    for (unsigned bank = 1; bank < 4; ++bank) {
        QVERIFY(send(gbWriteBlock(0x2000, bank)));
        std::uint8_t bytes[4] = {};
        QCOMPARE(::pread(dump, bytes, 4, 0x4000), ssize_t(4));
        QCOMPARE(littleEndian(bytes, 4), bank * 32);
    }
    QCOMPARE(logLines("read").last()["unbuffered"].toBool(), false);
}

void ReaderMountTest::largeReadsArriveWhole_data()
{
    QTest::addColumn<int>("length");
    QTest::newRow("32 KiB") << 32 * 1024;
    QTest::newRow("1 MiB") << int(kMiB);
}

void ReaderMountTest::largeReadsArriveWhole()
{
    QFETCH(int, length);
    QVERIFY(mountReader());
    QVERIFY(send(selectGb()));
    const ByteVector bytes = readDump(0, static_cast<std::size_t>(length));
    QCOMPARE(bytes.size(), std::size_t(length));
    QVERIFY(std::equal(bytes.begin(), bytes.begin() + 0x8000, m_image.begin()));
    // However the kernel cut it, every byte was fetched once and in order.
    int next = 0;
    for (const QJsonObject &read : logLines("read")) {
        QCOMPARE(read["offset"].toInt(), next);
        next += read["count"].toInt();
    }
    QCOMPARE(next, length);
}

void ReaderMountTest::commandTakesEffectWhenSynced()
{
    QVERIFY(mountReader());
    Descriptor command(file("CMD.CMD"), O_WRONLY);
    const ByteVector run = selectGb();
    QCOMPARE(::write(command, run.data(), run.size()), ssize_t(1024));
    QCOMPARE(logLines("command").size(), 0);
    QCOMPARE(::fsync(command), 0);
    QCOMPARE(logLines("command").size(), 1);
    QCOMPARE(::fdatasync(command), 0);
    QCOMPARE(command.close(), 0);
    QCOMPARE(logLines("command").size(), 1); // once for one change
    QVERIFY(readDump(0, 512) == ByteVector(m_image.begin(), m_image.begin() + 512));
}

void ReaderMountTest::commandTakesEffectWhenClosed()
{
    QVERIFY(mountReader());
    Descriptor command(file("CMD.CMD"), O_WRONLY);
    const ByteVector run = selectGb();
    QCOMPARE(::write(command, run.data(), run.size()), ssize_t(1024));
    QCOMPARE(command.close(), 0);
    const auto commands = logLines("command");
    QCOMPARE(commands.size(), 1);
    QCOMPARE(commands[0]["bytes"].toInt(), 1024);
    const QJsonArray blocks = commands[0]["blocks"].toArray();
    QCOMPARE(blocks.size(), 2);
    QCOMPARE(blocks[1].toObject()["name"].toString(), QString("gb-start"));
    QVERIFY(!blocks[0].toObject().contains("refused"));
}

void ReaderMountTest::truncatingOpenIsAsGood()
{
    QVERIFY(mountReader());
    QVERIFY(send(selectGb() + gbWriteBlock(0x2000, 3)));
    QVERIFY(send(gbWriteBlock(0x2000, 4)));
    Descriptor empty(file("CMD.CMD"), O_WRONLY | O_CREAT | O_TRUNC);
    QVERIFY(empty >= 0);
    QCOMPARE(empty.close(), 0);
    const auto commands = logLines("command");
    QCOMPARE(commands.size(), 3);
    QCOMPARE(commands[1]["blocks"].toArray().size(), 1);
    QCOMPARE(commands[2]["blocks"].toArray().size(), 0);
}

void ReaderMountTest::shorterRunInPlaceHasNoOldBlocksBehindIt()
{
    QVERIFY(mountReader());
    QVERIFY(send(selectGb() + gbWriteBlock(0x2000, 3)));
    Descriptor command(file("CMD.CMD"), O_RDWR);
    const ByteVector run = gbWriteBlock(0x2000, 5);
    QCOMPARE(::ftruncate(command, 512), 0);
    QCOMPARE(::pwrite(command, run.data(), 512, 0), ssize_t(512));
    QCOMPARE(::fsync(command), 0);
    const auto commands = logLines("command");
    QCOMPARE(commands.size(), 2);
    QCOMPARE(commands[1]["blocks"].toArray().size(), 1);
    QCOMPARE(commands[1]["blocks"].toArray()[0].toObject()["value"].toInt(), 5);
    QCOMPARE(QFileInfo(file("CMD.CMD")).size(), qint64(512));
}

void ReaderMountTest::descriptorCanStayOpenBetweenCommands()
{
    QVERIFY(mountReader());
    QVERIFY(send(selectGb()));
    Descriptor command(file("CMD.CMD"), O_WRONLY);
    QCOMPARE(::ftruncate(command, 512), 0);
    for (unsigned bank = 1; bank <= 20; ++bank) {
        const ByteVector run = gbWriteBlock(0x2000, bank);
        QCOMPARE(::pwrite(command, run.data(), 512, 0), ssize_t(512));
        QCOMPARE(::fdatasync(command), 0);
        QCOMPARE(littleEndian(readDump(0x4000, 512).data(), 4), bank * 32);
    }
    QCOMPARE(logLines("command").size(), 21);
}

void ReaderMountTest::readOnlyDescriptorDoesNotTrigger()
{
    QVERIFY(mountReader());
    Descriptor command(file("CMD.CMD"), O_WRONLY);
    const ByteVector run = selectGb();
    QCOMPARE(::write(command, run.data(), 512), ssize_t(512));
    Descriptor(file("CMD.CMD"), O_RDONLY).close();
    QCOMPARE(logLines("command").size(), 0);
    QCOMPARE(::write(command, run.data() + 512, 512), ssize_t(512));
    QCOMPARE(command.close(), 0);
    QCOMPARE(logLines("command").size(), 1);
}

void ReaderMountTest::wholeDumpEqualsTheImage()
{
    QVERIFY(mountReader({"--strict-sectors"}));
    QVERIFY(send(selectGb()));
    ByteVector dump;
    for (unsigned bank = 0; bank < kMiB / 0x4000; ++bank) {
        QVERIFY(send(gbWriteBlock(0x2000, bank)));
        dump = dump + readDump(0x4000, 0x4000);
    }
    QVERIFY(dump == m_image);
}

void ReaderMountTest::strictSectorsRefuseOddUnbufferedReads()
{
    QVERIFY(mountReader({"--strict-sectors"}));
    AlignedBuffer buffer(4096);
    Descriptor direct(file("K-DRIVER.DMP"), O_RDONLY | O_DIRECT);
    QCOMPARE(::pread(direct, buffer.data(), 1000, 0), ssize_t(-1));
    QCOMPARE(errno, EINVAL);
    QCOMPARE(::pread(direct, buffer.data(), 512, 0x100), ssize_t(-1));
    QCOMPARE(errno, EINVAL);
    QVERIFY(logLines("read").last().contains("refused"));
    QCOMPARE(::pread(direct, buffer.data(), 1024, 0x8000), ssize_t(1024));
    Descriptor buffered(file("K-DRIVER.DMP"), O_RDONLY);
    QCOMPARE(::pread(buffered, buffer.data(), 16, 0x8000), ssize_t(16));
    QCOMPARE(reinterpret_cast<const char *>(buffer.data()), "QDX_PCB02_FW303");
}

void ReaderMountTest::withoutStrictSectorsOddReadsAreServed()
{
    QVERIFY(mountReader());
    AlignedBuffer buffer(4096);
    Descriptor direct(file("K-DRIVER.DMP"), O_RDONLY | O_DIRECT);
    QCOMPARE(::pread(direct, buffer.data(), 15, 0x8000), ssize_t(15));
    QCOMPARE(reinterpret_cast<const char *>(buffer.data()), "QDX_PCB02_FW303");
    QCOMPARE(::pread(direct, buffer.data(), 512, 65536), ssize_t(0));
}

void ReaderMountTest::failedCommandIsAnError()
{
    QVERIFY(mountReader({"--fail-command", "2"}));
    QVERIFY(send(selectGb()));
    Descriptor command(file("CMD.CMD"), O_WRONLY | O_TRUNC);
    const ByteVector bank = gbWriteBlock(0x2000, 2);
    QCOMPARE(::write(command, bank.data(), bank.size()), ssize_t(-1));
    QCOMPARE(errno, EIO);
    QCOMPARE(command.close(), 0);
    QCOMPARE(littleEndian(readDump(0x4000, 512).data(), 4), 32U); // still bank 1
    QVERIFY(send(bank));
    QCOMPARE(littleEndian(readDump(0x4000, 512).data(), 4), 64U);
}

void ReaderMountTest::pulledOutReaderIsOnlyErrors()
{
    QVERIFY(mountReader({"--pull-out", "1"}));
    Descriptor dump(file("DUMP.ROM"), O_RDONLY | O_DIRECT);
    QVERIFY(dump >= 0);
    QVERIFY(!send(selectGb()));
    AlignedBuffer buffer(512);
    QCOMPARE(::pread(dump, buffer.data(), 512, 0), ssize_t(-1));
    QCOMPARE(errno, EIO);
    Descriptor again(file("K-DRIVER.DMP"), O_RDONLY);
    QCOMPARE(int(again), -1);
    QCOMPARE(again.openError(), EIO);
}

void ReaderMountTest::nothingCanBeMadeOrRemoved()
{
    QVERIFY(mountReader());
    Descriptor made(file("NEW.BIN"), O_WRONLY | O_CREAT);
    QCOMPARE(int(made), -1);
    QCOMPARE(made.openError(), EACCES);
    const QByteArray command = QFile::encodeName(file("CMD.CMD"));
    QCOMPARE(::unlink(command.constData()), -1);
    QCOMPARE(errno, EACCES);
    QCOMPARE(::rename(command.constData(), QFile::encodeName(file("A")).constData()), -1);
    QCOMPARE(errno, EACCES);
    QCOMPARE(::mkdir(QFile::encodeName(file("A")).constData(), 0755), -1);
    QCOMPARE(errno, EACCES);
    QVERIFY(!QFile::exists(file("A")));
    QVERIFY(QFile::exists(file("CMD.CMD")));
}

void ReaderMountTest::dataFilesAreReadOnly()
{
    QVERIFY(mountReader());
    for (const char *name : {"DUMP.ROM", "K-DRIVER.DMP"}) {
        Descriptor writing(file(name), O_WRONLY);
        QCOMPARE(int(writing), -1);
        QCOMPARE(writing.openError(), EACCES);
        QCOMPARE(::truncate(QFile::encodeName(file(name)).constData(), 0), -1);
        QCOMPARE(errno, EACCES);
    }
}

void ReaderMountTest::commandFileHasALimit()
{
    QVERIFY(mountReader());
    Descriptor command(file("CMD.CMD"), O_WRONLY);
    QCOMPARE(::pwrite(command, "x", 1, off_t(16 * kMiB)), ssize_t(-1));
    QCOMPARE(errno, ENOSPC);
    QCOMPARE(::ftruncate(command, off_t(16 * kMiB + 1)), -1);
    QCOMPARE(errno, ENOSPC);
}

void ReaderMountTest::saveFileIsWrittenBackBeforeCloseReturns()
{
    QVERIFY(mountReader({"--save", path("game.sav")}));
    QVERIFY(send(selectGb() + gbWriteBlock(0x0000, 0x0A) + gbWriteBlock(0x4000, 3)));
    QVERIFY(!QFile::exists(path("game.sav")));
    QVERIFY(send(gbWriteBlock(0xA000, 0x99)));
    const QByteArray bytes = contentOf(path("game.sav"));
    QCOMPARE(bytes.size(), 32768);
    QCOMPARE(bytes[3 * 0x2000], char(0x99));
    // A fresh mount starts from it.
    QVERIFY(unmount());
    QVERIFY(mountReader({"--save", path("game.sav")}));
    QVERIFY(send(selectGb() + gbWriteBlock(0x0000, 0x0A) + gbWriteBlock(0x4000, 3)));
    QCOMPARE(int(readDump(0xA000, 512)[0]), 0x99);
}

void ReaderMountTest::identityAndLabelAreTakenOver()
{
    QVERIFY(mountReader({"--identity", "OTHER_READER", "--label", "A,LABEL"}));
    Descriptor driver(file("K-DRIVER.DMP"), O_RDONLY);
    char identity[16] = {};
    QCOMPARE(::pread(driver, identity, 16, 0x8000), ssize_t(16));
    QCOMPARE(identity, "OTHER_READER");
    QFile mounts("/proc/self/mountinfo");
    QVERIFY(mounts.open(QIODevice::ReadOnly));
    QVERIFY(mounts.readAll().contains(" fuse.gbdriver A,LABEL "));
}

void ReaderMountTest::signalsUnmount_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void ReaderMountTest::signalsUnmount()
{
    QFETCH(int, signal);
    QVERIFY(mountReader());
    QVERIFY(isMounted(m_mountPoint));
    QVERIFY(unmount(signal)); // looks at the exit code and at the mounts
}

void ReaderMountTest::unmountingFromOutsideEndsTheProgram()
{
    QVERIFY(mountReader());
    QCOMPARE(QProcess::execute("fusermount3", {"-u", m_mountPoint}), 0);
    QVERIFY(m_program->waitForFinished(kDeadlineMs));
    QCOMPARE(m_program->exitCode(), 0);
    m_program.reset();
}

void ReaderMountTest::backgroundProcessServesAfterTheParentEnded()
{
    QVERIFY(mountReader({"--background"}));
    QVERIFY(m_program->waitForFinished(kDeadlineMs));
    QCOMPARE(m_program->exitCode(), 0);
    m_program.reset();
    QVERIFY(isMounted(m_mountPoint));
    QVERIFY(send(selectGb()));
    QCOMPARE(logLines("command").size(), 1);
    QCOMPARE(QProcess::execute("fusermount3", {"-u", m_mountPoint}), 0);
    QVERIFY(!isMounted(m_mountPoint));
}

void ReaderMountTest::badMountPointsAreExplained_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing") << "none"
                             << "none: No such file or directory";
    QTest::newRow("a file") << "game.gb"
                            << "game.gb: it is not a folder";
}

void ReaderMountTest::badMountPointsAreExplained()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    QProcess program;
    program.start(READER_PROGRAM, {"--mount", m_folder->filePath(name)});
    QVERIFY(program.waitForFinished(kDeadlineMs));
    QCOMPARE(program.exitCode(), 1);
    const QByteArray text = program.readAllStandardError();
    QVERIFY2(text.contains(reason.toUtf8()), text.constData());
}

void ReaderMountTest::imageIsMade()
{
    const QStringList arguments = {
        "--make-image", path("made.gb"), "--type",  "0x1B",    "--rom-size", "1M",
        "--ram-size",   "32K",           "--title", "MOUNTED", "--seed",     "17"};
    QCOMPARE(QProcess::execute(READER_PROGRAM, arguments), 0);
    QVERIFY(contentOf(path("made.gb")) == toByteArray(m_image));
    QCOMPARE(QProcess::execute(READER_PROGRAM, {"--make-image", path("x.gb"), "--rom-size", "5"}),
             1);
    QVERIFY(!QFile::exists(path("x.gb")));
}

GBDRIVER_TEST(ReaderMountTest, core)
#include "reader_mount_test.moc"
