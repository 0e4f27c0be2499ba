// Trials of scripts: each way in which one can end, what is counted, and the lines about it.
#include "trial/script_trial.h"

#include "files.h"
#include "script_folder.h"
#include "test_class.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

Q_DECLARE_METATYPE(ScriptTrial)
Q_DECLARE_METATYPE(TrialOutcome)

namespace
{

const QByteArray kFlash = "function cpu_flash(dev, size, _) { rom_write(dev, 0, size); }\n";

// 32 KiB of ROM behind no mapper, 8 KiB of RAM.
QList<ScriptTrial> tryPlain(const QByteArray &script, FileUse *files)
{
    ScriptFolder folder;
    folder.write("gb_mbc0.nut", script);
    return tryScript(folder.filePath("gb_mbc0.nut"), *findScriptKind("gb_mbc0.nut"), files);
}

QList<ScriptTrial> tryPlain(const QByteArray &script)
{
    FileUse files;
    return tryPlain(script, &files);
}

ScriptTrial made(TrialOutcome outcome, int moved, int expected, bool hasLeast)
{
    ScriptTrial trial;
    trial.operation = "cpu_dump";
    trial.outcome = outcome;
    trial.movedBytes = moved;
    trial.expectedBytes = expected;
    trial.used = {3, 4};
    trial.least = {1, 2};
    trial.hasLeast = hasLeast;
    trial.log = QStringList{"first line ", " ", "last line"};
    return trial;
}

} // namespace

class ScriptTrialTest : public QObject
{
    Q_OBJECT

private slots:
    void shippedScriptIsTriedInFull();
    void scriptsEndAsTheyDeserve_data();
    void scriptsEndAsTheyDeserve();
    void operationsOfTheScriptAreCounted();
    void bitsThatTheChipLacksAreNotCompared();
    void filesAreClosedUnlessAllowed_data();
    void filesAreClosedUnlessAllowed();
    void trialIsToldInLines_data();
    void trialIsToldInLines();
};

void ScriptTrialTest::shippedScriptIsTriedInFull()
{
    const ScriptKind &kind = *findScriptKind("gb_mbc5.nut");
    QStringList operations;
    FileUse files;
    for (const ScriptTrial &trial : tryScript(SHIPPED_SCRIPTS "/gb_mbc5.nut", kind, &files)) {
        operations << trial.operation;
        QCOMPARE(trial.outcome, TrialOutcome::Right);
        const bool isSave = trial.operation.startsWith("save");
        QCOMPARE(trial.expectedBytes, int(isSave ? kind.ramSize : kind.romSize));
        QCOMPARE(trial.movedBytes, trial.expectedBytes);
        QCOMPARE(trial.hasLeast, trial.operation != "cpu_erase and cpu_flash");
    }
    QCOMPARE(operations,
             (QStringList{"cpu_dump", "cpu_erase and cpu_flash", "save_dump", "save_write"}));
}

void ScriptTrialTest::scriptsEndAsTheyDeserve_data()
{
    QTest::addColumn<int>("operation"); // its place
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<TrialOutcome>("outcome");
    QTest::newRow("no such function") << 0 << QByteArray("x <- 1;") << TrialOutcome::NotDefined;
    QTest::newRow("half of a pair") << 1 << kFlash << TrialOutcome::NotDefined;
    QTest::newRow("does not compile") << 0 << QByteArray("function cpu_dump(") //
                                      << TrialOutcome::Refused;
    QTest::newRow("top level throws") << 0 << QByteArray("throw \"no\";") << TrialOutcome::Refused;
    QTest::newRow("throws at once")
        << 0 << QByteArray("function cpu_dump(d, s, _) { throw \"no\"; }") << TrialOutcome::Refused;
    QTest::newRow("throws after a write")
        << 0 << QByteArray("function cpu_dump(d, s, _) { cpu_write(d, 0, 0); throw \"no\"; }")
        << TrialOutcome::Failed;
    QTest::newRow("throws after a read")
        << 0 << QByteArray("function cpu_dump(d, s, _) { cpu_read(d, 0, 512); throw \"no\"; }")
        << TrialOutcome::Failed;
    QTest::newRow("wrong order") << 0
                                 << QByteArray(
                                        "function cpu_dump(d, s, _) {"
                                        "cpu_read(d, 0x4000, 0x4000); cpu_read(d, 0, 0x4000); }")
                                 << TrialOutcome::Wrong;
    QTest::newRow("too few") << 0
                             << QByteArray("function cpu_dump(d, s, _) { cpu_read(d, 0, 512); }")
                             << TrialOutcome::Wrong;
    QTest::newRow("right") << 0
                           << QByteArray("function cpu_dump(d, s, _) { cpu_read(d, 0, 0x8000); }")
                           << TrialOutcome::Right;
    // The save that was there is no noise, so a write that does nothing shows.
    QTest::newRow("save not written")
        << 3 << QByteArray("function save_write(d, s, _) {}") << TrialOutcome::Wrong;
    QTest::newRow("erase that was not begun")
        << 1 << "function cpu_erase(d, s, w) { cpu_write(d, 0, 0xF0); }\n" + kFlash
        << TrialOutcome::Failed;
}

void ScriptTrialTest::scriptsEndAsTheyDeserve()
{
    QFETCH(int, operation);
    QFETCH(QByteArray, script);
    const QList<ScriptTrial> trials = tryPlain(script);
    QCOMPARE(trials.size(), 4);
    QTEST(trials[operation].outcome, "outcome");
}

