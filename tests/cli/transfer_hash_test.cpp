// The hash that follows a dump is that of the whole file, whatever way the job ends.
#include "cli/transfer_hash.h"
#include "job_bench.h"
#include "script_folder.h"
#include "test_class.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

struct HashedJob {
    bool hasSucceeded = false;
    QByteArray sha1;
    QByteArray file;
};

QByteArray sha1Of(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1);
}

// Dumps `size` bytes of a ROM.
HashedJob dump(bool isGba, int size, const QString &scriptPath)
{
    const QTemporaryDir folder;
    FamicomThread worker;
    worker.operate = isGba ? GBA_READ_ROM : GB_READ_ROM;
    worker.file_name = folder.filePath("file");
    worker.script_name = scriptPath;
    worker.rom_size = size;
    HashedJob job;
    const TransferHash hash(&worker);
    QEventLoop loop;
    QObject::connect(&worker, &FamicomThread::error, &loop,
                     [&job](int flag) { job.hasSucceeded = flag == 1; });
    QObject::connect(&worker, &QThread::finished, &loop, &QEventLoop::quit);
    worker.start();
    loop.exec();
    job.sha1 = hash.sha1();
    QFile file(worker.file_name);
    if (file.open(QIODevice::ReadOnly))
        job.file = file.readAll();
    return job;
}

QString shipped(const char *script)
{
    return QString(SHIPPED_SCRIPTS "/") + script;
}

TrialCartridge cartridgeOf(bool isGba, int size)
{
    TrialCartridge cartridge;
    cartridge.isGba = isGba;
    cartridge.headerType = 0x19;
    cartridge.romSize = static_cast<std::uint32_t>(size);
    return cartridge;
}

} // namespace

class TransferHashTest : public QObject
{
    Q_OBJECT

private slots:
    void hashIsThatOfTheFile_data();
    void hashIsThatOfTheFile();
    void bytesThatNoScriptMovedAreZeros_data();
    void bytesThatNoScriptMovedAreZeros();
    void failedJobEndsTheHash();
    void jobWithoutAReaderEndsTheHash();
    void jobThatIsNeverStartedEndsTheHash();
};

void TransferHashTest::hashIsThatOfTheFile_data()
{
    QTest::addColumn<bool>("isGba");
    QTest::addColumn<int>("size");
    for (int kibi = 32; kibi <= 8192; kibi *= 2)
        QTest::newRow(qPrintable(QString("GB, %1 KiB").arg(kibi))) << false << kibi * 1024;
    QTest::newRow("GBA, 1 MiB") << true << 1024 * 1024;
    QTest::newRow("GBA, 32 MiB") << true << 32 * 1024 * 1024;
}

void TransferHashTest::hashIsThatOfTheFile()
{
    QFETCH(bool, isGba);
    QFETCH(int, size);
    const TrialBench bench(cartridgeOf(isGba, size));
    const HashedJob job = dump(isGba, size, shipped(isGba ? "gba.nut" : "gb_mbc5.nut"));
    QVERIFY(job.hasSucceeded);
    QCOMPARE(job.file.size(), size);
    QVERIFY(job.file == bench.image());
    QCOMPARE(job.sha1.toHex(), sha1Of(bench.image()).toHex());
}

void TransferHashTest::bytesThatNoScriptMovedAreZeros_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<int>("moved");
    QTest::newRow("none") << QByteArray("function cpu_dump(d, s, _) {}") << 0;
    QTest::newRow("half") << QByteArray("function cpu_dump(d, s, _) { cpu_read(d, 0, 0x4000); }")
                          << 0x4000;
}

void TransferHashTest::bytesThatNoScriptMovedAreZeros()
{
    QFETCH(QByteArray, script);
    QFETCH(int, moved);
    const TrialBench bench(cartridgeOf(false, 32768));
    ScriptFolder folder;
    folder.write("gb_mbc5.nut", script);
    const HashedJob job = dump(false, 32768, folder.filePath("gb_mbc5.nut"));
    QVERIFY(job.hasSucceeded);
    const QByteArray expected = bench.image().left(moved) + QByteArray(32768 - moved, '\0');
    QVERIFY(job.file == expected);
    QCOMPARE(job.sha1.toHex(), sha1Of(expected).toHex());
}

void TransferHashTest::failedJobEndsTheHash()
{
    TrialBench bench(cartridgeOf(false, 65536));
    DriveFault fault;
    fault.pathEnd = "DUMP.ROM";
    fault.after = 2;
    fault.driveVanishes = true;
    bench.drive().addFault(fault);
    const HashedJob job = dump(false, 65536, shipped("gb_mbc5.nut"));
    QVERIFY(!job.hasSucceeded);
    QVERIFY(job.file.isEmpty());
    QCOMPARE(job.sha1.size(), 20);
    QVERIFY(job.sha1 != sha1Of(bench.image()));
}

void TransferHashTest::jobWithoutAReaderEndsTheHash()
{
    TrialBench bench(cartridgeOf(false, 65536));
    bench.drive().setGone(true);
    const HashedJob job = dump(false, 65536, shipped("gb_mbc5.nut"));
    QVERIFY(!job.hasSucceeded);
    QCOMPARE(job.sha1.toHex(), sha1Of({}).toHex());
}

void TransferHashTest::jobThatIsNeverStartedEndsTheHash()
{
    FamicomThread worker;
    {
        const TransferHash hash(&worker);
    }
    QVERIFY(!worker.isRunning());
}

GBDRIVER_TEST(TransferHashTest, core)
#include "transfer_hash_test.moc"
