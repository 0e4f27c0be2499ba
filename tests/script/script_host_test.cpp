// The virtual machine as the host sets it up: stack, libraries, printing, calls into the script.
#include "script/script_host.h"

#include "job_events.h"

#include "test_class.h"
#include "worker/famicom_thread.h"

#include <QtTest>

#include <limits>
#include <memory>

namespace
{

// What the native "capture" was called with.
struct Captured {
    int calls = 0;
    bool rootIsThis = false;
    QList<void *> pointers;
    QList<qint64> integers;
};

Captured captured;

// Takes everything that a script hands on.
SQInteger capture(HSQUIRRELVM v)
{
    ++captured.calls;
    for (SQInteger index = 2; index <= sq_gettop(v); ++index) {
        SQUserPointer pointer = nullptr;
        SQInteger integer = 0;
        if (sq_gettype(v, index) == OT_USERPOINTER && sq_getuserpointer(v, index, &pointer) >= 0)
            captured.pointers.append(pointer);
        else if (sq_gettype(v, index) == OT_INTEGER && sq_getinteger(v, index, &integer) >= 0)
            captured.integers.append(integer);
    }
    return 0;
}

SQInteger captureThis(HSQUIRRELVM v)
{
    sq_pushroottable(v);
    captured.rootIsThis = sq_cmp(v) == 0; // the two topmost values: the argument and the root
    return 0;
}

} // namespace

class ScriptHostTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newMachineKeepsTheRootTableOnItsStack();
    void ownerIsTheForeignPointer();
    void machineWithoutOwnerPrintsNothing();
    void onlyTheInputOutputLibraryIsThere_data();
    void onlyTheInputOutputLibraryIsThere();
    void integersAre64BitsWide();

    void everyPrintIsOneLogLine_data();
    void everyPrintIsOneLogLine();
    void coroutinesPrintToTheSameLog();
    void longPrintIsCut_data();
    void longPrintIsCut();

    void nativeBecomesAGlobalFunction();
    void nativeGetsAnyArguments();

    void argumentsReachTheFunction_data();
    void argumentsReachTheFunction();
    void functionRunsInTheRootTable();
    void returnValueIsIgnored_data();
    void returnValueIsIgnored();
    void missingFunctionIsSilent();
    void failingFunctionIsReported();
    void callsLeaveTheStackAsItWas_data();
    void callsLeaveTheStackAsItWas();

private:
    // Runs `text` at top level. Returns: what the machine returned.
    SQRESULT execute(const QByteArray &text);
    QStringList logs() const { return logTexts(m_events); }

    std::unique_ptr<JobRecorder> m_recorder;
    std::unique_ptr<RunningJob> m_job;
    QStringList m_events;
    HSQUIRRELVM m_vm = nullptr;
};

void ScriptHostTest::init()
{
    captured = Captured();
    m_events.clear();
    m_recorder = std::make_unique<JobRecorder>(&m_events);
    m_job = std::make_unique<RunningJob>(CartridgeJob{}, *m_recorder);
    m_vm = createVm(m_job.get());
    registerNative(m_vm, "capture", capture);
    registerNative(m_vm, "capture_this", captureThis);
}

void ScriptHostTest::cleanup()
{
    sq_close(m_vm);
    m_job.reset();
}

SQRESULT ScriptHostTest::execute(const QByteArray &text)
{
    const SQInteger top = sq_gettop(m_vm);
    if (SQ_FAILED(sq_compilebuffer(m_vm, text.constData(), text.size(), "test", SQTrue)))
        return SQ_ERROR;
    sq_pushroottable(m_vm);
    const SQRESULT result = callWithinLimits(m_vm, 1);
    sq_settop(m_vm, top);
    return result;
}

void ScriptHostTest::newMachineKeepsTheRootTableOnItsStack()
{
    HSQUIRRELVM v = createVm(m_job.get());
    QCOMPARE(sq_gettop(v), SQInteger{1});
    QCOMPARE(sq_gettype(v, 1), OT_TABLE);
    sq_pushroottable(v);
    QCOMPARE(sq_cmp(v), SQInteger{0});
    sq_close(v);
}

void ScriptHostTest::ownerIsTheForeignPointer()
{
    QCOMPARE(sq_getforeignptr(m_vm), static_cast<SQUserPointer>(m_job.get()));
    QVERIFY(sq_getprintfunc(m_vm) != nullptr);
    QVERIFY(sq_getprintfunc(m_vm) == sq_geterrorfunc(m_vm));
}

