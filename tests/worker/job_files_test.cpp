// The user's files: what write jobs read, what dump jobs write, and names of every kind.
#include "job_bench.h"

#include <QFile>
#include <QMap>
#include <QTextCodec>
#include <QtTest>

namespace
{

constexpr int kSize = 0x2000;

// The system's 8-bit encoding for as long as it lives.
class LocaleCodec
{
public:
    explicit LocaleCodec(const char *name) : m_usual(QTextCodec::codecForLocale())
    {
        QTextCodec::setCodecForLocale(QTextCodec::codecForName(name));
    }
    ~LocaleCodec() { QTextCodec::setCodecForLocale(m_usual); }
    LocaleCodec(const LocaleCodec &) = delete;
    LocaleCodec &operator=(const LocaleCodec &) = delete;

private:
    QTextCodec *m_usual;
};

// Names that the test's folder holds beside the user's file: what an unfit name may turn into.
const QStringList kReplacedNames = {"??.bin", "__.bin", "\x1A\x1A.bin", ".bin"};

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

    void namesOfAnyKindWork_data();
    void namesOfAnyKindWork();
    void namesAreEncodedAsTheSystemWantsThem();
    void nameThatCannotBeEncodedIsNoFile_data();
    void nameThatCannotBeEncodedIsNoFile();
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
    bench.job.file_name = bench.addFile("long.sav", bytes + QByteArray(extra, 'x'));
    QVERIFY(bench.run(operate));
    QCOMPARE(bench.logs().mid(0, 2), readLogs(bench, "Read 8192 Bytes"));
    const TestCartridge &cartridge = bench.cartridge();
    QCOMPARE(operate == 3 ? cartridge.written : cartridge.save.left(kSize), bytes);
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

void JobFilesTest::namesOfAnyKindWork_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("blanks") << " a  b .gb";
    QTest::newRow("per cent") << "100%1 %s.gb";
    QTest::newRow("Latin") << QString::fromUtf8("Spiel \u00E4\u00F6\u00DF.gb");
    QTest::newRow("Japanese") << QString::fromUtf8("\u65E5\u672C\u8A9E.gb");
    QTest::newRow("beyond the first plane") << QString::fromUtf8("\U0001F3AE.gb");
    QTest::newRow("looks like a drive") << "E:\\CMD.CMD";
}

void JobFilesTest::namesOfAnyKindWork()
{
    QFETCH(QString, name);
    const LocaleCodec codec("UTF-8");
    JobBench bench;
    bench.setScript(kMovingScript);
    const QByteArray bytes = TestCartridge::gbBytes(0xA000, kSize);
    bench.job.ram_size = kSize;
    bench.job.file_name = bench.path(name);
    QVERIFY(bench.run(2));
    QCOMPARE(bench.fileNames(), QStringList{name});
    QCOMPARE(bench.fileBytes(name), bytes);
    QVERIFY(bench.run(3));
    QCOMPARE(bench.logs().first(), "Read file :" + bench.path(name));
    QCOMPARE(bench.cartridge().written, bytes);
    bench.cartridge().looksUntilErased = 0;
    QVERIFY(bench.run(1));
    QCOMPARE(bench.job.rom_size, kSize);
}

void JobFilesTest::namesAreEncodedAsTheSystemWantsThem()
{
    const LocaleCodec codec("ISO-8859-1");
    JobBench bench;
    bench.setScript(kMovingScript);
    bench.job.rom_size = kSize;
    bench.job.file_name = bench.path(QString::fromUtf8("\u00E4.gb"));
    QVERIFY(bench.run(0));
    QCOMPARE(bench.fileNames(), QStringList{QString::fromUtf8("\u00E4.gb")});
    // Seen through another encoding it is another name: one byte, not two.
    const LocaleCodec other("ISO-8859-5");
    QCOMPARE(bench.fileNames(), QStringList{QString::fromUtf8("\u0444.gb")});
}

void JobFilesTest::nameThatCannotBeEncodedIsNoFile_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QString>("message");
    for (int operate : {0, 2, 4, 6})
        QTest::addRow("operation %d", operate) << operate << "Save file error.";
    for (int operate : {1, 3, 5, 7})
        QTest::addRow("operation %d", operate) << operate << "Open File error.";
}

// The name must not turn into that of another file of the user's.
void JobFilesTest::nameThatCannotBeEncodedIsNoFile()
{
    QFETCH(int, operate);
    QFETCH(QString, message);
    for (const char *encoding : {"ISO-8859-1", "US-ASCII"}) {
        const LocaleCodec codec(encoding);
        JobBench bench;
        bench.cartridge().looksUntilErased = 0;
        bench.setScript(kIdleScript);
        for (const QString &name : kReplacedNames)
            bench.addFile(name, QByteArray(kSize, 'o'));
        const QStringList names = bench.fileNames();
        bench.job.rom_size = kSize;
        bench.job.ram_size = kSize;
        bench.job.file_name = bench.path(QString::fromUtf8("\u65E5\u672C.bin"));
        QVERIFY(!bench.run(operate));
        QCOMPARE(bench.logs().last(), message);
        QCOMPARE(bench.fileNames(), names);
        for (const QString &name : kReplacedNames)
            QCOMPARE(bench.fileBytes(name), QByteArray(kSize, 'o'));
    }
}

QTEST_GUILESS_MAIN(JobFilesTest)
#include "job_files_test.moc"
