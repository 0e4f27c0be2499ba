// Faults happen exactly where and as often as asked for.
#include "virtual/faulty_drive.h"
#include "virtual/in_process_drive.h"

#include "command_blocks.h"
#include "files.h"
#include "test_class.h"

#include <QtTest>

#include <string>

using namespace virtual_reader;

namespace
{

struct Bench {
    std::unique_ptr<DriveBackend> platform = createPlatformBackend();
    std::unique_ptr<InProcessDrive> inner;
    std::unique_ptr<FaultyDrive> drive;

    Bench()
    {
        ReaderSetup setup;
        setup.demo = true;
        std::string error;
        auto reader = KeptReader::create(setup, &error);
        if (reader == nullptr)
            qFatal("%s", error.c_str());
        inner = std::make_unique<InProcessDrive>(std::move(reader), *platform);
        drive = std::make_unique<FaultyDrive>(*inner);
    }

    DriveStatus open(const char *path, std::unique_ptr<DriveFile> *file)
    {
        return drive->openForRead(path, Buffering::Unbuffered, file);
    }

    std::unique_ptr<DriveFile> opened(const char *path)
    {
        std::unique_ptr<DriveFile> file;
        if (!open(path, &file).ok())
            qFatal("cannot open %s", path);
        return file;
    }
};

constexpr char kDump[] = "E:\\DUMP.ROM";
constexpr char kCommand[] = "E:\\CMD.CMD";

} // namespace

class FaultyDriveTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutFaultsEverythingGoesThrough();
    void nthReadFailsAndTheNextSucceeds();
    void faultsCanLastForever();
    void onlyTheNamedFileFails();
    void openForWriteFails();
    void partOfAWriteGoesThrough_data();
    void partOfAWriteGoesThrough();
    void partOfAReadArrives_data();
    void partOfAReadArrives();
    void readBringsFlippedBits();
    void writeArrivesWithFlippedBits();
    void somethingElseHappensOnce();
    void failedCloseStillCloses();
    void sizeLabelTypeAndScanFail();
    void vanishedDriveIsNowhere();
    void driveVanishesDuringARead();
    void callsAreCounted();
};

void FaultyDriveTest::withoutFaultsEverythingGoesThrough()
{
    Bench bench;
    QCOMPARE(bench.drive->logicalDrives(), 1U << 4);
    QCOMPARE(int(bench.drive->driveType("E:")), int(DriveType::Removable));
    char label[16] = {};
    QVERIFY(bench.drive->volumeLabel("E:", label, sizeof label).ok());
    QCOMPARE(bench.drive->drivePlace("E:"), bench.inner->drivePlace("E:"));
    QCOMPARE(label, "VIRTUAL");
    std::unique_ptr<DriveFile> file;
    QVERIFY(bench.drive->openForWrite(kCommand, &file).ok());
    std::uint32_t count = 0;
    const ByteVector run = selectGb();
    QVERIFY(file->write(run.data(), 1024, &count).ok());
    QVERIFY(file->close().ok());
    QCOMPARE(bench.inner->reader().counters().blocks, quint64(2));
}

void FaultyDriveTest::nthReadFailsAndTheNextSucceeds()
{
    Bench bench;
    DriveFault fault;
    fault.after = 2;
    bench.drive->addFault(fault);
    const auto file = bench.opened(kDump);
    std::uint8_t byte = 0;
    std::uint32_t count = 0;
    QVERIFY(file->read(&byte, 1, &count).ok());
    QVERIFY(file->read(&byte, 1, &count).ok());
    const DriveStatus status = file->read(&byte, 1, &count);
    QCOMPARE(int(status.code), int(DriveErrorCode::InputOutput));
    QCOMPARE(QString::fromStdString(status.message), QString("E:\\DUMP.ROM: injected fault"));
    QCOMPARE(count, 0U);
    QVERIFY(file->read(&byte, 1, &count).ok());
}

void FaultyDriveTest::faultsCanLastForever()
{
    Bench bench;
    DriveFault fault;
    fault.call = DriveCall::OpenForRead;
    fault.times = DriveFault::kForever;
    fault.code = DriveErrorCode::NotFound;
    bench.drive->addFault(fault);
    std::unique_ptr<DriveFile> file;
    for (int i = 0; i < 100; ++i)
        QCOMPARE(int(bench.open(kDump, &file).code), int(DriveErrorCode::NotFound));
    QVERIFY(file == nullptr);
    bench.drive->clearFaults();
    QVERIFY(bench.open(kDump, &file).ok());
}

