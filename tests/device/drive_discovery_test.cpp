// Finding the reader: which drives are tried, in which order, and what is remembered of them.
#include "device/device_link.h"

#include "recording_drive.h"
#include "test_bytes.h"
#include "test_class.h"

#include <QtTest>

#include <memory>

namespace
{

constexpr int kIdentityAt = 0x8000;

// An identity file whose 16 bytes at 0x8000 begin with `identity`.
QByteArray identityFile(const QByteArray &identity)
{
    QByteArray file(0x9000, '\0');
    return file.replace(kIdentityAt, identity.size(), identity);
}

QByteArray identityBytes()
{
    return {reinterpret_cast<const char *>(deviceLink.identityBytes), kIdentitySize};
}

int probe(char letter, const QByteArray &expected)
{
    return probeDrive(letter, constBytesOf(expected));
}

} // namespace

class DriveDiscoveryTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { QCOMPARE(m_drive->openFiles, 0); }

    void probeMakesTheseCalls();
    void onlyRemovableDrivesPass_data();
    void onlyRemovableDrivesPass();
    void driveWithoutIdentityFilePasses();
    void failedIdentityReadPasses_data();
    void failedIdentityReadPasses();
    void emptyIdentityIsRefused_data();
    void emptyIdentityIsRefused();
    void threeBytesOfTheIdentityCount_data();
    void threeBytesOfTheIdentityCount();
    void missingIdentityIsComparedWithTheOldOne();
    void labelIsCutAndKept();
    void letterIsStoredBeforeTheChecks();

    void scanTakesTheFirstThatPasses();
    void scanGoesUpToZ();
    void failedScanLeavesTheLastLetterTried();
    void scanWithoutDrivesLeavesTheLetter();
    void scanLooksForTheExpectedIdentity();
    void namedLetterIsTriedAlone();

private:
    std::unique_ptr<RecordingDrive> m_drive;
};

void DriveDiscoveryTest::init()
{
    m_drive = std::make_unique<RecordingDrive>();
    setDriveBackend(m_drive.get());
    deviceLink = DeviceLink();
}

void DriveDiscoveryTest::probeMakesTheseCalls()
{
    m_drive->addDrive('F', DriveType::Removable, "STICK");
    const QByteArray identity("Firmware 1.23\0ab", 16);
    m_drive->setContent("F:\\K-DRIVER.DMP", identityFile(identity));
    QCOMPARE(probeDrive('F', nullptr), 1);
    QCOMPARE(m_drive->calls, QStringList({"type F:", "label F:", "open F:\\K-DRIVER.DMP unbuffered",
                                          "seek 32768", "read 1024 at 32768", "close"}));
    QCOMPARE(deviceLink.driveLetter, static_cast<signed char>('F'));
    QCOMPARE(deviceLink.driverLabel, "STICK");
    QCOMPARE(identityBytes().left(identity.size()), identity);
}

void DriveDiscoveryTest::onlyRemovableDrivesPass_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("passes");
    for (int type = 0; type <= 6; ++type)
        QTest::addRow("type %d", type) << type << (type == 2 ? 1 : 0);
}

void DriveDiscoveryTest::onlyRemovableDrivesPass()
{
    QFETCH(int, type);
    QFETCH(int, passes);
    m_drive->addDrive('D', static_cast<DriveType>(type), "LABEL");
    m_drive->setContent("D:\\K-DRIVER.DMP", identityFile("IDENTITY"));
    QCOMPARE(probeDrive('D', nullptr), passes);
    QCOMPARE(deviceLink.driveLetter, static_cast<signed char>('D'));
    if (passes == 0) {
        QCOMPARE(m_drive->calls, QStringList({"type D:"}));
        QCOMPARE(deviceLink.driverLabel, "");
        QCOMPARE(identityBytes(), QByteArray(16, '\0'));
    } else {
        QCOMPARE(deviceLink.driverLabel, "LABEL");
        QCOMPARE(identityBytes().left(8), QByteArray("IDENTITY"));
    }
}

