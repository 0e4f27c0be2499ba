// The reader as a drive of this process, beside the user's own files.
#include "virtual/gb_cartridges.h"
#include "virtual/image_generator.h"
#include "virtual/in_process_drive.h"

#include "command_blocks.h"
#include "test_class.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <cstring>
#include <string>

using namespace virtual_reader;

namespace
{

std::unique_ptr<KeptReader> demoReader(bool strictSectors = false, ReaderFault fault = {})
{
    ReaderSetup setup;
    setup.demo = true;
    setup.config.strictSectors = strictSectors;
    setup.config.fault = fault;
    std::string error;
    auto reader = KeptReader::create(setup, &error);
    if (reader == nullptr)
        qFatal("%s", error.c_str());
    return reader;
}

// The drive with the platform's backend behind it.
struct Bench {
    std::unique_ptr<DriveBackend> platform = createPlatformBackend();
    InProcessDrive drive;

    explicit Bench(bool strictSectors = false, const InProcessDriveOptions &options = {})
        : drive(demoReader(strictSectors), *platform, options)
    {
    }
    explicit Bench(ReaderFault fault) : drive(demoReader(false, fault), *platform) {}

    std::unique_ptr<DriveFile> open(const char *path, Buffering buffering = Buffering::Unbuffered)
    {
        std::unique_ptr<DriveFile> file;
        const DriveStatus status = drive.openForRead(path, buffering, &file);
        if (!status.ok())
            qWarning("%s", status.message.c_str());
        return file;
    }

    DriveStatus send(const ByteVector &run)
    {
        std::unique_ptr<DriveFile> file;
        const DriveStatus opened = drive.openForWrite("E:\\CMD.CMD", &file);
        if (!opened.ok())
            return opened;
        std::uint32_t count = 0;
        const auto length = static_cast<std::uint32_t>(run.size());
        const DriveStatus written = file->write(run.data(), length, &count);
        return written.ok() && count == length ? file->close() : written;
    }

    ByteVector read(const char *path, std::uint32_t offset, std::uint32_t length)
    {
        const auto file = open(path);
        ByteVector bytes(length);
        std::uint32_t count = 0;
        file->seek(offset);
        const DriveStatus status = file->read(bytes.data(), length, &count);
        bytes.resize(status.ok() ? count : 0);
        return bytes;
    }

    quint64 runs() { return drive.reader().counters().commandRuns; }
};

} // namespace

class InProcessDriveTest : public QObject
{
    Q_OBJECT

private slots:
    void isTheOnlyDriveOfAScan();
    void letterAndLabelCanBeChosen();
    void labelIsCutToTheBuffer();
    void commandTakesEffectWhenTheFileIsClosed();
    void commandTakesEffectOnceWithoutAClose();
    void writesAtAPositionBuildTheFile();
    void tooLongCommandFileIsRefused();
    void emptyCommandFileIsARunOfItsOwn();
    void commandFileIsExclusive();
    void dumpOfAllBanksEqualsTheImage();
    void namesAndLettersIgnoreCase();
    void readsAdvanceAndStopAtTheEnd();
    void bufferingIsRecorded();
    void handlesRefuseTheOtherDirection();
    void sizesAreThoseOfTheFiles();
    void strictSectorsRefuseOddRequests();
    void missingFilesAreNotFound();
    void otherFilesCannotBeWritten_data();
    void otherFilesCannotBeWritten();
    void otherPathsGoToTheOtherBackend();
    void failedSaveFileShowsWhenTheCommandFileCloses();
    void faultsShowAsTheyDoOnADisk();
};

void InProcessDriveTest::isTheOnlyDriveOfAScan()
{
    Bench bench;
    QCOMPARE(bench.drive.logicalDrives(), 1U << 4);
    QCOMPARE(int(bench.drive.driveType("E:")), int(DriveType::Removable));
    QCOMPARE(int(bench.drive.driveType("C:")), int(DriveType::NoRoot));
    char label[256] = "old";
    QVERIFY(!bench.drive.volumeLabel("C:", label, sizeof label).ok());
    QCOMPARE(label, "old");
    QVERIFY(bench.drive.volumeLabel("E:", label, sizeof label).ok());
    QCOMPARE(label, "VIRTUAL");
    QCOMPARE(bench.drive.drivePlace("E:").c_str(), "the virtual reader of this program");
    QCOMPARE(bench.drive.drivePlace("C:").c_str(), "");
}

