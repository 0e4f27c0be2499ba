// The kernel32 backend on real drives: which one is the reader, and what its files do.
#include "drive_folders.h"

#include "device/device_commands.h"
#include "device/device_link.h"
#include "test_class.h"

#include <QtTest>

#include <memory>

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

Q_DECLARE_METATYPE(DriveType)

namespace
{

const QByteArray kFirst("First reader 1.0", 16);
const QByteArray kSecond("Second reader 20", 16);

const std::uint8_t *startOf(const QByteArray &identity)
{
    return reinterpret_cast<const std::uint8_t *>(identity.constData());
}

QByteArray foundIdentity()
{
    return QByteArray(reinterpret_cast<const char *>(deviceLink.identityBytes), 16);
}

char foundLetter()
{
    return static_cast<char>(deviceLink.driveLetter);
}

} // namespace

class DriveWindowsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_drives = std::make_unique<DriveFolders>();
        QVERIFY2(m_drives->problem().isEmpty(), qPrintable(m_drives->problem()));
        m_backend = createPlatformBackend();
        setDriveBackend(m_backend.get());
        deviceLink = DeviceLink();
    }
    void cleanup()
    {
        setDriveBackend(nullptr);
        m_backend.reset();
    }

    void drivesHaveTheirTypes_data();
    void drivesHaveTheirTypes();
    void labelIsTheVolumes();
    void labelOfNoDriveLeavesTheBufferAlone();
    void emptySlotsShowNoErrorBox();

    void readerIsFoundByItsIdentity();
    void driveWithoutIdentityFilePassesForAnyReader();
    void shortIdentityFileIsNoReader();
    void fixedDriveWithIdentityIsRefused();
    void firstOfTwoReadersWins();
    void expectedIdentityFindsTheSecondReader();

    void commandFileHoldsExactlyTheRun();
    void emptyCommandTruncatesTheFile();
    void shortReadsEndInTheMiddleOfASector();
    void unalignedReadsAreWidened_data();
    void unalignedReadsAreWidened();
    void commandFileThatRefusesIsNotWritten_data();
    void commandFileThatRefusesIsNotWritten();
    void nothingIsCreatedWithoutAnIdentityFile();
    void fileOpenForWritingIsNobodyElses();
    void driveGoneBetweenTwoCommands();
    void filesOfAnyNameWork_data();
    void filesOfAnyNameWork();
    void onlyOrdinaryFilesAreRead_data();
    void onlyOrdinaryFilesAreRead();

private:
    std::unique_ptr<DriveFolders> m_drives;
    std::unique_ptr<DriveBackend> m_backend;
};

void DriveWindowsTest::drivesHaveTheirTypes_data()
{
    QTest::addColumn<QByteArray>("root");
    QTest::addColumn<DriveType>("type");
    QTest::newRow("system") << QByteArray("C:") << DriveType::Fixed;
    QTest::newRow("fixed") << QByteArray("D:") << DriveType::Fixed;
    QTest::newRow("removable") << QByteArray("E:") << DriveType::Removable;
    QTest::newRow("small letter") << QByteArray("e:") << DriveType::Removable;
    QTest::newRow("none") << QByteArray("Q:") << DriveType::NoRoot;
}

void DriveWindowsTest::drivesHaveTheirTypes()
{
    QFETCH(QByteArray, root);
    QFETCH(DriveType, type);
    QCOMPARE(m_backend->driveType(root.constData()), type);
    const unsigned bit = 1U << (QChar(root[0]).toUpper().unicode() - 'A');
    QCOMPARE((m_backend->logicalDrives() & bit) != 0, type != DriveType::NoRoot);
}

void DriveWindowsTest::labelIsTheVolumes()
{
    QByteArray label(16, '\x5C');
    const DriveStatus whole = m_backend->volumeLabel("E:", label.data(), 16);
    QVERIFY2(whole.ok(), whole.message.c_str());
    QCOMPARE(label.left(7), QByteArray("READER\0", 7));
    label.fill('\x5C');
    QVERIFY(m_backend->volumeLabel("E:", label.data(), 4).ok());
    QCOMPARE(label.left(5), QByteArray("REA\0\x5C", 5));
}

