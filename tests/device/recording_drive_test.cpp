// The recording drive itself: what other tests rely on when they look at its records.
#include "recording_drive.h"

#include "device/device_link.h"
#include "test_class.h"

#include <QtTest>

#include <cstring>
#include <memory>

class RecordingDriveTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_drive = std::make_unique<RecordingDrive>(); }

    void writtenFileHoldsExactlyWhatWasWritten();
    void readsAreCutAtTheEnd();
    void queuedContentsComeOnePerOpen();
    void failuresSkipAndCount();
    void fileThatIsNeverClosedShows();
    void pulledOutDriveServesNothing();
    void attachedReaderIsOnDriveE();

private:
    std::unique_ptr<RecordingDrive> m_drive;
};

void RecordingDriveTest::writtenFileHoldsExactlyWhatWasWritten()
{
    m_drive->setContent("user file", "something longer");
    std::unique_ptr<DriveFile> file;
    QVERIFY(m_drive->openForWrite("user file", &file).ok());
    QCOMPARE(m_drive->openFiles, 1);
    std::uint32_t count = 0;
    QVERIFY(file->write("abc", 3, &count).ok());
    QVERIFY(file->write("de", 2, &count).ok());
    QCOMPARE(count, 2U);
    QVERIFY(file->close().ok());
    QCOMPARE(m_drive->content("user file"), QByteArray("abcde"));
    QCOMPARE(m_drive->runs.size(), 1);
    QCOMPARE(m_drive->openFiles, 0);
    QCOMPARE(m_drive->calls,
             QStringList({"create user file", "write 3 at 0", "write 2 at 3", "close"}));
}

void RecordingDriveTest::readsAreCutAtTheEnd()
{
    m_drive->setContent("f", "0123456789");
    std::unique_ptr<DriveFile> file;
    QVERIFY(m_drive->openForRead("f", Buffering::Buffered, &file).ok());
    char bytes[8] = {};
    std::uint32_t count = 0;
    file->seek(6);
    QVERIFY(file->read(bytes, 8, &count).ok());
    QCOMPARE(count, 4U);
    QCOMPARE(QByteArray(bytes, 4), QByteArray("6789"));
    QVERIFY(file->read(bytes, 8, &count).ok());
    QCOMPARE(count, 0U);
    QCOMPARE(m_drive->reads[0].offset, 6U);
    QCOMPARE(m_drive->reads[1].offset, 10U);
    QVERIFY(file->close().ok());
}

void RecordingDriveTest::queuedContentsComeOnePerOpen()
{
    m_drive->queueContents("f", {"first", "second"});
    for (const QByteArray &expected :
         {QByteArray("first"), QByteArray("second"), QByteArray("second")}) {
        std::unique_ptr<DriveFile> file;
        QVERIFY(m_drive->openForRead("f", Buffering::Unbuffered, &file).ok());
        char bytes[16] = {};
        std::uint32_t count = 0;
        QVERIFY(file->read(bytes, 16, &count).ok());
        QCOMPARE(QByteArray(bytes, static_cast<int>(count)), expected);
        QVERIFY(file->close().ok());
    }
}

void RecordingDriveTest::failuresSkipAndCount()
{
    m_drive->setContent("f", "x");
    m_drive->failNext(DriveCall::OpenRead, 1, 2);
    std::unique_ptr<DriveFile> file;
    QList<bool> opened;
    for (int i = 0; i < 4; ++i)
        opened.append(m_drive->openForRead("f", Buffering::Buffered, &file).ok());
    QCOMPARE(opened, QList<bool>({true, false, false, true}));
}

void RecordingDriveTest::fileThatIsNeverClosedShows()
{
    std::unique_ptr<DriveFile> file;
    QVERIFY(m_drive->openForWrite("f", &file).ok());
    file.reset();
    QCOMPARE(m_drive->calls.last(), QString("dropped f"));
    QCOMPARE(m_drive->openFiles, 0);
}

void RecordingDriveTest::pulledOutDriveServesNothing()
{
    attachReader(m_drive.get());
    m_drive->removeDrive('E');
    std::unique_ptr<DriveFile> file;
    QVERIFY(!m_drive->openForRead(kDumpPath, Buffering::Unbuffered, &file).ok());
    QVERIFY(!m_drive->openForWrite(kCommandPath, &file).ok());
    QVERIFY(file == nullptr);
    QCOMPARE(m_drive->logicalDrives(), 0U);
    QCOMPARE(m_drive->driveType("E:"), DriveType::NoRoot);
    QVERIFY(!m_drive->hasFile(kCommandPath));
}

void RecordingDriveTest::attachedReaderIsOnDriveE()
{
    attachReader(m_drive.get());
    QCOMPARE(&driveBackend(), static_cast<DriveBackend *>(m_drive.get()));
    QCOMPARE(deviceLink.driveLetter, static_cast<signed char>('E'));
    QCOMPARE(m_drive->logicalDrives(), 1U << 4);
    QCOMPARE(m_drive->driveType("E:"), DriveType::Removable);
    char label[256] = {};
    QVERIFY(m_drive->volumeLabel("E:", label, sizeof(label)).ok());
    QCOMPARE(label, "READER");
    QVERIFY(m_drive->volumeLabel("E:", label, 4).ok());
    QCOMPARE(label, "REA");
    QCOMPARE(m_drive->content(kIdentityPath).size(), 0x10000);
}

GBDRIVER_TEST(RecordingDriveTest, none)
#include "recording_drive_test.moc"
