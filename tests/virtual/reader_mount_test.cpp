// The mounted reader, used through plain system calls by a process that knows nothing of it.
#include "files.h"
#include "mount_bench.h"
#include "test_class.h"

#include <QDir>
#include <QJsonArray>
#include <QtTest>

#include <sys/stat.h>

using namespace virtual_reader;

class ReaderMountTest : public QObject, private MountBench
{
    Q_OBJECT

private slots:
    void init() { QCOMPARE(prepare(), QString()); }
    void cleanup() { QVERIFY(isDone()); }

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
};

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

GBDRIVER_TEST(ReaderMountTest, core)
#include "reader_mount_test.moc"
