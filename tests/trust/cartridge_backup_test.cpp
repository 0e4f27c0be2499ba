// One cartridge into a folder: what is read, what lies there afterwards, what is left alone.
#include "trust/cartridge_backup.h"

#include "files.h"
#include "test_class.h"
#include "trust_bench.h"

#include <QRegularExpression>
#include <QtTest>

Q_DECLARE_METATYPE(MemoryEnd)

class CartridgeBackupTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void eachMemoryGetsItsFile();
    void secondBackupAddsNothing();
    void otherFileOfThatNameIsKept();
    void readsAreAsManyAsPlanned_data();
    void readsAreAsManyAsPlanned();
    void failedReadKeepsNothing();
    void failedSecondReadKeepsTheFirst_data();
    void failedSecondReadKeepsTheFirst();
    void unstableReadLeavesTheGoodName();
    void saveOfAnotherCartridgeIsNotRead();
    void fileThatCanNotBeWrittenIsTold();

private:
    QStringList names(const QString &suffix) const
    {
        return m_folder->fileNames().filter(QRegularExpression(suffix + "$"));
    }

    std::unique_ptr<UserFolder> m_folder;
    std::unique_ptr<TrialBench> m_bench;
    CartridgeBackupPlan m_plan;
    CartridgeReport m_report;
    PhaseRecorder m_listener;
};

void CartridgeBackupTest::init()
{
    m_folder = std::make_unique<UserFolder>();
    m_bench = std::make_unique<TrialBench>(benchCartridge());
    loadSave(*m_bench, trialNoise(int(kBenchSave)));
    m_plan = CartridgeBackupPlan();
    m_plan.folder = m_folder->path();
    m_report = detectCartridge([](const QString &) {});
    m_listener = PhaseRecorder();
}

void CartridgeBackupTest::cleanup()
{
    m_bench.reset();
}

void CartridgeBackupTest::eachMemoryGetsItsFile()
{
    CartridgeBackup backup(m_report, m_plan, m_listener);
    const BackedUpMemory &rom = backup.backUpRom();
    QCOMPARE(rom.end, MemoryEnd::Kept);
    QCOMPARE(rom.path, m_folder->path("VIRTUAL.gb"));
    QCOMPARE(rom.verdict.kind, VerdictKind::Consistent);
    QVERIFY(m_folder->fileBytes("VIRTUAL.gb") == m_bench->image());
    const BackedUpMemory &save = backup.backUpSave();
    QCOMPARE(save.end, MemoryEnd::Kept);
    QVERIFY(contentOf(save.path) == m_bench->save());
    QCOMPARE(m_listener.phases, (QStringList{"read 65536", "end", "compare 65536", "end",
                                             "read 32768", "end", "compare 32768", "end"}));
    QVERIFY(backup.isNew());
    QVERIFY(backup.writeReport("; of the ROM", "; of the save").isDone());
    QCOMPARE(m_folder->fileNames().size(), 3);
    const QString date = "^VIRTUAL \\d{4}-\\d\\d-\\d\\d \\d\\d-\\d\\d-\\d\\d\\";
    QCOMPARE(names(date + ".sav").size(), 1);
    QCOMPARE(names(date + ".txt").size(), 1);
    const QStringList lines =
        QString::fromUtf8(m_folder->fileBytes(names(".txt").value(0))).split('\n');
    QCOMPARE(lines.filter(QRegularExpression("^Verdict .*; of the ROM$")).size(), 1);
    QCOMPARE(lines.filter(QRegularExpression("^Verdict .*; of the save$")).size(), 1);
    QCOMPARE(lines.filter(QRegularExpression("^Script +gb_mbc5.nut$")).size(), 1);
}

void CartridgeBackupTest::secondBackupAddsNothing()
{
    for (const bool isFirst : {true, false}) {
        CartridgeBackup backup(m_report, m_plan, m_listener);
        QCOMPARE(backup.backUpRom().isThere, !isFirst);
        QCOMPARE(backup.backUpSave().isThere, !isFirst);
        QCOMPARE(backup.isNew(), isFirst);
        QVERIFY(backup.writeReport().isDone());
        QCOMPARE(m_folder->fileNames().size(), 3);
    }
}

void CartridgeBackupTest::otherFileOfThatNameIsKept()
{
    const QByteArray other = trialNoise(int(kBenchRom));
    m_folder->addFile("VIRTUAL.gb", other);
    CartridgeBackup backup(m_report, m_plan, m_listener);
    const BackedUpMemory &rom = backup.backUpRom();
    QVERIFY(!rom.isThere);
    QCOMPARE(rom.path, m_folder->path("VIRTUAL (2).gb"));
    QVERIFY(m_folder->fileBytes("VIRTUAL (2).gb") == m_bench->image());
    QVERIFY(m_folder->fileBytes("VIRTUAL.gb") == other);
}

