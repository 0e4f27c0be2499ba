// The whole program as a process of its own: start-up, translation, refusal, and its end while a
// job runs.
#include "program_run.h"
#include "reader_fixture.h"
#include "test_class.h"
#include "translation_files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace
{
constexpr int kProgramTimeoutMs = 90000;

struct Outcome {
    int exitCode = -1;
    bool crashed = true;
    QString output;
    QString errors;
};

Outcome runApplication(const QMap<QString, QString> &variables, const QStringList &arguments = {})
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("GBDRIVER_VIRTUAL_READER", "demo");
    for (auto it = variables.begin(); it != variables.end(); ++it)
        environment.insert(it.key(), it.value());
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(GBDRIVER_DRIVEN_APPLICATION, arguments);
    Outcome outcome;
    if (!program.waitForFinished(kProgramTimeoutMs)) {
        outcome.errors = "the program does not end: " + program.errorString();
        return outcome;
    }
    outcome.exitCode = program.exitCode();
    outcome.crashed = program.exitStatus() != QProcess::NormalExit;
    outcome.output = printedText(program.readAllStandardOutput());
    outcome.errors = printedText(program.readAllStandardError());
    return outcome;
}

QString besideProgram(const QString &name)
{
    return QFileInfo(GBDRIVER_DRIVEN_APPLICATION).absolutePath() + "/" + name;
}
} // namespace

class ApplicationTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void startsInEnglish();
    void argumentChangesNothing();
    void chineseComesBeforeJapanese();
    void brokenTranslationIsSilent();
    void badVirtualReaderIsRefused_data();
    void badVirtualReaderIsRefused();
    void endsAfterTheJobWhenClosedMeanwhile();

private:
    void removeFilesBesideProgram();
};

void ApplicationTest::init()
{
    removeFilesBesideProgram();
}

void ApplicationTest::cleanup()
{
    removeFilesBesideProgram();
}

void ApplicationTest::removeFilesBesideProgram()
{
    QFile::remove(besideProgram("gb3_chs.qm"));
    QFile::remove(besideProgram("gb3_jpn.qm"));
    QDir(besideProgram("mapper")).removeRecursively();
}

void ApplicationTest::startsInEnglish()
{
    const Outcome outcome = runApplication({{"GBDRIVER_TEST_PLAN", "look"}});
    QVERIFY2(!outcome.crashed, qPrintable(outcome.errors));
    QCOMPARE(outcome.exitCode, 0);
    const QStringList lines = outcome.output.split('\n');
    QVERIFY(lines[0].startsWith("title: GB Driver 3.0 build - "));
    QCOMPARE(lines.mid(1, 6),
             (QStringList{"tab: GB", "tab: Update", "tab: About", "style: fusion", "dump: Dump",
                          "log: Velora Driver Series for GB/GBC/GBA 3.0 started."}));
}

void ApplicationTest::argumentChangesNothing()
{
    const Outcome without = runApplication({{"GBDRIVER_TEST_PLAN", "look"}});
    const Outcome with = runApplication({{"GBDRIVER_TEST_PLAN", "look"}}, {"some file.gb"});
    QCOMPARE(with.exitCode, 0);
    QVERIFY(!with.output.isEmpty());
    QCOMPARE(with.output, without.output);
}

void ApplicationTest::chineseComesBeforeJapanese()
{
    QCOMPARE(addTranslation(besideProgram("gb3_jpn.qm"), "jpn"), QString());
    Outcome outcome = runApplication({{"GBDRIVER_TEST_PLAN", "look"}});
    QVERIFY(outcome.output.startsWith("title: [jpn]GB Driver 3.0 build - "));
    QVERIFY(outcome.output.contains("\ntab: [jpn]Update\n"));
    QVERIFY(outcome.output.contains("\ndump: [jpn]Dump\n"));

    QCOMPARE(addTranslation(besideProgram("gb3_chs.qm"), "chs"), QString());
    outcome = runApplication({{"GBDRIVER_TEST_PLAN", "look"}, {"LANG", "ja_JP.UTF-8"}});
    QVERIFY(outcome.output.startsWith("title: [chs]GB Driver 3.0 build - "));
    QVERIFY(outcome.output.contains("\ndump: [chs]Dump\n"));
}

void ApplicationTest::brokenTranslationIsSilent()
{
    QVERIFY(writeFile(besideProgram("gb3_chs.qm"), "no translation"));
    const Outcome outcome = runApplication({{"GBDRIVER_TEST_PLAN", "look"}});
    QCOMPARE(outcome.exitCode, 0);
    QVERIFY(outcome.output.contains("\ndump: Dump\n"));
    QVERIFY2(!outcome.errors.contains("gb3_chs"), qPrintable(outcome.errors));
}

void ApplicationTest::badVirtualReaderIsRefused_data()
{
    QTest::addColumn<QString>("value");
    QTest::newRow("no request") << "nonsense";
    QTest::newRow("missing image") << "cart=does-not-exist.gb";
}

void ApplicationTest::badVirtualReaderIsRefused()
{
    QFETCH(QString, value);
    const Outcome outcome =
        runApplication({{"GBDRIVER_TEST_PLAN", "look"}, {"GBDRIVER_VIRTUAL_READER", value}});
    QVERIFY(!outcome.crashed);
    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(outcome.output, QString());
    QVERIFY2(outcome.errors.contains("gbdriver: GBDRIVER_VIRTUAL_READER"),
             qPrintable(outcome.errors));
}

void ApplicationTest::endsAfterTheJobWhenClosedMeanwhile()
{
    const QTemporaryDir folder;
    const QString image = folder.filePath("cart.gb");
    QVERIFY(writeFile(image, toByteArray(makeMbc5Cartridge(32 * 1024)->romImage())));
    QVERIFY(writeFile(folder.filePath("new.gb"), "rom"));
    QVERIFY(QDir().mkpath(besideProgram("mapper")));
    QVERIFY(writeFile(besideProgram("mapper/gb_mbc5.nut"),
                      "function cpu_erase(dev, size, width) {}\n"
                      "function cpu_flash(dev, size, max) {}\n"));

    const Outcome outcome = runApplication({{"GBDRIVER_TEST_PLAN", "close-while-erasing"},
                                            {"GBDRIVER_TEST_FILE", folder.filePath("new.gb")},
                                            {"GBDRIVER_VIRTUAL_READER", "cart=" + image}});
    QVERIFY2(!outcome.crashed, qPrintable(outcome.errors));
    QCOMPARE(outcome.exitCode, 0);
    QVERIFY2(!outcome.errors.contains("QThread"), qPrintable(outcome.errors));
    QVERIFY2(outcome.output.startsWith("window: waits\n"), qPrintable(outcome.output));
    QVERIFY(outcome.output.contains("The window closes when it has ended."));
    QVERIFY(outcome.output.contains(">Operation failure."));
}

GBDRIVER_TEST(ApplicationTest, core)
#include "application_test.moc"
