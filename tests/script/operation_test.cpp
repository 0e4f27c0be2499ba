// One operation of the script host: which natives its script sees, what it logs and calls, and how
// it ends.
#include "script_bench.h"

#include "job_events.h"
#include "locale_codec.h"

#include "script/natives.h"
#include "script/script_host.h"
#include "test_class.h"
#include "translators.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QtTest>

#include <vector>

namespace
{

const QStringList kNatives = {"cpu_write", "cpu_read",  "ram_read",     "ram_write",
                              "ram_erase", "rom_write", "rom_flash_cfg"};

// Tells how each entry function was called.
constexpr char kTellingScript[] = R"(
function tell(name, dev, a, b) { print(name + " " + typeof dev + " " + a + " " + b); }
function cpu_dump(dev, a, b) { tell("cpu_dump", dev, a, b); }
function save_dump(dev, a, b) { tell("save_dump", dev, a, b); }
function save_write(dev, a, b) { tell("save_write", dev, a, b); }
function cpu_erase(dev, a, b) { tell("cpu_erase", dev, a, b); }
function cpu_flash(dev, a, b) { tell("cpu_flash", dev, a, b); }
)";

} // namespace

class OperationTest : public QObject
{
    Q_OBJECT

private slots:
    void scriptSeesTheNativesOfItsOperation_data();
    void scriptSeesTheNativesOfItsOperation();
    void unknownOperationRunsNothing_data();
    void unknownOperationRunsNothing();
    void operationLogsItsSequence_data();
    void operationLogsItsSequence();

    void unloadableScriptFails_data();
    void unloadableScriptFails();
    void missingScriptFails();
    void scriptNameThatCannotBeEncodedIsMissing();
    void missingEntryFunctionFails_data();
    void missingEntryFunctionFails();
    void failingEntryFunctionFails_data();
    void failingEntryFunctionFails();
    void eraseMayFail_data();
    void eraseMayFail();
    void suspendedScriptFails_data();
    void suspendedScriptFails();
    void suspendedCoroutineIsNoFailure();
    void nativeErrorFailsTheOperation();
    void unwrittenSaveEraseFailsTheOperation();
    void eraseThatTheReaderDidNotTakeIsNotWaitedFor();

    void eachOperationGetsAFreshMachine();
    void eraseAndFlashShareOneMachine();
    void cursorIsKeptBetweenEntryFunctions();
    void textsAreTranslatedAsTheHosts();
};

void OperationTest::scriptSeesTheNativesOfItsOperation_data()
{
    QTest::addColumn<int>("operate");
    for (int operate : {0, 1, 2, 3, 4, 6, 7})
        QTest::addRow("operation %d", operate) << operate;
}

// At top level already, not only within the entry functions.
void OperationTest::scriptSeesTheNativesOfItsOperation()
{
    QFETCH(int, operate);
    QStringList names;
    for (int i = 0; i < nativesOf(operate).count; ++i)
        names.append(nativesOf(operate).natives[i].name);
    ScriptBench bench;
    bench.setScript("foreach (name in [\"" + kNatives.join("\", \"").toLatin1() +
                    "\"]) if (name in getroottable()) print(name + \" \" + typeof "
                    "getroottable()[name]); throw \"seen\";");
    QVERIFY(!bench.run(operate));
    QStringList expected;
    for (const QString &name : kNatives) {
        if (names.contains(name))
            expected.append(name + " function");
    }
    QCOMPARE(bench.logs().mid(0, names.size()), expected);
    QCOMPARE(scriptErrors(bench.logs().mid(names.size(), 1)), QStringList{"seen"});
}

void OperationTest::unknownOperationRunsNothing_data()
{
    QTest::addColumn<int>("operate");
    for (int operate : {5, 8, 9, -1, -2, 1000})
        QTest::addRow("%d", operate) << operate;
}

void OperationTest::unknownOperationRunsNothing()
{
    QFETCH(int, operate);
    ScriptBench bench;
    bench.setScript("print(\"the script ran\");");
    QVERIFY(!bench.run(operate));
    QCOMPARE(bench.events(), QStringList{"log Unknow operate!"});
}

