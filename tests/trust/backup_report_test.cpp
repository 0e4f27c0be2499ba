// The report beside a backup: what it says of each memory, and each of its lines.
#include "trust/backup_report.h"

#include "cart/setting_tables.h"
#include "files.h"
#include "test_class.h"

#include <QtTest>

Q_DECLARE_METATYPE(BackedUpMemory)

namespace
{

// Test vectors of the hashes are those of "abc".
constexpr char kAbcLines[] = "Bytes           3\n"
                             "CRC-32          352441c2\n"
                             "MD5             900150983cd24fb0d6963f7d28e17f72\n"
                             "SHA-1           a9993e364706816aba3e25717850c26c9cd0d89d\n"
                             "SHA-256         ba7816bf8f01cfea414140de5dae2223b00361a396177a9c"
                             "b410ff61f20015ad\n";

Outcome failedJob(JobEnd end, const QString &scriptError = {})
{
    Outcome outcome;
    outcome.trouble = Trouble::JobFailed;
    outcome.job.end = end;
    outcome.job.scriptError = scriptError;
    return outcome;
}

Outcome noFile()
{
    Outcome outcome;
    outcome.trouble = Trouble::NoFile;
    outcome.file = {FileFault::NoFolder, "a/b.gb", {}};
    return outcome;
}

BackedUpMemory ended(MemoryEnd end, const Outcome &outcome = {})
{
    BackedUpMemory memory;
    memory.end = end;
    memory.outcome = outcome;
    return memory;
}

// "abc" in a file.
BackedUpMemory keptMemory(const QString &path)
{
    BackedUpMemory memory = ended(MemoryEnd::Kept);
    memory.bytes = "abc";
    memory.sha1 = QByteArray::fromHex("a9993e364706816aba3e25717850c26c9cd0d89d");
    memory.path = path;
    memory.verdict.kind = VerdictKind::Verified;
    memory.verdict.title = "A Game";
    memory.verdict.source = "my table";
    memory.reads = 2;
    memory.milliseconds = 34;
    return memory;
}

} // namespace

class BackupReportTest : public QObject
{
    Q_OBJECT

private slots:
    void everyEndHasItsLine_data()
    {
        QTest::addColumn<BackedUpMemory>("memory");
        QTest::addColumn<QString>("line");
        BackedUpMemory kept = keptMemory("a.gb");
        QTest::newRow("kept") << kept << "verified: A Game (my table)";
        kept.isThere = true;
        QTest::newRow("there already") << kept << "verified: A Game (my table); already there";
        BackedUpMemory dangerous = ended(MemoryEnd::Dangerous);
        dangerous.danger = Danger::Mbc6Save;
        QTest::newRow("dangerous") << dangerous
                                   << "not read: The save of an MBC6 cannot be read or written: no "
                                      "script knows this mapper.";
        QTest::newRow("none") << ended(MemoryEnd::NoMemory) << "none";
        QTest::newRow("not known")
            << ended(MemoryEnd::NotKnown) << "not read: its size or kind is not known";
        QTest::newRow("unknown game")
            << ended(MemoryEnd::UnknownGame) << "not read: no table knows this game";
        QTest::newRow("swapped") << ended(MemoryEnd::Swapped)
                                 << "not read: the cartridge was changed meanwhile";
        QTest::newRow("not read") << ended(MemoryEnd::NotRead, failedJob(JobEnd::NoReader))
                                  << "not read: No reader was found.";
        QTest::newRow("refused") << ended(MemoryEnd::NotRead,
                                          failedJob(JobEnd::Refused, "MBC5: no such size."))
                                 << "not read: MBC5: no such size.";
        QTest::newRow("not read twice")
            << ended(MemoryEnd::NotReadTwice, failedJob(JobEnd::ScriptFailed))
            << "not read twice: The transfer failed.";
        QTest::newRow("not written")
            << ended(MemoryEnd::NotWritten, noFile())
            << "not written: Cannot write a/b.gb: the folder does not exist.";
    }
    void everyEndHasItsLine()
    {
        QFETCH(BackedUpMemory, memory);
        QTEST(memoryText(memory), "line");
    }

    void reportHasALineForAllThatIsKnown()
    {
        const UserFolder folder;
        BackupRecord record;
        record.program = "program 1";
        record.title = "A GAME";
        record.label = "READER";
        record.firmware = "FW";
        record.values = {kSystemGb, kMappers[kMapperMbc5Row].value, 65536, 8192, {}};
        record.scriptPath = folder.addFile("script.nut", "abc");
        record.begin = QDateTime({2026, 1, 2}, {3, 4, 5});
        record.end = QDateTime({2026, 1, 2}, {3, 4, 6});
        record.rom = keptMemory("folder/A Game.gb");
        record.save = ended(MemoryEnd::UnknownGame);
        record.save.advice = "; do this";
        QCOMPARE(reportText(record),
                 QString("Title           A GAME\n"
                         "Begin           2026-01-02T03:04:05\n"
                         "End             2026-01-02T03:04:06\n"
                         "Program         program 1\n"
                         "Reader          READER\n"
                         "Firmware        FW\n"
                         "Script          script.nut\n"
                         "Script SHA-1    a9993e364706816aba3e25717850c26c9cd0d89d\n"
                         "\nSettings\n"
                         "System          gb\n"
                         "Mapper          mbc5\n"
                         "ROM size        65536\n"
                         "Save size       8192\n"
                         "\nROM\n"
                         "Verdict         verified: A Game (my table)\n"
                         "File            A Game.gb\n"
                         "%1"
                         "Reads           2\n"
                         "First read      34 ms\n"
                         "\nSave\n"
                         "Verdict         not read: no table knows this game; do this\n")
                     .arg(kAbcLines));
    }

    // Bytes that lie in no file, and what the cartridge does not tell.
    void whatIsNotKnownHasNoLine()
    {
        BackupRecord record;
        record.begin = record.end = QDateTime({2026, 1, 2}, {3, 4, 5});
        record.scriptPath = "missing.nut";
        record.values.system = kSystemGba;
        record.values.saveType = kSaveSram;
        record.rom = keptMemory({});
        record.rom.end = MemoryEnd::NotWritten;
        record.rom.outcome = noFile();
        QCOMPARE(reportText(record),
                 QString("Begin           2026-01-02T03:04:05\n"
                         "End             2026-01-02T03:04:05\n"
                         "Script          missing.nut\n"
                         "\nSettings\n"
                         "System          gba\n"
                         "Save type       sram\n"
                         "\nROM\n"
                         "Verdict         not written: Cannot write a/b.gb: the folder does not "
                         "exist.\n"
                         "\nSave\n"
                         "Verdict         none\n"));
    }
};

GBDRIVER_TEST(BackupReportTest, none)
#include "backup_report_test.moc"