void DriveDiscoveryTest::driveWithoutIdentityFilePasses()
{
    m_drive->addDrive('E', DriveType::Removable);
    QCOMPARE(probeDrive('E', nullptr), 1);
    QCOMPARE(findDevice(0, nullptr), 1);
    QCOMPARE(deviceLink.driveLetter, static_cast<signed char>('E'));
}

void DriveDiscoveryTest::failedIdentityReadPasses_data()
{
    QTest::addColumn<int>("call");
    QTest::newRow("open") << static_cast<int>(DriveCall::OpenRead);
    QTest::newRow("read") << static_cast<int>(DriveCall::Read);
    QTest::newRow("close") << static_cast<int>(DriveCall::Close);
}

void DriveDiscoveryTest::failedIdentityReadPasses()
{
    QFETCH(int, call);
    attachReader(m_drive.get());
    const QByteArray old = "old identity 123";
    std::copy(old.begin(), old.end(), deviceLink.identityBytes);
    m_drive->failNext(static_cast<DriveCall>(call));
    QCOMPARE(probeDrive('E', nullptr), 1);
    QCOMPARE(identityBytes(), old);
}

void DriveDiscoveryTest::emptyIdentityIsRefused_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("empty file") << 0;
    QTest::newRow("ends before the identity") << kIdentityAt - 1;
    QTest::newRow("ends at the identity") << kIdentityAt;
}

void DriveDiscoveryTest::emptyIdentityIsRefused()
{
    QFETCH(int, size);
    m_drive->addDrive('E', DriveType::Removable, "STICK");
    m_drive->setContent(kIdentityPath, QByteArray(size, 'x'));
    QCOMPARE(probeDrive('E', nullptr), 0);
    QCOMPARE(findDevice(0, nullptr), 0);
    QCOMPARE(deviceLink.driverLabel, "STICK"); // it was removable
    m_drive->setContent(kIdentityPath, QByteArray(kIdentityAt + 1, 'x'));
    QCOMPARE(probeDrive('E', nullptr), 1);
}

void DriveDiscoveryTest::threeBytesOfTheIdentityCount_data()
{
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<int>("passes");
    QTest::newRow("same") << QByteArray("ABC") << 1;
    QTest::newRow("fourth byte does not count") << QByteArray("ABCx") << 1;
    QTest::newRow("first differs") << QByteArray("xBC") << 0;
    QTest::newRow("second differs") << QByteArray("AxC") << 0;
    QTest::newRow("third differs") << QByteArray("ABx") << 0;
    QTest::newRow("swapped") << QByteArray("BAC") << 0;
}

void DriveDiscoveryTest::threeBytesOfTheIdentityCount()
{
    QFETCH(QByteArray, expected);
    QFETCH(int, passes);
    m_drive->addDrive('E', DriveType::Removable);
    m_drive->setContent(kIdentityPath, identityFile("ABCDEFGHIJKLMNOP"));
    QCOMPARE(probe('E', expected), passes);
    QCOMPARE(identityBytes(), QByteArray("ABCDEFGHIJKLMNOP"));
}

void DriveDiscoveryTest::missingIdentityIsComparedWithTheOldOne()
{
    m_drive->addDrive('E', DriveType::Removable);
    m_drive->addDrive('F', DriveType::Removable);
    m_drive->setContent("E:\\K-DRIVER.DMP", identityFile("ABCDEFGHIJKLMNOP"));
    QCOMPARE(probe('F', "ABC"), 0); // nothing read so far
    QCOMPARE(probe('E', "ABC"), 1);
    QCOMPARE(probe('F', "ABC"), 1); // what E said
    QCOMPARE(probe('F', "ABD"), 0);
    QCOMPARE(identityBytes(), QByteArray("ABCDEFGHIJKLMNOP"));
}

void DriveDiscoveryTest::labelIsCutAndKept()
{
    m_drive->addDrive('E', DriveType::Removable, QByteArray(300, 'L'));
    QCOMPARE(probeDrive('E', nullptr), 1);
    QCOMPARE(QByteArray(deviceLink.driverLabel), QByteArray(255, 'L'));
    m_drive->addDrive('E', DriveType::Removable, "SHORT");
    QCOMPARE(probeDrive('E', nullptr), 1);
    QCOMPARE(deviceLink.driverLabel, "SHORT");
    m_drive->failNext(DriveCall::Label);
    QCOMPARE(probeDrive('E', nullptr), 1);
    QCOMPARE(deviceLink.driverLabel, "SHORT");
}