void InProcessDriveTest::letterAndLabelCanBeChosen()
{
    Bench bench(false, {'Q', "MY READER"});
    QCOMPARE(bench.drive.logicalDrives(), 1U << 16);
    QCOMPARE(int(bench.drive.driveType("Q:")), int(DriveType::Removable));
    char label[256] = {};
    QVERIFY(bench.drive.volumeLabel("Q:", label, sizeof label).ok());
    QCOMPARE(label, "MY READER");
    QVERIFY(bench.open("Q:\\DUMP.ROM") != nullptr);
}

void InProcessDriveTest::labelIsCutToTheBuffer()
{
    Bench bench;
    char label[4] = {};
    QVERIFY(bench.drive.volumeLabel("E:", label, sizeof label).ok());
    QCOMPARE(label, "VIR");
    QCOMPARE(int(bench.drive.volumeLabel("E:", label, 0).code), int(DriveErrorCode::BadRequest));
}

void InProcessDriveTest::commandTakesEffectWhenTheFileIsClosed()
{
    Bench bench;
    std::unique_ptr<DriveFile> file;
    QVERIFY(bench.drive.openForWrite("E:\\CMD.CMD", &file).ok());
    const ByteVector run = selectGb();
    std::uint32_t count = 0;
    QVERIFY(file->write(run.data(), 1024, &count).ok());
    QCOMPARE(count, 1024U);
    QCOMPARE(bench.runs(), quint64(0));
    QVERIFY(file->close().ok());
    QCOMPARE(bench.runs(), quint64(1));
    file.reset();
    QCOMPARE(bench.runs(), quint64(1));
    QCOMPARE(bench.drive.reader().counters().blocks, quint64(2));
    QCOMPARE(bench.drive.reader().counters().refusedBlocks, quint64(0));
}

void InProcessDriveTest::commandTakesEffectOnceWithoutAClose()
{
    Bench bench;
    std::unique_ptr<DriveFile> file;
    QVERIFY(bench.drive.openForWrite("E:\\CMD.CMD", &file).ok());
    const ByteVector run = selectGb();
    std::uint32_t count = 0;
    QVERIFY(file->write(run.data(), 1024, &count).ok());
    file.reset();
    QCOMPARE(bench.runs(), quint64(1));
}

void InProcessDriveTest::writesAtAPositionBuildTheFile()
{
    Bench bench;
    const ByteVector run = selectGb();
    std::unique_ptr<DriveFile> file;
    QVERIFY(bench.drive.openForWrite("E:\\CMD.CMD", &file).ok());
    std::uint32_t count = 0;
    file->seek(512);
    QVERIFY(file->write(run.data() + 512, 512, &count).ok());
    file->seek(0);
    QVERIFY(file->write(run.data(), 512, &count).ok());
    std::uint32_t size = 0;
    QVERIFY(file->size(&size).ok());
    QCOMPARE(size, 1024U);
    QVERIFY(file->close().ok());
    QCOMPARE(bench.drive.reader().counters().refusedBlocks, quint64(0));
    QVERIFY(bench.read("E:\\CMD.CMD", 0, 2048) == run);
}

void InProcessDriveTest::tooLongCommandFileIsRefused()
{
    Bench bench;
    std::unique_ptr<DriveFile> file;
    QVERIFY(bench.drive.openForWrite("E:\\CMD.CMD", &file).ok());
    std::uint32_t count = 1;
    file->seek(0xFFFFFFF0);
    const std::uint8_t bytes[32] = {};
    QCOMPARE(int(file->write(bytes, 32, &count).code), int(DriveErrorCode::Full));
    QCOMPARE(count, 0U);
}

void InProcessDriveTest::emptyCommandFileIsARunOfItsOwn()
{
    Bench bench;
    QVERIFY(bench.send({}).ok());
    QCOMPARE(bench.runs(), quint64(1));
    QCOMPARE(bench.drive.reader().counters().blocks, quint64(0));
}

void InProcessDriveTest::commandFileIsExclusive()
{
    Bench bench;
    std::unique_ptr<DriveFile> first;
    std::unique_ptr<DriveFile> second;
    QVERIFY(bench.drive.openForWrite("E:\\CMD.CMD", &first).ok());
    QCOMPARE(int(bench.drive.openForWrite("E:\\CMD.CMD", &second).code),
             int(DriveErrorCode::InUse));
    QCOMPARE(int(bench.drive.mayWrite("E:\\CMD.CMD").code), int(DriveErrorCode::InUse));
    QVERIFY(second == nullptr);
    first.reset();
    QVERIFY(bench.drive.mayWrite("E:\\CMD.CMD").ok());
    QVERIFY(bench.drive.openForWrite("E:\\CMD.CMD", &second).ok());
}

