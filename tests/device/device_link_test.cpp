// The file primitives of the device link, against a drive that records them.
#include "device/device_link.h"

#include "composed_block.h"
#include "recording_drive.h"
#include "test_bytes.h"

#include "device/device_commands.h"
#include "test_class.h"

#include <QtTest>

#include <algorithm>
#include <memory>

class DeviceLinkTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void noLetterBeforeAnyProbe(); // must run first
    void bufferedReadSeeksAndCloses();
    void bufferedReadResults();
    void unbufferedReadOfAnyLength_data();
    void unbufferedReadOfAnyLength();
    void unbufferedReadResults();
    void shortFileReportsWhatArrived();
    void nullBufferOpensNothing();
    void wholeWriteReplacesTheFile_data();
    void wholeWriteReplacesTheFile();
    void wholeWriteResults();
    void deviceFilesFollowTheLetter();
    void handlesReadInSequence();
    void handlesWriteInSequence();
    void handleResults();
    void lastErrorIsKeptUntilCleared();
    void sessionReleasesTheReader();
    void codeOfTheLastErrorIsKept();
    void noBackendEndsEveryCall();
    void callOfTheReaderIsTimed();

private:
    std::unique_ptr<RecordingDrive> m_drive;
};

void DeviceLinkTest::init()
{
    m_drive = std::make_unique<RecordingDrive>();
    m_drive->setContent("file", patternBytes(5000, 3));
    if (QTest::currentTestFunction() == QByteArray("noLetterBeforeAnyProbe"))
        setDriveBackend(m_drive.get());
    else
        attachReader(m_drive.get());
}

void DeviceLinkTest::cleanup()
{
    QCOMPARE(m_drive->openFiles, 0);
    QVERIFY(m_drive->calls.filter("dropped").isEmpty());
    QVERIFY(!m_drive->calls.contains("closed twice"));
}

void DeviceLinkTest::noLetterBeforeAnyProbe()
{
    QCOMPARE(deviceLink.driveLetter, static_cast<signed char>(0));
    QCOMPARE(QByteArray(deviceLink.driverLabel, kLabelSize), QByteArray(256, '\0'));
    const auto *identity = reinterpret_cast<const char *>(deviceLink.identityBytes);
    QCOMPARE(QByteArray(identity, kIdentitySize), QByteArray(16, '\0'));
    QVERIFY(lastDriveError().empty());

    char bytes[16] = {};
    QCOMPARE(sendEmptyCommand(kClassReader, 2), 0U);
    QCOMPARE(readDriverFile(0, bytes, 16), 0xFFFFFFFFU);
    QCOMPARE(readDumpFile(0, bytes, 16), 0xFFFFFFFFU);
    QVERIFY(m_drive->runs.isEmpty());
    QVERIFY(!lastDriveError().empty());
}

void DeviceLinkTest::bufferedReadSeeksAndCloses()
{
    QByteArray bytes(300, '\0');
    QCOMPARE(readFileAt("file", bytes.data(), 300, 0x101), 300U);
    QCOMPARE(bytes, m_drive->content("file").mid(0x101, 300));
    QCOMPARE(m_drive->calls,
             QStringList({"open file buffered", "seek 257", "read 300 at 257", "close"}));
    QCOMPARE(m_drive->reads[0].destination, static_cast<void *>(bytes.data()));
}

void DeviceLinkTest::bufferedReadResults()
{
    QByteArray bytes(8000, '\0');
    QCOMPARE(readFileAt("file", bytes.data(), 8000, 0), 5000U);
    QCOMPARE(readFileAt("file", bytes.data(), 10, 5000), 0U);
    QCOMPARE(readFileAt("file", bytes.data(), 10, 0xFFFFFFFF), 0U);
    QCOMPARE(readFileAt("file", bytes.data(), 0, 0), 0U);
    QCOMPARE(readFileAt("missing", bytes.data(), 10, 0), 0U);
    m_drive->failNext(DriveCall::Read);
    QCOMPARE(readFileAt("file", bytes.data(), 10, 0), 0U);
    m_drive->failNext(DriveCall::Close);
    QCOMPARE(readFileAt("file", bytes.data(), 10, 0), 0U);
}