void ScriptTrialTest::operationsOfTheScriptAreCounted()
{
    const ScriptTrial trial = tryPlain("function cpu_dump(d, s, _) {\n"
                                       "cpu_write(d, 0x6000, 0); cpu_write(d, 0x6000, 0);\n"
                                       "cpu_read(d, 0, 0x4000); cpu_read(d, 0x4000, 0x2000);\n"
                                       "cpu_read(d, 0x6000, 0x2000); }\n")[0];
    QCOMPARE(trial.outcome, TrialOutcome::Right);
    QCOMPARE(trial.used.commandFiles, qint64{2});
    QCOMPARE(trial.used.reads, qint64{3});
    QCOMPARE(trial.least.commandFiles, qint64{0});
    QCOMPARE(trial.least.reads, qint64{1});
}

void ScriptTrialTest::bitsThatTheChipLacksAreNotCompared()
{
    ScriptKind kind = *findScriptKind("gb_mbc2.nut");
    for (const char bits : {kind.saveBits, '\xFF'}) {
        kind.saveBits = bits;
        FileUse files;
        const QList<ScriptTrial> trials = tryScript(SHIPPED_SCRIPTS "/gb_mbc2.nut", kind, &files);
        QCOMPARE(trials.last().operation, QString("save_write"));
        QCOMPARE(trials.last().outcome, bits == '\xFF' ? TrialOutcome::Wrong : TrialOutcome::Right);
        QCOMPARE(trials.first().outcome, TrialOutcome::Right);
    }
}

// Ways to get at a file: PATH is one that exists, OTHER one that does not.
void ScriptTrialTest::filesAreClosedUnlessAllowed_data()
{
    QTest::addColumn<QByteArray>("use");
    QTest::newRow("reading") << QByteArray("file(\"PATH\", \"rb\");");
    QTest::newRow("cutting") << QByteArray("file(\"PATH\", \"wb\");");
    QTest::newRow("making") << QByteArray("file(\"OTHER\", \"wb\").writen(1, 'i');");
    QTest::newRow("class of a stream")
        << QByteArray("stdin.getclass()(\"OTHER\", \"wb\").writen(1, 'i');");
    QTest::newRow("class that extends")
        << QByteArray("class F extends file { constructor() { base.constructor(\"OTHER\", \"wb\"); "
                      "} }\nF();");
    QTest::newRow("second constructor") << QByteArray("stdin.constructor(\"OTHER\", \"wb\");");
    QTest::newRow("compiled function")
        << QByteArray("writeclosuretofile(\"OTHER\", function() { return 1; });");
    QTest::newRow("caught") << QByteArray("try { file(\"PATH\", \"wb\"); } catch (e) {}");
    QTest::newRow("in a coroutine")
        << QByteArray("newthread(function() { file(\"PATH\", \"wb\"); }).call();");
}

void ScriptTrialTest::filesAreClosedUnlessAllowed()
{
    QFETCH(QByteArray, use);
    const QTemporaryDir folder;
    const QString path = folder.filePath("path");
    putFile(path, "of the user");
    use.replace("PATH", path.toUtf8()).replace("OTHER", folder.filePath("other").toUtf8());
    for (const bool isTopLevel : {true, false}) {
        const QByteArray script = isTopLevel ? use + "\nfunction cpu_dump(dev, size, _) {}\n"
                                             : "function cpu_dump(dev, size, _) { " + use + "\n}\n";
        FileUse files;
        tryPlain(script, &files);
        QVERIFY(files.wasRefused);
        QCOMPARE(contentOf(path), QByteArray("of the user"));
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList("path"));
    }
    FileUse files;
    files.isAllowed = true;
    tryPlain(use + "\nfunction cpu_dump(dev, size, _) {}\n", &files);
    QVERIFY(!files.wasRefused);
}

void ScriptTrialTest::trialIsToldInLines_data()
{
    QTest::addColumn<ScriptTrial>("trial");
    QTest::addColumn<QStringList>("lines");
    using Outcome = TrialOutcome;
    const QStringList log = {"  | first line", "  | last line"};
    QTest::newRow("not defined") << made(Outcome::NotDefined, 0, 8, true)
                                 << QStringList{"cpu_dump: not defined"};
    QTest::newRow("right") << made(Outcome::Right, 8, 8, true)
                           << QStringList{"cpu_dump: right", "  8 of 8 bytes moved",
                                          "  3 command files, 4 reads; the least are 1 and 2"};
    QTest::newRow("flashed") << made(Outcome::Right, 8, 8, false)
                             << QStringList{"cpu_dump: right", "  8 of 8 bytes moved",
                                            "  3 command files, 4 reads"};
    QTest::newRow("never run") << made(Outcome::Refused, 0, 0, false)
                               << QStringList{"cpu_dump: refused, nothing was sent:"} + log;
    QTest::newRow("too few") << made(Outcome::Wrong, 5, 8, false)
                             << QStringList{"cpu_dump: WRONG: the bytes are not where they belong",
                                            "  5 of 8 bytes moved, 3 bytes too few",
                                            "  3 command files, 4 reads"} +
                                    log;
    QTest::newRow("too many") << made(Outcome::Failed, 9, 8, false)
                              << QStringList{"cpu_dump: FAILED on the way:",
                                             "  9 of 8 bytes moved, 1 bytes too many",
                                             "  3 command files, 4 reads"} +
                                     log;
}

void ScriptTrialTest::trialIsToldInLines()
{
    QFETCH(ScriptTrial, trial);
    QTEST(trialLines(trial), "lines");
}

GBDRIVER_TEST(ScriptTrialTest, core)
#include "script_trial_test.moc"
