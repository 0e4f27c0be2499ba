// The user's files: what write jobs read, and what dump jobs write.
#include "job_bench.h"
#include "test_class.h"

#include <QFile>
#include <QMap>
#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr int kSize = 0x2000;

QStringList readLogs(const JobBench &bench, const QString &outcome)
{
    return {"Read file :" + bench.job.file_name, outcome};
}

} // namespace

class JobFilesTest : public QObject
{
    Q_OBJECT

private slots:
    void inputMustOpen_data();
    void inputMustOpen();
    void inputMustBeLongEnough_data();
    void inputMustBeLongEnough();
    void longerInputIsCut_data();
    void longerInputIsCut();
    void flashTakesTheFilesSize_data();
    void flashTakesTheFilesSize();
    void hugeFlashFileIsRefused_data();
    void hugeFlashFileIsRefused();

    void dumpIsExactlyItsSize_data();
    void dumpIsExactlyItsSize();
    void shortDumpEndsInZeros();
    void emptyDumpIsAnEmptyFile();
    void failedDumpLeavesTheOldFile_data();
    void failedDumpLeavesTheOldFile();
    void failedDumpMakesNoFile();
    void dumpMustBeWritten_data();
    void dumpMustBeWritten();
    void impossibleSizeWritesNothing_data();
    void impossibleSizeWritesNothing();
};

void JobFilesTest::inputMustOpen_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QString>("name");
    for (int operate : {1, 3, 5, 7}) {
        QTest::addRow("operation %d, no such file", operate) << operate << "missing.bin";
        QTest::addRow("operation %d, no such folder", operate) << operate << "missing/file.bin";
        QTest::addRow("operation %d, file as folder", operate) << operate << "file/file.bin";
    }
}

void JobFilesTest::inputMustOpen()
{
    QFETCH(int, operate);
    QFETCH(QString, name);
    JobBench bench;
    bench.setScript(kMovingScript);
    bench.addFile("file", QByteArray(kSize, 'f'));
    bench.job.ram_size = kSize;
    bench.job.file_name = bench.path(name);
    QVERIFY(!bench.run(operate));
    QCOMPARE(bench.events,
             QStringList({"log Read file :" + bench.job.file_name, "log Open File error."}) +
                 jobEnd(false));
}

void JobFilesTest::inputMustBeLongEnough_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<int>("length");
    for (int operate : {3, 7}) {
        for (int length : {0, 1, kSize - 1})
            QTest::addRow("operation %d, %d bytes", operate, length) << operate << length;
    }
}

void JobFilesTest::inputMustBeLongEnough()
{
    QFETCH(int, operate);
    QFETCH(int, length);
    JobBench bench;
    bench.setScript(kMovingScript);
    bench.job.ram_size = kSize;
    bench.job.file_name = bench.addFile("short.sav", QByteArray(length, 's'));
    QVERIFY(!bench.run(operate));
    QCOMPARE(bench.logs(), readLogs(bench, "Read File error."));
    QCOMPARE(bench.events.mid(2), jobEnd(false));
    QCOMPARE(bench.traffic().size(), 2); // nothing but the mode
}

void JobFilesTest::longerInputIsCut_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<int>("extra");
    for (int operate : {3, 7}) {
        for (int extra : {0, 1, 100000})
            QTest::addRow("operation %d, %d bytes more", operate, extra) << operate << extra;
    }
}

void JobFilesTest::longerInputIsCut()
{
    QFETCH(int, operate);
    QFETCH(int, extra);
    JobBench bench;
    bench.setScript(kMovingScript);
    const QByteArray bytes = TestCartridge::gbBytes(9, kSize);
    bench.job.ram_size = kSize;
    const QByteArray file = bytes + QByteArray(extra, 'x');
    bench.job.file_name = bench.addFile("long.sav", file);
    QVERIFY(bench.run(operate));
    QCOMPARE(bench.logs().mid(0, 2), readLogs(bench, "Read 8192 Bytes"));
    const TestCartridge &cartridge = bench.cartridge();
    QCOMPARE(operate == 3 ? cartridge.written : cartridge.save.left(kSize), bytes);
    QCOMPARE(bench.fileBytes("long.sav"), file);
    QCOMPARE(bench.job.ram_size, kSize);
}

void JobFilesTest::flashTakesTheFilesSize_data()
{
    QTest::addColumn<int>("length");
    for (int length : {0, 1, 480, 32768, 1 << 20})
        QTest::addRow("%d bytes", length) << length;
}

