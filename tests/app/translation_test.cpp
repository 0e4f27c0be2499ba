// Which translation file the program takes, and which texts it hands to it.
#include "app/tab_dialog.h"
#include "app/translation.h"
#include "file_dialog_answer.h"
#include "reader_fixture.h"
#include "test_class.h"
#include "translation_files.h"
#include "translators.h"
#include "ui/main_tab.h"
#include "ui/settings.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

namespace
{
QString translated(const char *context, const char *text)
{
    return QCoreApplication::translate(context, text);
}
} // namespace

class TranslationTest : public QObject
{
    Q_OBJECT

private slots:
    void existenceDecides_data();
    void existenceDecides();
    void chosenFileTranslates_data();
    void chosenFileTranslates();
    void missingFilesInstallNothing();
    void brokenFileIsInstalledAndLeavesEnglish_data();
    void brokenFileIsInstalledAndLeavesEnglish();
    void textsAreTranslatedInTheContextOfTheirClass();
    void ruleIsNotTranslated();
};

void TranslationTest::existenceDecides_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("chosen");
    QTest::newRow("neither") << QStringList() << "";
    QTest::newRow("Japanese") << QStringList{"gb3_jpn.qm"} << "gb3_jpn.qm";
    QTest::newRow("Chinese") << QStringList{"gb3_chs.qm"} << "gb3_chs.qm";
    QTest::newRow("both") << QStringList{"gb3_jpn.qm", "gb3_chs.qm"} << "gb3_chs.qm";
    QTest::newRow("others") << QStringList{"gb3_deu.qm", "gb3.qm"} << "";
}

void TranslationTest::existenceDecides()
{
    QFETCH(QStringList, files);
    QFETCH(QString, chosen);
    const QTemporaryDir folder;
    for (const QString &name : files)
        QVERIFY(QFile(folder.filePath(name)).open(QIODevice::WriteOnly));
    QCOMPARE(chooseTranslation(folder.path()),
             chosen.isEmpty() ? QString() : folder.path() + "/" + chosen);
}

void TranslationTest::chosenFileTranslates_data()
{
    QTest::addColumn<QStringList>("languages");
    QTest::addColumn<QString>("expected");
    QTest::newRow("Japanese") << QStringList{"jpn"} << "[jpn]Dump";
    QTest::newRow("both") << QStringList{"jpn", "chs"} << "[chs]Dump";
}

void TranslationTest::chosenFileTranslates()
{
    QFETCH(QStringList, languages);
    QFETCH(QString, expected);
    const QTemporaryDir folder;
    for (const QString &language : languages)
        QCOMPARE(addTranslation(folder.filePath("gb3_" + language + ".qm"), language), QString());
    {
        QTranslator translator;
        QVERIFY(installTranslation(folder.path(), &translator));
        QCOMPARE(translated("MainTab", "Dump"), expected);
        QCOMPARE(translated("MainTab", "FLASH"), QString("FLASH"));
        QCOMPARE(translated("UpdateThread", "Dump"), QString("Dump"));
    }
    QCOMPARE(translated("MainTab", "Dump"), QString("Dump"));
}

void TranslationTest::missingFilesInstallNothing()
{
    const QTemporaryDir folder;
    QTranslator translator;
    QVERIFY(!installTranslation(folder.path(), &translator));
    QVERIFY(!QCoreApplication::removeTranslator(&translator));
}

void TranslationTest::brokenFileIsInstalledAndLeavesEnglish_data()
{
    QTest::addColumn<bool>("japaneseIsGood");
    QTest::newRow("alone") << false;
    QTest::newRow("with a good Japanese file") << true;
}

// No fallback: the broken Chinese file hides the good Japanese one.
void TranslationTest::brokenFileIsInstalledAndLeavesEnglish()
{
    QFETCH(bool, japaneseIsGood);
    const QTemporaryDir folder;
    QFile broken(folder.filePath("gb3_chs.qm"));
    QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("no translation") > 0);
    broken.close();
    if (japaneseIsGood)
        QCOMPARE(addTranslation(folder.filePath("gb3_jpn.qm"), "jpn"), QString());
    QTranslator translator;
    QVERIFY(installTranslation(folder.path(), &translator));
    QCOMPARE(translated("MainTab", "Dump"), QString("Dump"));
    QVERIFY(QCoreApplication::removeTranslator(&translator)); // it was installed
}

