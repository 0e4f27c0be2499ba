// The settings box in use: the wheel that comes by, and what assistive programs say of it.
#include "settings_lists.h"
#include "test_class.h"
#include "ui/settings.h"

#include <QAccessible>
#include <QApplication>
#include <QWheelEvent>
#include <QtTest>

#include <memory>

namespace
{

// Notes the turns of the wheel that reach it.
class WheelWatch : public QObject
{
public:
    bool eventFilter(QObject *, QEvent *event) override
    {
        turns += event->type() == QEvent::Wheel;
        return false;
    }

    int turns = 0;
};

// As the user turns it over the middle of `widget`. Only an event that seems to come from the
// system goes on to the parent and may move the focus.
void turnWheel(QWidget *widget, int notches)
{
    const QPoint middle = widget->rect().center();
    QWheelEvent turn(middle, widget->mapToGlobal(middle), QPoint(), QPoint(0, 120 * notches),
                     Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&turn);
    qApp->notify(widget, &turn);
}

// What assistive programs take for the label of `widget`, beside the title of the group.
QString spokenLabel(QWidget *widget)
{
    QStringList labels;
    const QAccessibleInterface *face = QAccessible::queryAccessibleInterface(widget);
    for (const auto &relation : face->relations(QAccessible::Label)) {
        if (relation.first->role() == QAccessible::StaticText)
            labels << relation.first->text(QAccessible::Name);
    }
    return labels.join('|');
}

} // namespace

class SettingsUseTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_box.reset(); }

    void wheelPassesAListWithoutFocus();
    void wheelTurnsTheListWithTheFocus();
    void listsAreSpokenByTheirLabels();

private:
    std::unique_ptr<Settings> m_box;
    Settings *m_settings = nullptr;
    std::unique_ptr<SettingsLists> m_lists;
};

void SettingsUseTest::init()
{
    m_box = std::make_unique<Settings>();
    m_settings = m_box.get();
    m_lists = std::make_unique<SettingsLists>(*m_settings);
    m_settings->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_settings));
}

void SettingsUseTest::wheelPassesAListWithoutFocus()
{
    m_settings->selectItem2(1048576);
    m_settings->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_settings));
    m_lists->verify->setFocus();
    QVERIFY(m_lists->verify->hasFocus());
    WheelWatch around;
    m_settings->installEventFilter(&around);
    int turns = 0;
    for (QComboBox *box : {m_lists->system, m_lists->item1, m_lists->item2, m_lists->item3}) {
        const int row = box->currentIndex();
        for (const int notches : {-1, 1}) {
            turnWheel(box, notches);
            QCOMPARE(box->currentIndex(), row);
            QVERIFY(!box->hasFocus());
            QCOMPARE(around.turns, ++turns);
        }
    }
    QCOMPARE(m_settings->getSysType(), 0);
    QCOMPARE(m_settings->getGbRomSize(), 1048576);
}

void SettingsUseTest::wheelTurnsTheListWithTheFocus()
{
    m_settings->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_settings));
    m_lists->item2->setFocus();
    QVERIFY(m_lists->item2->hasFocus());
    turnWheel(m_lists->item2, -1);
    QCOMPARE(m_settings->getGbRomSize(), 65536);
}

void SettingsUseTest::listsAreSpokenByTheirLabels()
{
    const auto spoken = [this] {
        return QStringList{spokenLabel(m_lists->system), spokenLabel(m_lists->item1),
                           spokenLabel(m_lists->item2), spokenLabel(m_lists->item3)};
    };
    QCOMPARE(spoken(), (QStringList{"SYS TYPE:", "MBC TYPE:", "ROM SIZE:", "RAM SIZE:"}));
    m_settings->selectSysType(1);
    QCOMPARE(spoken(), (QStringList{"SYS TYPE:", "ROM SIZE:", "RAM TYPE:", "RAM SIZE:"}));
    const QAccessibleInterface *face = QAccessible::queryAccessibleInterface(m_lists->verify);
    QCOMPARE(face->text(QAccessible::Name), QString("Verify the data after writing"));
}

GBDRIVER_TEST(SettingsUseTest, gui)
#include "settings_use_test.moc"