void ScriptHostTest::machineWithoutOwnerPrintsNothing()
{
    sq_close(m_vm);
    m_vm = createVm(nullptr);
    QCOMPARE(sq_gettop(m_vm), SQInteger{1});
    QVERIFY(sq_getforeignptr(m_vm) == nullptr);
    QVERIFY(sq_getprintfunc(m_vm) != nullptr);
    QVERIFY(sq_getprintfunc(m_vm) == sq_geterrorfunc(m_vm));
    registerNative(m_vm, "capture", capture);
    QVERIFY(SQ_SUCCEEDED(execute("print(\"nobody\"); error(\"listens\"); capture(1);")));
    QVERIFY(SQ_FAILED(execute("throw \"unheard\";")));
    QVERIFY(SQ_FAILED(execute("1 = 2")));
    QCOMPARE(captured.calls, 1);
    QCOMPARE(m_events, QStringList());
}

void ScriptHostTest::onlyTheInputOutputLibraryIsThere_data()
{
    QTest::addColumn<bool>("isThere");
    for (const char *name : {"print", "error", "assert", "array", "type", "file", "dofile",
                             "loadfile", "writeclosuretofile", "stdin", "stdout", "stderr"})
        QTest::newRow(name) << true;
    // Blobs, mathematics, strings, system; and the natives, which come with an operation.
    for (const char *name :
         {"blob",       "castf2i",   "casti2f",   "swap2",        "swap4",    "swapfloat",
          "sqrt",       "sin",       "cos",       "abs",          "fabs",     "floor",
          "rand",       "srand",     "pow",       "PI",           "RAND_MAX", "format",
          "printf",     "regexp",    "strip",     "lstrip",       "split",    "escape",
          "startswith", "endswith",  "getenv",    "system",       "clock",    "time",
          "date",       "remove",    "rename",    "cpu_write",    "cpu_read", "ram_read",
          "ram_write",  "ram_erase", "rom_write", "rom_flash_cfg"})
        QTest::newRow(name) << false;
}

void ScriptHostTest::onlyTheInputOutputLibraryIsThere()
{
    QFETCH(bool, isThere);
    const QByteArray script =
        QByteArray("capture((\"") + QTest::currentDataTag() + "\" in getroottable()) ? 1 : 0);";
    QVERIFY(SQ_SUCCEEDED(execute(script)));
    QCOMPARE(captured.integers, QList<qint64>{isThere ? 1 : 0});
}

void ScriptHostTest::integersAre64BitsWide()
{
    QVERIFY(SQ_SUCCEEDED(execute("capture(1 << 40, -(1 << 40));")));
    QCOMPARE(captured.integers, (QList<qint64>{qint64{1} << 40, -(qint64{1} << 40)}));
}

void ScriptHostTest::everyPrintIsOneLogLine_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("plain") << QByteArray("print(\"a\")") << QStringList{"a"};
    QTest::newRow("empty") << QByteArray("print(\"\")") << QStringList{""};
    QTest::newRow("line end is kept") << QByteArray("print(\"a\\n\")") << QStringList{"a\n"};
    QTest::newRow("lines are not split")
        << QByteArray("print(\"a\\nb\\n\")") << QStringList{"a\nb\n"};
    QTest::newRow("number") << QByteArray("print(42)") << QStringList{"42"};
    QTest::newRow("two prints") << QByteArray("print(1); print(2)") << QStringList{"1", "2"};
    QTest::newRow("error function") << QByteArray("error(\"e\")") << QStringList{"e"};
    QTest::newRow("per cent signs")
        << QByteArray("print(\"100 %s %d %n\")") << QStringList{"100 %s %d %n"};
    QTest::newRow("UTF-8") << QByteArray("print(\"\xC3\xA4\xE6\x97\xA5\xF0\x9F\x8E\xAE\")")
                           << QStringList{QString::fromUtf8("\u00E4\u65E5\U0001F3AE")};
}

void ScriptHostTest::everyPrintIsOneLogLine()
{
    QFETCH(QByteArray, script);
    QFETCH(QStringList, lines);
    QVERIFY(SQ_SUCCEEDED(execute(script)));
    QCOMPARE(logs(), lines);
}

// A coroutine is a machine of its own, without the foreign pointer of the one that started it.
void ScriptHostTest::coroutinesPrintToTheSameLog()
{
    QVERIFY(execute("::newthread(@() print(\"from inside\")).call();") >= 0);
    QCOMPARE(logs(), QStringList({"from inside"}));
    m_events.clear();
    QVERIFY(execute("::newthread(function() { throw \"lost\"; }).call();") < 0);
    QVERIFY(logs().join(QString()).contains("[lost]"));
}

void ScriptHostTest::longPrintIsCut_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("line");
    const QByteArray digits = QByteArray("0123456789").repeated(200);
    QTest::newRow("1021") << digits.left(1021) << QString(digits.left(1021));
    QTest::newRow("1022") << digits.left(1022) << QString(digits.left(1022));
    QTest::newRow("1023") << digits.left(1023) << QString(digits.left(1022));
    QTest::newRow("2000") << digits << QString(digits.left(1022));
    // A character of two bytes that the limit cuts in half.
    QTest::newRow("within a character")
        << digits.left(1021) + "\xC3\xA4 end" << QString(digits.left(1021)) + QChar(0xFFFD);
}

