// The Linux backend: drives, and which paths lead to them.
#include "linux_reader_folder.h"
#include "test_bytes.h"

#include "device/device_commands.h"
#include "device/device_link.h"
#include "device/device_ops.h"
#include "files.h"
#include "test_class.h"

#include <QDir>
#include <QtTest>

namespace
{

const QByteArray kIdentity("Reader 1.0 test.", 16);

QByteArray identityFile()
{
    return QByteArray(0x8000, 'x') + kIdentity + QByteArray(0x7FF0, 'y');
}

} // namespace

class DriveLinuxTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void declaredFolderIsARemovableDrive();
    void labelIsCutToTheCapacity();
    void labelOfNoDriveLeavesTheBufferAlone();
    void linkFindsTheReader();
    void linkFindsANamedLetterWithoutAScan();
    void linkPassesAFolderWithoutFiles();
    void pathsOnTheDriveUseItsFolder_data();
    void pathsOnTheDriveUseItsFolder();
    void blanksAndOtherScriptsInTheFolder();
    void letterOfNoScanIsAnOrdinaryPath();
    void letterThatWasAskedForIsNeverAnOrdinaryPath();
    void goneFolderServesNothing();
    void returnedFolderServesAgain();

private:
    QString m_startFolder;
};

void DriveLinuxTest::init()
{
    m_startFolder = QDir::currentPath();
    deviceLink = DeviceLink();
}

void DriveLinuxTest::cleanup()
{
    QVERIFY(QDir::setCurrent(m_startFolder));
}

void DriveLinuxTest::declaredFolderIsARemovableDrive()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    const auto backend = createPlatformBackend();
    QCOMPARE(backend->logicalDrives(), 1U << 4);
    QCOMPARE(backend->driveType("E:"), DriveType::Removable);
    QCOMPARE(backend->driveType("D:"), DriveType::NoRoot);
    QCOMPARE(backend->driveType("e:"), DriveType::NoRoot);
    char label[256] = {};
    QVERIFY(backend->volumeLabel("E:", label, sizeof(label)).ok());
    QCOMPARE(QByteArray(label), QByteArray("READER"));
    QCOMPARE(QByteArray(backend->drivePlace("E:").c_str()) + "/CMD.CMD", reader.path("CMD.CMD"));
    QCOMPARE(backend->drivePlace("D:").c_str(), "");
}

void DriveLinuxTest::labelIsCutToTheCapacity()
{
    const LinuxReaderFolder reader(QDir::tempPath(), "reader", QByteArray(300, 'L'));
    const auto backend = LinuxReaderFolder::scannedBackend();
    QByteArray label(258, '\x5C');
    QVERIFY(backend->volumeLabel("E:", label.data(), 256).ok());
    QCOMPARE(label, QByteArray(255, 'L') + QByteArray(1, '\0') + QByteArray(2, '\x5C'));
    QVERIFY(backend->volumeLabel("E:", label.data(), 1).ok());
    QCOMPARE(label[0], '\0');
    QCOMPARE(label[1], 'L');
}

void DriveLinuxTest::labelOfNoDriveLeavesTheBufferAlone()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    const auto backend = LinuxReaderFolder::scannedBackend();
    QByteArray label(16, '\x5C');
    QVERIFY(backend->volumeLabel("D:", label.data(), 16).code == DriveErrorCode::NotFound);
    QCOMPARE(label, QByteArray(16, '\x5C'));
}

void DriveLinuxTest::linkFindsTheReader()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    putFile(reader.path("K-DRIVER.DMP"), identityFile());
    const QByteArray rom = patternBytes(0x10000, 1);
    putFile(reader.path("DUMP.ROM"), rom);
    const auto backend = createPlatformBackend();
    setDriveBackend(backend.get());
    QCOMPARE(findDevice(0, nullptr), 1);
    QCOMPARE(deviceLink.driveLetter, static_cast<signed char>('E'));
    QCOMPARE(QByteArray(deviceLink.driverLabel), QByteArray("READER"));
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(deviceLink.identityBytes), 16), kIdentity);
    QCOMPARE(sendEmptyCommand(kClassGb, 1), 512U);
    QCOMPARE(contentOf(reader.path("CMD.CMD")).size(), 512);
    QByteArray header(0x50, '\0');
    QCOMPARE(readDumpFile(0x100, header.data(), 0x50), 0x50U);
    QCOMPARE(header, rom.mid(0x100, 0x50));
    releaseReader();
    QVERIFY(descriptorsOn(reader.path("CMD.CMD")).isEmpty());
}

void DriveLinuxTest::linkFindsANamedLetterWithoutAScan()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    putFile(reader.path("K-DRIVER.DMP"), identityFile());
    const auto backend = createPlatformBackend();
    setDriveBackend(backend.get());
    QCOMPARE(findDevice('E', nullptr), 1);
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(deviceLink.identityBytes), 16), kIdentity);
    QCOMPARE(findDevice('F', nullptr), 0);
}

void DriveLinuxTest::linkPassesAFolderWithoutFiles()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    QVERIFY(QFile::remove(reader.path("K-DRIVER.DMP")));
    const auto backend = createPlatformBackend();
    setDriveBackend(backend.get());
    QCOMPARE(findDevice(0, nullptr), 1);
    QCOMPARE(selectGbMode(), 0U);
    QVERIFY(lastDriveErrorCode() == DriveErrorCode::NotTheReader);
    QVERIFY(entriesOf(reader.folder()).isEmpty());
    putFile(reader.path("K-DRIVER.DMP"), "too short");
    QCOMPARE(findDevice(0, nullptr), 0);
}

