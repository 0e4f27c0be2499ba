// The jobs of the self-test: right scripts pass, and every way to spoil one is noticed.
#include "trial/self_test_jobs.h"

#include "script_folder.h"
#include "test_class.h"

#include <QtTest>

namespace
{

// Runs the row of that name.
SelfTestResult runRow(const QString &name, const QString &folder)
{
    for (const SelfTestRow &row : kSelfTestRows) {
        if (name == row.name)
            return runSelfTestRow(row, folder);
    }
    qFatal("no such row");
}

} // namespace

class SelfTestJobsTest : public QObject
{
    Q_OBJECT

private slots:
    void shippedScriptsPass_data();
    void shippedScriptsPass();
    void spoiledJobIsNoticed_data();
    void spoiledJobIsNoticed();
    void missingScriptFailsItsRow();
    void everyRowHasANameOfItsOwn();
};

void SelfTestJobsTest::shippedScriptsPass_data()
{
    QTest::addColumn<QString>("row");
    for (const SelfTestRow &row : kSelfTestRows)
        QTest::newRow(row.name) << row.name;
}

void SelfTestJobsTest::shippedScriptsPass()
{
    QFETCH(QString, row);
    const SelfTestResult result = runRow(row, SHIPPED_SCRIPTS);
    QCOMPARE(result.problem, QString());
    // Nothing is moved only where there is no reader: behind a refusal comes the size that is
    // right.
    QCOMPARE(result.bytes == 0, row == "must fail: no reader");
}

void SelfTestJobsTest::spoiledJobIsNoticed_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<QString>("script");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("problem");
    QTest::newRow("zeros for a dump")
        << "dump, no mapper"
        << "gb_mbc0.nut" << QByteArray("function cpu_dump(d, s, _) {}")
        << "only 0 of 32768 bytes were moved";
    QTest::newRow("banks in the wrong order")
        << "dump, no mapper"
        << "gb_mbc0.nut"
        << QByteArray("function cpu_dump(d, s, _) {"
                      "cpu_read(d, 0x4000, 0x4000); cpu_read(d, 0, 0x4000); }")
        << "the dump is wrong in ";
    QTest::newRow("first bank twice")
        << "dump, GBA"
        << "gba.nut"
        << QByteArray("function cpu_dump(d, s, _) {"
                      "for (local i = 0; i < s; i += 0x100000) cpu_read(d, 0, 0x100000); }")
        << "the dump is wrong in ";
    QTest::newRow("save written to a closed RAM")
        << "save, MBC5"
        << "gb_mbc5.nut"
        << QByteArray("function save_write(d, s, _) {"
                      "for (local i = 0; i < s; i += 0x2000) ram_write(d, 0xA000, 0x2000); }")
        << "write: the save in the cartridge is wrong in ";
    QTest::newRow("save read from a closed RAM")
        << "save, GBA EEPROM"
        << "gba.nut"
        << QByteArray("function save_write(d, s, _) { ram_write(d, 0, s); }\n"
                      "function save_dump(d, s, _) {"
                      "for (local i = 0; i < s; i += 8) ram_read(d, 0, 8); }")
        << "read: the save file is wrong in ";
    QTest::newRow("chip that nobody erases")
        << "flash, 8-bit chip"
        << "gb_mbc5.nut"
        << QByteArray("function cpu_erase(d, s, _) {}\nfunction cpu_flash(d, s, _) {}")
        << "failed: The erase does not end.";
    QTest::newRow("chip of the other width")
        << "flash, 16-bit chip"
        << "gb_mbc5.nut"
        << QByteArray("function cpu_erase(d, s, _) {"
                      "cpu_write(d, 0xAAA, 0xAA, 0x555, 0x55, 0xAAA, 0x80,"
                      "0xAAA, 0xAA, 0x555, 0x55, 0xAAA, 0x10); }\n"
                      "function cpu_flash(d, s, _) { rom_flash_cfg(d, 0);"
                      "for (local i = 0; i < s; i += 0x4000) {"
                      "cpu_write(d, 0x2000, i / 0x4000); rom_write(d, 0x4000, 0x4000); } }")
        << "the flash chip is wrong in ";
    QTest::newRow("impossible size accepted")
        << "must fail: impossible size"
        << "gb_mbc5.nut" << QByteArray("function cpu_dump(d, s, _) {}") << "reported success";
    QTest::newRow("impossible size fails by accident")
        << "must fail: impossible size"
        << "gb_mbc5.nut" << QByteArray("function cpu_dump(d, s, _) { throw \"oops\"; }")
        << "failed: oops";
    QTest::newRow("reader's end not noticed")
        << "must fail: reader pulled out"
        << "gb_mbc5.nut"
        << QByteArray("function cpu_dump(d, s, _) { for (local i = 0; i < 16; i++) {"
                      "try { cpu_read(d, 0, 0x4000); } catch (e) {} } }")
        << "reported success";
}

void SelfTestJobsTest::spoiledJobIsNoticed()
{
    QFETCH(QString, row);
    QFETCH(QString, script);
    QFETCH(QByteArray, text);
    QFETCH(QString, problem);
    ScriptFolder folder;
    folder.write(script, text);
    const SelfTestResult result = runRow(row, folder.path());
    QVERIFY2(result.problem.startsWith(problem), qPrintable(result.problem));
}

void SelfTestJobsTest::missingScriptFailsItsRow()
{
    const QTemporaryDir folder;
    QCOMPARE(runRow("dump, MBC1", folder.path()).problem,
             QString("failed: dump core script error"));
}

void SelfTestJobsTest::everyRowHasANameOfItsOwn()
{
    QSet<QString> names;
    for (const SelfTestRow &row : kSelfTestRows)
        names << row.name;
    QCOMPARE(names.size(), int(kSelfTestRows.size()));
}

GBDRIVER_TEST(SelfTestJobsTest, core)
#include "self_test_jobs_test.moc"
