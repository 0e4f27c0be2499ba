// The worker object: its face to Qt, the order of what it reports for every operation, cancelling,
// and its life over several jobs.
#include "drive_faults.h"
#include "job_bench.h"
#include "test_class.h"
#include "translators.h"

#include <QCoreApplication>
#include <QMetaMethod>
#include <QRegularExpression>
#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr int kTimeoutMs = 60000;

const QStringList kGbMode = {"F0/02", "02/01"};
const QStringList kGbaMode = {"F0/03", "03/01"};

} // namespace

class FamicomThreadTest : public QObject
{
    Q_OBJECT

private slots:
    void metaMethodsComeInOrder();
    void newObjectIsIdle();

    void jobReportsInOrder_data();
    void jobReportsInOrder();
    void signalsReachTheOwnersThreadInOrder();
    void endComesOnceAndLast_data();
    void endComesOnceAndLast();

    void cancelDuringADumpHasNoEffect();
    void cancelEndsTheErasePoll();
    void cancelAfterTheEraseHasNoEffect();
    void cancelBetweenJobsHasNoEffect();

    void objectServesManyJobs();
    void fieldsPersist();
    void bufferExistsOnlyDuringTheJob_data();
    void bufferExistsOnlyDuringTheJob();
    void textsAreTranslatedAsTheWorkers();
    void scriptsTextIsEscaped();
};

void FamicomThreadTest::metaMethodsComeInOrder()
{
    const QMetaObject &meta = FamicomThread::staticMetaObject;
    QCOMPARE(meta.superClass(), &QThread::staticMetaObject);
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const QString kind = method.methodType() == QMetaMethod::Signal ? "signal" : "slot";
        methods.append(kind + " " + method.methodSignature() + " " +
                       method.parameterNames().join(","));
        QCOMPARE(method.access(), QMetaMethod::Public);
        QCOMPARE(method.returnType(), int{QMetaType::Void});
    }
    QCOMPARE(methods, (QStringList{"signal log(QString) ", "signal set_progress(int,int) ile,max",
                                   "signal error(int) err", "slot canceled() "}));
}

void FamicomThreadTest::newObjectIsIdle()
{
    const FamicomThread job;
    QVERIFY(job.parent() == nullptr);
    QCOMPARE(job.thread(), QThread::currentThread());
    QVERIFY(!job.isRunning());
    QVERIFY(job.file_name.isEmpty());
    QVERIFY(job.script_name.isEmpty());
    QVERIFY(job.data_buf == nullptr);
}

void FamicomThreadTest::jobReportsInOrder_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QStringList>("expectedEvents"); // %1: path of the user's file
    QTest::addColumn<bool>("succeeds");
    QTest::addColumn<QStringList>("traffic");
    const QStringList readRom = {"log Read file :%1", "log Read 16384 Bytes"};
    const QStringList readSave = {"log Read file :%1", "log Read 8192 Bytes"};
    const QStringList romDump = {"log Start dump rom...", "progress 8192/16384",
                                 "progress 16384/16384", "log Dump rom finish."};
    const QStringList saveWrite = {"log Start write save...", "progress 8192/8192",
                                   "log Write save finish."};
    QStringList chunks;
    for (int chunk = 0; chunk < (16384 + 479) / 480; ++chunk)
        chunks.append("02/0E");
    QStringList saveBlocks;
    for (int block = 0; block < 8192 / 480 + 1; ++block)
        saveBlocks.append("02/0C");
    QStringList sramBlocks;
    for (int block = 0; block < 8192 / 256; ++block)
        sramBlocks.append("03/10");

    QTest::newRow("GB ROM dump") << 0 << romDump << true
                                 << kGbMode + QStringList{"DUMP 0+8192", "DUMP 8192+8192"};
    QTest::newRow("GB flash write")
        << 1
        << readRom + QStringList{"log Start erase flash chip...", "log Erase flash chip finish.",
                                 "log Start flash ROM...", "progress 16384/16384",
                                 "log Flash ROM finish."}
        << true << kGbMode + QStringList{"F0/04",       "DRIVER 0+1024", "555<-80",
                                         "DUMP 0+1024", "DUMP 0+1024",   chunks.join(" ")};
    QTest::newRow("GB save dump") << 2
                                  << QStringList{"log Start dump save...", "progress 8192/16384",
                                                 "log Dump save finish."}
                                  << true << kGbMode + QStringList{"DUMP 40960+8192"};
    QTest::newRow("GB save write")
        << 3 << readSave + saveWrite << true << kGbMode + QStringList{saveBlocks.join(" ")};
    QTest::newRow("GBA ROM dump") << 4 << romDump << true
                                  << kGbaMode + QStringList{"03/06", "DUMP 0+8192", "03/06",
                                                            "DUMP 0+8192"};
    QTest::newRow("GBA flash write") << 5 << readRom + QStringList{"log Unknow operate!"} << false
                                     << kGbaMode + QStringList{"F0/04", "DRIVER 0+1024"};
    QTest::newRow("GBA save dump")
        << 6 << QStringList{"log Start dump save...", "progress 8192/8192", "log Dump save finish."}
        << true << kGbaMode + QStringList{"03/11", "DRIVER 0+4096", "03/11", "DRIVER 0+4096"};
    QTest::newRow("GBA save write")
        << 7 << readSave + saveWrite << true << kGbaMode + QStringList{sramBlocks.join(" ")};
    const QStringList unknown = {"log Unknow operate!"};
    QTest::newRow("8 is on the GBA bus") << 8 << unknown << false << kGbaMode;
    QTest::newRow("9 reads no file") << 9 << unknown << false << kGbaMode;
    QTest::newRow("-1 is on the GB bus") << -1 << unknown << false << kGbMode;
}

