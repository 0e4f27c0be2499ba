// The whole program as a process of its own: start-up, translation, refusal, and its end while a
// job runs.
#include "files.h"
#include "process_run.h"
#include "samples.h"
#include "test_class.h"
#include "translation_files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

namespace
{
struct Outcome {
    int exitCode; // -1 also if it crashed
    QString output;
    QString errors;
};

Outcome runApplication(const QMap<QString, QString> &variables, const QStringList &arguments = {})
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("GBDRIVER_VIRTUAL_READER", "demo");
    for (auto it = variables.begin(); it != variables.end(); ++it)
        environment.insert(it.key(), it.value());
    const ProcessRun run = runProcess(GBDRIVER_DRIVEN_APPLICATION, arguments, environment);
    return {run.exitCode, printedText(run.output), printedText(run.errors)};
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
    void fineScreensAreScaled();
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
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
    const QStringList lines = outcome.output.split('\n');
    QVERIFY(lines[0].startsWith("title: GB Driver 3.0 build - "));
    QCOMPARE(lines.mid(1, 10),
             (QStringList{"tab: GB", "tab: Update", "tab: About", "style: fusion", "dump: Dump",
                          "desktop entry: gbdriver", "icon: 16 22 24 32 48 64 128 256", "scale: 1",
                          "icon's pixels: 16",
                          "log: Velora Driver Series for GB/GBC/GBA 3.0 started."}));
}

void ApplicationTest::fineScreensAreScaled()
{
    const Outcome outcome =
        runApplication({{"GBDRIVER_TEST_PLAN", "look"}, {"QT_FONT_DPI", "192"}});
    QVERIFY2(outcome.output.contains("\nscale: 2\nicon's pixels: 32\n"),
             qPrintable(outcome.output));
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
    putFile(besideProgram("gb3_chs.qm"), "no translation");
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
    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(outcome.output, QString());
    QVERIFY2(outcome.errors.contains("gbdriver: GBDRIVER_VIRTUAL_READER"),
             qPrintable(outcome.errors));
}

void ApplicationTest::endsAfterTheJobWhenClosedMeanwhile()
{
    const UserFolder folder;
    const QString image =
        folder.addFile("cart.gb", toByteArray(makeMbc5Cartridge(32 * 1024)->romImage()));
    const QString rom = folder.addFile("new.gb", "rom");
    QVERIFY(QDir().mkpath(besideProgram("mapper")));
    putFile(besideProgram("mapper/gb_mbc5.nut"), "function cpu_erase(dev, size, width) {}\n"
                                                 "function cpu_flash(dev, size, max) {}\n");

    const Outcome outcome = runApplication({{"GBDRIVER_TEST_PLAN", "close-while-erasing"},
                                            {"GBDRIVER_TEST_FILE", rom},
                                            {"GBDRIVER_VIRTUAL_READER", "cart=" + image}});
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
    QVERIFY2(!outcome.errors.contains("QThread"), qPrintable(outcome.errors));
    QVERIFY2(outcome.output.startsWith("window: waits\n"), qPrintable(outcome.output));
    QVERIFY(outcome.output.contains("The window closes when it has ended."));
    QVERIFY(outcome.output.contains(">Operation failure."));
}

GBDRIVER_TEST(ApplicationTest, core)
#include "application_test.moc"