void InProcessDriveTest::dumpOfAllBanksEqualsTheImage()
{
    Bench bench;
    const ByteVector image = bench.drive.reader().cartridge().romImage();
    QVERIFY(bench.send(selectGb()).ok());
    ByteVector dump;
    for (unsigned bank = 0; bank < image.size() / 0x4000; ++bank) {
        QVERIFY(bench.send(gbWriteBlock(0x2000, bank)).ok());
        dump = dump + bench.read("E:\\DUMP.ROM", 0x4000, 0x4000);
    }
    QVERIFY(dump == image);
}

void InProcessDriveTest::namesAndLettersIgnoreCase()
{
    Bench bench;
    QVERIFY(bench.open("e:\\dump.rom") != nullptr);
    QVERIFY(bench.open("E:\\k-driver.DMP") != nullptr);
}

void InProcessDriveTest::readsAdvanceAndStopAtTheEnd()
{
    Bench bench;
    const auto file = bench.open("E:\\K-DRIVER.DMP");
    ByteVector bytes(65536);
    std::uint32_t count = 0;
    file->seek(0x8000);
    QVERIFY(file->read(bytes.data(), 4, &count).ok());
    QVERIFY(file->read(bytes.data() + 4, 12, &count).ok());
    QCOMPARE(count, 12U);
    QCOMPARE(reinterpret_cast<const char *>(bytes.data()), "QDX_PCB02_FW303");
    QVERIFY(file->read(bytes.data(), 65536, &count).ok());
    QCOMPARE(count, 0x8000U - 16);
    QVERIFY(file->read(bytes.data(), 16, &count).ok());
    QCOMPARE(count, 0U);
    QVERIFY(file->close().ok());
}

void InProcessDriveTest::bufferingIsRecorded()
{
    Bench bench;
    std::uint8_t byte = 0;
    std::uint32_t count = 0;
    QVERIFY(bench.open("E:\\DUMP.ROM", Buffering::Buffered)->read(&byte, 1, &count).ok());
    QVERIFY(bench.open("E:\\DUMP.ROM")->read(&byte, 1, &count).ok());
    const auto &operations = bench.drive.reader().operations();
    QVERIFY(!operations[0].unbuffered);
    QVERIFY(operations[1].unbuffered);
}

void InProcessDriveTest::handlesRefuseTheOtherDirection()
{
    Bench bench;
    std::uint8_t byte = 0;
    std::uint32_t count = 1;
    QVERIFY(!bench.open("E:\\CMD.CMD")->write(&byte, 1, &count).ok());
    QCOMPARE(count, 0U);
    std::unique_ptr<DriveFile> file;
    QVERIFY(bench.drive.openForWrite("E:\\CMD.CMD", &file).ok());
    count = 1;
    QVERIFY(!file->read(&byte, 1, &count).ok());
    QCOMPARE(count, 0U);
}

void InProcessDriveTest::sizesAreThoseOfTheFiles()
{
    Bench bench;
    std::uint32_t size = 0;
    QVERIFY(bench.open("E:\\DUMP.ROM")->size(&size).ok());
    QCOMPARE(size, 1048576U);
    QVERIFY(bench.open("E:\\K-DRIVER.DMP")->size(&size).ok());
    QCOMPARE(size, 65536U);
}

void InProcessDriveTest::strictSectorsRefuseOddRequests()
{
    Bench bench(true);
    ByteVector bytes(1024);
    std::uint32_t count = 1;
    const auto file = bench.open("E:\\DUMP.ROM");
    const DriveStatus status = file->read(bytes.data(), 1000, &count);
    QCOMPARE(int(status.code), int(DriveErrorCode::BadRequest));
    QVERIFY2(QString::fromStdString(status.message).contains("E:\\DUMP.ROM"),
             status.message.c_str());
    QCOMPARE(count, 0U);
    QVERIFY(file->read(bytes.data(), 1024, &count).ok());
    QCOMPARE(count, 1024U);
    // The cache of a system serves odd requests.
    QVERIFY(bench.open("E:\\DUMP.ROM", Buffering::Buffered)->read(bytes.data(), 10, &count).ok());
}

