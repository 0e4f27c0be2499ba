// A backup is on the disk, whole, before anything is written; or nothing may be written.
#include "trust/kept_backup.h"

#include "files.h"
#include "test_class.h"
#include "trust_bench.h"

#include <QtTest>

using namespace virtual_reader;

class KeptBackupTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void saveIsKeptUnderItsTitle();
    void backupsOfOneSecondStandSideBySide();
    void folderIsMade();
    void unstableSaveIsNotKept();
    void failedReadKeepsNothing();
    void saveOfEqualBytesTakesTheUsersWord_data();
    void saveOfEqualBytesTakesTheUsersWord();
    void almostEqualBytesAreASave();
    void repetitionsOfAChipAreCutOff();
    void folderThatCanNotBeMadeIsTold();
    void diskWithoutRoomIsToldBeforeTheRead();
    void diskThatLiesIsTold();
    void erasedChipNeedsNoFile();
    void readTwiceKeepsNoFile();
    void stoppedReadKeepsNothing();

private:
    KeptBackup keep(int operate = GB_READ_RAM, int romSize = int(kBenchRom))
    {
        CartridgeJob job = benchJob(operate);
        if (operate == GB_READ_ROM)
            job.romSize = romSize;
        if (!m_script.isEmpty())
            job.scriptPath = m_script;
        m_listener = PhaseRecorder();
        m_listener.questionsUntilStop = m_questionsUntilStop;
        return keepBackup({job, m_path, "A: TITLE", m_acceptsEqualBytes, m_cutsRepetitions},
                          m_listener);
    }

    QStringList names() const { return QDir(m_path).entryList(QDir::Files | QDir::Hidden); }

    QByteArray only() const
    {
        return names().size() == 1 ? contentOf(QDir(m_path).filePath(names()[0]))
                                   : QByteArray("not one file");
    }

    bool m_acceptsEqualBytes = false;
    bool m_cutsRepetitions = false;
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    std::unique_ptr<TrialBench> m_bench;
    QString m_script;              // empty: the shipped one
    int m_questionsUntilStop = -1; // as PhaseRecorder has it
    PhaseRecorder m_listener;
};

void KeptBackupTest::init()
{
    m_script.clear();
    m_questionsUntilStop = -1;
    m_acceptsEqualBytes = false;
    m_cutsRepetitions = false;
    m_folder = std::make_unique<QTemporaryDir>();
    m_path = m_folder->path();
    m_bench.reset();
    m_bench = std::make_unique<TrialBench>(benchCartridge());
    loadSave(*m_bench, trialNoise(int(kBenchSave)));
}

void KeptBackupTest::saveIsKeptUnderItsTitle()
{
    const KeptBackup backup = keep();
    QCOMPARE(backup.outcome.trouble, Trouble::None);
    QCOMPARE(backup.bytes, m_bench->save());
    QCOMPARE(m_listener.phases, (QStringList{"backup 32768", "end", "compare 32768", "end"}));
    QCOMPARE(only(), m_bench->save());
    QCOMPARE(backup.path, QDir(m_path).filePath(names().first()));
    QVERIFY(QRegularExpression("^A_ TITLE \\d{4}-\\d\\d-\\d\\d \\d\\d-\\d\\d-\\d\\d\\.sav$")
                .match(names().first())
                .hasMatch());
}

// Whether or not a second begins in between.
void KeptBackupTest::backupsOfOneSecondStandSideBySide()
{
    for (int number = 1; number <= 5; ++number) {
        QByteArray save = trialNoise(int(kBenchSave));
        save[0] = char(number);
        loadSave(*m_bench, save);
        QCOMPARE(keep().outcome.trouble, Trouble::None);
        QCOMPARE(names().size(), number);
    }
    QSet<QByteArray> contents;
    for (const QString &name : names())
        contents << contentOf(QDir(m_path).filePath(name));
    QCOMPARE(contents.size(), 5);
}

void KeptBackupTest::folderIsMade()
{
    m_path = m_folder->filePath("several/levels/deep");
    QCOMPARE(keep().outcome.trouble, Trouble::None);
    QCOMPARE(only(), m_bench->save());
}

void KeptBackupTest::unstableSaveIsNotKept()
{
    addReadFault(*m_bench, 6, 0x01);
    const KeptBackup backup = keep();
    QCOMPARE(backup.outcome.trouble, Trouble::ReadsDiffer);
    QCOMPARE(backup.outcome.detail, QString("bank 2 of 4"));
    QCOMPARE(backup.outcome.state, CartridgeState::NotBegun);
    QCOMPARE(backup.path, QString());
    QCOMPARE(names(), QStringList());
}

void KeptBackupTest::failedReadKeepsNothing()
{
    for (const std::uint32_t read : {0U, 5U}) {
        m_bench->drive().clearFaults();
        addReadFault(*m_bench, read);
        const KeptBackup backup = keep();
        QCOMPARE(backup.outcome.trouble, Trouble::JobFailed);
        QCOMPARE(backup.outcome.phase, read == 0 ? Phase::Backup : Phase::Compare);
        QCOMPARE(backup.outcome.state, CartridgeState::Switched);
        QVERIFY(backup.outcome.job.driveError.contains("injected fault"));
        QCOMPARE(names(), QStringList());
    }
}

void KeptBackupTest::saveOfEqualBytesTakesTheUsersWord_data()
{
    QTest::addColumn<char>("byte");
    QTest::newRow("erased, or no answer") << '\xFF';
    QTest::newRow("cleared") << '\0';
}

