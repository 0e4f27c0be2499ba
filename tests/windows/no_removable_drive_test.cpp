// A machine without a reader, and the user's files as the system's 8-bit calls see them.
#include "job_bench.h"

#include "device/device_link.h"

#include <QtTest>

#include <memory>

namespace
{

constexpr int kSize = 0x2000;
// No code page of one byte a character holds this beside Latin letters.
const QString kForeignName = QString::fromUtf8(u8"Gerät ゲーム.sav");

} // namespace

class NoRemovableDriveTest : public QObject
{
    Q_OBJECT

private slots:
    void scanFindsNothingAndKeepsTheLastLetter()
    {
        const auto backend = createPlatformBackend();
        setDriveBackend(backend.get());
        deviceLink = DeviceLink();
        QCOMPARE(findDevice(0, nullptr), 0);
        // Wine's drive for the root folder is the last one.
        QCOMPARE(static_cast<char>(deviceLink.driveLetter), 'Z');
        QCOMPARE(QByteArray(deviceLink.driverLabel), QByteArray());
        setDriveBackend(nullptr);
    }

    void dumpToANameBeyondTheCodePageIsNotSaved()
    {
        JobBench bench;
        bench.setScript(kMovingScript);
        bench.job.ram_size = kSize;
        bench.job.file_name = bench.path(kForeignName);
        QVERIFY(!bench.run(GB_READ_RAM));
        QCOMPARE(bench.logs().last(), QString("Save file error."));
        QCOMPARE(bench.fileNames(), QStringList());
    }

    void saveOfANameBeyondTheCodePageDoesNotOpen()
    {
        JobBench bench;
        bench.setScript(kMovingScript);
        bench.job.ram_size = kSize;
        bench.job.file_name = bench.addFile(kForeignName, QByteArray(kSize, 's'));
        QVERIFY(!bench.run(GB_WRITE_RAM));
        QCOMPARE(bench.logs().last(), QString("Open File error."));
    }

    void namesOfTheCodePageWork_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("blanks") << "my first save.sav";
        QTest::newRow("beyond ASCII") << QString::fromUtf8(u8"für das Gerät.sav");
    }
    void namesOfTheCodePageWork()
    {
        QFETCH(QString, name);
        JobBench bench;
        bench.setScript(kMovingScript);
        bench.job.ram_size = kSize;
        bench.job.file_name = bench.path(name);
        QVERIFY(bench.run(GB_READ_RAM));
        QCOMPARE(bench.fileNames(), QStringList(name));
        QCOMPARE(bench.fileBytes(name).size(), kSize);
    }
};

QTEST_GUILESS_MAIN(NoRemovableDriveTest)
#include "no_removable_drive_test.moc"
