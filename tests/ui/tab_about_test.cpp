// The about tab: every text, which of them are translated, and that its links open.
#include "translators.h"

#include "test_class.h"
#include "ui/maker.h"
#include "ui/tab_about.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QFontMetrics>
#include <QGroupBox>
#include <QLabel>
#include <QRegularExpression>
#include <QUrl>
#include <QVBoxLayout>
#include <QtTest>

#include <memory>

namespace
{
// Stands in for the system's browser and mail program.
class LinkOpener : public QObject
{
    Q_OBJECT

public:
    LinkOpener()
    {
        QDesktopServices::setUrlHandler("https", this, "open");
        QDesktopServices::setUrlHandler("mailto", this, "open");
    }
    ~LinkOpener() override
    {
        QDesktopServices::unsetUrlHandler("https");
        QDesktopServices::unsetUrlHandler("mailto");
    }

    QStringList opened;

public slots:
    void open(const QUrl &url) { opened << url.toString(); }
};

const char kWebAnchor[] = "<a href=\"https://velora.example\">https://velora.example</a>";
const char kEmailAnchor[] = "<a href=\"mailto:support@velora.example\">support@velora.example</a>";

QStringList expectedTexts()
{
    return {"* Squirrel 3.1 stable, Copyright (c) 2003-2016\n  Alberto Demichelis\n\n"
            "* Qt 5.7, Copyright (c) 2016-2020\n  The Qt Company Ltd.",
            "GB/GBC/GBA Cartridge Dumper",
            "Copyright (c) 2026\nVelora",
            QString("Web site: ") + kWebAnchor,
            QString("Email: ") + kEmailAnchor,
            "This program and device, called set, enables to:\n"
            "- make game backups from owned cartridges and play them on PC,\n"
            "- transfer game saves between cartridge and PC,\n"
            "- test written by yourself games directly on console \n"
            "  (rewritable cartridge required).\n"};
}

QGroupBox *groupOf(const TabAbout &tab)
{
    return tab.findChild<QGroupBox *>(QString(), Qt::FindDirectChildrenOnly);
}

// The labels from top to bottom, as the group's layout has them.
QList<QLabel *> labelsOf(const TabAbout &tab)
{
    QList<QLabel *> labels;
    const QLayout *layout = groupOf(tab)->layout();
    for (int i = 0; i < layout->count(); ++i)
        labels << qobject_cast<QLabel *>(layout->itemAt(i)->widget());
    return labels;
}

QStringList textsOf(const TabAbout &tab)
{
    QStringList texts;
    for (const QLabel *label : labelsOf(tab))
        texts << label->text();
    return texts;
}

// Presses the label a little behind its plain beginning `before`.
void clickBehind(QLabel *label, const QString &before)
{
    const int x =
        label->contentsRect().left() + QFontMetrics(label->font()).boundingRect(before).width();
    constexpr int kInsideTheAnchor = 10;
    QTest::mouseClick(label, Qt::LeftButton, Qt::NoModifier,
                      QPoint(x + kInsideTheAnchor, label->rect().center().y()));
}
} // namespace

class TabAboutTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void classIsAStaticPage();
    void pageHoldsOneGroup();
    void labelsStandInOrder();
    void makerIsNamedInOnePlace();
    void onlyTheTwoAddressesAreLinks();
    void clickedLinkOpens_data();
    void clickedLinkOpens();
    void clickBesideALinkOpensNothing();
    void linksOpenByKeyboard();
    void everyTextCanBeCopied();
    void everyTextButTheMakersNoticeIsTranslated();
    void fileChangesNothing_data();
    void fileChangesNothing();
    void parentTakesThePage();
    void wholePageIsReadable();

private:
    std::unique_ptr<TabAbout> m_tab;
};

void TabAboutTest::init()
{
    m_tab = std::make_unique<TabAbout>(QFileInfo("."));
    m_tab->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_tab.get()));
}

void TabAboutTest::cleanup()
{
    m_tab.reset();
}

void TabAboutTest::classIsAStaticPage()
{
    const QMetaObject &meta = TabAbout::staticMetaObject;
    QCOMPARE(QString(meta.className()), QString("TabAbout"));
    QCOMPARE(meta.superClass(), &QWidget::staticMetaObject);
    QCOMPARE(meta.methodCount(), meta.methodOffset());
}

void TabAboutTest::pageHoldsOneGroup()
{
    QCOMPARE(m_tab->windowTitle(), QString("About"));
    auto *layout = qobject_cast<QVBoxLayout *>(m_tab->layout());
    QVERIFY(layout);
    QCOMPARE(layout->count(), 1);
    QVERIFY(groupOf(*m_tab));
    QCOMPARE(layout->itemAt(0)->widget(), groupOf(*m_tab));
    QCOMPARE(groupOf(*m_tab)->title(), QString("Velora Cartridge Driver/Dumper"));
    QVERIFY(qobject_cast<QVBoxLayout *>(groupOf(*m_tab)->layout()));
}

void TabAboutTest::labelsStandInOrder()
{
    QCOMPARE(textsOf(*m_tab), expectedTexts());
    int below = -1;
    for (const QLabel *label : labelsOf(*m_tab)) {
        QCOMPARE(label->parentWidget(), groupOf(*m_tab));
        QVERIFY2(label->y() > below, qPrintable(label->text()));
        below = label->geometry().bottom();
    }
    QCOMPARE(m_tab->findChildren<QLabel *>().count(), 6);
}

