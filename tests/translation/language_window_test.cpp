// The window in each language that the project has: no wider than in English, nothing cut, and a
// job from the greeting to the judgement with no English left.
#include "english_words.h"
#include "job_window.h"
#include "log_check.h"
#include "test_class.h"
#include "usual_font.h"

#include "app/tab_dialog.h"
#include "cart/setting_tables.h"
#include "ui/guarded_job.h"
#include "ui/job_bar.h"
#include "ui/settings.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QTranslator>

using namespace virtual_reader;

namespace
{

// Two tabs with long names and the name of the reader stand in one row; the window may give them
// this much more than in English: a letter of the usual font.
constexpr int kRoomPixels = 12;

constexpr int kKiB = 1024;

const QStringList kLanguages{"gb3_chs", "gb3_jpn"};

void addLanguages()
{
    QTest::addColumn<QString>("language");
    for (const QString &language : kLanguages)
        QTest::newRow(qPrintable(language)) << language;
}

// Installed as long as it lives.
class InstalledLanguage
{
public:
    explicit InstalledLanguage(QTranslator *translator) : m_translator(translator)
    {
        QCoreApplication::installTranslator(m_translator);
    }
    ~InstalledLanguage() { QCoreApplication::removeTranslator(m_translator); }
    InstalledLanguage(const InstalledLanguage &) = delete;
    InstalledLanguage &operator=(const InstalledLanguage &) = delete;

private:
    QTranslator *m_translator;
};

// Makes one button wider than the window can take.
class LongTranslator : public QTranslator
{
public:
    QString translate(const char * /*context*/, const char *text, const char * /*disambiguation*/,
                      int /*n*/) const override
    {
        return qstrcmp(text, "Dump") == 0 ? QString(200, QChar('W')) : QString();
    }
    bool isEmpty() const override { return false; }
};

struct WindowWidths {
    int window = 0;
    QStringList cut; // widgets that are narrower than their text
};

template <typename Widget> void addCut(const QWidget &window, QStringList *cut)
{
    for (const Widget *widget : window.findChildren<Widget *>()) {
        if (widget->isVisibleTo(&window) && widget->width() < widget->sizeHint().width())
            *cut << widget->text();
    }
}

// Every tab is shown once, and both systems of the settings.
WindowWidths measure()
{
    WindowWidths widths;
    TabDialog dialog(".");
    dialog.show();
    auto *tabs = dialog.findChild<QTabWidget *>();
    auto *settings = dialog.findChild<Settings *>();
    for (const int system : {kSystemGba, kSystemGb}) {
        settings->selectSysType(system);
        for (int tab = 0; tab < tabs->count(); ++tab) {
            tabs->setCurrentIndex(tab);
            dialog.layout()->activate();
            QCoreApplication::processEvents();
            addCut<QPushButton>(dialog, &widths.cut);
            addCut<QLabel>(dialog, &widths.cut);
            addCut<QCheckBox>(dialog, &widths.cut);
        }
    }
    if (tabs->tabBar()->sizeHint().width() + tabs->cornerWidget()->sizeHint().width() >
        tabs->width())
        widths.cut << "the row of tabs";
    const auto *bar = dialog.findChild<JobBar *>();
    for (const char *step : {"Reading", "Reading again", "Keeping a backup", "Writing", "Comparing",
                             "Erasing; Cancel ends the wait"}) {
        const QString text = QCoreApplication::translate("GuardedJob", step);
        if (bar->fontMetrics().boundingRect(text + " 100%").width() > bar->width())
            widths.cut << text;
    }
    widths.window = qMax(dialog.width(), dialog.sizeHint().width());
    return widths;
}

QString translated(const char *context, const char *text)
{
    return QCoreApplication::translate(context, text);
}

} // namespace

class LanguageWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void textTooLongIsNoticed();
    void languageFitsTheWindow_data() { addLanguages(); }
    void languageFitsTheWindow();
    void dumpSpeaksTheLanguage_data() { addLanguages(); }
    void dumpSpeaksTheLanguage();