void InProcessDriveTest::missingFilesAreNotFound()
{
    Bench bench;
    std::unique_ptr<DriveFile> file;
    for (const char *path :
         {"E:\\", "E:\\NONE.ROM", "E:\\DUMP.ROM.", "E:\\DUMP.RO", "E:\\A\\DUMP.ROM"}) {
        const DriveStatus status = bench.drive.openForRead(path, Buffering::Buffered, &file);
        QCOMPARE(int(status.code), int(DriveErrorCode::NotFound));
        QVERIFY(QString::fromStdString(status.message).contains(path));
        QVERIFY(file == nullptr);
    }
}

void InProcessDriveTest::otherFilesCannotBeWritten_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::newRow("data file") << QByteArray("E:\\DUMP.ROM");
    QTest::newRow("identity file") << QByteArray("E:\\K-DRIVER.DMP");
    QTest::newRow("new file") << QByteArray("E:\\NEW.BIN");
}

void InProcessDriveTest::otherFilesCannotBeWritten()
{
    QFETCH(QByteArray, path);
    Bench bench;
    std::unique_ptr<DriveFile> file;
    QCOMPARE(int(bench.drive.openForWrite(path.constData(), &file).code),
             int(DriveErrorCode::Refused));
    QCOMPARE(int(bench.drive.mayWrite(path.constData()).code), int(DriveErrorCode::Refused));
    QVERIFY(file == nullptr);
}

void InProcessDriveTest::otherPathsGoToTheOtherBackend()
{
    QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.filePath("user.bin"));
    Bench bench;
    std::unique_ptr<DriveFile> file;
    QVERIFY(bench.drive.openForWrite(path.constData(), &file).ok());
    std::uint32_t count = 0;
    QVERIFY(file->write("hello", 5, &count).ok());
    QVERIFY(file->close().ok());
    file.reset();
    char text[6] = {};
    QVERIFY(bench.drive.openForRead(path.constData(), Buffering::Buffered, &file).ok());
    QVERIFY(file->read(text, 5, &count).ok());
    QCOMPARE(text, "hello");
    QVERIFY(bench.drive.reader().operations().empty());
    bench.drive.releaseDrive();
}

void InProcessDriveTest::failedSaveFileShowsWhenTheCommandFileCloses()
{
    QTemporaryDir folder;
    ReaderSetup setup;
    setup.demo = true;
    setup.savePath = folder.filePath("missing/demo.sav").toStdString();
    std::string error;
    auto reader = KeptReader::create(setup, &error);
    QVERIFY2(reader != nullptr, error.c_str());
    const auto platform = createPlatformBackend();
    InProcessDrive drive(std::move(reader), *platform);
    const std::uint8_t old = drive.reader().cartridge().saveImage()[0];
    const ByteVector run = selectGb() + gbWriteBlock(0x0000, 0x0A) +
                           gbWriteBlock(0xA000, static_cast<std::uint8_t>(~old));
    std::unique_ptr<DriveFile> file;
    QVERIFY(drive.openForWrite("E:\\CMD.CMD", &file).ok());
    std::uint32_t count = 0;
    QVERIFY(file->write(run.data(), static_cast<std::uint32_t>(run.size()), &count).ok());
    const DriveStatus status = file->close();
    QCOMPARE(int(status.code), int(DriveErrorCode::InputOutput));
    QVERIFY2(QString::fromStdString(status.message).contains("demo.sav"), status.message.c_str());
}

void InProcessDriveTest::faultsShowAsTheyDoOnADisk()
{
    ReaderFault fault;
    fault.failedCommand = 1;
    fault.pulledAt = 3;
    Bench bench(fault);
    QCOMPARE(int(bench.send(selectGb()).code), int(DriveErrorCode::InputOutput));
    QVERIFY(bench.send(selectGb()).ok());
    const auto open = bench.open("E:\\DUMP.ROM");
    QCOMPARE(int(bench.send(selectGb()).code), int(DriveErrorCode::Gone));
    QCOMPARE(bench.drive.logicalDrives(), 0U);
    char byte = 0;
    std::uint32_t count = 9;
    QCOMPARE(int(open->read(&byte, 1, &count).code), int(DriveErrorCode::Gone));
    QCOMPARE(count, 0U);
}

GBDRIVER_TEST(InProcessDriveTest, none)
#include "in_process_drive_test.moc"
