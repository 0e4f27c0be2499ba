// Drive letters on Linux: the kernel's removable flag, mounted volumes, declared folders.
#include "device/linux_drives.h"

#include "files.h"
#include "test_class.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace
{

constexpr std::uint32_t maskOf(char letter)
{
    return 1U << (letter - 'A');
}

} // namespace

class LinuxDrivesTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void removableFlag_data();
    void removableFlag();
    void removableFlagIsLookedUpAnew();

    void declaredFoldersAreDrives();
    void declaredFolderThatIsMissingIsNoDrive();
    void declarationHidesMountedVolumes_data();
    void declarationHidesMountedVolumes();
    void lostMountIsNotPresent();

    void volumesGetLettersInOrderOfTheirMountPoints();
    void driveWithIdentityFileComesFirst();
    void hiddenMountIsNoDrive_data();
    void hiddenMountIsNoDrive();
    void labelOfADevice_data();
    void labelOfADevice();
    void labelFallsBackToTheFolder();
    void alphabetEndsAtZ();
    void scanLooksAnew();
    void vanishedDiskIsNotPresent();
    void sourcesOfTheSystem();

private:
    void addDisk(const QString &name, const QString &number, const QByteArray &removable);
    void addPartition(const QString &disk, const QString &name, const QString &number);
    LinuxDriveSources sources(const std::string &declared = std::string());
    void mountStick(const std::string &deviceNumber, const QString &folder);
    std::string inside(const QString &path) const { return (m_root->path() + path).toStdString(); }

    std::unique_ptr<QTemporaryDir> m_root;
    std::vector<MountedVolume> m_volumes;
    int m_volumeQueries = 0;
};

// A file system tree as the kernel lays it out: /sys/dev/block/8:16 are links into the devices, the
// folder of a partition stands inside its disk's.
void LinuxDrivesTest::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    QVERIFY(m_root->isValid());
    m_volumes.clear();
    m_volumeQueries = 0;
    for (const char *folder : {"dev/block", "devices", "by-label", "mnt"})
        QVERIFY(QDir(m_root->path()).mkpath(folder));
    addDisk("sda", "8:0", "0\n");
    addPartition("sda", "sda1", "8:1");
    addDisk("sdb", "8:16", "1\n");
    addPartition("sdb", "sdb1", "8:17");
    addDisk("sdc", "8:32", "1\n");
}

void LinuxDrivesTest::addDisk(const QString &name, const QString &number,
                              const QByteArray &removable)
{
    const QString folder = m_root->filePath("devices/" + name);
    QVERIFY(QDir().mkpath(folder));
    putFile(folder + "/removable", removable);
    QVERIFY(QFile::link(folder, m_root->filePath("dev/block/" + number)));
}

void LinuxDrivesTest::addPartition(const QString &disk, const QString &name, const QString &number)
{
    const QString folder = m_root->filePath("devices/" + disk + "/" + name);
    QVERIFY(QDir().mkpath(folder));
    putFile(folder + "/partition", "1\n");
    QVERIFY(QFile::link(folder, m_root->filePath("dev/block/" + number)));
}

LinuxDriveSources LinuxDrivesTest::sources(const std::string &declared)
{
    return {declared, inside("/dev/block"), inside("/by-label"), [this] {
                ++m_volumeQueries;
                return m_volumes;
            }};
}

void LinuxDrivesTest::mountStick(const std::string &deviceNumber, const QString &folder)
{
    QVERIFY(QDir(m_root->path()).mkpath("mnt/" + folder));
    m_volumes.push_back({deviceNumber, "/dev/of " + deviceNumber, inside("/mnt/" + folder)});
}

void LinuxDrivesTest::removableFlag_data()
{
    QTest::addColumn<QString>("number");
    QTest::addColumn<bool>("removable");
    QTest::newRow("stick without partitions") << "8:32" << true;
    QTest::newRow("disk of a stick") << "8:16" << true;
    QTest::newRow("partition of a stick") << "8:17" << true;
    QTest::newRow("hard disk") << "8:0" << false;
    QTest::newRow("its partition") << "8:1" << false;
    QTest::newRow("no block device") << "0:47" << false;
    QTest::newRow("no flag file") << "8:48" << false;
    QTest::newRow("nonsense in the flag") << "8:64" << false;
    QTest::newRow("empty flag") << "8:80" << false;
    QTest::newRow("none") << "" << false;
}

void LinuxDrivesTest::removableFlag()
{
    QFETCH(QString, number);
    QFETCH(bool, removable);
    addDisk("sdd", "8:48", "1\n");
    QVERIFY(QFile::remove(m_root->filePath("devices/sdd/removable")));
    addDisk("sde", "8:64", "yes\n");
    addDisk("sdf", "8:80", "");
    putFile(m_root->filePath("dev/block/removable"), "1\n"); // of no device
    QCOMPARE(isRemovableDevice(number.toStdString(), inside("/dev/block")), removable);
}