// A wrong kind of save memory reads like an empty save, and would be erased.
void KeptBackupTest::saveOfEqualBytesTakesTheUsersWord()
{
    QFETCH(char, byte);
    loadSave(*m_bench, QByteArray(int(kBenchSave), byte));
    const KeptBackup backup = keep();
    QCOMPARE(backup.outcome.trouble, Trouble::SaveIsBlank);
    QCOMPARE(backup.outcome.state, CartridgeState::NotBegun);
    QVERIFY(!backup.isErased);
    QCOMPARE(names(), QStringList());

    m_acceptsEqualBytes = true;
    QCOMPARE(keep().outcome.trouble, Trouble::None);
    QCOMPARE(only(), m_bench->save());
}

void KeptBackupTest::almostEqualBytesAreASave()
{
    QByteArray almost(int(kBenchSave), '\xFF');
    almost[almost.size() - 1] = '\xFE';
    loadSave(*m_bench, almost);
    QCOMPARE(keep().outcome.trouble, Trouble::None);
    QCOMPARE(only(), almost);
}

void KeptBackupTest::repetitionsOfAChipAreCutOff()
{
    QCOMPARE(keep(GB_READ_ROM, 4 * int(kBenchRom)).outcome.trouble, Trouble::None);
    QCOMPARE(only().size(), 4 * int(kBenchRom));
    QVERIFY(QFile::remove(QDir(m_path).filePath(names().first())));

    m_cutsRepetitions = true;
    const KeptBackup backup = keep(GB_READ_ROM, 4 * int(kBenchRom));
    QCOMPARE(backup.outcome.trouble, Trouble::None);
    QVERIFY(backup.path.endsWith(".gb"));
    QCOMPARE(only(), m_bench->image());
}

void KeptBackupTest::folderThatCanNotBeMadeIsTold()
{
    putFile(m_folder->filePath("file"), {});
    m_path = m_folder->filePath("file/folder");
    const KeptBackup backup = keep();
    QCOMPARE(backup.outcome.trouble, Trouble::NoFolder);
    QCOMPARE(backup.outcome.detail, m_path);
    QCOMPARE(backup.outcome.state, CartridgeState::NotWritten);
    QCOMPARE(backup.path, QString());
}

void KeptBackupTest::diskWithoutRoomIsToldBeforeTheRead()
{
    DriveFault full;
    full.call = DriveCall::Reserve;
    full.code = DriveErrorCode::Full;
    m_bench->drive().addFault(full);
    const KeptBackup backup = keep();
    QCOMPARE(backup.outcome.trouble, Trouble::NoFile);
    QCOMPARE(backup.outcome.state, CartridgeState::NotWritten);
    QCOMPARE(m_listener.phases, QStringList());
    QCOMPARE(names(), QStringList());
}

void KeptBackupTest::diskThatLiesIsTold()
{
    DriveFault fault;
    fault.call = DriveCall::Write;
    fault.pathEnd = ".sav";
    fault.code = DriveErrorCode::None;
    fault.claimsAll = true;
    m_bench->drive().addFault(fault);
    const KeptBackup backup = keep();
    QCOMPARE(backup.outcome.trouble, Trouble::NoFile);
    QCOMPARE(backup.outcome.state, CartridgeState::NotBegun);
    QVERIFY(backup.path.isEmpty());
    QCOMPARE(names(), QStringList());
    QCOMPARE(backup.outcome.file.fault, FileFault::NotHeld);
    QVERIFY(troubleText(backup.outcome).contains("does not hold what was written to it"));
}

// The closed RAM reads as an erased chip does.
void KeptBackupTest::erasedChipNeedsNoFile()
{
    const QTemporaryDir scripts;
    m_script = scripts.filePath("ff.nut");
    putFile(m_script,
            "function cpu_dump(dev, size, _) {\n"
            "    for (local i = 0; i < size; i += 0x2000) cpu_read(dev, 0xA000, 0x2000); }\n");
    const KeptBackup backup = keep(GB_READ_ROM);
    QCOMPARE(backup.outcome.trouble, Trouble::None);
    QVERIFY(backup.isErased);
    QCOMPARE(backup.path, QString());
    QCOMPARE(backup.bytes, QByteArray(int(kBenchRom), '\xFF'));
    QCOMPARE(names(), QStringList());

    m_script.clear();
    QVERIFY(!keep(GB_READ_ROM).isErased);
    QCOMPARE(names().size(), 1);
}

void KeptBackupTest::readTwiceKeepsNoFile()
{
    PhaseRecorder listener;
    const KeptBackup backup = readTwice(benchJob(GB_READ_RAM), listener);
    QCOMPARE(backup.outcome.trouble, Trouble::None);
    QCOMPARE(backup.bytes, m_bench->save());
    QCOMPARE(backup.path, QString());
    QCOMPARE(listener.phases, (QStringList{"backup 32768", "end", "compare 32768", "end"}));
    QCOMPARE(names(), QStringList());
}

void KeptBackupTest::stoppedReadKeepsNothing()
{
    for (const int questions : {0, 1}) { // between the reads, and behind them
        m_questionsUntilStop = questions;
        QCOMPARE(keep().outcome.trouble, Trouble::Stopped);
        QCOMPARE(names(), QStringList());
    }
}

GBDRIVER_TEST(KeptBackupTest, core)
#include "kept_backup_test.moc"