void DriveDiscoveryTest::letterIsStoredBeforeTheChecks()
{
    QCOMPARE(probeDrive('Q', nullptr), 0);
    QCOMPARE(deviceLink.driveLetter, static_cast<signed char>('Q'));
    QCOMPARE(m_drive->calls, QStringList({"type Q:"}));
}

void DriveDiscoveryTest::scanTakesTheFirstThatPasses()
{
    m_drive->addDrive('A', DriveType::Fixed);
    m_drive->addDrive('C', DriveType::Removable, "EMPTY");
    m_drive->setContent("C:\\K-DRIVER.DMP", QByteArray());
    m_drive->addDrive('G', DriveType::Removable, "READER");
    m_drive->addDrive('H', DriveType::Removable, "LATER");
    QCOMPARE(findDevice(0, nullptr), 1);
    QCOMPARE(deviceLink.driveLetter, static_cast<signed char>('G'));
    QCOMPARE(deviceLink.driverLabel, "READER");
    QCOMPARE(m_drive->calls.filter("drives").size(), 1);
    QCOMPARE(m_drive->calls.filter("type"), QStringList({"type A:", "type C:", "type G:"}));
}

void DriveDiscoveryTest::scanGoesUpToZ()
{
    m_drive->addDrive('Z', DriveType::Removable);
    QCOMPARE(findDevice(0, nullptr), 1);
    QCOMPARE(deviceLink.driveLetter, static_cast<signed char>('Z'));
    QCOMPARE(m_drive->calls.filter("type"), QStringList({"type Z:"}));
}

void DriveDiscoveryTest::failedScanLeavesTheLastLetterTried()
{
    m_drive->addDrive('C', DriveType::Fixed);
    m_drive->addDrive('D', DriveType::CdRom);
    m_drive->addDrive('X', DriveType::Remote);
    QCOMPARE(findDevice(0, nullptr), 0);
    QCOMPARE(deviceLink.driveLetter, static_cast<signed char>('X'));
    QCOMPARE(m_drive->calls, QStringList({"drives", "type C:", "type D:", "type X:"}));
}

void DriveDiscoveryTest::scanWithoutDrivesLeavesTheLetter()
{
    QCOMPARE(findDevice(0, nullptr), 0);
    QCOMPARE(deviceLink.driveLetter, static_cast<signed char>(0));
    deviceLink.driveLetter = 'K';
    QCOMPARE(findDevice(0, nullptr), 0);
    QCOMPARE(deviceLink.driveLetter, static_cast<signed char>('K'));
}

void DriveDiscoveryTest::scanLooksForTheExpectedIdentity()
{
    const QByteArray expected = "XYZ";
    m_drive->addDrive('D', DriveType::Removable);
    m_drive->setContent("D:\\K-DRIVER.DMP", identityFile("ABCDEFGH"));
    m_drive->addDrive('E', DriveType::Removable);
    m_drive->setContent("E:\\K-DRIVER.DMP", identityFile("XYZ 1.0"));
    QCOMPARE(findDevice(0, constBytesOf(expected)), 1);
    QCOMPARE(deviceLink.driveLetter, static_cast<signed char>('E'));
    const QByteArray other = "QQQ";
    QCOMPARE(findDevice(0, constBytesOf(other)), 0);
}

void DriveDiscoveryTest::namedLetterIsTriedAlone()
{
    m_drive->addDrive('D', DriveType::Removable);
    m_drive->addDrive('E', DriveType::Fixed);
    QCOMPARE(findDevice('D', nullptr), 1);
    QCOMPARE(findDevice('E', nullptr), 0);
    QCOMPARE(deviceLink.driveLetter, static_cast<signed char>('E'));
    QVERIFY(m_drive->calls.filter("drives").isEmpty());
    QCOMPARE(m_drive->calls.filter("type"), QStringList({"type D:", "type E:"}));
}

GBDRIVER_TEST(DriveDiscoveryTest, none)
#include "drive_discovery_test.moc"
