// The table of mounts: what is read of it, whatever is written there.
#include "device/mount_table.h"

#include "files.h"
#include "test_class.h"

#include <QTemporaryDir>
#include <QtTest>

class MountTableTest : public QObject
{
    Q_OBJECT

private slots:
    void everyRowIsRead();
    void namesAreDecoded_data();
    void namesAreDecoded();
    void nonsenseIsPassedOver_data();
    void nonsenseIsPassedOver();
    void missingTableIsEmpty();
    void tableOfTheSystemHasItsRoot();

private:
    static std::vector<MountedVolume> read(const QByteArray &table)
    {
        const QTemporaryDir folder;
        putFile(folder.filePath("mountinfo"), table);
        return readMountTable(QFile::encodeName(folder.filePath("mountinfo")).constData());
    }
};

void MountTableTest::everyRowIsRead()
{
    const std::vector<MountedVolume> volumes =
        read("21 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
             "40 21 0:47 / /net/dead rw - nfs4 host:/export rw,hard\n"
             "41 21 8:17 /part /media/me/READER rw shared:3 master:2 - vfat /dev/sdb1 rw,flush\n"
             "42 21 259:131072 / /big ro - ext4 /dev/nvme0n1p9 ro\n");
    QCOMPARE(volumes.size(), std::size_t{4});
    QCOMPARE(volumes[0].folder, std::string("/"));
    QCOMPARE(volumes[1].deviceNumber, std::string("0:47"));
    QCOMPARE(volumes[1].device, std::string("host:/export"));
    QCOMPARE(volumes[2].deviceNumber, std::string("8:17"));
    QCOMPARE(volumes[2].device, std::string("/dev/sdb1"));
    QCOMPARE(volumes[2].folder, std::string("/media/me/READER"));
    QCOMPARE(volumes[3].deviceNumber, std::string("259:131072"));
}

void MountTableTest::namesAreDecoded_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("blank") << QByteArray("MY\\040READER") << QByteArray("MY READER");
    QTest::newRow("tab") << QByteArray("A\\011B") << QByteArray("A\tB");
    QTest::newRow("line break") << QByteArray("A\\012B") << QByteArray("A\nB");
    QTest::newRow("backslash") << QByteArray("A\\134040") << QByteArray("A\\040");
    QTest::newRow("dash between blanks") << QByteArray("A\\040-\\040B") << QByteArray("A - B");
    QTest::newRow("accents") << QByteArray("L\xC3\xA9") << QByteArray("L\xC3\xA9");
    QTest::newRow("no valid text") << QByteArray("L\xE9") << QByteArray("L\xE9");
}

void MountTableTest::namesAreDecoded()
{
    QFETCH(QByteArray, written);
    QFETCH(QByteArray, name);
    const std::vector<MountedVolume> volumes =
        read("41 21 8:17 / /media/" + written + " rw - vfat /dev/" + written + " rw\n");
    QCOMPARE(volumes.size(), std::size_t{1});
    QCOMPARE(QByteArray(volumes[0].folder.c_str()), "/media/" + name);
    QCOMPARE(QByteArray(volumes[0].device.c_str()), "/dev/" + name);
}

void MountTableTest::nonsenseIsPassedOver_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("empty") << QByteArray("\n");
    QTest::newRow("text") << QByteArray("nonsense\n");
    QTest::newRow("too few fields") << QByteArray("40 21 8:17 / /half\n");
    QTest::newRow("no numbers") << QByteArray("a b c:d / /x rw - vfat /dev/sdb1 rw\n");
    QTest::newRow("no dash") << QByteArray("40 21 8:17 / /x rw vfat /dev/sdb1 rw\n");
    QTest::newRow("another form") << QByteArray("/dev/sdb1 /x vfat rw 0 0\n");
    QTest::newRow("a third form") << QByteArray("Filename\tType\tSize\tUsed\tPriority\n");
    QTest::newRow("no path") << QByteArray("40 21 8:17 / x rw - vfat /dev/sdb1 rw\n");
    QTest::newRow("long") << QByteArray(100000, 'x') + "\n";
    QTest::newRow("zeros") << QByteArray("40 21 8:17\0 / /x\n", 17);
}

void MountTableTest::nonsenseIsPassedOver()
{
    QFETCH(QByteArray, line);
    const std::vector<MountedVolume> volumes =
        read(line + "21 1 8:1 / / rw - ext4 /dev/sda1 rw\n" + line +
             "41 21 8:17 / /media/READER rw - vfat /dev/sdb1 rw\n" + line);
    QCOMPARE(volumes.size(), std::size_t{2});
    QCOMPARE(volumes.front().folder, std::string("/"));
    QCOMPARE(volumes.back().folder, std::string("/media/READER"));
}

void MountTableTest::missingTableIsEmpty()
{
    QVERIFY(readMountTable("/nowhere/at/all").empty());
    QVERIFY(read("").empty());
}

void MountTableTest::tableOfTheSystemHasItsRoot()
{
    const std::vector<MountedVolume> volumes = readMountTable("/proc/self/mountinfo");
    QVERIFY(std::any_of(volumes.begin(), volumes.end(),
                        [](const MountedVolume &volume) { return volume.folder == "/"; }));
}

GBDRIVER_TEST(MountTableTest, none)
#include "mount_table_test.moc"
