// Texts over which the compiler loses count: none reaches it, from wherever it comes.
#include "script_bench.h"

#include "test_class.h"

#include <QtTest>

#include <memory>

class CompilerTrapsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_bench = std::make_unique<ScriptBench>(); }
    void cleanup() { m_bench.reset(); }

    void trapsAreRefused_data();
    void trapsAreRefused();
    void trapIsToldWithItsPlace();

private:
    std::unique_ptr<ScriptBench> m_bench;
};

void CompilerTrapsTest::trapsAreRefused_data()
{
    QTest::addColumn<QByteArray>("statement");
    QTest::addColumn<QString>("error");
    const auto add = [](const QByteArray &statement, const QString &error) {
        QTest::newRow(statement) << statement << error;
    };
    const QString noTarget = "an assignment to what is no variable or slot";
    for (const char *left : {"a + v",
                             "a - v",
                             "a * v",
                             "a / v",
                             "a % v",
                             "a < v",
                             "a > v",
                             "a <= v",
                             "a >= v",
                             "a == v",
                             "a != v",
                             "a <=> v",
                             "a && v",
                             "a || v",
                             "a & v",
                             "a | v",
                             "a ^ v",
                             "a << v",
                             "a >> v",
                             "a >>> v",
                             "a in v",
                             "a instanceof v",
                             "-v",
                             "- -v",
                             "!v",
                             "~v",
                             "typeof v",
                             "clone v",
                             "resume v",
                             "-a.v",
                             "v++",
                             "a.v--",
                             "a[0]++",
                             "a < {}",
                             "a < @(x) x + v",
                             "a < function() {}",
                             "a < function(); ",
                             "a < class extends v {}.b",
                             "a < {}.b",
                             "a < function() if (a) v; .b",
                             "v\n+\nv",
                             "a /* = */ < v",
                             "x = a < v"})
        add(QByteArray(left) + " = a", noTarget);
    for (const char *sign : {"<-", "+=", "-=", "*=", "/=", "%="})
        add("a < v " + QByteArray(sign) + " a", noTarget);
    for (const char *around : {"for (%;;) {}",
                               "for (;%;) {}",
                               "for (;;%) {}",
                               "while (%) {}",
                               "do {} while (%)",
                               "foreach (x in %) {}",
                               "if (%) {}",
                               "if (a) {} else %",
                               "switch (%) {}",
                               "switch (a) { case %: }",
                               "switch (a) { default: % }",
                               "try { % } catch (e) {}",
                               "try {} catch (e) %",
                               "throw %",
                               "return %",
                               "yield %",
                               "local x = %",
                               "f(1 %)",
                               "f(a, %)",
                               "[1 %]",
                               "a[%]",
                               "x = { x = 1 y = % }",
                               "x = { [%] = 1 }",
                               "x = { \"k\": % }",
                               "function g(x = %) {}",
                               "x = @() %",
                               "class C { x = %; }",
                               "class C extends % {}",
                               "class C </ x = % /> {}",
                               "class C { constructor() { % } }",
                               "a ? % : 1",
                               "a ? 1 : %",
                               "(%)",
                               "x = %",
                               "class C <//* '\n */ x = % /> {}",
                               "x = 5 <<// '\n%"})
        add(QByteArray(around).replace("%", "a < v -= a"), noTarget);
    for (const char *text : {"base++", "base--", "++base", "--base", "delete base", "class base {}",
                             "x = ++base", "++\nbase"})
        add(text, "'base' cannot be modified");
    for (const char *text :
         {"delete -v", "delete !v", "++-v", "--typeof v", "class -v {}", "++v++", "++v--"})
        add(text, "no variable or slot that could be changed");
    add("class C { </ x = 1 /> [v] = 2 }", "attributes need a member that has a name");
}

// Where they did harm: in a function that has nothing but the variable of another.
void CompilerTrapsTest::trapsAreRefused()
{
    QFETCH(QByteArray, statement);
    QFETCH(QString, error);
    const QByteArray inFunction = "local v = 1;\nlocal f = function() {\n" + statement + "\n};";
    UserFolder folder;
    const QByteArray other = folder.addFile("other.nut", inFunction).toLocal8Bit();
    for (const QByteArray &body :
         {inFunction, "compilestring(@\"" + QByteArray(inFunction).replace('"', "\"\"") + "\");",
          "dofile(@\"" + other + "\");", "loadfile(@\"" + other + "\");"}) {
        m_bench->runDump(body);
        QCOMPARE(m_bench->end, JobEnd::ScriptError);
        QVERIFY2(m_bench->scriptError.endsWith(" : error " + error),
                 qPrintable(m_bench->scriptError));
    }
    m_bench->setScript(statement);
    QVERIFY(!m_bench->run(GB_READ_ROM));
    QVERIFY2(m_bench->scriptError.endsWith(" : error " + error), qPrintable(m_bench->scriptError));
}

void CompilerTrapsTest::trapIsToldWithItsPlace()
{
    const QString path = m_bench->setScript("local a = @\"\n\" /*\n*/; while (a)\n  a < 2 -= 1;\n");
    QVERIFY(!m_bench->run(GB_READ_ROM));
    QCOMPARE(m_bench->end, JobEnd::ScriptError);
    QCOMPARE(m_bench->scriptError,
             path +
                 " line = (4) column = (9) : error an assignment to what is no variable or slot");
    QCOMPARE(m_bench->scriptPlace, QString("mapper.nut, line 4"));
    QCOMPARE(m_bench->logs(),
             (QStringList{m_bench->scriptError + "\n", "dump core script error\n"}));
}

GBDRIVER_TEST(CompilerTrapsTest, core)
#include "compiler_traps_test.moc"