void LinuxDrivesTest::removableFlagIsLookedUpAnew()
{
    QVERIFY(isRemovableDevice("8:17", inside("/dev/block")));
    putFile(m_root->filePath("devices/sdb/removable"), "0\n");
    QVERIFY(!isRemovableDevice("8:17", inside("/dev/block")));
}

void LinuxDrivesTest::declaredFoldersAreDrives()
{
    QVERIFY(QDir(m_root->path()).mkpath("mnt/reader"));
    LinuxDrives drives(sources("E=" + inside("/mnt/reader") + ":LABEL;C=" + inside("/dev")));
    QVERIFY(drives.find('E') == nullptr); // no scan yet
    QCOMPARE(drives.scan(), maskOf('C') | maskOf('E'));
    const LinuxDrive *drive = drives.find('E');
    QVERIFY(drive != nullptr);
    QCOMPARE(drive->folder, inside("/mnt/reader"));
    QCOMPARE(drive->label, std::string("LABEL"));
    QVERIFY(drives.isPresent(*drive));
    QVERIFY(drives.find('D') == nullptr);
}

void LinuxDrivesTest::declaredFolderThatIsMissingIsNoDrive()
{
    LinuxDrives drives(
        sources("E=" + inside("/mnt/later") + ";F=" + inside("/devices/sda/removable")));
    QCOMPARE(drives.scan(), 0U);
    QVERIFY(drives.find('E') == nullptr);
    QVERIFY(QDir(m_root->path()).mkpath("mnt/later"));
    QCOMPARE(drives.scan(), maskOf('E'));
    QVERIFY(QDir(m_root->path()).rmpath("mnt/later"));
    QVERIFY(drives.find('E') != nullptr);
    QVERIFY(!drives.isPresent(*drives.find('E')));
    QVERIFY(QDir(m_root->path()).mkpath("mnt"));
    QCOMPARE(drives.scan(), 0U);
}

void LinuxDrivesTest::declarationHidesMountedVolumes_data()
{
    QTest::addColumn<QString>("declared");
    QTest::newRow("missing folder") << "E=/nowhere/at/all";
    QTest::newRow("nonsense") << "nonsense";
}

void LinuxDrivesTest::declarationHidesMountedVolumes()
{
    QFETCH(QString, declared);
    mountStick("8:17", "stick");
    LinuxDrives drives(sources(declared.toStdString()));
    QCOMPARE(drives.scan(), 0U);
    QCOMPARE(m_volumeQueries, 0);
}

void LinuxDrivesTest::lostMountIsNotPresent()
{
    LinuxDrives drives(sources("E=" + inside("/mnt") + ";F=/proc"));
    QCOMPARE(drives.scan(), maskOf('E') | maskOf('F'));
    QVERIFY(!drives.find('E')->isMounted);
    QVERIFY(drives.find('F')->isMounted);
    QVERIFY(drives.isPresent(*drives.find('F')));
    LinuxDrive lost = *drives.find('E');
    QVERIFY(drives.isPresent(lost));
    lost.isMounted = true;
    QVERIFY(!drives.isPresent(lost));
}

void LinuxDrivesTest::volumesGetLettersInOrderOfTheirMountPoints()
{
    mountStick("8:32", "second");
    mountStick("8:1", "aaa");
    mountStick("8:17", "first");
    LinuxDrives drives(sources());
    QCOMPARE(drives.scan(), maskOf('A') | maskOf('B'));
    QCOMPARE(drives.find('A')->folder, inside("/mnt/first"));
    QCOMPARE(drives.find('A')->device, std::string("/dev/of 8:17"));
    QCOMPARE(drives.find('B')->folder, inside("/mnt/second"));
    QVERIFY(drives.find('C') == nullptr);
}

// A memory stick must not be in front of the reader.
void LinuxDrivesTest::driveWithIdentityFileComesFirst()
{
    mountStick("8:17", "a stick");
    mountStick("8:32", "d reader");
    mountStick("8:32", "c reader");
    mountStick("8:17", "b stick");
    putFile(m_root->filePath("mnt/d reader/K-DRIVER.DMP"), "");
    putFile(m_root->filePath("mnt/c reader/K-DRIVER.DMP"), "");
    LinuxDrives drives(sources());
    QCOMPARE(drives.scan(), 0xFU);
    QString order;
    for (const char letter : {'A', 'B', 'C', 'D'})
        order += drives.find(letter)->label.c_str() + QString(", ");
    QCOMPARE(order, QString("c reader, d reader, a stick, b stick, "));
}

// Its path leads to what was mounted over it, and that may never answer.
void LinuxDrivesTest::hiddenMountIsNoDrive_data()
{
    QTest::addColumn<QString>("later");
    QTest::addColumn<bool>("isHidden");
    QTest::newRow("on it") << "/mnt/place/stick" << true;
    QTest::newRow("around it") << "/mnt/place" << true;
    QTest::newRow("inside of it") << "/mnt/place/stick/inside" << false;
    QTest::newRow("beside it") << "/mnt/place/stick 2" << false;
    QTest::newRow("beginning alike") << "/mnt/place/st" << false;
}