void DeviceLinkTest::unbufferedReadOfAnyLength_data()
{
    QTest::addColumn<std::uint32_t>("length");
    QTest::addColumn<std::uint32_t>("offset");
    for (const std::uint32_t length : {0U, 1U, 16U, 512U, 1023U, 1024U, 1025U, 4096U})
        QTest::addRow("%u", length) << length << 0x200U;
    QTest::newRow("unaligned offset, short") << 16U << 0x101U;
    QTest::newRow("unaligned offset, long") << 2000U << 0x101U;
}

// Below 1024 bytes through a transfer of exactly 1024, from there on straight into the buffer.
void DeviceLinkTest::unbufferedReadOfAnyLength()
{
    QFETCH(std::uint32_t, length);
    QFETCH(std::uint32_t, offset);
    const int size = static_cast<int>(length);
    QByteArray bytes(size + 32, '\x5C');
    QCOMPARE(readFileUnbuffered("file", bytes.data(), length, offset), length);
    const std::uint32_t transferred = std::max(length, 1024U);
    QCOMPARE(m_drive->calls,
             QStringList({"open file unbuffered", QString("seek %1").arg(offset),
                          QString("read %1 at %2").arg(transferred).arg(offset), "close"}));
    QCOMPARE(m_drive->reads[0].destination == bytes.data(), length >= 1024);
    QCOMPARE(bytes.left(size), m_drive->content("file").mid(static_cast<int>(offset), size));
    QCOMPARE(bytes.mid(size), QByteArray(32, '\x5C'));
}

void DeviceLinkTest::unbufferedReadResults()
{
    QByteArray bytes(8192, '\x11');
    for (const std::uint32_t length : {16U, 4096U}) {
        QCOMPARE(readFileUnbuffered("missing", bytes.data(), length, 0), 0xFFFFFFFFU);
        for (const DriveCall call : {DriveCall::OpenRead, DriveCall::Read, DriveCall::Close}) {
            m_drive->failNext(call);
            QCOMPARE(readFileUnbuffered("file", bytes.data(), length, 0), 0xFFFFFFFFU);
        }
    }
    bytes.fill('\x11');
    m_drive->failNext(DriveCall::Read);
    QCOMPARE(readFileUnbuffered("file", bytes.data(), 16, 0), 0xFFFFFFFFU);
    QCOMPARE(bytes, QByteArray(8192, '\x11'));
}

void DeviceLinkTest::shortFileReportsWhatArrived()
{
    QByteArray bytes(8192, '\0');
    QCOMPARE(readFileUnbuffered("file", bytes.data(), 8192, 0), 5000U);
    QCOMPARE(readFileUnbuffered("file", bytes.data(), 16, 4990), 10U);
    QCOMPARE(bytes.left(10), m_drive->content("file").mid(4990));
    QCOMPARE(readFileUnbuffered("file", bytes.data(), 16, 5000), 0U);
    QCOMPARE(readFileUnbuffered("file", bytes.data(), 16, 0xFFFFFE00), 0U);
}

void DeviceLinkTest::nullBufferOpensNothing()
{
    for (const std::uint32_t length : {0U, 16U, 4096U}) {
        QCOMPARE(readFileAt("file", nullptr, length, 0), 0U);
        QCOMPARE(readFileUnbuffered("file", nullptr, length, 0), 0U);
        QCOMPARE(readDriverFile(0, nullptr, length), 0U);
        QCOMPARE(readDumpFile(0, nullptr, length), 0U);
    }
    QVERIFY(m_drive->calls.isEmpty());
}

void DeviceLinkTest::wholeWriteReplacesTheFile_data()
{
    QTest::addColumn<int>("length");
    for (const int length : {0, 1, 512, 4999, 5000, 5001, 1 << 20})
        QTest::addRow("%d", length) << length;
}

void DeviceLinkTest::wholeWriteReplacesTheFile()
{
    QFETCH(int, length);
    const QByteArray bytes = patternBytes(length, 40);
    QCOMPARE(writeFileWhole("file", bytes.constData(), static_cast<std::uint32_t>(length)),
             static_cast<std::uint32_t>(length));
    QVERIFY(m_drive->content("file") == bytes);
    QCOMPARE(m_drive->calls,
             QStringList({"create file", QString("write %1 at 0").arg(length), "close"}));
}