void CartridgeBackupTest::readsAreAsManyAsPlanned_data()
{
    QTest::addColumn<int>("planned");
    QTest::addColumn<int>("romReads");
    QTest::addColumn<int>("saveReads");
    QTest::newRow("as needed") << 0 << 2 << 2;
    QTest::newRow("once") << 1 << 1 << 2; // a save has no checksum that vouches for one read
    QTest::newRow("three times") << 3 << 3 << 3;
}

void CartridgeBackupTest::readsAreAsManyAsPlanned()
{
    QFETCH(int, planned);
    m_plan.reads = planned;
    CartridgeBackup backup(m_report, m_plan, m_listener);
    QTEST(backup.backUpRom().reads, "romReads");
    QTEST(backup.backUpSave().reads, "saveReads");
    QTEST(static_cast<int>(m_listener.phases.filter(" 65536").size()), "romReads");
    QTEST(static_cast<int>(m_listener.phases.filter(" 32768").size()), "saveReads");
}

void CartridgeBackupTest::failedReadKeepsNothing()
{
    addReadFault(*m_bench, 0);
    CartridgeBackup backup(m_report, m_plan, m_listener);
    const BackedUpMemory &rom = backup.backUpRom();
    QCOMPARE(rom.end, MemoryEnd::NotRead);
    QCOMPARE(rom.outcome.trouble, Trouble::JobFailed);
    QCOMPARE(rom.outcome.state, CartridgeState::Switched);
    QCOMPARE(rom.path, QString());
    QCOMPARE(m_folder->fileNames(), QStringList());
    QVERIFY(backup.isNew());
    QVERIFY(backup.writeReport().isDone());
    QCOMPARE(names(".txt"), m_folder->fileNames());
    QCOMPARE(m_folder->fileNames().size(), 1);
}

void CartridgeBackupTest::failedSecondReadKeepsTheFirst_data()
{
    QTest::addColumn<bool>("isStopped");
    QTest::newRow("fails") << false;
    QTest::newRow("stopped") << true;
}

void CartridgeBackupTest::failedSecondReadKeepsTheFirst()
{
    QFETCH(bool, isStopped);
    if (isStopped)
        m_listener.questionsUntilStop = 0;
    else
        addReadFault(*m_bench, 3); // the first of the second read
    CartridgeBackup backup(m_report, m_plan, m_listener);
    const BackedUpMemory &rom = backup.backUpRom();
    QCOMPARE(rom.end, MemoryEnd::NotReadTwice);
    QCOMPARE(rom.outcome.trouble, isStopped ? Trouble::Stopped : Trouble::JobFailed);
    QCOMPARE(rom.path, m_folder->path("VIRTUAL.gb.unverified"));
    QCOMPARE(m_folder->fileNames(), QStringList({"VIRTUAL.gb.unverified"}));
    QVERIFY(m_folder->fileBytes("VIRTUAL.gb.unverified") == m_bench->image());
    QVERIFY(memoryText(rom).endsWith("The first read is in VIRTUAL.gb.unverified."));
    QVERIFY(backup.isNew());
}

void CartridgeBackupTest::unstableReadLeavesTheGoodName()
{
    addReadFault(*m_bench, 4, 0x01);
    CartridgeBackup backup(m_report, m_plan, m_listener);
    const BackedUpMemory &rom = backup.backUpRom();
    QCOMPARE(rom.verdict.kind, VerdictKind::Unstable);
    QCOMPARE(m_folder->fileNames(), QStringList{"VIRTUAL.gb.unstable"});
    m_bench->drive().clearFaults();
    addReadFault(*m_bench, 5, 0x01); // a look at the cartridge comes first
    QCOMPARE(backup.backUpSave().verdict.kind, VerdictKind::Unstable);
    QCOMPARE(names("\\.sav"), QStringList());
    QCOMPARE(names("\\.sav\\.unstable").size(), 1);
}

void CartridgeBackupTest::saveOfAnotherCartridgeIsNotRead()
{
    m_report.header[0x134] = 'X'; // of the title
    CartridgeBackup backup(m_report, m_plan, m_listener);
    QCOMPARE(backup.backUpSave().end, MemoryEnd::Swapped);
    QCOMPARE(m_listener.phases, QStringList());
    QCOMPARE(m_folder->fileNames(), QStringList());
}

void CartridgeBackupTest::fileThatCanNotBeWrittenIsTold()
{
    m_plan.folder = m_folder->path("missing");
    CartridgeBackup backup(m_report, m_plan, m_listener);
    const BackedUpMemory &rom = backup.backUpRom();
    QCOMPARE(rom.end, MemoryEnd::NotWritten);
    QCOMPARE(rom.path, QString());
    QCOMPARE(rom.outcome.trouble, Trouble::NoFile);
    QCOMPARE(rom.outcome.state, CartridgeState::NotRead);
    QCOMPARE(m_listener.phases, QStringList());
    QCOMPARE(rom.outcome.file.fault, FileFault::NoFolder);
    QCOMPARE(rom.outcome.file.path, m_folder->path("missing/VIRTUAL.gb"));
    QCOMPARE(backup.writeReport().trouble, Trouble::NoFile);
}

GBDRIVER_TEST(CartridgeBackupTest, core)
#include "cartridge_backup_test.moc"
