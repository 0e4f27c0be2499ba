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
    void labelFallsBackToTheFolder();
    void alphabetEndsAtZ();
    void scanLooksAnew();
    void vanishedDiskIsNotPresent();
    void sourcesOfTheSystem();

private:
    void addDisk(const QString &name, const QByteArray &removable);
    void addPartition(const QString &disk, const QString &name);
    LinuxDriveSources sources(const std::string &declared = std::string());
    void mountStick(const QString &device, const QString &folder, const std::string &label);
    std::string inside(const QString &path) const { return (m_root->path() + path).toStdString(); }

    std::unique_ptr<QTemporaryDir> m_root;
    std::vector<MountedVolume> m_volumes;
    int m_volumeQueries = 0;
};

// A file system tree as the kernel lays it out: /sys/class/block/X are links into the devices, the
// folder of a partition stands inside its disk's.
void LinuxDrivesTest::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    QVERIFY(m_root->isValid());
    m_volumes.clear();
    m_volumeQueries = 0;
    for (const char *folder : {"class/block", "devices", "dev/by-label", "mnt"})
        QVERIFY(QDir(m_root->path()).mkpath(folder));
    addDisk("sda", "0\n");
    addPartition("sda", "sda1");
    addDisk("sdb", "1\n");
    addPartition("sdb", "sdb1");
    addDisk("sdc", "1\n");
}

void LinuxDrivesTest::addDisk(const QString &name, const QByteArray &removable)
{
    const QString folder = m_root->filePath("devices/" + name);
    QVERIFY(QDir().mkpath(folder));
    putFile(folder + "/removable", removable);
    QVERIFY(QFile::link(folder, m_root->filePath("class/block/" + name)));
    putFile(m_root->filePath("dev/" + name), "");
}

void LinuxDrivesTest::addPartition(const QString &disk, const QString &name)
{
    const QString folder = m_root->filePath("devices/" + disk + "/" + name);
    QVERIFY(QDir().mkpath(folder));
    putFile(folder + "/partition", "1\n");
    QVERIFY(QFile::link(folder, m_root->filePath("class/block/" + name)));
    putFile(m_root->filePath("dev/" + name), "");
}

LinuxDriveSources LinuxDrivesTest::sources(const std::string &declared)
{
    return {declared, inside("/class/block"), [this] {
                ++m_volumeQueries;
                return m_volumes;
            }};
}

void LinuxDrivesTest::mountStick(const QString &device, const QString &folder,
                                 const std::string &label)
{
    QVERIFY(QDir(m_root->path()).mkpath("mnt/" + folder));
    m_volumes.push_back({inside("/dev/" + device), inside("/mnt/" + folder), label});
}

void LinuxDrivesTest::removableFlag_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<bool>("removable");
    QTest::newRow("stick without partitions") << "dev/sdc" << true;
    QTest::newRow("disk of a stick") << "dev/sdb" << true;
    QTest::newRow("partition of a stick") << "dev/sdb1" << true;
    QTest::newRow("hard disk") << "dev/sda" << false;
    QTest::newRow("its partition") << "dev/sda1" << false;
    QTest::newRow("by label, stick") << "dev/by-label/MY\\x20STICK" << true;
    QTest::newRow("by label, hard disk") << "dev/by-label/SYSTEM" << false;
    QTest::newRow("unknown to the kernel") << "dev/sdz1" << false;
    QTest::newRow("no flag file") << "dev/sdd" << false;
    QTest::newRow("nonsense in the flag") << "dev/sde" << false;
    QTest::newRow("empty flag") << "dev/sdf" << false;
    QTest::newRow("folder") << "dev/" << false;
    QTest::newRow("none") << "" << false;
}

void LinuxDrivesTest::removableFlag()
{
    QFETCH(QString, device);
    QFETCH(bool, removable);
    QVERIFY(QFile::link("../sdb1", m_root->filePath("dev/by-label/MY\\x20STICK")));
    QVERIFY(QFile::link("../sda1", m_root->filePath("dev/by-label/SYSTEM")));
    addDisk("sdd", "1\n");
    QVERIFY(QFile::remove(m_root->filePath("devices/sdd/removable")));
    addDisk("sde", "yes\n");
    addDisk("sdf", "");
    const std::string path = device.isEmpty() ? std::string() : inside("/" + device);
    QCOMPARE(isRemovableDevice(path, inside("/class/block")), removable);
    for (const char *other :
         {"tmpfs", "host:/export", "host:/sdb1", "//nas/sdb1", "/dev/root-of-nothing"})
        QVERIFY(!isRemovableDevice(other, inside("/class/block")));
}

void LinuxDrivesTest::removableFlagIsLookedUpAnew()
{
    QVERIFY(isRemovableDevice(inside("/dev/sdb1"), inside("/class/block")));
    putFile(m_root->filePath("devices/sdb/removable"), "0\n");
    QVERIFY(!isRemovableDevice(inside("/dev/sdb1"), inside("/class/block")));
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
    LinuxDrives drives(sources("E=" + inside("/mnt/later") + ";F=" + inside("/dev/sda")));
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
    mountStick("sdb1", "stick", "STICK");
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
    mountStick("sdc", "second", "TWO");
    mountStick("sda1", "aaa", "HARD DISK");
    mountStick("sdb1", "first", "ONE");
    LinuxDrives drives(sources());
    QCOMPARE(drives.scan(), maskOf('A') | maskOf('B'));
    QCOMPARE(drives.find('A')->folder, inside("/mnt/first"));
    QCOMPARE(drives.find('A')->label, std::string("ONE"));
    QCOMPARE(drives.find('A')->device, inside("/dev/sdb1"));
    QCOMPARE(drives.find('B')->folder, inside("/mnt/second"));
    QVERIFY(drives.find('C') == nullptr);
}

void LinuxDrivesTest::labelFallsBackToTheFolder()
{
    mountStick("sdb1", "MY STICK", "");
    LinuxDrives drives(sources());
    QCOMPARE(drives.scan(), maskOf('A'));
    QCOMPARE(drives.find('A')->label, std::string("MY STICK"));
}

void LinuxDrivesTest::alphabetEndsAtZ()
{
    for (int i = 0; i < 30; ++i)
        mountStick("sdb1", QString("stick%1").arg(i, 2, 10, QChar('0')), "");
    LinuxDrives drives(sources());
    QCOMPARE(drives.scan(), (1U << 26) - 1);
    QCOMPARE(drives.find('Z')->label, std::string("stick25"));
    QVERIFY(drives.find('[') == nullptr);
}

void LinuxDrivesTest::scanLooksAnew()
{
    LinuxDrives drives(sources());
    QCOMPARE(drives.scan(), 0U);
    mountStick("sdb1", "one", "");
    mountStick("sdc", "two", "");
    QCOMPARE(drives.scan(), maskOf('A') | maskOf('B'));
    m_volumes.erase(m_volumes.begin());
    QCOMPARE(drives.scan(), maskOf('A'));
    QCOMPARE(drives.find('A')->label, std::string("two"));
}

void LinuxDrivesTest::vanishedDiskIsNotPresent()
{
    mountStick("sdb1", "stick", "");
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
    QCOMPARE(system.blockFolder, std::string("/sys/class/block"));
    const std::vector<MountedVolume> volumes = system.mountedVolumes();
    QVERIFY(std::any_of(volumes.begin(), volumes.end(),
                        [](const MountedVolume &volume) { return volume.folder == "/"; }));
}

GBDRIVER_TEST(LinuxDrivesTest, none)
#include "linux_drives_test.moc"