void OperationTest::operationLogsItsSequence_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<int>("saveType");
    QTest::addColumn<QStringList>("lines");
    const auto dumpLines = [](const QString &what, const QString &call) {
        return QStringList{"Start dump " + what + "...", call, "Dump " + what + " finish."};
    };
    const QString romDump = "cpu_dump userdata 32768 32768";
    const QString saveDump = "save_dump userdata 8192 8192";
    const QStringList saveWrite = {"Start write save...", "save_write userdata 8192 8192",
                                   "Write save finish."};
    const QStringList erase = {"Start erase flash chip...", "Erase flash chip finish."};
    QTest::newRow("GB ROM dump") << 0 << 0 << dumpLines("rom", romDump);
    QTest::newRow("GB flash write")
        << 1 << 0 << QStringList{"Start erase flash chip...",      "cpu_erase userdata 32768 1",
                                 "Erase flash chip finish.",       "Start flash ROM...",
                                 "cpu_flash userdata 32768 32768", "Flash ROM finish."};
    QTest::newRow("GB save dump") << 2 << 0 << dumpLines("save", saveDump);
    QTest::newRow("GB save write") << 3 << 0 << saveWrite;
    QTest::newRow("GB save write, FLASH kept from a GBA job") << 3 << 1 << saveWrite;
    QTest::newRow("GBA ROM dump") << 4 << 1 << dumpLines("rom", romDump);
    QTest::newRow("GBA save dump") << 6 << 1 << dumpLines("save", saveDump);
    QTest::newRow("GBA save write, SRAM") << 7 << 0 << saveWrite;
    QTest::newRow("GBA save write, FLASH") << 7 << 1 << erase + saveWrite;
    QTest::newRow("GBA save write, EEPROM") << 7 << 2 << saveWrite;
}

void OperationTest::operationLogsItsSequence()
{
    QFETCH(int, operate);
    QFETCH(int, saveType);
    QFETCH(QStringList, lines);
    ScriptBench bench;
    bench.drive.setContent(kDumpPath, QByteArray(1024, '\xFF'));
    bench.drive.setContent(kIdentityPath, QByteArray(1024, '\xFF'));
    bench.job.romSize = 0x8000;
    bench.job.ramSize = 0x2000;
    bench.job.flashWidth = 1;
    bench.job.saveType = saveType;
    bench.setScript(kTellingScript);
    QVERIFY(bench.run(operate));
    QCOMPARE(bench.logs(), lines);
    QCOMPARE(bench.events().filter(QRegularExpression("^(progress|error) ")), QStringList());
}

void OperationTest::unloadableScriptFails_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("compile error, line 3 column 5")
        << QByteArray("function cpu_dump(dev, a, b) {}\n\n   ) x;\n")
        << QStringList{"%1 line = (3) column = (5) : error expression expected\n",
                       "dump core script error\n"};
    QTest::newRow("error at top level")
        << QByteArray("function cpu_dump(dev, a, b) {}\n\nthrow \"early\";\n")
        << QStringList{"early",
                       "\nCALLSTACK\n",
                       "*FUNCTION [main()] %1 line [3]\n",
                       "\nLOCALS\n",
                       "[vargv] ARRAY\n",
                       "[this] TABLE\n",
                       "dump core script error\n"};
}

void OperationTest::unloadableScriptFails()
{
    QFETCH(QByteArray, script);
    QFETCH(QStringList, lines);
    ScriptBench bench;
    const QString path = bench.setScript(script);
    QVERIFY(!bench.run(0));
    QStringList logs = bench.logs();
    if (!scriptErrors(logs).isEmpty())
        logs[0] = scriptErrors(logs).first();
    QCOMPARE(logs, lines.replaceInStrings("%1", path));
}

void OperationTest::missingScriptFails()
{
    ScriptBench bench;
    bench.job.scriptPath = "no such folder/mapper.nut";
    QVERIFY(!bench.run(0));
    QCOMPARE(bench.events(), QStringList{"log dump core script error\n"});
    bench.job.scriptPath.clear();
    QVERIFY(!bench.run(0));
    QCOMPARE(bench.events(), QStringList{"log dump core script error\n"});
}

// The name must not turn into that of another file.
void OperationTest::scriptNameThatCannotBeEncodedIsMissing()
{
    QTemporaryDir folder;
    ScriptBench bench;
    const QString other = bench.setScript("print(\"wrong script\");");
    // Windows has no files of the first two names, so nothing can be mistaken for them there.
    int copies = 0;
    for (const char *name : {"??.nut", "\x1A\x1A.nut", "__.nut", ".nut"})
        copies += QFile::copy(other, folder.filePath(name)) ? 1 : 0;
    QVERIFY(copies >= 2);
    for (const char *encoding : localeCodecs()) {
        const LocaleCodec codec(encoding);
        bench.job.scriptPath = folder.filePath(unfitText(encoding) + ".nut");
        QVERIFY(!bench.run(0));
        QCOMPARE(bench.events(), QStringList{"log dump core script error\n"});
    }
}