void DriveLinuxTest::pathsOnTheDriveUseItsFolder_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QString>("file");
    QTest::newRow("root") << QByteArray("E:\\CMD.CMD") << "CMD.CMD";
    QTest::newRow("in a folder") << QByteArray("E:\\sub\\FILE.BIN") << "sub/FILE.BIN";
    QTest::newRow("blank") << QByteArray("E:\\MY FILE") << "MY FILE";
    QTest::newRow("non-ASCII") << QByteArray(u8"E:\\ゲーム") << u8"ゲーム";
}

void DriveLinuxTest::pathsOnTheDriveUseItsFolder()
{
    QFETCH(QByteArray, path);
    QFETCH(QString, file);
    const LinuxReaderFolder reader(QDir::tempPath());
    QVERIFY(QDir(reader.folder()).mkdir("sub"));
    const auto backend = LinuxReaderFolder::scannedBackend();
    const DriveStatus status = writeThrough(backend.get(), path, "content");
    QVERIFY2(status.ok(), status.message.c_str());
    QCOMPARE(contentOf(reader.path(file)), QByteArray("content"));
    QByteArray bytes;
    QVERIFY(readThrough(backend.get(), path, Buffering::Unbuffered, 0, 100, &bytes).ok());
    QCOMPARE(bytes, QByteArray("content"));
}

void DriveLinuxTest::blanksAndOtherScriptsInTheFolder()
{
    const LinuxReaderFolder reader(QDir::tempPath(), QString::fromUtf8(u8"mein Gerät カ"));
    const auto backend = LinuxReaderFolder::scannedBackend();
    QVERIFY(writeThrough(backend.get(), "E:\\CMD.CMD", "content").ok());
    QCOMPARE(contentOf(reader.path("CMD.CMD")), QByteArray("content"));
    QByteArray bytes;
    QVERIFY(readThrough(backend.get(), "E:\\CMD.CMD", Buffering::Unbuffered, 2, 3, &bytes).ok());
    QCOMPARE(bytes, QByteArray("nte"));
}

void DriveLinuxTest::letterOfNoScanIsAnOrdinaryPath()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    QVERIFY(QDir::setCurrent(reader.parent()));
    const auto backend = LinuxReaderFolder::scannedBackend();
    for (const QByteArray path : {"Q:\\FILE", "e:\\FILE", "E:FILE", "E:/FILE"}) {
        if (path.contains('/'))
            QVERIFY(QDir().mkdir("E:"));
        QVERIFY2(writeThrough(backend.get(), path, path).ok(), path.constData());
        QCOMPARE(contentOf(QFile::decodeName(path)), path);
    }
    QCOMPARE(entriesOf(reader.folder()), QStringList("K-DRIVER.DMP"));
    std::unique_ptr<DriveFile> file;
    QVERIFY(backend->openForRead("", Buffering::Unbuffered, &file).code ==
            DriveErrorCode::NotFound);
    QVERIFY(!backend->openForWrite("", &file).ok());
    QVERIFY(file == nullptr);
}

// The link stores the letter of a failed probe; commands to it must not end up in a file beside the
// user's own.
void DriveLinuxTest::letterThatWasAskedForIsNeverAnOrdinaryPath()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    const QTemporaryDir current;
    QVERIFY(QDir::setCurrent(current.path()));
    const auto backend = createPlatformBackend();
    setDriveBackend(backend.get());
    QCOMPARE(findDevice('Z', nullptr), 0);
    QCOMPARE(gbaSaveErase(), 0U);
    setDriveBackend(nullptr);
    QVERIFY(QDir(current.path()).isEmpty());
}

void DriveLinuxTest::goneFolderServesNothing()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    QVERIFY(QDir::setCurrent(reader.parent()));
    const auto backend = LinuxReaderFolder::scannedBackend();
    QVERIFY(writeThrough(backend.get(), "E:\\CMD.CMD", "content").ok());
    QVERIFY(QDir(reader.folder()).removeRecursively());

    QCOMPARE(backend->driveType("E:"), DriveType::NoRoot);
    const DriveStatus written = writeThrough(backend.get(), "E:\\CMD.CMD", "lost");
    QVERIFY(written.code == DriveErrorCode::Gone);
    QVERIFY2(written.message.find("E:\\CMD.CMD") != std::string::npos, written.message.c_str());
    QByteArray bytes;
    QVERIFY(readThrough(backend.get(), "E:\\CMD.CMD", Buffering::Unbuffered, 0, 16, &bytes).code ==
            DriveErrorCode::Gone);
    QVERIFY2(entriesOf(reader.parent()).isEmpty(), "a file was created in the drive's place");
    QCOMPARE(backend->logicalDrives(), 0U);
    QVERIFY(!writeThrough(backend.get(), "E:\\CMD.CMD", "lost").ok());
    QVERIFY(entriesOf(reader.parent()).isEmpty());
}

void DriveLinuxTest::returnedFolderServesAgain()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    const auto backend = LinuxReaderFolder::scannedBackend();
    QVERIFY(writeThrough(backend.get(), "E:\\CMD.CMD", "before").ok());
    QDir parent(reader.parent());
    QVERIFY(parent.rename("reader", "elsewhere"));
    QVERIFY(!writeThrough(backend.get(), "E:\\CMD.CMD", "lost").ok());
    QVERIFY(parent.mkdir("reader"));
    putFile(reader.path("K-DRIVER.DMP"), "");
    QVERIFY(writeThrough(backend.get(), "E:\\CMD.CMD", "after").ok());
    QCOMPARE(contentOf(reader.path("CMD.CMD")), QByteArray("after"));
    QCOMPARE(contentOf(reader.parent() + "/elsewhere/CMD.CMD"), QByteArray("before"));
    QCOMPARE(backend->driveType("E:"), DriveType::Removable);
}

GBDRIVER_TEST(DriveLinuxTest, none)
#include "drive_linux_test.moc"
