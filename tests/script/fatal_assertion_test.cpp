// A script that hands a native something else than its job stops the program, in every build type.
#include "process_run.h"
#include "test_class.h"

#include <QCoreApplication>
#include <QOperatingSystemVersion>
#include <QRegularExpression>
#include <QtTest>

namespace
{

// Runs `program` of this test's folder.
ProcessRun runScript(const QString &program, int operate, const QString &statement)
{
    return runProcess(QCoreApplication::applicationDirPath() + "/" + program,
                      {QString::number(operate), statement});
}

// abort() ends a program by a signal; Windows has none, and its C runtime ends it with an exit
// code.
bool wasAborted(const ProcessRun &outcome)
{
    constexpr int kAbortExitCode = 3;
    if (QOperatingSystemVersion::currentType() == QOperatingSystemVersion::Windows)
        return outcome.exitCode == kAbortExitCode;
    return outcome.crashed;
}

} // namespace

class FatalAssertionTest : public QObject
{
    Q_OBJECT

private slots:
    void wrongJobStopsTheProgram_data();
    void wrongJobStopsTheProgram();
    void rightJobDoesNot_data();
    void rightJobDoesNot();
};

void FatalAssertionTest::wrongJobStopsTheProgram_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<int>("operate");
    QTest::addColumn<QString>("statement");
    for (const char *program : {"wrong_job_debug", "wrong_job_release"}) {
        const auto add = [program](int operate, const char *statement) {
            QTest::addRow("%s, operation %d, %s", program, operate, statement)
                << program << operate << statement;
        };
        for (int operate : {0, 2, 4})
            add(operate, "cpu_read(null, 0, 16);");
        for (const char *wrong : {"5", "0", "\"dev\"", "{}", "[]", "true", "1.5", "this", "entry"})
            add(0, qPrintable(QString("cpu_read(%1, 0, 16);").arg(wrong)));
        add(6, "ram_read(null, 0, 16);");
        add(3, "ram_write(null, 0, 16);");
        add(7, "ram_write(null, 0, 16);");
        add(1, "rom_write(null, 0, 16);");
        add(1, "rom_flash_cfg(null, 1);");
        add(0, "try { cpu_read(null, 0, 16); } catch (error) {}");
    }
}

void FatalAssertionTest::wrongJobStopsTheProgram()
{
    QFETCH(QString, program);
    QFETCH(int, operate);
    QFETCH(QString, statement);
    const ProcessRun outcome = runScript(program, operate, statement);
    QVERIFY2(wasAborted(outcome), qPrintable(QString("exit code %1").arg(outcome.exitCode)));
    QVERIFY2(!outcome.output.contains("went on"), outcome.output.constData());
    QVERIFY2(outcome.errors.contains("sq_gettype(v, 2) == OT_USERPOINTER"),
             outcome.errors.constData());
    const QRegularExpression place("src/script/script\\b\\D*\\b132\\b");
    QVERIFY2(QString::fromLocal8Bit(outcome.errors).contains(place), outcome.errors.constData());
}

void FatalAssertionTest::rightJobDoesNot_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<int>("operate");
    QTest::addColumn<QString>("statement");
    QTest::addColumn<int>("code");
    for (const char *program : {"wrong_job_debug", "wrong_job_release"}) {
        QTest::addRow("%s, right job", program) << program << 1 << "rom_flash_cfg(dev, 1);" << 0;
        // Arguments are looked at before the job.
        QTest::addRow("%s, wrong type", program) << program << 0 << "cpu_read(null, 0, 1.5);" << 1;
        QTest::addRow("%s, too few", program) << program << 0 << "cpu_read(null, 0);" << 1;
    }
}

void FatalAssertionTest::rightJobDoesNot()
{
    QFETCH(QString, program);
    QFETCH(int, operate);
    QFETCH(QString, statement);
    QFETCH(int, code);
    const ProcessRun outcome = runScript(program, operate, statement);
    QCOMPARE(outcome.exitCode, code);
    QCOMPARE(outcome.output.trimmed(), QByteArray("the script went on"));
}

GBDRIVER_TEST(FatalAssertionTest, core)
#include "fatal_assertion_test.moc"