void DriveWindowsTest::labelOfNoDriveLeavesTheBufferAlone()
{
    QByteArray label(16, '\x5C');
    const DriveStatus status = m_backend->volumeLabel("Q:", label.data(), 16);
    QCOMPARE(status.code, DriveErrorCode::NotFound);
    QVERIFY2(status.message.find("Q:") != std::string::npos, status.message.c_str());
    QCOMPARE(label, QByteArray(16, '\x5C'));
}

void DriveWindowsTest::emptySlotsShowNoErrorBox()
{
    SetErrorMode(0);
    const auto backend = createPlatformBackend();
    QVERIFY((GetErrorMode() & SEM_FAILCRITICALERRORS) != 0);
}

void DriveWindowsTest::readerIsFoundByItsIdentity()
{
    QVERIFY(m_drives->addFile('E', "K-DRIVER.DMP", identityFile(kFirst)));
    QCOMPARE(findDevice(0, startOf(kFirst)), 1);
    QCOMPARE(foundLetter(), 'E');
    QCOMPARE(foundIdentity(), kFirst);
    QCOMPARE(QByteArray(deviceLink.driverLabel), QByteArray("READER"));
}

void DriveWindowsTest::driveWithoutIdentityFilePassesForAnyReader()
{
    QCOMPARE(findDevice(0, nullptr), 1);
    QCOMPARE(foundLetter(), 'E');
    QCOMPARE(findDevice('E', startOf(kFirst)), 0);
}

void DriveWindowsTest::shortIdentityFileIsNoReader()
{
    QVERIFY(m_drives->addFile('E', "K-DRIVER.DMP", QByteArray(0x8000, 'x')));
    QCOMPARE(findDevice('E', nullptr), 0);
    QVERIFY(m_drives->addFile('E', "K-DRIVER.DMP", {}));
    QCOMPARE(findDevice('E', nullptr), 0);
}

void DriveWindowsTest::fixedDriveWithIdentityIsRefused()
{
    QVERIFY(m_drives->addFile('D', "K-DRIVER.DMP", identityFile(kFirst)));
    QCOMPARE(findDevice('D', nullptr), 0);
    QCOMPARE(findDevice('D', startOf(kFirst)), 0);
    QCOMPARE(findDevice(0, startOf(kFirst)), 0);
    QVERIFY(foundIdentity() != kFirst);
}

void DriveWindowsTest::firstOfTwoReadersWins()
{
    QVERIFY(m_drives->addFile('G', "K-DRIVER.DMP", identityFile(kFirst)));
    QVERIFY(m_drives->addFile('F', "K-DRIVER.DMP", identityFile(kSecond)));
    QVERIFY(m_drives->addFile('E', "K-DRIVER.DMP", {}));
    QCOMPARE(findDevice(0, nullptr), 1);
    QCOMPARE(foundLetter(), 'F');
    QCOMPARE(foundIdentity(), kSecond);
}

void DriveWindowsTest::expectedIdentityFindsTheSecondReader()
{
    QVERIFY(m_drives->addFile('E', "K-DRIVER.DMP", identityFile(kFirst)));
    QVERIFY(m_drives->addFile('G', "K-DRIVER.DMP", identityFile(kSecond)));
    QCOMPARE(findDevice(0, startOf(kSecond)), 1);
    QCOMPARE(foundLetter(), 'G');
    QCOMPARE(foundIdentity(), kSecond);
}

void DriveWindowsTest::commandFileHoldsExactlyTheRun()
{
    QVERIFY(m_drives->addFile('E', "CMD.CMD", QByteArray(4096, 'o')));
    QCOMPARE(findDevice('E', nullptr), 1);
    QCOMPARE(sendEmptyCommand(kClassGb, 1), 512U);
    QByteArray expected(512, '\0');
    expected.replace(0, 3, QByteArray("\x5A\x02\x01", 3));
    expected.replace(510, 2, QByteArray("\x69\x47", 2));
    QCOMPARE(m_drives->content('E', "CMD.CMD"), expected);
}

void DriveWindowsTest::emptyCommandTruncatesTheFile()
{
    QVERIFY(m_drives->addFile('E', "CMD.CMD", "old"));
    QCOMPARE(findDevice('E', nullptr), 1);
    clearLastDriveError();
    QCOMPARE(writeCommandFile("", 0), 0U);
    QVERIFY(lastDriveError().empty());
    QCOMPARE(m_drives->content('E', "CMD.CMD"), QByteArray(""));
}