void ScriptHostTest::longPrintIsCut()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, line);
    QVERIFY(SQ_SUCCEEDED(execute("print(\"" + text + "\")")));
    QCOMPARE(logs(), QStringList{line});
}

void ScriptHostTest::nativeBecomesAGlobalFunction()
{
    const SQInteger top = sq_gettop(m_vm);
    registerNative(m_vm, "another", capture);
    QCOMPARE(sq_gettop(m_vm), top);
    QVERIFY(SQ_SUCCEEDED(execute("another(7); ::another(8);")));
    QCOMPARE(captured.integers, (QList<qint64>{7, 8}));
}

void ScriptHostTest::nativeGetsAnyArguments()
{
    QVERIFY(SQ_SUCCEEDED(execute("capture(); capture(null); capture(1, \"two\", 3.0, [], {});")));
    QCOMPARE(captured.calls, 3);
}

void ScriptHostTest::argumentsReachTheFunction_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    QTest::newRow("sizes") << 0x800000 << 1;
    QTest::newRow("zero") << 0 << 0;
    QTest::newRow("negative keeps its sign") << -1 << -2;
    QTest::newRow("limits") << std::numeric_limits<int>::max() << std::numeric_limits<int>::min();
}

void ScriptHostTest::argumentsReachTheFunction()
{
    QFETCH(int, first);
    QFETCH(int, second);
    QVERIFY(SQ_SUCCEEDED(execute("function entry(dev, a, b) { capture(dev, a, b); }")));
    QVERIFY(callScriptFunction(m_vm, "entry", m_job.get(), 2, first, second) >= 0);
    QCOMPARE(captured.pointers, QList<void *>{m_job.get()});
    QCOMPARE(captured.integers, (QList<qint64>{first, second}));
}

void ScriptHostTest::functionRunsInTheRootTable()
{
    QVERIFY(SQ_SUCCEEDED(execute("function entry(dev) { capture_this(this); }")));
    QVERIFY(callScriptFunction(m_vm, "entry", m_job.get(), 0) >= 0);
    QVERIFY(captured.rootIsThis);
}

void ScriptHostTest::returnValueIsIgnored_data()
{
    QTest::addColumn<QByteArray>("value");
    for (const char *value : {"null", "false", "true", "-1", "0", "\"text\"", "{}"})
        QTest::newRow(value) << QByteArray(value);
}

void ScriptHostTest::returnValueIsIgnored()
{
    QFETCH(QByteArray, value);
    QVERIFY(SQ_SUCCEEDED(execute("function entry(dev) { return " + value + "; }")));
    const SQInteger top = sq_gettop(m_vm);
    QVERIFY(callScriptFunction(m_vm, "entry", m_job.get(), 0) >= 0);
    QCOMPARE(sq_gettop(m_vm), top);
    QCOMPARE(m_events, QStringList());
}

void ScriptHostTest::missingFunctionIsSilent()
{
    QCOMPARE(callScriptFunction(m_vm, "cpu_dump", m_job.get(), 2, 1, 2), SQRESULT{-1});
    QCOMPARE(m_events, QStringList());
}

void ScriptHostTest::failingFunctionIsReported()
{
    QVERIFY(SQ_SUCCEEDED(execute("function entry(dev, size)\n{\n    local rest = 5;\n"
                                 "    throw \"boom\";\n}")));
    QVERIFY(callScriptFunction(m_vm, "entry", m_job.get(), 1, 77) < 0);
    QCOMPARE(scriptErrors(logs()), QStringList{"boom"});
    QCOMPARE(logs().mid(1),
             (QStringList{"\nCALLSTACK\n", "*FUNCTION [entry()] test line [4]\n", "\nLOCALS\n",
                          "[rest] 5\n", "[size] 77\n", "[dev] USERPOINTER\n", "[this] TABLE\n"}));
}

void ScriptHostTest::callsLeaveTheStackAsItWas_data()
{
    QTest::addColumn<QByteArray>("function");
    QTest::newRow("returns") << QByteArray("function entry(dev, a, b, c) {}");
    QTest::newRow("throws") << QByteArray("function entry(dev, a, b, c) { throw 1; }");
    QTest::newRow("takes fewer arguments") << QByteArray("function entry(dev) {}");
    QTest::newRow("is missing") << QByteArray("function other() {}");
    QTest::newRow("is no function") << QByteArray("entry <- 5;");
}

void ScriptHostTest::callsLeaveTheStackAsItWas()
{
    QFETCH(QByteArray, function);
    QVERIFY(SQ_SUCCEEDED(execute(function)));
    const bool returns = QTest::currentDataTag() == QByteArray("returns");
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(callScriptFunction(m_vm, "entry", m_job.get(), 3, 1, 2, 3) >= 0, returns);
        QCOMPARE(sq_gettop(m_vm), SQInteger{1});
    }
}

GBDRIVER_TEST(ScriptHostTest, core)
#include "script_host_test.moc"