void JobFilesTest::flashTakesTheFilesSize()
{
    QFETCH(int, length);
    JobBench bench;
    bench.cartridge().looksUntilErased = 0;
    bench.setScript(
        "function cpu_erase(dev, size, width) { print(\"erase \" + size); }\n"
        "function cpu_flash(dev, size, max) { print(\"flash \" + size + \" \" + max); }");
    bench.job.rom_size = 12345;
    bench.job.ram_size = 54321;
    bench.job.file_name = bench.addFile("rom.gb", QByteArray(length, 'r'));
    QVERIFY(bench.run(1));
    QCOMPARE(bench.logs(),
             readLogs(bench, QString("Read %1 Bytes").arg(length)) +
                 QStringList({"Start erase flash chip...", QString("erase %1").arg(length),
                              "Erase flash chip finish.", "Start flash ROM...",
                              QString("flash %1 %1").arg(length), "Flash ROM finish."}));
    QCOMPARE(bench.job.rom_size, length);
    QCOMPARE(bench.job.ram_size, 54321);
}

void JobFilesTest::hugeFlashFileIsRefused_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<qint64>("length");
    const qint64 gibibyte = qint64{1} << 30;
    for (int operate : {1, 5}) {
        QTest::addRow("operation %d, 2 GiB - 1", operate) << operate << 2 * gibibyte - 1;
        QTest::addRow("operation %d, 2 GiB", operate) << operate << 2 * gibibyte;
        QTest::addRow("operation %d, 3 GiB", operate) << operate << 3 * gibibyte;
        // The low 32 bits alone would be a small file.
        QTest::addRow("operation %d, 4 GiB + 480", operate) << operate << 4 * gibibyte + 480;
    }
}

// No flash chip is that large, and sizes are 32-bit integers throughout.
void JobFilesTest::hugeFlashFileIsRefused()
{
    QFETCH(int, operate);
    QFETCH(qint64, length);
    JobBench bench;
    bench.setScript(kMovingScript);
    bench.job.file_name = bench.addFile("huge.gb", "");
    QFile sparse(bench.job.file_name);
    QVERIFY2(sparse.resize(length), qPrintable(sparse.errorString()));
    QVERIFY(!bench.run(operate));
    QCOMPARE(bench.logs(), readLogs(bench, "Read File error."));
    QCOMPARE(bench.events.mid(2), jobEnd(false));
}

void JobFilesTest::dumpIsExactlyItsSize_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<int>("oldLength"); // -1: no file yet
    for (int operate : {0, 2, 4, 6}) {
        for (int oldLength : {-1, 0, kSize, 5 * kSize})
            QTest::addRow("operation %d over %d bytes", operate, oldLength) << operate << oldLength;
    }
}

void JobFilesTest::dumpIsExactlyItsSize()
{
    QFETCH(int, operate);
    QFETCH(int, oldLength);
    JobBench bench;
    bench.setScript(kMovingScript);
    bench.cartridge().save = TestCartridge::gbBytes(123, 0x20000);
    bench.job.rom_size = kSize;
    bench.job.ram_size = kSize;
    bench.job.file_name = bench.path("dump.bin");
    if (oldLength >= 0)
        bench.addFile("dump.bin", QByteArray(oldLength, 'o'));
    QVERIFY(bench.run(operate));
    const QMap<int, QByteArray> expected = {{0, TestCartridge::gbBytes(0, kSize)},
                                            {2, TestCartridge::gbBytes(0xA000, kSize)},
                                            {4, TestCartridge::gbaBytes(0, kSize)},
                                            {6, TestCartridge::gbBytes(123, kSize)}};
    QCOMPARE(bench.fileBytes("dump.bin"), expected[operate]);
    QCOMPARE(bench.fileNames(), QStringList{"dump.bin"});
}

// Nothing of an older job's buffer may show up either.
void JobFilesTest::shortDumpEndsInZeros()
{
    JobBench bench;
    bench.setScript(kMovingScript);
    bench.job.rom_size = kSize;
    bench.job.file_name = bench.path("dump.gb");
    QVERIFY(bench.run(0));
    bench.setScript("function cpu_dump(dev, size, max) { cpu_read(dev, 0x4000, 1000); }");
    QVERIFY(bench.run(0));
    QCOMPARE(bench.fileBytes("dump.gb"),
             TestCartridge::gbBytes(0x4000, 1000) + QByteArray(kSize - 1000, '\0'));
    QCOMPARE(bench.job.data_pos, 1000);
}