void DriveWindowsTest::shortReadsEndInTheMiddleOfASector()
{
    QVERIFY(m_drives->addFile('E', "DUMP.ROM", QByteArray(1000, 'r')));
    QCOMPARE(findDevice('E', nullptr), 1);
    QByteArray bytes(2048, '\0');
    QCOMPARE(readDumpFile(0, bytes.data(), 2048), 1000U);
    QCOMPARE(bytes, QByteArray(1000, 'r') + QByteArray(1048, '\0'));
    QCOMPARE(readDumpFile(4096, bytes.data(), 2048), 0U);
}

void DriveWindowsTest::unalignedReadsAreWidened_data()
{
    QTest::addColumn<unsigned>("offset");
    QTest::addColumn<unsigned>("length");
    QTest::newRow("header of a cartridge") << 0x100U << 0x50U;
    QTest::newRow("one byte") << 511U << 1U;
    QTest::newRow("over a sector's end") << 1000U << 1100U;
    QTest::newRow("whole sectors") << 512U << 1024U;
    QTest::newRow("odd length of many sectors") << 0U << 20001U;
}

void DriveWindowsTest::unalignedReadsAreWidened()
{
    QFETCH(unsigned, offset);
    QFETCH(unsigned, length);
    QByteArray content(0x8000, '\0');
    for (int i = 0; i < content.size(); ++i)
        content[i] = static_cast<char>(i * 7 + i / 256);
    QVERIFY(m_drives->addFile('E', "DUMP.ROM", content));
    QCOMPARE(findDevice('E', nullptr), 1);
    // Neither the buffer's address is that of a sector.
    QByteArray bytes(static_cast<int>(length) + 1, '\0');
    QCOMPARE(readDumpFile(offset, bytes.data() + 1, length), length);
    QCOMPARE(bytes.mid(1), content.mid(static_cast<int>(offset), static_cast<int>(length)));
}

void DriveWindowsTest::commandFileThatRefusesIsNotWritten_data()
{
    QTest::addColumn<char>("letter");
    QTest::newRow("folder in its place") << 'E';
    QTest::newRow("read-only") << 'H';
}

void DriveWindowsTest::commandFileThatRefusesIsNotWritten()
{
    QFETCH(char, letter);
    const std::string path = std::string(1, letter) + ":\\CMD.CMD";
    QVERIFY(CreateDirectoryA("E:\\CMD.CMD", nullptr) != 0);
    QVERIFY(GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES);
    QCOMPARE(findDevice(letter, nullptr), 1);
    clearLastDriveError();
    QCOMPARE(sendEmptyCommand(kClassGb, 1), 0U);
    QVERIFY2(lastDriveError().find(path) != std::string::npos, lastDriveError().c_str());
    std::unique_ptr<DriveFile> file;
    QCOMPARE(m_backend->openForWrite(path.c_str(), &file).code, DriveErrorCode::Refused);
    QCOMPARE(m_backend->mayWrite(path.c_str()).code, DriveErrorCode::Refused);
    QVERIFY(file == nullptr);
}

// A memory stick that was taken for the reader stays as it is.
void DriveWindowsTest::nothingIsCreatedWithoutAnIdentityFile()
{
    std::unique_ptr<DriveFile> file;
    const DriveStatus refused = m_backend->openForWrite("E:\\CMD.CMD", &file);
    QCOMPARE(refused.code, DriveErrorCode::NotTheReader);
    QCOMPARE(QByteArray(refused.message.c_str()),
             QByteArray("\"E:\\CMD.CMD\" is not created: E: holds no K-DRIVER.DMP"));
    QCOMPARE(m_backend->mayWrite("E:\\CMD.CMD").code, DriveErrorCode::NotTheReader);
    QVERIFY(file == nullptr);
    QCOMPARE(GetFileAttributesA("E:\\CMD.CMD"), INVALID_FILE_ATTRIBUTES);

    QVERIFY(m_drives->addFile('E', "K-DRIVER.DMP", identityFile(kFirst)));
    QCOMPARE(m_backend->mayWrite("E:\\CMD.CMD").code, DriveErrorCode::NotFound);
    QCOMPARE(GetFileAttributesA("E:\\CMD.CMD"), INVALID_FILE_ATTRIBUTES);
    QVERIFY(m_backend->openForWrite("E:\\CMD.CMD", &file).ok());
}

