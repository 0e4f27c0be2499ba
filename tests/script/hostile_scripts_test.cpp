// Scripts that crashed the library or filled the memory: each ends its job, says why and where, and
// leaves the program as it was.
#include "script_bench.h"

#include "device/device_ops.h"
#include "script/script_host.h"
#include "script/script_limits.h"
#include "test_class.h"

#include <QDir>
#include <QtTest>

#include <memory>

namespace
{

// A list of `count` things, each of which holds the one before: what ends with it is followed to
// its end on the stack.
QByteArray chain(const QByteArray &link)
{
    return "local last = null; for (local i = 0; i < 1000000; i++) { local before = last; " + link +
           " }";
}

} // namespace

class HostileScriptsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_bench = std::make_unique<ScriptBench>(); }
    void cleanup() { m_bench.reset(); }

    void unreadableTextIsRefused_data();
    void unreadableTextIsRefused();
    void wrongScriptsEnd_data();
    void wrongScriptsEnd();
    void deepDataGo_data();
    void deepDataGo();
    void harmlessScriptsRun_data();
    void harmlessScriptsRun();
    void printedLinesAreBounded();
    void placeIsWhereTheErrorWasRaised();
    void linesAreThoseOfTheText_data();
    void linesAreThoseOfTheText();
    void manyGivenUpMachinesLeaveNothing();
    void shippedScriptsNeedFarLess_data();
    void shippedScriptsNeedFarLess();

private:
    std::unique_ptr<ScriptBench> m_bench;
};

void HostileScriptsTest::unreadableTextIsRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");
    const QString utf16 = "the script is saved as UTF-16; save it as UTF-8";
    QTest::newRow("UTF-16, little end first") << QByteArray("\xFF\xFE"
                                                            "f\0u\0n\0",
                                                            8)
                                              << utf16;
    QTest::newRow("UTF-16, big end first") << QByteArray("\xFE\xFF\0f\0u\0n", 8) << utf16;
    QTest::newRow("UTF-16 without a mark")
        << QByteArray("f\0u\0n\0", 6)
        << "the script is no text, or is saved as UTF-16; save it as UTF-8";
    QTest::newRow("compiled") << QByteArray("\xFA\xFARIQS\x01\0\0\0", 10)
                              << "the script is compiled, and nothing could stop it from doing "
                                 "harm; only its text can be run";
    QTest::newRow("too large") << QByteArray(kLongestScript + 1, ' ')
                               << "the file is too large for a script";
    QTest::newRow("not a byte more") << QByteArray("\xEF\xBB") << "expression expected";
}

// The script of the job, and one that a script loads.
void HostileScriptsTest::unreadableTextIsRefused()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, error);
    const QString path = m_bench->setScript(text);
    QVERIFY(!m_bench->run(GB_READ_ROM));
    QCOMPARE(m_bench->end, JobEnd::ScriptError);
    QVERIFY2(m_bench->scriptError.endsWith(" : error " + error), qPrintable(m_bench->scriptError));
    QVERIFY(m_bench->scriptError.startsWith(path));
    QCOMPARE(m_bench->logs(),
             (QStringList{m_bench->scriptError + "\n", "dump core script error\n"}));

    UserFolder folder;
    const QByteArray other = folder.addFile("other.nut", text).toLocal8Bit();
    for (const char *load : {"dofile", "loadfile"}) {
        m_bench->runDump(QByteArray(load) + "(@\"" + other + "\");");
        QCOMPARE(m_bench->end, JobEnd::ScriptError);
        QVERIFY2(m_bench->scriptError.contains(error), qPrintable(m_bench->scriptError));
    }
}