void DeviceLinkTest::wholeWriteResults()
{
    m_drive->failNext(DriveCall::OpenWrite);
    QCOMPARE(writeFileWhole("file", "abc", 3), 0U);
    QCOMPARE(m_drive->content("file").size(), 5000);
    m_drive->failNext(DriveCall::Write);
    QCOMPARE(writeFileWhole("file", "abc", 3), 0xFFFFFFFFU);
    m_drive->failNext(DriveCall::Close);
    QCOMPARE(writeFileWhole("file", "abc", 3), 0xFFFFFFFFU);
    m_drive->setNextWriteCount(2); // a system that writes less without calling it a failure
    QCOMPARE(writeFileWhole("file", "abc", 3), 2U);
    QCOMPARE(writeFileWhole("file", "abc", 3), 3U);
    QCOMPARE(writeFileWhole("new file", "", 0), 0U);
    QVERIFY(m_drive->hasFile("new file"));
}

void DeviceLinkTest::deviceFilesFollowTheLetter()
{
    char bytes[2048] = {};
    for (const char letter : {'A', 'E', 'Z'}) {
        m_drive->addDrive(letter, DriveType::Removable);
        deviceLink.driveLetter = static_cast<signed char>(letter);
        const QString root = QString(letter) + ":\\";
        m_drive->setContent(root + "K-DRIVER.DMP", patternBytes(4096, 1));
        m_drive->setContent(root + "DUMP.ROM", patternBytes(4096, 2));
        m_drive->forgetCalls();
        QCOMPARE(readDriverFile(0x200, bytes, 2048), 2048U);
        QCOMPARE(QByteArray(bytes, 2048), patternBytes(4096, 1).mid(0x200, 2048));
        QCOMPARE(readDumpFile(0x400, bytes, 2048), 2048U);
        QCOMPARE(QByteArray(bytes, 2048), patternBytes(4096, 2).mid(0x400, 2048));
        QCOMPARE(writeCommandFile("abc", 3), 3U);
        QCOMPARE(m_drive->calls,
                 QStringList({"open " + root + "K-DRIVER.DMP unbuffered", "seek 512",
                              "read 2048 at 512", "close", "open " + root + "DUMP.ROM unbuffered",
                              "seek 1024", "read 2048 at 1024", "close",
                              "create " + root + "CMD.CMD", "write 3 at 0", "close"}));
    }
}

void DeviceLinkTest::handlesReadInSequence()
{
    DriveFile *handle = openForRead("file");
    QVERIFY(handle != nullptr);
    QCOMPARE(fileSize(handle), 5000U);
    QByteArray bytes(3000, '\0');
    QCOMPARE(readHandle(handle, bytes.data(), 3000), 3000U);
    QCOMPARE(bytes, m_drive->content("file").left(3000));
    QCOMPARE(readHandle(handle, bytes.data(), 3000), 2000U);
    QCOMPARE(bytes.left(2000), m_drive->content("file").mid(3000));
    QCOMPARE(readHandle(handle, bytes.data(), 3000), 0U);
    closeHandle(handle);
    QCOMPARE(m_drive->calls, QStringList({"open file buffered", "size", "read 3000 at 0",
                                          "read 3000 at 3000", "read 3000 at 5000", "close"}));
}

void DeviceLinkTest::handlesWriteInSequence()
{
    DriveFile *handle = openForWrite("file");
    QVERIFY(handle != nullptr);
    QCOMPARE(writeHandle(handle, "abc", 3), 3U);
    QCOMPARE(writeHandle(handle, "", 0), 0U);
    QCOMPARE(writeHandle(handle, "defg", 4), 4U);
    QCOMPARE(fileSize(handle), 7U);
    closeHandle(handle);
    QCOMPARE(m_drive->content("file"), QByteArray("abcdefg"));
    closeHandle(openForWrite("emptied"));
    QVERIFY(m_drive->hasFile("emptied"));
    QCOMPARE(m_drive->content("emptied").size(), 0);
}