void FamicomThreadTest::jobReportsInOrder()
{
    QFETCH(int, operate);
    QFETCH(QStringList, expectedEvents);
    QFETCH(bool, succeeds);
    QFETCH(QStringList, traffic);
    JobBench bench;
    bench.cartridge().looksUntilErased = operate == 1 ? 1 : -1;
    bench.setScript(kMovingScript);
    bench.job.file_name = bench.addFile("input.bin", TestCartridge::gbBytes(77, 16384));
    bench.job.rom_size = 16384;
    bench.job.ram_size = 8192;
    QCOMPARE(bench.run(operate), succeeds);
    expectedEvents.replaceInStrings("%1", bench.job.file_name);
    QCOMPARE(bench.events, expectedEvents + jobEnd(succeeds));
    QCOMPARE(bench.traffic(), traffic);
}

void FamicomThreadTest::signalsReachTheOwnersThreadInOrder()
{
    JobBench bench;
    bench.setScript(kMovingScript);
    bench.job.file_name = bench.path("dump.gb");
    bench.job.rom_size = 0x8000;
    QObject owner;
    QStringList arrived;
    connect(&bench.job, &FamicomThread::log, &owner, [&](const QString &text) {
        QCOMPARE(QThread::currentThread(), owner.thread());
        arrived.append("log " + text);
    });
    connect(&bench.job, &FamicomThread::set_progress, &owner, [&](int done, int maximum) {
        arrived.append(QString("progress %1/%2").arg(done).arg(maximum));
    });
    connect(&bench.job, &FamicomThread::error, &owner,
            [&](int flag) { arrived.append(QString("error %1").arg(flag)); });
    QVERIFY(bench.run(0));
    QCOMPARE(arrived, QStringList());
    QTRY_COMPARE_WITH_TIMEOUT(arrived.size(), 8, kTimeoutMs);
    QStringList emitted = bench.events;
    emitted.removeOne("release");
    QCOMPARE(arrived, emitted);
}

void FamicomThreadTest::endComesOnceAndLast_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<bool>("succeeds");
    QTest::newRow("success") << QByteArray(kMovingScript) << true;
    QTest::newRow("failure") << QByteArray("function cpu_dump(dev, a, b) { throw \"no\"; }")
                             << false;
    QTest::newRow("no script") << QByteArray("syntax error") << false;
}

void FamicomThreadTest::endComesOnceAndLast()
{
    QFETCH(QByteArray, script);
    QFETCH(bool, succeeds);
    JobBench bench;
    bench.setScript(script);
    bench.job.file_name = bench.path("dump.gb");
    bench.job.rom_size = 0x4000;
    QCOMPARE(bench.run(0), succeeds);
    QCOMPARE(bench.events.mid(bench.events.size() - 3), jobEnd(succeeds));
    QCOMPARE(bench.events.filter(QRegularExpression("^error ")).size(), 1);
    QCOMPARE(bench.events.count("progress 1/1"), 1);
}