void HostileScriptsTest::wrongScriptsEnd_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("error");
    const QString memory = "the script needs more than 8 MiB of memory";
    const QString depth = "the script is nested too deeply";
    const QString size = "an array cannot have this size";
    const auto add = [](const char *name, const QByteArray &body, const QString &error) {
        QTest::newRow(name) << body << error;
    };
    for (const char *wrong :
         {"-1", "0x7fffffff", "0x1000000000000000", "0x8000000000000000", "-1.5", "1e30"}) {
        QTest::addRow("array of %s", wrong) << QByteArray("array(") + wrong + ");" << size;
        QTest::addRow("filled array of %s", wrong)
            << QByteArray("array(") + wrong + ", 5);" << size;
        QTest::addRow("resize to %s", wrong) << QByteArray("[1].resize(") + wrong + ");" << size;
        QTest::addRow("filling resize to %s", wrong)
            << QByteArray("[1].resize(") + wrong + ", 5);" << size;
    }
    add("array that does not fit", "array(520000);", memory);
    add("texts without end", "local t = \"x\"; while (true) t += t;", memory);
    add("arrays without end", "local a = []; while (true) a.push([]);", memory);
    add("out of memory, caught",
        "while (true) try { local t = \"x\"; while (true) t += t; } catch (e) {}", memory);
    add("tables without end", "local t = {}; for (local i = 0;; i++) t[i] <- {};", memory);
    add("recursion", "local f; f = function() { f(); return 1; }; f();", memory);
    add("closures without end", "local f = null; while (true) { local g = f; f = @() g; }", memory);
    add("coroutines in coroutines",
        "local f; f = function() { newthread(f).call(); }; newthread(f).call();", memory);
    add("metamethod that asks itself",
        "local d = { _get = function(key) { return this[key]; } }; local t = {}; "
        "t.setdelegate(d); t.setdelegate(d); return t.nothing;",
        "Native stack overflow");
    add("comparison that compares",
        "local d; d = { _cmp = function(other) { return this <=> other; } };"
        " local a = {}; a.setdelegate(d); local b = {}; b.setdelegate(d); return a <=> b;",
        "Native stack overflow");
    add("sort that compares with sort", "local f; f = @(x, y) [2, 1].sort(f); [2, 1].sort(f);",
        "Native stack overflow");
    add("coroutine of a native", "newthread(cpu_read);",
        "a coroutine needs a function of the script");
    add("coroutine of print", "newthread(print);", "a coroutine needs a function of the script");
    add("coroutine in itself", "local t; t = newthread(function() { t.call(); }); t.call();",
        "the coroutine runs already");
    add("generator in itself",
        "local g; local f = function() { resume g; yield 1; }; g = f(); resume g;",
        "resuming active generator");
    add("suspend in a comparison", "[2, 1].sort(function(x, y) { suspend(); return 0; });",
        "cannot suspend through native calls/metamethods");
    add("level below 0", "return getstackinfos(-1).src;", "the index 'src' does not exist");
    add("level of a coroutine below 0", "return newthread(@() 1).getstackinfos(-3).src;",
        "the index 'src' does not exist");
    add("array that is gone while sorted",
        "local a = [3, 2, 1]; a.sort(function(x, y) { a.clear(); return 1; });",
        "the array was changed while it was sorted");
    add("too many arguments", "print.acall(array(100000));", "too many arguments");
    add("no root table", "setroottable(null);",
        "parameter 1 has an invalid type 'null' ; expected: 'table'");
    add("pointer as a file", "file(dev, \"r\");",
        "parameter 1 has an invalid type 'userdata' ; expected: 'string'");
    add("pointer as a file, by the class", "stdout.getclass()(dev, null);",
        "parameter 1 has an invalid type 'userdata' ; expected: 'string'");
    for (const char *wrong : {"null", "5", "0", "\"dev\"", "{}", "[]", "true", "1.5", "this"})
        QTest::addRow("%s in the place of dev", wrong)
            << QByteArray("cpu_read(") + wrong + ", 0, 16);"
            << "1st argument must be d (userpointer)";
    add("index", "return nothing;", "the index 'nothing' does not exist");
    add("compiled text with brackets", "compilestring(\"" + QByteArray(200000, '(') + "\");",
        depth);
}

void HostileScriptsTest::wrongScriptsEnd()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, error);
    m_bench->runDump(body);
    QCOMPARE(m_bench->scriptError, error);
    QCOMPARE(m_bench->end, JobEnd::ScriptError);
    QCOMPARE(m_bench->scriptPlace, QString("mapper.nut, line 3"));
    QCOMPARE(m_bench->logs().first(), QString("Start dump rom..."));
    QCOMPARE(m_bench->logs().last(), QString("Dump rom finish."));
    QVERIFY(m_bench->logs().join(QString()).contains(error));
    // What was given up touches nothing that comes after it.
    m_bench->runDump("print(\"next\");");
    QCOMPARE(m_bench->end, JobEnd::Done);
}