void DriveWindowsTest::fileOpenForWritingIsNobodyElses()
{
    std::unique_ptr<DriveFile> first;
    QVERIFY(m_drives->addFile('E', "K-DRIVER.DMP", identityFile(kFirst)));
    QVERIFY(m_backend->openForWrite("E:\\CMD.CMD", &first).ok());
    std::unique_ptr<DriveFile> second;
    QCOMPARE(m_backend->openForWrite("E:\\CMD.CMD", &second).code, DriveErrorCode::InUse);
    QCOMPARE(m_backend->mayWrite("E:\\CMD.CMD").code, DriveErrorCode::InUse);
    QCOMPARE(m_backend->openForRead("E:\\CMD.CMD", Buffering::Buffered, &second).code,
             DriveErrorCode::InUse);
    QVERIFY(first->close().ok());
    QVERIFY(m_backend->mayWrite("E:\\CMD.CMD").ok());
    QVERIFY(m_backend->openForRead("E:\\CMD.CMD", Buffering::Buffered, &second).ok());
}

void DriveWindowsTest::driveGoneBetweenTwoCommands()
{
    QVERIFY(m_drives->addFile('E', "K-DRIVER.DMP", identityFile(kFirst)));
    QCOMPARE(findDevice('E', startOf(kFirst)), 1);
    QCOMPARE(sendEmptyCommand(kClassGb, 1), 512U);
    QVERIFY(m_drives->pullOut('E'));
    QByteArray bytes(16, '\0');
    QCOMPARE(sendEmptyCommand(kClassGb, 1), 0U);
    QCOMPARE(readDriverFile(0, bytes.data(), 16), kFailed);
    QVERIFY(!lastDriveError().empty());
    QVERIFY(m_drives->putBack('E'));
    QCOMPARE(sendEmptyCommand(kClassGb, 1), 512U);
    QCOMPARE(readDriverFile(kIdentityOffset, bytes.data(), 16), 16U);
    QCOMPARE(bytes, kFirst);
}

void DriveWindowsTest::filesOfAnyNameWork_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("blanks") << "my first dump.gb";
    QTest::newRow("letters beyond ASCII") << QString::fromUtf8(u8"Spiel für Gerät é.gb");
    QTest::newRow("several dots") << "a.b.c.gb";
}

void DriveWindowsTest::filesOfAnyNameWork()
{
    QFETCH(QString, name);
    const QByteArray path = "E:\\" + name.toLocal8Bit();
    QCOMPARE(QString::fromLocal8Bit(path.mid(3)), name);
    QCOMPARE(writeFileWhole(path.constData(), "content", 7), 7U);
    QCOMPARE(m_drives->content('E', name), QByteArray("content"));
    QByteArray bytes(4, '\0');
    QCOMPARE(readFileAt(path.constData(), bytes.data(), 4, 3), 4U);
    QCOMPARE(bytes, QByteArray("tent"));
}

void DriveWindowsTest::onlyOrdinaryFilesAreRead_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::newRow("device") << QByteArray("NUL");
    QTest::newRow("folder") << QByteArray("C:\\windows");
    QTest::newRow("pipe that nobody writes") << QByteArray("\\\\.\\pipe\\gbdriver-test");
}

// At once.
void DriveWindowsTest::onlyOrdinaryFilesAreRead()
{
    QFETCH(QByteArray, path);
    const HANDLE pipe = CreateNamedPipeA("\\\\.\\pipe\\gbdriver-test", PIPE_ACCESS_OUTBOUND,
                                         PIPE_TYPE_BYTE, 1, 16, 16, 0, nullptr);
    QVERIFY(pipe != INVALID_HANDLE_VALUE);
    std::unique_ptr<DriveFile> file;
    const DriveStatus status = m_backend->openForRead(path.constData(), Buffering::Buffered, &file);
    CloseHandle(pipe);
    QVERIFY2(status.code == DriveErrorCode::Refused, status.message.c_str());
    QVERIFY(file == nullptr);
}

GBDRIVER_TEST(DriveWindowsTest, none)
#include "drive_windows_test.moc"