void OperationTest::missingEntryFunctionFails_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QStringList>("lines");
    const QStringList rom = {"Start dump rom...", "Dump rom finish."};
    const QStringList save = {"Start dump save...", "Dump save finish."};
    const QStringList write = {"Start write save...", "Write save finish."};
    const QByteArray dumpOnly = "function cpu_dump(dev, a, b) {}";
    QTest::newRow("GB ROM dump") << 0 << QByteArray() << rom;
    QTest::newRow("GB save dump") << 2 << dumpOnly << save;
    QTest::newRow("GB save write") << 3 << dumpOnly << write;
    QTest::newRow("GBA ROM dump") << 4 << QByteArray("function save_dump(dev, a, b) {}") << rom;
    QTest::newRow("GBA save dump") << 6 << dumpOnly << save;
    QTest::newRow("GBA save write") << 7 << dumpOnly << write;
    QTest::newRow("GB flash write")
        << 1 << QByteArray("function cpu_erase(dev, a, b) {}")
        << QStringList{"Start erase flash chip...", "Erase flash chip finish.",
                       "Start flash ROM...", "Flash ROM finish."};
}

void OperationTest::missingEntryFunctionFails()
{
    QFETCH(int, operate);
    QFETCH(QByteArray, script);
    QFETCH(QStringList, lines);
    ScriptBench bench;
    bench.drive.setContent(kDumpPath, QByteArray(1024, '\xFF'));
    bench.setScript(script);
    QVERIFY(!bench.run(operate));
    QCOMPARE(bench.logs(), lines);
}

void OperationTest::failingEntryFunctionFails_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("finish");
    const QString rom = "Start dump rom...";
    const QString romEnd = "Dump rom finish.";
    const QString save = "Start dump save...";
    const QString saveEnd = "Dump save finish.";
    const QString write = "Start write save...";
    const QString writeEnd = "Write save finish.";
    QTest::newRow("GB ROM dump") << 0 << "cpu_dump" << rom << romEnd;
    QTest::newRow("GB save dump") << 2 << "save_dump" << save << saveEnd;
    QTest::newRow("GB save write") << 3 << "save_write" << write << writeEnd;
    QTest::newRow("GBA ROM dump") << 4 << "cpu_dump" << rom << romEnd;
    QTest::newRow("GBA save dump") << 6 << "save_dump" << save << saveEnd;
    QTest::newRow("GBA save write") << 7 << "save_write" << write << writeEnd;
}

// The finish line comes all the same; the result alone tells.
void OperationTest::failingEntryFunctionFails()
{
    QFETCH(int, operate);
    QFETCH(QString, entry);
    QFETCH(QString, start);
    QFETCH(QString, finish);
    ScriptBench bench;
    bench.job.romSize = 7;
    bench.job.ramSize = 7;
    const QString path = bench.setScript("function " + entry.toLatin1() +
                                         "(dev, size, max)\n{\n    throw \"broken\";\n}\n");
    QVERIFY(!bench.run(operate));
    const QStringList logs = bench.logs();
    QCOMPARE(logs.first(), start);
    QCOMPARE(scriptErrors(logs.mid(1, 1)), QStringList{"broken"});
    QCOMPARE(logs.mid(2),
             (QStringList{"\nCALLSTACK\n", "*FUNCTION [" + entry + "()] " + path + " line [3]\n",
                          "\nLOCALS\n", "[max] 7\n", "[size] 7\n", "[dev] USERPOINTER\n",
                          "[this] TABLE\n", finish}));
}

void OperationTest::eraseMayFail_data()
{
    QTest::addColumn<QByteArray>("erase");
    QTest::addColumn<QStringList>("errors");
    QTest::newRow("missing") << QByteArray() << QStringList();
    QTest::newRow("throws") << QByteArray("function cpu_erase(dev, a, b) { throw \"no erase\"; }")
                            << QStringList{"no erase"};
}

// The poll decides whether the chip is erased, not the script.
void OperationTest::eraseMayFail()
{
    QFETCH(QByteArray, erase);
    QFETCH(QStringList, errors);
    ScriptBench bench;
    bench.drive.setContent(kDumpPath, QByteArray(1024, '\xFF'));
    bench.setScript(erase + "\nfunction cpu_flash(dev, a, b) { print(\"flashing\"); }");
    QVERIFY(bench.run(1));
    QCOMPARE(scriptErrors(bench.logs()), errors);
    const QStringList logs = bench.logs();
    QCOMPARE(logs.first(), QString("Start erase flash chip..."));
    QCOMPARE(logs.mid(logs.size() - 4),
             (QStringList{"Erase flash chip finish.", "Start flash ROM...", "flashing",
                          "Flash ROM finish."}));
}