void FaultyDriveTest::onlyTheNamedFileFails()
{
    Bench bench;
    DriveFault fault;
    fault.call = DriveCall::OpenForRead;
    fault.pathEnd = "K-DRIVER.DMP";
    bench.drive->addFault(fault);
    std::unique_ptr<DriveFile> file;
    QVERIFY(bench.open(kDump, &file).ok());
    QVERIFY(!bench.open("E:\\K-DRIVER.DMP", &file).ok());
}

void FaultyDriveTest::openForWriteFails()
{
    Bench bench;
    DriveFault fault;
    fault.call = DriveCall::OpenForWrite;
    fault.code = DriveErrorCode::Refused;
    bench.drive->addFault(fault);
    std::unique_ptr<DriveFile> file;
    QCOMPARE(int(bench.drive->openForWrite(kCommand, &file).code), int(DriveErrorCode::Refused));
    QCOMPARE(bench.inner->reader().counters().commandRuns, quint64(0));
    QVERIFY(bench.drive->openForWrite(kCommand, &file).ok());
}

void FaultyDriveTest::partOfAWriteGoesThrough_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("claimsAll");
    QTest::addColumn<std::uint32_t>("count");
    QTest::newRow("disk full") << int(DriveErrorCode::Full) << false << 512U;
    QTest::newRow("lost in silence") << int(DriveErrorCode::None) << true << 1024U;
}

void FaultyDriveTest::partOfAWriteGoesThrough()
{
    QFETCH(int, code);
    QFETCH(bool, claimsAll);
    Bench bench;
    DriveFault fault;
    fault.call = DriveCall::Write;
    fault.bytes = 512;
    fault.code = static_cast<DriveErrorCode>(code);
    fault.claimsAll = claimsAll;
    bench.drive->addFault(fault);
    std::unique_ptr<DriveFile> file;
    QVERIFY(bench.drive->openForWrite(kCommand, &file).ok());
    std::uint32_t count = 0;
    QCOMPARE(int(file->write(selectGb().data(), 1024, &count).code), code);
    QTEST(count, "count");
    QVERIFY(file->close().ok());
    QCOMPARE(bench.inner->reader().counters().blocks, quint64(1));
}

void FaultyDriveTest::partOfAReadArrives_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("claimsAll");
    QTest::addColumn<std::uint32_t>("count");
    QTest::newRow("short") << int(DriveErrorCode::None) << false << 100U;
    QTest::newRow("failed, reports nothing") << int(DriveErrorCode::InputOutput) << false << 0U;
    QTest::newRow("claims what it did not move") << int(DriveErrorCode::None) << true << 512U;
}

void FaultyDriveTest::partOfAReadArrives()
{
    QFETCH(int, code);
    QFETCH(bool, claimsAll);
    Bench bench;
    DriveFault fault;
    fault.bytes = 100;
    fault.code = static_cast<DriveErrorCode>(code);
    fault.claimsAll = claimsAll;
    bench.drive->addFault(fault);
    ByteVector bytes(512, 0);
    std::uint32_t count = 7;
    QCOMPARE(int(bench.opened(kDump)->read(bytes.data(), 512, &count).code), code);
    QTEST(count, "count");
    QVERIFY(bytes == ByteVector(100, 0xFF) + ByteVector(412, 0));
}

void FaultyDriveTest::readBringsFlippedBits()
{
    Bench bench;
    DriveFault fault;
    fault.code = DriveErrorCode::None;
    fault.bytes = DriveFault::kAllBytes;
    fault.flips = 0x81;
    bench.drive->addFault(fault);
    fault.after = 1;
    fault.flippedByte = 2;
    bench.drive->addFault(fault);
    const auto file = bench.opened(kDump);
    ByteVector bytes(4, 0);
    std::uint32_t count = 0;
    QVERIFY(file->read(bytes.data(), 4, &count).ok());
    QVERIFY(bytes == ByteVector(4, 0x7E));
    QVERIFY(file->read(bytes.data(), 4, &count).ok());
    QCOMPARE(count, 4U);
    QVERIFY(bytes == ByteVector({0xFF, 0xFF, 0x7E, 0xFF}));
}

void FaultyDriveTest::writeArrivesWithFlippedBits()
{
    Bench bench;
    DriveFault fault;
    fault.call = DriveCall::Write;
    fault.code = DriveErrorCode::None;
    fault.bytes = DriveFault::kAllBytes;
    fault.flips = 1;
    bench.drive->addFault(fault);
    const QTemporaryDir folder;
    const QString path = folder.filePath("file");
    std::unique_ptr<DriveFile> file;
    QVERIFY(bench.drive->openForWrite(path.toLocal8Bit().constData(), &file).ok());
    std::uint32_t count = 0;
    QVERIFY(file->write("abc", 3, &count).ok());
    QCOMPARE(count, 3U);
    QVERIFY(file->close().ok());
    QCOMPARE(contentOf(path), QByteArray("`cb"));
}

