// Whatever the window shows has gone through the translator: with one that leaves no letter of any
// text, no English is left.
#include "english_words.h"
#include "file_dialog_answer.h"
#include "guarded_write_cases.h"
#include "job_window.h"
#include "log_check.h"
#include "test_class.h"

#include "app/tab_dialog.h"
#include "cart/setting_tables.h"
#include "device/device_link.h"
#include "device/one_drive_backend.h"
#include "ui/guarded_job.h"
#include "ui/reader_corner.h"
#include "ui/settings.h"
#include "virtual/gb_cartridges.h"

#include <QAbstractButton>
#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTranslator>

#include <functional>
#include <memory>

using namespace virtual_reader;

namespace
{

constexpr int kJobTimeoutMs = 60000;

// Puts another letter for every one but those of placeholders, markup, paths and file filters.
class BlindTranslator : public QTranslator
{
public:
    QString translate(const char * /*context*/, const char *source, const char * /*disambiguation*/,
                      int /*n*/) const override
    {
        static const QRegularExpression kept(
            "<[^>]*>|(0x)?%[1-9]|\\(\\*[^)]*\\)|^/mapper/$|^gba\\.nut$");
        const QString text = QString::fromUtf8(source);
        QString blind;
        int position = 0;
        for (auto all = kept.globalMatch(text); all.hasNext();) {
            const QRegularExpressionMatch match = all.next();
            blind +=
                blinded(text.mid(position, match.capturedStart() - position)) + match.captured();
            position = match.capturedEnd();
        }
        return blind + blinded(text.mid(position));
    }
    bool isEmpty() const override { return false; }

private:
    static QString blinded(QString text)
    {
        static const QRegularExpression letters("[A-Za-z]");
        return text.replace(letters, QString(QChar(0x3093)));
    }
};

// Every text of a window but its log.
QString textsOf(const QWidget &window)
{
    QStringList texts{window.windowTitle()};
    for (const QWidget *widget : window.findChildren<QWidget *>())
        texts << widget->toolTip() << widget->accessibleName() << widget->accessibleDescription();
    for (const QAbstractButton *button : window.findChildren<QAbstractButton *>())
        texts << button->text();
    for (const QLabel *label : window.findChildren<QLabel *>())
        texts << label->text();
    for (const QGroupBox *group : window.findChildren<QGroupBox *>())
        texts << group->title();
    for (const QAction *action : window.findChildren<QAction *>())
        texts << action->text() << action->toolTip();
    return texts.join('\n');
}

struct ShownJob {
    std::function<std::unique_ptr<JobWindow>()> window;
    ActionButton button = &MainTab::dumpButton;
    QByteArray file; // that is written
};

ShownJob written(const WriteCase &row)
{
    return {[row] { return windowFor(row); }, row.button, row.file};
}

ShownJob read(ActionButton button, const std::function<std::unique_ptr<Cartridge>()> &cartridge,
              int ramSize = 32 * kKiB)
{
    return {[=] {
                auto window = std::make_unique<JobWindow>(cartridge ? cartridge() : nullptr);
                window->selectGb(kMapperMbc5Row, 64 * kKiB, ramSize);
                return window;
            },
            button,
            {}};
}

std::unique_ptr<Cartridge> flakyCartridge()
{
    CartridgeOptions options;
    options.flakyBank = 3;
    return cartridgeOf(gbGame(64 * kKiB, 1), options);
}

std::unique_ptr<Cartridge> mbc7Cartridge()
{
    return cartridgeOf(gbGame(64 * kKiB, 1, 0x22), {});
}

} // namespace

Q_DECLARE_METATYPE(ShownJob)

class UntranslatedTextTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QVERIFY(QCoreApplication::installTranslator(&m_translator)); }
    void cleanup() { QCoreApplication::removeTranslator(&m_translator); }

    void wordThatIsLeftIsNoticed();
    void windowHasNone();
    void jobsSayNone_data();
    void jobsSayNone();
    void menuSaysNone();
    void missingReaderSaysNone();

private:
    BlindTranslator m_translator;
};

void UntranslatedTextTest::wordThatIsLeftIsNoticed()
{
    const QString blind = QCoreApplication::translate("Any", "Plain %1 <b>text</b> of a ROM");
    QCOMPARE(englishWords(blind, {"<b>", "</b>"}), QStringList());
    QCOMPARE(englishWords(blind.arg("left") + " /a/path", {"/a/path", "<b>", "</b>"}),
             QStringList("left"));
}

void UntranslatedTextTest::windowHasNone()
{
    const ReaderFixture fixture(makeMbc5Cartridge(32 * kKiB));
    TabDialog dialog(".");
    QString texts;
    for (const int system : {kSystemGb, kSystemGba}) {
        dialog.findChild<Settings *>()->selectSysType(system);
        texts += textsOf(dialog);
    }
    const auto *tabs = dialog.findChild<QTabWidget *>();
    for (int tab = 0; tab < tabs->count(); ++tab)
        texts += '\n' + tabs->tabText(tab);
    for (const Console *console : dialog.findChildren<Console *>())
        texts += '\n' + console->toPlainText();
    const QStringList notTranslated{QStringLiteral(__DATE__).left(3), // in the title
                                    "Copyright (c) 2026",
                                    "mailto:support@velora.example",
                                    "support@velora.example",
                                    "https://velora.example",
                                    "<a href=",
                                    "</a>",
                                    "qt_scrollarea"};
    QCOMPARE(englishWords(texts, notTranslated).join(' '), QString());
}