void LinuxDrivesTest::hiddenMountIsNoDrive()
{
    QFETCH(QString, later);
    QFETCH(bool, isHidden);
    m_volumes.push_back({"0:20", "tmpfs", "/"}); // earlier
    mountStick("8:17", "place/stick");
    m_volumes.push_back({"0:47", "host:/export", inside(later)});
    LinuxDrives drives(sources());
    QCOMPARE(drives.scan(), isHidden ? 0U : maskOf('A'));
    m_volumes.push_back({"0:48", "overlay", "/"});
    QCOMPARE(drives.scan(), 0U);
}

void LinuxDrivesTest::labelOfADevice_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("label");
    QTest::newRow("plain") << "READER"
                           << "../../sdb1"
                           << "READER";
    QTest::newRow("blank") << "MY\\x20READER"
                           << "../../sdb1"
                           << "MY READER";
    QTest::newRow("slash at the end") << "A\\x2f"
                                      << "../../sdb1"
                                      << "A/";
    QTest::newRow("no code") << "A\\xZZ"
                             << "../../sdb1"
                             << "A\\xZZ";
    QTest::newRow("cut off") << "A\\x"
                             << "../../sdb1"
                             << "A\\x";
    QTest::newRow("of the disk") << "READER"
                                 << "../../sdb"
                                 << "";
    QTest::newRow("of another") << "READER"
                                << "../../sdb11"
                                << "";
}

void LinuxDrivesTest::labelOfADevice()
{
    QFETCH(QString, link);
    QFETCH(QString, target);
    QFETCH(QString, label);
    QVERIFY(QFile::link("../../sda1", m_root->filePath("by-label/SYSTEM")));
    QVERIFY(QFile::link(target, m_root->filePath("by-label/" + link)));
    putFile(m_root->filePath("by-label/no link"), "");
    QCOMPARE(QString::fromStdString(labelOfDevice("8:17", sources())), label);
    QCOMPARE(labelOfDevice("8:99", sources()), std::string());
    mountStick("8:17", "folder");
    LinuxDrives drives(sources());
    QCOMPARE(drives.scan(), maskOf('A'));
    QCOMPARE(QString::fromStdString(drives.find('A')->label), label.isEmpty() ? "folder" : label);
}

void LinuxDrivesTest::labelFallsBackToTheFolder()
{
    mountStick("8:17", "MY STICK");
    QVERIFY(QDir(m_root->filePath("by-label")).removeRecursively());
    LinuxDrives drives(sources());
    QCOMPARE(drives.scan(), maskOf('A'));
    QCOMPARE(drives.find('A')->label, std::string("MY STICK"));
}

void LinuxDrivesTest::alphabetEndsAtZ()
{
    for (int i = 0; i < 30; ++i)
        mountStick("8:17", QString("stick%1").arg(i, 2, 10, QChar('0')));
    LinuxDrives drives(sources());
    QCOMPARE(drives.scan(), (1U << 26) - 1);
    QCOMPARE(drives.find('Z')->label, std::string("stick25"));
    QVERIFY(drives.find('[') == nullptr);
}

void LinuxDrivesTest::scanLooksAnew()
{
    LinuxDrives drives(sources());
    QCOMPARE(drives.scan(), 0U);
    mountStick("8:17", "one");
    mountStick("8:32", "two");
    QCOMPARE(drives.scan(), maskOf('A') | maskOf('B'));
    m_volumes.erase(m_volumes.begin());
    QCOMPARE(drives.scan(), maskOf('A'));
    QCOMPARE(drives.find('A')->label, std::string("two"));
}

void LinuxDrivesTest::vanishedDiskIsNotPresent()
{
    mountStick("8:17", "stick");
    LinuxDrives drives(sources());
    QCOMPARE(drives.scan(), maskOf('A'));
    const LinuxDrive drive = *drives.find('A');
    QVERIFY(drives.isPresent(drive));
    // Pulled out: the mount stays, the disk's folder is gone.
    QVERIFY(QDir(m_root->filePath("devices/sdb")).removeRecursively());
    QVERIFY(!drives.isPresent(drive));
    QCOMPARE(drives.scan(), 0U);
    QVERIFY(drives.find('A') != nullptr);
}

void LinuxDrivesTest::sourcesOfTheSystem()
{
    qputenv("GBDRIVER_DRIVES", "E=/from/the/environment");
    QCOMPARE(systemDriveSources().declared, std::string("E=/from/the/environment"));
    qunsetenv("GBDRIVER_DRIVES");
    const LinuxDriveSources system = systemDriveSources();
    QCOMPARE(system.declared, std::string());
    QCOMPARE(system.blockFolder, std::string("/sys/dev/block"));
    QCOMPARE(system.labelFolder, std::string("/dev/disk/by-label"));
    const std::vector<MountedVolume> volumes = system.mountedVolumes();
    QVERIFY(std::any_of(volumes.begin(), volumes.end(),
                        [](const MountedVolume &volume) { return volume.folder == "/"; }));
}

GBDRIVER_TEST(LinuxDrivesTest, none)
#include "linux_drives_test.moc"