void FaultyDriveTest::somethingElseHappensOnce()
{
    Bench bench;
    int happened = 0;
    DriveFault fault;
    fault.call = DriveCall::OpenForRead;
    fault.code = DriveErrorCode::None;
    fault.after = 1;
    fault.happens = [&happened] { ++happened; };
    bench.drive->addFault(fault);
    std::unique_ptr<DriveFile> file;
    for (const int expected : {0, 1, 1}) {
        QVERIFY(bench.open(kDump, &file).ok());
        QCOMPARE(happened, expected);
    }
}

void FaultyDriveTest::failedCloseStillCloses()
{
    Bench bench;
    DriveFault fault;
    fault.call = DriveCall::Close;
    bench.drive->addFault(fault);
    std::unique_ptr<DriveFile> file;
    QVERIFY(bench.drive->openForWrite(kCommand, &file).ok());
    QVERIFY(!file->close().ok());
    QVERIFY(bench.drive->openForWrite(kCommand, &file).ok());
}

void FaultyDriveTest::sizeLabelTypeAndScanFail()
{
    Bench bench;
    for (const DriveCall call : {DriveCall::Size, DriveCall::VolumeLabel, DriveCall::DriveType,
                                 DriveCall::LogicalDrives}) {
        DriveFault fault;
        fault.call = call;
        bench.drive->addFault(fault);
    }
    std::uint32_t size = 0;
    char label[16] = "old";
    const auto file = bench.opened(kDump);
    QVERIFY(!file->size(&size).ok());
    QVERIFY(file->size(&size).ok());
    QVERIFY(!bench.drive->volumeLabel("E:", label, sizeof label).ok());
    QCOMPARE(label, "old");
    QCOMPARE(int(bench.drive->driveType("E:")), int(DriveType::NoRoot));
    QCOMPARE(int(bench.drive->driveType("E:")), int(DriveType::Removable));
    QCOMPARE(bench.drive->logicalDrives(), 0U);
    QCOMPARE(bench.drive->logicalDrives(), 1U << 4);
}

void FaultyDriveTest::vanishedDriveIsNowhere()
{
    Bench bench;
    const auto file = bench.opened(kDump);
    bench.drive->setGone(true);
    QCOMPARE(bench.drive->logicalDrives(), 0U);
    QCOMPARE(int(bench.drive->driveType("E:")), int(DriveType::NoRoot));
    char label[16] = "old";
    QVERIFY(!bench.drive->volumeLabel("E:", label, sizeof label).ok());
    std::unique_ptr<DriveFile> other;
    QCOMPARE(int(bench.open(kDump, &other).code), int(DriveErrorCode::NotFound));
    QCOMPARE(int(bench.drive->openForWrite(kCommand, &other).code), int(DriveErrorCode::NotFound));
    std::uint32_t value = 0;
    QCOMPARE(int(file->size(&value).code), int(DriveErrorCode::Gone));
    QCOMPARE(int(file->read(&value, 1, &value).code), int(DriveErrorCode::Gone));
    QCOMPARE(int(file->close().code), int(DriveErrorCode::Gone));
    bench.drive->setGone(false);
    QVERIFY(bench.open(kDump, &other).ok());
}

void FaultyDriveTest::driveVanishesDuringARead()
{
    Bench bench;
    DriveFault fault;
    fault.after = 1;
    fault.driveVanishes = true;
    bench.drive->addFault(fault);
    const auto file = bench.opened(kDump);
    std::uint8_t byte = 0;
    std::uint32_t count = 0;
    QVERIFY(file->read(&byte, 1, &count).ok());
    QVERIFY(!bench.drive->gone());
    QCOMPARE(int(file->read(&byte, 1, &count).code), int(DriveErrorCode::Gone));
    QVERIFY(bench.drive->gone());
    QCOMPARE(bench.inner->reader().counters().reads, quint64(1));
}

void FaultyDriveTest::callsAreCounted()
{
    Bench bench;
    DriveFault fault;
    fault.call = DriveCall::OpenForRead;
    bench.drive->addFault(fault);
    std::unique_ptr<DriveFile> file;
    QVERIFY(!bench.open(kDump, &file).ok());
    QVERIFY(bench.open(kDump, &file).ok());
    QVERIFY(bench.open("E:\\K-DRIVER.DMP", &file).ok());
    QCOMPARE(bench.drive->callCount(DriveCall::OpenForRead), 3U);
    QCOMPARE(bench.drive->callCount(DriveCall::OpenForRead, "DUMP.ROM"), 2U);
    QCOMPARE(bench.drive->callCount(DriveCall::OpenForWrite), 0U);
}

GBDRIVER_TEST(FaultyDriveTest, none)
#include "faulty_drive_test.moc"
