// A backup is on the disk, whole, before anything is written; or nothing may be written.
#include "cli/kept_backup.h"
#include "job_bench.h"
#include "report_capture.h"
#include "test_class.h"

#include <QtTest>

#include <csignal>

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
    void diskThatLiesIsTold();
    void interruptKeepsNothing();

private:
    KeptBackup keep(int operate = GB_READ_RAM, int romSize = int(kBenchRom))
    {
        CliJob job = benchJob(operate);
        if (operate == GB_READ_ROM)
            job.romSize = romSize;
        m_capture = std::make_unique<ReportCapture>(OutputStyle::Quiet);
        return keepBackup({job, m_path, "A: TITLE", m_acceptsEqualBytes, m_cutsRepetitions},
                          m_capture->reporter());
    }

    QStringList names() const { return QDir(m_path).entryList(QDir::Files | QDir::Hidden); }

    QByteArray only() const
    {
        QFile file(QDir(m_path).filePath(names().value(0)));
        return names().size() == 1 && file.open(QIODevice::ReadOnly) ? file.readAll()
                                                                     : QByteArray("not one file");
    }

    bool m_acceptsEqualBytes = false;
    bool m_cutsRepetitions = false;
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    std::unique_ptr<TrialBench> m_bench;
    std::unique_ptr<ReportCapture> m_capture;
};

void KeptBackupTest::init()
{
    watchForInterrupt();
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
    QCOMPARE(backup.code, ExitCode::Done);
    QCOMPARE(backup.bytes, m_bench->save());
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
        QCOMPARE(keep().code, ExitCode::Done);
        QCOMPARE(names().size(), number);
    }
    QSet<QByteArray> contents;
    for (const QString &name : names()) {
        QFile file(QDir(m_path).filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        contents << file.readAll();
    }
    QCOMPARE(contents.size(), 5);
}

void KeptBackupTest::folderIsMade()
{
    m_path = m_folder->filePath("several/levels/deep");
    QCOMPARE(keep().code, ExitCode::Done);
    QCOMPARE(only(), m_bench->save());
}

void KeptBackupTest::unstableSaveIsNotKept()
{
    addReadFault(*m_bench, 6, 0x01);
    QCOMPARE(keep().code, ExitCode::DataMismatch);
    QCOMPARE(names(), QStringList());
    QVERIFY(m_capture->messages().contains("Two reads of the cartridge differ (bank 2 of 4)"));
    QVERIFY(m_capture->messages().contains("Nothing was written; the cartridge is as it was."));
}

void KeptBackupTest::failedReadKeepsNothing()
{
    for (const std::uint32_t read : {0U, 5U}) {
        m_bench->drive().clearFaults();
        addReadFault(*m_bench, read);
        QCOMPARE(keep().code, ExitCode::TransferFailed);
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
    QCOMPARE(keep().code, ExitCode::Refused);
    QCOMPARE(names(), QStringList());
    QVERIFY(m_capture->messages().contains("All bytes of the save are equal."));
    QVERIFY(m_capture->messages().contains("Nothing was written; the cartridge is as it was."));

    m_acceptsEqualBytes = true;
    QCOMPARE(keep().code, ExitCode::Done);
    QCOMPARE(only(), m_bench->save());
}

void KeptBackupTest::almostEqualBytesAreASave()
{
    QByteArray almost(int(kBenchSave), '\xFF');
    almost[almost.size() - 1] = '\xFE';
    loadSave(*m_bench, almost);
    QCOMPARE(keep().code, ExitCode::Done);
    QCOMPARE(only(), almost);
}

void KeptBackupTest::repetitionsOfAChipAreCutOff()
{
    QCOMPARE(keep(GB_READ_ROM, 4 * int(kBenchRom)).code, ExitCode::Done);
    QCOMPARE(only().size(), 4 * int(kBenchRom));
    QVERIFY(QFile::remove(QDir(m_path).filePath(names().first())));

    m_cutsRepetitions = true;
    const KeptBackup backup = keep(GB_READ_ROM, 4 * int(kBenchRom));
    QCOMPARE(backup.code, ExitCode::Done);
    QVERIFY(backup.path.endsWith(".gb"));
    QCOMPARE(only(), m_bench->image());
}

void KeptBackupTest::folderThatCanNotBeMadeIsTold()
{
    QFile file(m_folder->filePath("file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    m_path = file.fileName() + "/folder";
    QCOMPARE(keep().code, ExitCode::FileError);
    QVERIFY(m_capture->messages().contains(m_path));
    QVERIFY(m_capture->messages().contains("Nothing was written; the cartridge is as it was."));
}

void KeptBackupTest::diskThatLiesIsTold()
{
    DriveFault fault;
    fault.call = DriveCall::Write;
    fault.pathEnd = ".part";
    fault.code = DriveErrorCode::None;
    fault.claimsAll = true;
    m_bench->drive().addFault(fault);
    const KeptBackup backup = keep();
    QCOMPARE(backup.code, ExitCode::FileError);
    QVERIFY(backup.path.isEmpty());
    QCOMPARE(names(), QStringList());
    QVERIFY(m_capture->messages().contains("does not hold what was written to it"));
}

void KeptBackupTest::interruptKeepsNothing()
{
    std::raise(SIGINT);
    QCOMPARE(keep().code, ExitCode::Cancelled);
    QCOMPARE(names(), QStringList());
}

GBDRIVER_TEST(KeptBackupTest, core)
#include "kept_backup_test.moc"