void DeviceLinkTest::handleResults()
{
    QVERIFY(openForRead("missing") == nullptr);
    m_drive->failNext(DriveCall::OpenWrite);
    QVERIFY(openForWrite("file") == nullptr);
    closeHandle(nullptr);

    char bytes[16] = {};
    DriveFile *reading = openForRead("file");
    QVERIFY(reading != nullptr);
    m_drive->failNext(DriveCall::Read);
    QCOMPARE(readHandle(reading, bytes, 16), 0xFFFFFFFFU);
    QCOMPARE(readHandle(reading, bytes, 16), 16U);
    m_drive->failNext(DriveCall::Size);
    QCOMPARE(fileSize(reading), 0xFFFFFFFFU);
    closeHandle(reading);

    DriveFile *writing = openForWrite("file");
    QVERIFY(writing != nullptr);
    m_drive->failNext(DriveCall::Write);
    m_drive->setNextWriteCount(5);
    QCOMPARE(writeHandle(writing, "0123456789", 10), 5U);
    m_drive->setNextWriteCount(4);
    QCOMPARE(writeHandle(writing, "0123456789", 10), 4U);
    m_drive->failNext(DriveCall::Close);
    closeHandle(writing);
    QVERIFY(!lastDriveError().empty());
}

void DeviceLinkTest::lastErrorIsKeptUntilCleared()
{
    char bytes[16] = {};
    QVERIFY(lastDriveError().empty());
    const std::uint32_t errorsBefore = driveErrorCount();
    readFileUnbuffered("missing", bytes, 16, 0);
    const std::string message = lastDriveError();
    QVERIFY2(message.find("missing") != std::string::npos, message.c_str());
    QCOMPARE(readFileUnbuffered("file", bytes, 16, 0), 16U);
    QCOMPARE(lastDriveError(), message);
    m_drive->failNext(DriveCall::Write);
    writeFileWhole("file", "abc", 3);
    QVERIFY(lastDriveError() != message);
    clearLastDriveError();
    QVERIFY(lastDriveError().empty());
    QCOMPARE(driveErrorCount() - errorsBefore, 2U);
}

void DeviceLinkTest::sessionReleasesTheReader()
{
    const auto report = [](bool early) {
        const ReaderSession session;
        if (early)
            return 1;
        sendEmptyCommand(kClassGb, 1);
        return 2;
    };
    QCOMPARE(report(true), 1);
    QCOMPARE(m_drive->calls, QStringList({"release"}));
    m_drive->forgetCalls();
    QCOMPARE(report(false), 2);
    QCOMPARE(m_drive->calls,
             QStringList({"create E:\\CMD.CMD", "write 512 at 0", "close", "release"}));
}

void DeviceLinkTest::codeOfTheLastErrorIsKept()
{
    clearLastDriveError();
    QVERIFY(lastDriveErrorCode() == DriveErrorCode::None);
    char bytes[16] = {};
    QCOMPARE(readFileAt("missing", bytes, 10, 0), 0U);
    QVERIFY(lastDriveErrorCode() != DriveErrorCode::None);
    clearLastDriveError();
    QVERIFY(lastDriveErrorCode() == DriveErrorCode::None);
}

void DeviceLinkTest::noBackendEndsEveryCall()
{
    setDriveBackend(nullptr);
    char bytes[16] = {};
    QCOMPARE(findDevice(0, nullptr), 0);
    QCOMPARE(findDevice('E', nullptr), 0);
    QCOMPARE(sendEmptyCommand(kClassReader, 2), 0U);
    QCOMPARE(readDumpFile(0, bytes, 16), kFailed);
    QCOMPARE(readFileAt("file", bytes, 10, 0), 0U);
    QVERIFY(openForRead("file") == nullptr);
    QVERIFY(openForWrite("file") == nullptr);
    QVERIFY(lastDriveErrorCode() == DriveErrorCode::NotFound);
    QCOMPARE(QByteArray(lastDriveError().c_str()),
             QByteArray("\"file\": this program has chosen no drive backend"));
    releaseReader();
    QVERIFY(m_drive->calls.isEmpty());
}

void DeviceLinkTest::callOfTheReaderIsTimed()
{
    QCOMPARE(readerCallMs(), 0);
    int inside = -1;
    m_drive->onRead = [&inside] {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 20) {
        }
        inside = readerCallMs();
    };
    char bytes[16] = {};
    QCOMPARE(readDumpFile(0, bytes, 16), 16U);
    QVERIFY2(inside >= 20, qPrintable(QString::number(inside)));
    QCOMPARE(readerCallMs(), 0);
    // The user's files are on disks of their own.
    QCOMPARE(readFileAt("file", bytes, 10, 0), 10U);
    QCOMPARE(inside, 0);
}

GBDRIVER_TEST(DeviceLinkTest, none)
#include "device_link_test.moc"