private:
    static QString languagePath(const QString &language)
    {
        return QString(LANGUAGES_FOLDER "/") + language + ".qm";
    }

    WindowWidths m_english;
};

// Without letters of both languages nothing could be measured.
void LanguageWindowTest::initTestCase()
{
    const QFontDatabase fonts;
    QVERIFY2(!fonts.families(QFontDatabase::SimplifiedChinese).isEmpty(),
             "no font has Chinese letters; install the package fonts-wqy-microhei");
    QVERIFY2(!fonts.families(QFontDatabase::Japanese).isEmpty(),
             "no font has Japanese letters; install the package fonts-wqy-microhei");
    QVERIFY2(useUsualFont(), "there is no font DejaVu Sans; install the package fonts-dejavu-core");
    const ReaderFixture fixture(makeMbc5Cartridge(32 * kKiB));
    m_english = measure();
    QCOMPARE(m_english.cut.join("; "), QString());
}

void LanguageWindowTest::textTooLongIsNoticed()
{
    const ReaderFixture fixture(makeMbc5Cartridge(32 * kKiB));
    LongTranslator translator;
    const InstalledLanguage installed(&translator);
    QVERIFY(measure().window > m_english.window + kRoomPixels);
}

void LanguageWindowTest::languageFitsTheWindow()
{
    QFETCH(QString, language);
    const ReaderFixture fixture(makeMbc5Cartridge(32 * kKiB));
    QTranslator translator;
    QVERIFY(translator.load(languagePath(language)));
    const InstalledLanguage installed(&translator);
    QVERIFY(translated("MainTab", "Dump") != "Dump");
    const WindowWidths widths = measure();
    QCOMPARE(widths.cut.join("; "), QString());
    QVERIFY2(widths.window <= m_english.window + kRoomPixels,
             qPrintable(QString("%1 instead of %2").arg(widths.window).arg(m_english.window)));
}

void LanguageWindowTest::dumpSpeaksTheLanguage()
{
    QFETCH(QString, language);
    QTranslator translator;
    QVERIFY(translator.load(languagePath(language)));
    const InstalledLanguage installed(&translator);
    JobWindow window(cartridgeOf(gbImage({0x1B, 64 * kKiB, 32 * kKiB, "VIRTUAL", 1}), {}));
    window.selectGb(kMapperMbc5Row, 64 * kKiB, 32 * kKiB);
    window.tab().guarded->readsUnknownTwice = true;
    const QString path = window.bench().path("dump.gb");
    window.run(&MainTab::dumpButton, path);
    QVERIFY(window.bench().fileBytes("dump.gb") == window.bench().rom());

    const QString log = window.log();
    for (const auto &text :
         {translated("MainTab", "Velora Driver Series for GB/GBC/GBA 3.0 started."),
          translated("MainTab", "To dump GB/GBC cartridge,please switch power to 5V."),
          translated("MainTab", "Reading data from ROM to file:"),
          translated("QObject", "Start dump rom..."), translated("QObject", "Dump rom finish."),
          translated("MainTab", ">Success!"), translated("Words", "not a known dump")})
        QVERIFY2(log.contains(text), qPrintable(text + "\n" + log));
    const QString word = translated("Judgement", "consistent: %1").section("%1", 0, 0);
    const QString judgement = window.tab().console->accessibleDescription(); // as it is spoken
    QVERIFY2(!word.isEmpty() && judgement.startsWith(word), qPrintable(judgement));
    QVERIFY(word != "consistent: ");
    // The name of the product may stay as a whole.
    QCOMPARE(englishWords(log, {path, "Velora Driver Series for GB/GBC/GBA 3.0"}).join(' '),
             QString());
}

GBDRIVER_TEST(LanguageWindowTest, gui)
#include "language_window_test.moc"