void JobFilesTest::emptyDumpIsAnEmptyFile()
{
    JobBench bench;
    bench.setScript(kIdleScript);
    bench.job.rom_size = 0;
    bench.job.file_name = bench.addFile("dump.gb", "old dump");
    QVERIFY(bench.run(0));
    QCOMPARE(bench.fileNames(), QStringList{"dump.gb"});
    QCOMPARE(bench.fileBytes("dump.gb"), QByteArray());
}

void JobFilesTest::failedDumpLeavesTheOldFile_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QByteArray>("script");
    for (int operate : {0, 2, 4, 6}) {
        QTest::addRow("operation %d, script throws", operate)
            << operate
            << QByteArray("function cpu_dump(dev, a, b) { cpu_read(dev, 0, 512); throw \"no\"; }\n"
                          "function save_dump(dev, a, b) { throw \"no\"; }\n");
        QTest::addRow("operation %d, entry function missing", operate) << operate << QByteArray();
        QTest::addRow("operation %d, broken script", operate) << operate << QByteArray("(");
    }
}

void JobFilesTest::failedDumpLeavesTheOldFile()
{
    QFETCH(int, operate);
    QFETCH(QByteArray, script);
    JobBench bench;
    bench.setScript(script);
    bench.job.rom_size = kSize;
    bench.job.ram_size = kSize;
    bench.job.file_name = bench.addFile("dump.bin", "old dump");
    QVERIFY(!bench.run(operate));
    QVERIFY(!bench.logs().contains("Save file error."));
    QCOMPARE(bench.fileBytes("dump.bin"), QByteArray("old dump"));
}

void JobFilesTest::failedDumpMakesNoFile()
{
    JobBench bench;
    bench.setScript("function cpu_dump(dev, a, b) { throw \"no\"; }");
    bench.job.rom_size = kSize;
    bench.job.file_name = bench.path("dump.gb");
    QVERIFY(!bench.run(0));
    QCOMPARE(bench.fileNames(), QStringList());
}

void JobFilesTest::dumpMustBeWritten_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("failingCall"); // -1: none
    QTest::addColumn<int>("code");
    const int none = static_cast<int>(DriveErrorCode::None);
    const int full = static_cast<int>(DriveErrorCode::Full);
    QTest::newRow("no such folder") << "missing/dump.gb" << -1 << none;
    QTest::newRow("is a folder") << "" << -1 << none;
    QTest::newRow("cannot be created") << "dump.gb" << int(DriveCall::OpenForWrite) << full;
    QTest::newRow("disk full") << "dump.gb" << int(DriveCall::Write) << full;
    QTest::newRow("written in part") << "dump.gb" << int(DriveCall::Write) << none;
    QTest::newRow("fails at closing") << "dump.gb" << int(DriveCall::Close) << full;
}

void JobFilesTest::dumpMustBeWritten()
{
    QFETCH(QString, name);
    QFETCH(int, failingCall);
    QFETCH(int, code);
    for (int operate : {0, 2, 4, 6}) {
        JobBench bench;
        bench.setScript(kIdleScript);
        bench.job.rom_size = kSize;
        bench.job.ram_size = kSize;
        bench.job.file_name = bench.path(name);
        if (failingCall >= 0) {
            DriveFault fault;
            fault.call = static_cast<DriveCall>(failingCall);
            fault.pathEnd = "dump.gb";
            fault.code = static_cast<DriveErrorCode>(code);
            fault.bytes = kSize - 1;
            bench.drive().addFault(fault);
        }
        QVERIFY(!bench.run(operate));
        QCOMPARE(bench.logs().last(), QString("Save file error."));
        QCOMPARE(bench.logs().size(), 3);
        QCOMPARE(bench.events.mid(3), jobEnd(false));
    }
}

void JobFilesTest::impossibleSizeWritesNothing_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<int>("size");
    for (int operate : {0, 2, 3, 4, 6, 7}) {
        for (int size : {-1, -512})
            QTest::addRow("operation %d, %d bytes", operate, size) << operate << size;
    }
}

void JobFilesTest::impossibleSizeWritesNothing()
{
    QFETCH(int, operate);
    QFETCH(int, size);
    JobBench bench;
    bench.setScript(kIdleScript);
    bench.job.rom_size = size;
    bench.job.ram_size = size;
    bench.job.file_name = bench.addFile("file.bin", "user's bytes");
    QVERIFY(!bench.run(operate));
    QCOMPARE(bench.fileBytes("file.bin"), QByteArray("user's bytes"));
}

GBDRIVER_TEST(JobFilesTest, core)
#include "job_files_test.moc"