void OperationTest::suspendedScriptFails_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QStringList>("lines"); // %1 is what the host says
    QTest::newRow("GB ROM dump") << 0 << "cpu_dump"
                                 << QStringList{"Start dump rom...", "%1", "Dump rom finish."};
    QTest::newRow("GB save dump") << 2 << "save_dump"
                                  << QStringList{"Start dump save...", "%1", "Dump save finish."};
    QTest::newRow("GB save write")
        << 3 << "save_write" << QStringList{"Start write save...", "%1", "Write save finish."};
    QTest::newRow("GBA ROM dump") << 4 << "cpu_dump"
                                  << QStringList{"Start dump rom...", "%1", "Dump rom finish."};
    QTest::newRow("GBA save dump")
        << 6 << "save_dump" << QStringList{"Start dump save...", "%1", "Dump save finish."};
    QTest::newRow("GBA save write")
        << 7 << "save_write" << QStringList{"Start write save...", "%1", "Write save finish."};
    QTest::newRow("GB flash write, erase")
        << 1 << "cpu_erase" << QStringList{"Start erase flash chip...", "%1"};
    QTest::newRow("GB flash write, flash")
        << 1 << "cpu_flash"
        << QStringList{"Start erase flash chip...", "Erase flash chip finish.",
                       "Start flash ROM...", "%1", "Flash ROM finish."};
    QTest::newRow("top level") << 0 << "the script"
                               << QStringList{"%1", "dump core script error\n"};
}

// To the library it has succeeded, but what it was to do has not been done. The state of the
// cartridge plays no part: it is no refusal, even before anything was sent.
void OperationTest::suspendedScriptFails()
{
    QFETCH(int, operate);
    QFETCH(QString, entry);
    QFETCH(QStringList, lines);
    ScriptBench bench;
    bench.drive.setContent(kDumpPath, QByteArray(1024, '\xFF'));
    const QByteArray suspended =
        "function " + entry.toLatin1() + "(dev, a, b) { suspend(1); print(\"woken up\"); }";
    const QByteArray erase = "function cpu_erase(dev, a, b) {}\n";
    bench.setScript(entry.contains(' ')
                        ? QByteArray("suspend();")
                        : (entry == "cpu_erase" ? QByteArray() : erase) + suspended);
    QVERIFY(!bench.run(operate));
    QCOMPARE(bench.end, JobEnd::ScriptError);
    QCOMPARE(bench.scriptError, entry + " suspended itself");
    QCOMPARE(bench.logs(), lines.replaceInStrings("%1", bench.scriptError));
}

void OperationTest::suspendedCoroutineIsNoFailure()
{
    ScriptBench bench;
    bench.setScript("function cpu_dump(dev, a, b) { local part = newthread(function() {\n"
                    "suspend(1); print(\"never\"); }); part.call(); }");
    QVERIFY(bench.run(0));
    QCOMPARE(bench.scriptError, QString());
}

void OperationTest::nativeErrorFailsTheOperation()
{
    ScriptBench bench;
    bench.drive.failNext(DriveCall::OpenWrite);
    bench.setScript("function cpu_dump(dev, a, b) { cpu_write(dev, 0x2000, 1); print(\"on\"); }");
    QVERIFY(!bench.run(0));
    QCOMPARE(bench.end, JobEnd::ScriptFailed);
    QCOMPARE(bench.scriptError, QString("cpu_write: the reader did not take the command"));
    QCOMPARE(scriptErrors(bench.logs()), QStringList{bench.scriptError});
    QVERIFY(!bench.logs().contains("on"));
}

// An old save may begin with the byte of an erased one.
void OperationTest::unwrittenSaveEraseFailsTheOperation()
{
    for (const DriveCall call : {DriveCall::OpenWrite, DriveCall::Write}) {
        ScriptBench bench;
        bench.drive.setContent(kIdentityPath, QByteArray(1024, '\xFF'));
        bench.job.saveType = 1;
        bench.setScript(kTellingScript);
        bench.drive.failNext(call);
        QVERIFY(!bench.run(GBA_WRITE_RAM));
        QCOMPARE(bench.end, JobEnd::ScriptFailed);
        QCOMPARE(bench.logs(), (QStringList{"Start erase flash chip...", bench.scriptError}));
        QCOMPARE(bench.scriptError,
                 QString("the reader did not take the command that erases the save"));
        QCOMPARE(bench.drive.reads.size(), 0);
    }
}