void HostileScriptsTest::deepDataGo_data()
{
    QTest::addColumn<QByteArray>("body");
    const auto add = [](const char *name, const QByteArray &link) {
        QTest::newRow(name) << chain(link);
    };
    add("arrays", "last = [before];");
    add("arrays of one", "last = array(1, before);");
    add("tables", "last = { b = before };");
    add("delegates", "last = {}; if (before != null) last.setdelegate(before);");
    add("closures", "last = @() before;");
    add("generators", "local g = function(x) { yield x; }; last = g(before);");
    add("coroutines",
        "local c = newthread(function(x) { suspend(x); }); c.call(before); last = c;");
    add("instances", "local c = class { b = null; }; last = c(); last.b = before;");
    add("classes", "last = class { b = before; };");
    add("attributes",
        "local c = class { </ a = 1 /> b = null; }; c.setattributes(\"b\", before); last = c;");
}

// As deep as the memory allows, and then let go in every way: all of it has to fit on the stack.
void HostileScriptsTest::deepDataGo()
{
    QFETCH(QByteArray, body);
    static int depth;
    depth = 0;
    deviceOps.gbWrite = [](const std::uint32_t *addresses, const std::uint32_t *, std::uint32_t) {
        depth = static_cast<int>(*addresses);
        return std::uint32_t{512};
    };
    m_bench->runDump(QByteArray(body).replace("i++)", "i++, i % 100 || cpu_write(dev, i, 0))"));
    QCOMPARE(m_bench->scriptError, QString("the script needs more than 8 MiB of memory"));
    QVERIFY2(depth > 3000, qPrintable(QString::number(depth)));
    // Some room for what follows.
    const QByteArray whole =
        QByteArray(body).replace("1000000", QByteArray::number(depth - depth / 50));
    m_bench->runDump(
        whole + " ::kept <- last; last = null; collectgarbage(); ::kept = null; print(\"gone\");");
    QCOMPARE(m_bench->scriptError, QString());
    QVERIFY(m_bench->logs().contains("gone"));
    // Looked through from one end to the other, and closed with the machine.
    m_bench->runDump(whole + " ::kept <- last; try { last.nothing; } catch (e) {}");
    QCOMPARE(m_bench->scriptError, QString());
}