void UntranslatedTextTest::jobsSayNone_data()
{
    const auto game = [] { return cartridgeOf(gbGame(64 * kKiB, 1), {}); };
    const QByteArray save = noise(32 * kKiB, 2);
    QTest::addColumn<ShownJob>("job");
    QTest::newRow("dump") << read(&MainTab::dumpButton, game);
    QTest::newRow("flaky dump") << read(&MainTab::dumpButton, flakyCartridge);
    QTest::newRow("empty slot") << read(&MainTab::dumpButton, {});
    QTest::newRow("save") << read(&MainTab::readRamButton, game);
    QTest::newRow("save, too large") << read(&MainTab::readRamButton, game, 128 * kKiB);
    QTest::newRow("save of an MBC7") << read(&MainTab::readRamButton, mbc7Cartridge);
    QTest::newRow("write") << written(gbSave(save));
    QTest::newRow("write, not compared") << written(unticked(gbSave(save)));
    QTest::newRow("short file") << written(gbSave(save.left(100)));
    QTest::newRow("long file") << written(gbSave(save + save));
    QTest::newRow("over an empty save") << written(gbSave(save, QByteArray(32 * kKiB, '\xFF')));
    QTest::newRow("equal bytes") << written(gbSave(QByteArray(32 * kKiB, '\0')));
    QTest::newRow("write, empty slot") << written(emptySlot(gbSave(save)));
    QTest::newRow("GBA save") << written(gbaSave(GbaSaveType::Sram, kSaveSram, 32 * kKiB));
    QTest::newRow("flash") << written(narrowFlash(gbFile(32 * kKiB, 0)));
    QTest::newRow("flash, protected") << written(narrowFlash(gbFile(32 * kKiB, 0), true));
    QTest::newRow("flash, empty file") << written(narrowFlash({}));
}

void UntranslatedTextTest::jobsSayNone()
{
    QFETCH(ShownJob, job);
    const std::unique_ptr<JobWindow> window = job.window();
    window->tab().guarded->readsUnknownTwice = true;
    QString path = window->bench().path("a file");
    if (job.button != &MainTab::dumpButton && job.button != &MainTab::readRamButton)
        path = window->bench().addFile("a file", job.file);
    window->run(job.button, path);
    QStringList foreign{path};
    foreign << window->backups().keys();
    // The judgement is spoken, too.
    const QString spoken = window->tab().console->accessibleDescription();
    QVERIFY(spoken.contains(": ") && window->log().contains(spoken.section('\n', 0, 0)));
    QCOMPARE(englishWords(window->log(), foreign).join(' '), QString());
}

void UntranslatedTextTest::menuSaysNone()
{
    ReaderFixture fixture(makeMbc5Cartridge(64 * kKiB));
    ReaderFixture::addShippedScripts();
    TabDialog dialog(".");
    auto *tab = dialog.findChild<MainTab *>();
    auto *corner = dialog.findChild<ReaderCorner *>();
    dialog.show();
    QTRY_VERIFY(corner->text().contains("QDX_PCB02_FW303"));
    const QString folder = fixture.path("backup of it");
    QVERIFY(QDir().mkpath(folder));
    const QString file = fixture.addFile("a file", gbFile(32 * kKiB));
    const auto trigger = [&](QAction *action, const QString &path) {
        FileDialogAnswer answer(path);
        action->trigger();
        QCOMPARE(answer.wasAsked, !path.isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(isIdle(*tab), kJobTimeoutMs);
    };
    trigger(corner->infoAction, {});
    trigger(corner->backUpAction, folder);
    trigger(corner->checkFileAction, file);
    trigger(corner->whyNoReaderAction, {});
    const QString place = QString::fromLocal8Bit(driveBackend().drivePlace("E:").c_str());
    QStringList foreign{place, file};
    for (const QString &name : QDir(folder).entryList(QDir::Files))
        foreign << folder + '/' + name;
    foreign << folder << "ROM+MBC5+RAM+BATT"
            << "K-DRIVER";
    QCOMPARE(englishWords(tab->console->toPlainText(), foreign).join(' '), QString());
}

void UntranslatedTextTest::missingReaderSaysNone()
{
    const ReaderFixture fixture(makeMbc5Cartridge(64 * kKiB));
    OneDriveBackend noDrive(driveBackend(), 'Z');
    setDriveBackend(&noDrive);
    TabDialog dialog(".");
    auto *tab = dialog.findChild<MainTab *>();
    auto *corner = dialog.findChild<ReaderCorner *>();
    dialog.show();
    corner->infoAction->trigger();
    QTRY_VERIFY(isIdle(*tab));
    corner->whyNoReaderAction->trigger();
    QTRY_VERIFY(isIdle(*tab));
    const QStringList foreign{"GBDRIVER_DRIVES=\"E=/mnt/reader\" gbdriver-cli drives"};
    QCOMPARE(englishWords(tab->console->toPlainText(), foreign).join(' '), QString());
}

GBDRIVER_TEST(UntranslatedTextTest, gui)
#include "untranslated_text_test.moc"
