// The main tab without a mouse and without eyes: where the keyboard goes, and the names
// that assistive programs find.
#include "file_dialog_answer.h"
#include "log_check.h"
#include "reader_fixture.h"
#include "test_class.h"

#include "ui/guarded_job.h"
#include "ui/settings.h"
#include "virtual/gb_cartridges.h"

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QtTest>

#include <memory>

using namespace virtual_reader;

namespace
{

constexpr int kJobTimeoutMs = 60000;
QString spoken(QWidget *widget, QAccessible::Text part)
{
    QAccessibleInterface *access = QAccessible::queryAccessibleInterface(widget);
    return access == nullptr ? QString() : access->text(part);
}

// Where Tab leads from `first`, once around; `first` itself stands in front.
QVector<QWidget *> tabStops(QWidget *first)
{
    QVector<QWidget *> stops{first};
    for (QWidget *next = first->nextInFocusChain(); next != first; next = next->nextInFocusChain())
        if ((next->focusPolicy() & Qt::TabFocus) != 0 && next->isVisibleTo(first->window()))
            stops << next;
    return stops;
}

} // namespace

class AccessTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fixture = std::make_unique<ReaderFixture>(makeMbc5Cartridge(64 * 1024));
        m_fixture->findReader();
        ReaderFixture::addShippedScripts();
        m_tab = std::make_unique<MainTab>();
        m_tab->guarded->backupFolder = m_fixture->path("backups");
        m_tab->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_tab.get()));
        m_tab->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_tab.get()));
    }

    void cleanup()
    {
        m_tab.reset();
        m_fixture.reset();
    }

    void tabGoesFromSettingsOverActionsToLogAndCancel()
    {
        const QList<QComboBox *> lists = m_tab->settings->findChildren<QComboBox *>();
        QVector<QWidget *> wanted;
        for (QComboBox *list : lists)
            wanted << list;
        wanted << m_tab->settings->findChild<QCheckBox *>() << m_tab->infoButton
               << m_tab->dumpButton << m_tab->flashButton << m_tab->readRamButton
               << m_tab->writeRamButton << m_tab->console << m_tab->cancelButton;
        QCOMPARE(tabStops(lists[0]), wanted);
    }

    void keyboardComesBackToTheActionThatWasPressed()
    {
        m_tab->dumpButton->setFocus();
        FileDialogAnswer answer(m_fixture->path("dump.gb"));
        QTest::keyClick(m_tab->dumpButton, Qt::Key_Space);
        QTRY_VERIFY_WITH_TIMEOUT(isIdle(*m_tab), kJobTimeoutMs);
        QVERIFY(answer.wasAsked);
        QCOMPARE(m_tab->window()->focusWidget(), m_tab->dumpButton);
    }

    void keyboardStaysWhereTheUserHasPutIt()
    {
        m_tab->dumpButton->setFocus();
        FileDialogAnswer answer(m_fixture->path("dump.gb"));
        QTest::keyClick(m_tab->dumpButton, Qt::Key_Space);
        m_tab->console->setFocus();
        QTRY_VERIFY_WITH_TIMEOUT(isIdle(*m_tab), kJobTimeoutMs);
        QCOMPARE(m_tab->focusWidget(), m_tab->console);
    }

    // What assistive programs say of the log when they are told that it has something to say.
    void judgementIsWhatTheLogIsAbout()
    {
        FileDialogAnswer answer(m_fixture->path("dump.gb"));
        m_tab->dumpButton->click();
        QTRY_VERIFY_WITH_TIMEOUT(isIdle(*m_tab), kJobTimeoutMs);
        QVERIFY2(spoken(m_tab->console, QAccessible::Description).contains(": "),
                 qPrintable(spoken(m_tab->console, QAccessible::Description)));
        QCOMPARE(spoken(m_tab->console, QAccessible::Description), judgementsOf(*m_tab)[0]);
    }

    void everythingIsNamedAndDescribed()
    {
        QCOMPARE(spoken(m_tab->console, QAccessible::Name), QString("Log"));
        QCOMPARE(spoken(m_tab->progress, QAccessible::Name), QString("Progress"));
        QVector<QWidget *> widgets{m_tab->console, m_tab->progress,
                                   m_tab->settings->findChild<QCheckBox *>()};
        for (QComboBox *list : m_tab->settings->findChildren<QComboBox *>())
            widgets << list;
        QSet<QString> texts;
        for (QWidget *widget : widgets)
            texts << spoken(widget, QAccessible::Description);
        QCOMPARE(texts.size(), widgets.size());
        QVERIFY(!texts.contains(QString()));
    }

private:
    std::unique_ptr<ReaderFixture> m_fixture;
    std::unique_ptr<MainTab> m_tab;
};

GBDRIVER_TEST(AccessTest, gui)
#include "access_test.moc"