void HostileScriptsTest::harmlessScriptsRun_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QStringList>("lines");
    const auto add = [](const char *name, const QByteArray &body, const QStringList &lines) {
        QTest::newRow(name) << body << lines;
    };
    add("array",
        "foreach (x in array(3)) print(x == null); foreach (x in array(2, 7)) print(x); "
        "print(array(0).len());",
        {"true", "true", "true", "7", "7", "0"});
    add("resize",
        "local a = [1]; a.resize(3, 5); foreach (x in a) print(x); a.resize(1); print(a.len());",
        {"1", "5", "5", "1"});
    add("sort",
        "local a = [3, 1, 2]; a.sort(); foreach (x in a) print(x); a.sort(@(x, y) y <=> x); "
        "foreach (x in a) print(x);",
        {"1", "2", "3", "3", "2", "1"});
    add("acall",
        "(@(a, b) print(this.c + a + b)).acall([{c = 1}, 2, 3]); print((@() 4).pacall([this]));",
        {"6", "4"});
    add("coroutine",
        "local t = newthread(function(x) { print(x); print(suspend(x + 1)); return 9; }); "
        "print(t.call(1)); print(t.getstatus()); print(t.wakeup(5)); print(t.getstatus());",
        {"1", "2", "suspended", "5", "9", "idle"});
    add("stack",
        "local i = getstackinfos(1); print(i.func); print(i.line); print(i.locals.a); "
        "print(getstackinfos(99) == null);",
        {"cpu_dump", "3", "0", "true"});
    add("compilestring",
        "print(compilestring(\"return 1 + 1\")()); "
        "try { compilestring(\"return )\", \"its name\"); } catch (e) print(e);",
        {"2", "its name line = (1) column = (8) : error expression expected"});
    add("debugging", "setdebughook(null); enabledebuginfo(false); print(\"on\");", {"on"});
    add("root table",
        "local set = setroottable; local r = set({}); print(getroottable() == r); "
        "set(r); print(getroottable() == r);",
        {"false", "true"});
    add("stdin", "print(stdin.eos() == null); try stdin.readn('b') catch (e) print(e);",
        {"false", "io error"});
    add("assignments",
        "local x = -1, t = { a = 1 + 2 b = 3, \"c\": 4, [\"d\"] = -5 }; local y = x = t.a = 7;\n"
        "t.n <- x - 1; t[\"a\"] += 2 * -x; t.b -= -1 - x; (x < 3 ? t : t).c = 8; x = y + 1\n"
        "y = x; local z = y < x ? x = 1 : y = 2; ::r <- !x\n::r = z\n"
        "foreach (v in [x, y, z, t.a, t.b, t.c, t.d, t.n, ::r]) print(v);",
        {"8", "2", "2", "-7", "11", "8", "-5", "6", "2"});
    add("counting",
        "local i = 0, t = { n = 1 }; local o = @() i++ + 1; i++\n++i; --t.n; t.n-- - i; i = -i++\n"
        "++i; t[\"n\"]++; if (i < 0) ++i; print(o()); print(i); print(t.n); print(-i++); "
        "print([i++ ++i, -1, -2].len());",
        {"1", "1", "0", "-1", "4"});
    add("functions",
        "local f = @(x, y = -1 + 2) x + y; print(f(1)); print((@(x) x = 5)(1)); "
        "local g = function(x) return x - 1; print(g(-1)); local t = {}; "
        "t.f <- function(x) { return x < 1 && x > -1 }; t.v <- t.f(0); print(t.v); "
        "local h = true && function() { return 3 }; h = h; print(h()); "
        "local e; e = function() { local q = 1; e = 2 }; e(); print(e);",
        {"2", "5", "-2", "true", "3", "2"});
    add("statements",
        "local x = 2, n = 0; switch (x) { case 1 + 1: n = 3; case -3: n += 1; break; default: n = "
        "9 "
        "}\nif (x < 3) n *= 2; else n = 0; if (!n) { n = 1 } n %= 5; { n -= 1 } "
        "for (local i = 0, j = 9; i < j && n < 99; i++, j -= 2) n = n + i; do n += 1 while (n < "
        "7)\n"
        "try throw x + n\ncatch (e) n = e; while (x in [1, 2, 3] && x < 5) x += 5; "
        "delete { a = 1 }.a; print(n); print(x);",
        {"9", "7"});
    add("classes",
        "class A </ k = 1 + 1 /> { </ n = -1 /> v = 1; static s = 2 - 1; [\"k\"] = 4; "
        "constructor(x = 3) { v = x } function f() { return v } };\n"
        "class B extends A { function f() { return -base.f() } function g() { local b = base; "
        "return b == A } }; local b = B(); b.v = b.f() - 1; print(b.v); print(b.g()); print(b.k); "
        "print(b instanceof A && typeof b == \"instance\"); local c = clone b; c.v = 1; "
        "print(b.v);",
        {"-4", "true", "4", "true", "-4"});
    add("loops",
        "local n = 0; for (local i = 0; i < 3; i++) n++; while (n < 5) n++; do n++ while (n < 9)\n"
        "foreach (x in [1, 2]) n += x; print(n); print(\"while for do\"); /* for */ print(@\"do "
        "\"\"while\"\" do\"); "
        "local dodo = 1; local format = 2; print(dodo + format); // while\n# do\nprint('d' + "
        "\"\\\"while\");",
        {"12", "while for do", "do \"while\" do", "3", "100\"while"});
}

void HostileScriptsTest::harmlessScriptsRun()
{
    QFETCH(QByteArray, body);
    QFETCH(QStringList, lines);
    m_bench->runDump(body);
    QCOMPARE(m_bench->logs(),
             QStringList{"Start dump rom..."} + lines + QStringList{"Dump rom finish."});
    QCOMPARE(m_bench->end, JobEnd::Done);
}