void TranslationTest::textsAreTranslatedInTheContextOfTheirClass()
{
    ReaderFixture fixture(makeMbc5Cartridge(32 * 1024));
    RecordingTranslator recorder;
    QVERIFY(QCoreApplication::installTranslator(&recorder));
    TabDialog dialog(".");
    auto *tab = dialog.findChild<MainTab *>();
    tab->push_info();
    tab->print_error(0);
    tab->print_error(1);
    // Without scripts every action says so, for both systems.
    for (const int system : {1, 0}) {
        tab->settings->selectSysType(system);
        for (const auto action : {&MainTab::push_read_rom, &MainTab::push_read_ram,
                                  &MainTab::push_write_flash, &MainTab::push_write_ram}) {
            FileDialogAnswer cancelled{QString()};
            (tab->*action)();
            QVERIFY(cancelled.wasAsked);
        }
    }
    fixture.drive().setGone(true);
    tab->push_info();

    const QStringList expected = {
        "TabDialog: GB Driver 3.0 build - ",
        "TabDialog: GB",
        "TabDialog: Update",
        "TabDialog: About",
        "MainTab: Cancel",
        "MainTab: Info",
        "MainTab: Dump",
        "MainTab: FLASH",
        "MainTab: Read RAM",
        "MainTab: Write RAM",
        "MainTab: Show cartridge information!",
        "MainTab: Dump ROM from cartridge!",
        "MainTab: Flash ROM to a writeable cartridge!",
        "MainTab: Read SRAM from cartridge!",
        "MainTab: Write SRAM to cartridge!",
        "MainTab: Velora Driver Series for GB/GBC/GBA 3.0 started.",
        "MainTab: Support all functions, need <span style=\"color: "
        "#ffcc00;\">QDX_PCB02_FW303</span> firmware.",
        "MainTab: To dump GB/GBC cartridge,please switch power to 5V.",
        "MainTab: To dump GBA cartridge,please switch power to 3.3V.",
        "MainTab: Part of homebrew GB/GBC flash cart need 3.3V power.",
        "MainTab: \r\n",
        "MainTab: --Device information--",
        "MainTab: Driver label: ",
        "MainTab: Device firmware: ",
        "MainTab: >Operation failure.",
        "MainTab: >Success!",
        "MainTab: Can not found dump device.",
        "MainTab: /mapper/",
        "MainTab: gba.nut",
        "MainTab: Not exists script file :",
        "MainTab: Read ROM to...",
        "MainTab: GB/GBC Rom (*.gb *.gbc)",
        "MainTab: GBA Rom (*.gba)",
        "MainTab: Read save to...",
        "MainTab: GB/GBC save (*.sav)",
        "MainTab: GBA save (*.sav)",
        "MainTab: Get ROM File.",
        "MainTab: GB/GBC ROM (*.gb *.gbc)",
        "MainTab: GBA ROM (*.gba)",
        "MainTab: Get Save File.",
        "Settings: Settings",
        "Settings: SYS TYPE:",
        "Settings: MBC TYPE:",
        "Settings: ROM SIZE:",
        "Settings: RAM SIZE:",
        "Settings: RAM TYPE:",
        "Settings: Verify the data after writing",
    };
    QStringList missing;
    for (const QString &text : expected) {
        if (!recorder.asked.contains(text))
            missing << text;
    }
    QCOMPARE(missing, QStringList());
    const QRegularExpression ours("^(TabDialog|MainTab|Settings): ");
    QCOMPARE(recorder.disambiguated.filter(ours), QStringList());
}

void TranslationTest::ruleIsNotTranslated()
{
    ReaderFixture fixture(makeMbc5Cartridge(32 * 1024));
    MainTab tab;
    RecordingTranslator recorder;
    QVERIFY(QCoreApplication::installTranslator(&recorder));
    tab.print_error(1);
    QVERIFY(recorder.asked.contains("MainTab: >Success!"));
    QVERIFY(recorder.asked.filter("hr>").isEmpty());
}

GBDRIVER_TEST(TranslationTest, gui)
#include "translation_test.moc"