// Unlike any other error of cpu_erase: there the poll decides.
void OperationTest::eraseThatTheReaderDidNotTakeIsNotWaitedFor()
{
    ScriptBench bench;
    bench.drive.setContent(kDumpPath, QByteArray(1024, '\xFF'));
    bench.setScript("function cpu_erase(dev, a, b) { cpu_write(dev, 0x555, 0x10); }\n"
                    "function cpu_flash(dev, a, b) { print(\"flashing\"); }");
    bench.drive.failNext(DriveCall::Write);
    QVERIFY(!bench.run(GB_WRITE_FLASH));
    QCOMPARE(bench.end, JobEnd::ScriptFailed);
    QCOMPARE(bench.scriptError, QString("cpu_write: the reader did not take the command"));
    QCOMPARE(bench.drive.reads.size(), 0);
    // What the script has dealt with is for the poll again.
    bench.setScript("function cpu_erase(dev, a, b) { try { cpu_write(dev, 0x555, 0x10); } catch "
                    "(error) { cpu_write(dev, 0x555, 0x10); } }\n"
                    "function cpu_flash(dev, a, b) { print(\"flashing\"); }");
    bench.drive.failNext(DriveCall::Write);
    QVERIFY(bench.run(GB_WRITE_FLASH));
    QVERIFY(bench.logs().contains("flashing"));
}

void OperationTest::eachOperationGetsAFreshMachine()
{
    ScriptBench bench;
    bench.setScript("print(\"left_over\" in getroottable());\n"
                    "function cpu_dump(dev, a, b) { ::left_over <- 1; }\n"
                    "function save_dump(dev, a, b) {}\n");
    const QStringList rom = {"false", "Start dump rom...", "Dump rom finish."};
    QVERIFY(bench.run(0));
    QCOMPARE(bench.logs(), rom);
    QVERIFY(bench.run(0));
    QCOMPARE(bench.logs(), rom);
    // Neither does a function of the former script survive.
    bench.setScript("print(\"other\");");
    QVERIFY(!bench.run(2));
    QCOMPARE(bench.logs(), (QStringList{"other", "Start dump save...", "Dump save finish."}));
}

void OperationTest::eraseAndFlashShareOneMachine()
{
    ScriptBench bench;
    bench.drive.setContent(kDumpPath, QByteArray(1024, '\xFF'));
    bench.job.flashWidth = 1;
    bench.setScript("width <- null;\n"
                    "function cpu_erase(dev, size, flash_width) { width = flash_width; }\n"
                    "function cpu_flash(dev, a, b) { print(\"width \" + width); }\n");
    QVERIFY(bench.run(1));
    QVERIFY(bench.logs().contains("width 1"));
}

void OperationTest::cursorIsKeptBetweenEntryFunctions()
{
    ScriptBench bench;
    bench.drive.setContent(kDumpPath, QByteArray(1024, '\xFF'));
    std::vector<unsigned char> buffer(32, 0);
    bench.data = buffer.data();
    bench.job.romSize = 24;
    bench.setScript("function cpu_erase(dev, a, b) { rom_write(dev, 0, 16); }\n"
                    "function cpu_flash(dev, a, b) { rom_write(dev, 0, 8); }\n");
    QVERIFY(bench.run(1));
    QCOMPARE(bench.events().filter("progress"), (QStringList{"progress 16/24", "progress 24/24"}));
}

void OperationTest::textsAreTranslatedAsTheHosts()
{
    MarkingTranslator translator;
    QCoreApplication::installTranslator(&translator);
    ScriptBench bench;
    bench.drive.setContent(kIdentityPath, QByteArray(1024, '\xFF'));
    bench.job.saveType = 1;
    bench.setScript("function save_write(dev, a, b) { print(\"its own words\"); }");
    QVERIFY(bench.run(7));
    const QStringList written = bench.logs();
    bench.job.scriptPath.clear();
    bench.run(0);
    const QStringList missing = bench.logs();
    bench.run(5);
    const QStringList unknown = bench.logs();
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(written,
             (QStringList{"[QObject]Start erase flash chip...", "[QObject]Erase flash chip finish.",
                          "[QObject]Start write save...", "its own words",
                          "[QObject]Write save finish."}));
    QCOMPARE(missing, QStringList{"[QObject]dump core script error\n"});
    QCOMPARE(unknown, QStringList{"[QObject]Unknow operate!"});
}

GBDRIVER_TEST(OperationTest, core)
#include "operation_test.moc"