void HostileScriptsTest::printedLinesAreBounded()
{
    m_bench->runDump("for (local i = 0; i < 100000; i++) print(i);");
    QCOMPARE(m_bench->end, JobEnd::Done);
    const QStringList logs = m_bench->logs();
    QCOMPARE(logs.size(), 20002);
    QCOMPARE(logs[logs.size() - 2], QString("(what the script prints is not shown any more)"));
}

// The script of a user who made a mistake in a function that another one guards.
void HostileScriptsTest::placeIsWhereTheErrorWasRaised()
{
    m_bench->runDump("local f = function()\n{\n    return nothing;\n};\n"
                     "try { f(); } catch (error)\n{\n    throw error;\n}");
    QCOMPARE(m_bench->end, JobEnd::ScriptError);
    QCOMPARE(m_bench->scriptError, QString("the index 'nothing' does not exist"));
    QCOMPARE(m_bench->scriptPlace, QString("mapper.nut, line 5"));
    QCOMPARE(scriptErrors(m_bench->logs()), QStringList{m_bench->scriptError});
    // What a script throws itself is no mistake of its.
    m_bench->runDump("throw \"cannot do that\";");
    QCOMPARE(m_bench->end, JobEnd::Refused);
    m_bench->runDump("cpu_write(dev, 0x2000, 1); throw \"cannot do that\";");
    QCOMPARE(m_bench->end, JobEnd::ScriptFailed);
}

void HostileScriptsTest::linesAreThoseOfTheText_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("line");
    const QByteArray loops = "for (local i = 0; i < 1; i++) while (false) do {} while (false)\n";
    QTest::newRow("behind loops") << loops + loops + "return nothing;"
                                  << "line 5";
    QTest::newRow("in a loop") << loops + "for (local i = 0; i < 1; i++) return nothing;"
                               << "line 4";
    QTest::newRow("in the body of a loop")
        << loops + "for (local i = 0; i < 1; i++)\n{\n    return nothing;\n}"
        << "line 6";
    QTest::newRow("compile error") << loops + loops + "while (true) return );"
                                   << "line = (5) column = (22)";
    QTest::newRow("compile error in front of a loop") << loops + "return ); while (true);"
                                                      << "line = (4) column = (9)";
}

void HostileScriptsTest::linesAreThoseOfTheText()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, line);
    m_bench->runDump(body);
    QCOMPARE(m_bench->end, JobEnd::ScriptError);
    const QString where = m_bench->scriptPlace + ' ' + m_bench->scriptError;
    QVERIFY2(where.contains(line), qPrintable(where));
}

void HostileScriptsTest::manyGivenUpMachinesLeaveNothing()
{
    for (int i = 0; i < 50; ++i) {
        m_bench->runDump("local t = \"x\"; while (true) t += t;");
        QCOMPARE(m_bench->end, JobEnd::ScriptError);
    }
    // The address sanitizer's look at the end tells of what was left.
}

void HostileScriptsTest::shippedScriptsNeedFarLess_data()
{
    QTest::addColumn<QString>("path");
    const QDir folder(SHIPPED_SCRIPTS);
    for (const QString &name : folder.entryList({"*.nut"}, QDir::Files))
        QTest::newRow(qPrintable(name)) << folder.filePath(name);
}

// It is counted at all only where the library asks this program for its memory.
void HostileScriptsTest::shippedScriptsNeedFarLess()
{
    QFETCH(QString, path);
    RunningJob job(CartridgeJob{}, m_bench->recorder);
    std::size_t used = 0;
    std::size_t usedByAll = 0;
    QVERIFY(withMachine(job, [&](HSQUIRRELVM v) {
        used = machineMemoryUsed();
        runScriptFile(v, path.toLocal8Bit());
        usedByAll = machineMemoryUsed();
    }));
    QVERIFY2(used > 10000, qPrintable(QString::number(used)));
    QVERIFY2(usedByAll > used && usedByAll < kScriptMemoryBytes / 20,
             qPrintable(QString::number(usedByAll)));
    QCOMPARE(machineMemoryUsed(), std::size_t{0});
}

GBDRIVER_TEST(HostileScriptsTest, core)
#include "hostile_scripts_test.moc"