void FamicomThreadTest::cancelDuringADumpHasNoEffect()
{
    JobBench bench;
    bench.setScript(kMovingScript);
    bench.job.file_name = bench.path("dump.gb");
    bench.job.rom_size = 0x4000;
    int flag = -1;
    connect(
        &bench.job, &FamicomThread::set_progress, &bench.job,
        [&](int done, int) {
            if (done == 0x2000)
                bench.job.canceled();
            flag = bench.job.cancel_flag;
        },
        Qt::DirectConnection);
    QVERIFY(bench.run(0));
    QCOMPARE(flag, 1);
    QCOMPARE(bench.fileBytes("dump.gb"), TestCartridge::gbBytes(0, 0x4000));
}

void FamicomThreadTest::cancelEndsTheErasePoll()
{
    JobBench bench;
    bench.cartridge().looksUntilErased = 1000000;
    bench.setScript("function cpu_erase(dev, a, b) { print(\"erasing\"); }");
    bench.job.file_name = bench.addFile("rom.gb", QByteArray(480, 'r'));
    connect(
        &bench.job, &FamicomThread::log, &bench.job,
        [&](const QString &text) {
            if (text == "erasing")
                bench.job.canceled();
        },
        Qt::DirectConnection);
    QVERIFY(!bench.run(1));
    QCOMPARE(bench.logs().mid(2), (QStringList{"Start erase flash chip...", "erasing"}));
    QCOMPARE(bench.traffic().last(), QString("DUMP 0+1024"));
    QCOMPARE(bench.traffic().count("DUMP 0+1024"), 1);
}

void FamicomThreadTest::cancelAfterTheEraseHasNoEffect()
{
    JobBench bench;
    bench.cartridge().looksUntilErased = 0;
    bench.setScript(kMovingScript);
    bench.job.file_name = bench.addFile("rom.gb", QByteArray(480, 'r'));
    connect(
        &bench.job, &FamicomThread::log, &bench.job,
        [&](const QString &text) {
            if (text.startsWith("Start "))
                bench.job.canceled();
        },
        Qt::DirectConnection);
    QVERIFY(bench.run(1));
    QCOMPARE(bench.cartridge().programmed, QByteArray(480, 'r'));
}

void FamicomThreadTest::cancelBetweenJobsHasNoEffect()
{
    JobBench bench;
    bench.cartridge().looksUntilErased = 3;
    bench.setScript(kMovingScript);
    bench.job.file_name = bench.addFile("rom.gb", QByteArray(480, 'r'));
    bench.job.canceled();
    QCOMPARE(bench.job.cancel_flag.load(), 1);
    QVERIFY(bench.run(1));
    QCOMPARE(bench.job.cancel_flag.load(), 0);
    QVERIFY(bench.logs().contains("Erase flash chip finish."));
}

void FamicomThreadTest::objectServesManyJobs()
{
    JobBench bench;
    bench.setScript(kMovingScript);
    bench.job.rom_size = 0x4000;
    bench.job.ram_size = 0x2000;
    bench.job.file_name = bench.path("dump.gb");
    QVERIFY(bench.run(0));
    QCOMPARE(bench.job.data_pos, 0x4000);
    bench.job.file_name = bench.path("missing/dump.sav");
    QVERIFY(!bench.run(2));
    bench.job.file_name = bench.addFile("save.sav", QByteArray(0x2000, 's'));
    QVERIFY(bench.run(7));
    QCOMPARE(bench.cartridge().save.left(0x2000), QByteArray(0x2000, 's'));
    bench.job.file_name = bench.path("back.sav");
    QVERIFY(bench.run(6));
    QCOMPARE(bench.fileBytes("back.sav"), QByteArray(0x2000, 's'));
    bench.job.file_name = bench.path("dump.gba");
    QVERIFY(bench.run(4));
    QCOMPARE(bench.fileBytes("dump.gba").size(), 0x4000);
    QCOMPARE(bench.job.data_pos, 0x4000);
    QCOMPARE(bench.fileBytes("dump.gb"), TestCartridge::gbBytes(0, 0x4000));
}