void TabAboutTest::makerIsNamedInOnePlace()
{
    const QStringList texts = textsOf(*m_tab);
    QCOMPARE(texts[2].split('\n'),
             (QStringList{QString("Copyright (c) ") + kMakerYears, kMakerName}));
    QCOMPARE(texts[3].count(kMakerWebAddress), 2);
    QCOMPARE(texts[4].count(kMakerEmail), 2);
    QVERIFY(QUrl(kMakerWebAddress).host().endsWith(".example")); // reserved, reaches nobody
    QVERIFY(QString(kMakerEmail).endsWith(".example"));
}

void TabAboutTest::onlyTheTwoAddressesAreLinks()
{
    QList<bool> opens;
    for (const QLabel *label : labelsOf(*m_tab))
        opens << label->openExternalLinks();
    QCOMPARE(opens, (QList<bool>{false, false, false, true, true, false}));
}

void TabAboutTest::clickedLinkOpens_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("target");
    QTest::newRow("web site") << 3 << "Web site: "
                              << "https://velora.example";
    QTest::newRow("e-mail") << 4 << "Email: "
                            << "mailto:support@velora.example";
}

void TabAboutTest::clickedLinkOpens()
{
    QFETCH(int, index);
    QFETCH(QString, before);
    QFETCH(QString, target);
    const LinkOpener opener;
    clickBehind(labelsOf(*m_tab)[index], before);
    QCOMPARE(opener.opened, QStringList{target});
}

void TabAboutTest::clickBesideALinkOpensNothing()
{
    const LinkOpener opener;
    for (QLabel *label : labelsOf(*m_tab))
        clickBehind(label, QString()); // on the plain beginning of each text
    QCOMPARE(opener.opened, QStringList());
}

// Tab goes to the label, then to the link in it, and on to the next label with a link.
void TabAboutTest::linksOpenByKeyboard()
{
    const LinkOpener opener;
    m_tab->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_tab.get()));
    labelsOf(*m_tab)[3]->setFocus(Qt::TabFocusReason);
    for (const int index : {3, 4}) {
        QLabel *label = labelsOf(*m_tab)[index];
        QVERIFY(label->hasFocus());
        QTest::keyClick(label, Qt::Key_Tab);
        QVERIFY(label->hasFocus());
        QTest::keyClick(label, Qt::Key_Return);
        QTest::keyClick(label, Qt::Key_Tab);
    }
    QCOMPARE(opener.opened,
             (QStringList{"https://velora.example", "mailto:support@velora.example"}));
}

void TabAboutTest::everyTextCanBeCopied()
{
    const QRegularExpression markup("<[^>]*>");
    for (QLabel *label : labelsOf(*m_tab)) {
        const QString shown = label->text().remove(markup);
        const QPoint firstWord = label->contentsRect().topLeft() + QPoint(4, 4);
        QTest::mouseDClick(label, Qt::LeftButton, Qt::NoModifier, firstWord);
        QVERIFY2(label->hasSelectedText(), qPrintable(shown));
        QTest::keyClick(label, Qt::Key_A, Qt::ControlModifier);
        // Lines are separated as in a text document.
        QCOMPARE(label->selectedText().replace(QChar::ParagraphSeparator, '\n'), shown);
    }
}

void TabAboutTest::everyTextButTheMakersNoticeIsTranslated()
{
    MarkingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const TabAbout translated(QFileInfo("."));
    QCOMPARE(translated.windowTitle(), QString("[TabAbout]About"));
    QCOMPARE(groupOf(translated)->title(), QString("[TabAbout]Velora Cartridge Driver/Dumper"));

    const QStringList english = expectedTexts();
    QStringList expected;
    for (const QString &text : english)
        expected << (text == english[2] ? text : "[TabAbout]" + text);
    QCOMPARE(textsOf(translated), expected);
}

void TabAboutTest::fileChangesNothing_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("this folder") << ".";
    QTest::newRow("no file") << "";
    QTest::newRow("missing") << "no such file.gb";
    QTest::newRow("program") << QCoreApplication::applicationFilePath();
}

void TabAboutTest::fileChangesNothing()
{
    QFETCH(QString, file);
    const TabAbout other{QFileInfo(file)};
    QCOMPARE(textsOf(other), expectedTexts());
    QCOMPARE(other.windowTitle(), m_tab->windowTitle());
    QCOMPARE(groupOf(other)->title(), groupOf(*m_tab)->title());
    QCOMPARE(other.findChildren<QObject *>().count(), m_tab->findChildren<QObject *>().count());
}

void TabAboutTest::parentTakesThePage()
{
    QWidget window;
    const auto *tab = new TabAbout(QFileInfo("."), &window);
    QCOMPARE(tab->parentWidget(), &window);
    QVERIFY(!m_tab->parentWidget());
}

// Nothing is cut off: every label has the room that its text asks for.
void TabAboutTest::wholePageIsReadable()
{
    for (const QLabel *label : labelsOf(*m_tab)) {
        QVERIFY2(label->width() >= label->sizeHint().width(), qPrintable(label->text()));
        QVERIFY2(label->height() >= label->sizeHint().height(), qPrintable(label->text()));
    }
}

GBDRIVER_TEST(TabAboutTest, gui)
#include "tab_about_test.moc"