void FamicomThreadTest::fieldsPersist()
{
    JobBench bench;
    bench.cartridge().looksUntilErased = 0;
    bench.setScript(kMovingScript);
    const QString script = bench.job.script_name;
    bench.job.file_name = bench.addFile("rom.gb", QByteArray(960, 'r'));
    bench.job.rom_size = 0x8000;
    bench.job.ram_size = 0x2000;
    bench.job.save_type = 1;
    bench.job.flash_width = 1;
    bench.job.verify = true;
    QVERIFY(bench.run(1));
    QCOMPARE(bench.job.rom_size, 960); // the file's
    QCOMPARE(bench.job.ram_size, 0x2000);
    QCOMPARE(bench.job.save_type, 1);
    QCOMPARE(bench.job.flash_width, 1);
    QCOMPARE(bench.job.verify, true);
    QCOMPARE(bench.job.operate, 1);
    QCOMPARE(bench.job.data_pos, 960);
    QCOMPARE(bench.job.file_name, bench.path("rom.gb"));
    QCOMPARE(bench.job.script_name, script);
}

void FamicomThreadTest::bufferExistsOnlyDuringTheJob_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<bool>("hasBuffer");
    for (int operate : {0, 1, 2, 3, 4, 5, 6, 7})
        QTest::addRow("operation %d", operate) << operate << true;
    QTest::newRow("no operation") << 8 << false;
}

void FamicomThreadTest::bufferExistsOnlyDuringTheJob()
{
    QFETCH(int, operate);
    QFETCH(bool, hasBuffer);
    JobBench bench;
    bench.cartridge().looksUntilErased = 0;
    bench.setScript(kIdleScript);
    bench.job.rom_size = 0x4000;
    bench.job.ram_size = 0x2000;
    bench.job.file_name = bench.addFile("file.bin", QByteArray(0x2000, 'f'));
    bool sawBuffer = false;
    connect(
        &bench.job, &FamicomThread::log, &bench.job,
        [&](const QString &) { sawBuffer = bench.job.data_buf != nullptr; }, Qt::DirectConnection);
    bench.run(operate);
    QCOMPARE(sawBuffer, hasBuffer);
    QVERIFY(bench.job.data_buf == nullptr);
}

void FamicomThreadTest::textsAreTranslatedAsTheWorkers()
{
    MarkingTranslator translator;
    QCoreApplication::installTranslator(&translator);
    JobBench bench;
    bench.setScript(kIdleScript);
    bench.job.ram_size = 4;
    bench.job.file_name = bench.addFile("save.sav", "save");
    bench.run(3);
    const QStringList written = bench.logs();
    bench.job.ram_size = 5;
    bench.run(3);
    const QString tooShort = bench.logs().last();
    bench.job.file_name = bench.path("missing/file");
    bench.run(3);
    const QString notOpened = bench.logs().last();
    bench.run(2);
    const QString notSaved = bench.logs().last();
    bench.drive().addFault(everyCommandFault());
    bench.run(2);
    const QStringList noMode = bench.logs();
    bench.drive().setGone(true);
    bench.run(2);
    const QStringList noDevice = bench.logs();
    QCoreApplication::removeTranslator(&translator);
    const QString context = "[FamicomThread]";
    QCOMPARE(written.mid(0, 2), (QStringList{context + "Read file :" + bench.path("save.sav"),
                                             context + "Read 4" + context + " Bytes"}));
    QCOMPARE(tooShort, context + "Read File error.");
    QCOMPARE(notOpened, context + "Open File error.");
    QCOMPARE(notSaved, context + "Save file error.");
    QCOMPARE(noMode, QStringList{context + "Initialize device error."});
    QCOMPARE(noDevice, QStringList{context + "Can not found device."});
}

// The log would take it for markup.
void FamicomThreadTest::scriptsTextIsEscaped()
{
    JobBench bench;
    bench.setScript("function cpu_dump(dev, size, max) { print(\"<b>bold</b>\");\n"
                    "throw \"a < b & c\"; }");
    bench.job.rom_size = 0x4000;
    bench.job.file_name = bench.path("dump.gb");
    QVERIFY(!bench.run(GB_READ_ROM));
    const QString log = bench.logs().join('|');
    QVERIFY2(log.contains("&lt;b&gt;bold&lt;/b&gt;"), qPrintable(log));
    QVERIFY2(log.contains("[a &lt; b &amp; c]"), qPrintable(log));
    QVERIFY2(!log.contains("<b>") && !log.contains("a < b"), qPrintable(log));
}

GBDRIVER_TEST(FamicomThreadTest, core)
#include "famicom_thread_test.moc"
