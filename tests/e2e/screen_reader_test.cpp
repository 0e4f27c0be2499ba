// The real window as a screen reader has it, over the accessibility bus: every control by its role
// and its name, and what is spoken of jobs.
#include "accessibility_bus.h"
#include "cartridge_files.h"
#include "driven_window.h"
#include "test_class.h"

#include <QtTest>

namespace
{

constexpr int kStepMs = 60000;
constexpr std::uint32_t kRomSize = 64 * 1024;

} // namespace

class ScreenReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCOMPARE(m_bus.startSession(), QString());
        QCOMPARE(m_reader.start(m_files.addImage(0x19, kRomSize, 0)), QString());
        QCOMPARE(m_window.start(m_reader), QString());
        QCOMPARE(m_bus.listen(), QString());
        QTRY_COMPARE_WITH_TIMEOUT(namesOf("button menu"), QStringList("Reader: E: QDX_PCB02_FW303"),
                                  kStepMs);
    }

    void controlsAreNamed_data()
    {
        QTest::addColumn<QStringList>("names");

        QTest::newRow("page tab") << QStringList{"About", "GB", "Update"};
        // A list is named after its choice; its label is told beside it.
        QTest::newRow("combo box") << QStringList{"256 Kbit", "512 B", "GB/GBC", "MBC5"};
        QTest::newRow("check box") << QStringList{"Verify the data after writing"};
        // With the arrows of the tabs, which only a narrow window shows.
        QTest::newRow("push button")
            << QStringList{"Cancel",      "Dump",         "FLASH",           "Info",     "Read RAM",
                           "Scroll Left", "Scroll Right", "Update Firmware", "Write RAM"};
        QTest::newRow("progress bar") << QStringList{"Progress", "Progress"};
        QTest::newRow("text") << QStringList{"Log", "Log"};
    }

    void controlsAreNamed()
    {
        QFETCH(QStringList, names);
        QCOMPARE(namesOf(QTest::currentDataTag()), names);
    }

    // Also where the keyboard is elsewhere, and not once more when the user comes back to the tab.
    void judgementIsSpokenOnceBehindTheJobsEnd()
    {
        // ROM size: the second row, 64 KiB.
        m_window.pressInSettings({"Tab", "Tab", "Tab", "Down"});
        QCOMPARE(
            m_window.answerDialog(WindowButton::Dump, "Read ROM to...", m_files.path("dump.gb")),
            QString());
        QTRY_COMPARE_WITH_TIMEOUT(announcements().size(), 1, kStepMs);
        const SpokenObject first = announcements()[0];
        QVERIFY2(first.name.startsWith("unverified: not a known dump"), qPrintable(first.name));
        QVERIFY2(m_window.log().contains('\n' + first.name + '\n'), qPrintable(m_window.log()));
        const QStringList told = namesIn(m_bus.events());
        const int end = told.indexOf(QRegularExpression("[^>]*>Success!"));
        QVERIFY2(end >= 0 && end < told.indexOf(first.name), qPrintable(told.join('|')));

        m_window.pressInSettings({"ctrl+Tab", "ctrl+shift+Tab"});
        m_window.press(WindowButton::ReadAgain);
        QTRY_COMPARE_WITH_TIMEOUT(announcements().size(), 2, kStepMs);
        const QString second = announcements()[1].name;
        QVERIFY2(second.contains("2 equal reads"), qPrintable(second));
    }

    void programEndsQuietly() { QCOMPARE(m_window.close(), QString()); }

private:
    QStringList namesOf(const QString &role)
    {
        QStringList names;
        for (const SpokenObject &object : m_bus.objects()) {
            if (object.role == role)
                names << object.name;
        }
        names.sort();
        return names;
    }

    // Notifications are spoken when they begin to show.
    QVector<SpokenObject> announcements() const
    {
        QVector<SpokenObject> found;
        for (const SpokenObject &event : m_bus.events()) {
            if (event.role == "notification")
                found << event;
        }
        return found;
    }

    static QStringList namesIn(const QVector<SpokenObject> &objects)
    {
        QStringList names;
        for (const SpokenObject &object : objects)
            names << object.name;
        return names;
    }

    AccessibilityBus m_bus;
    CartridgeFiles m_files;
    MountedReader m_reader;
    DrivenWindow m_window;
};

GBDRIVER_TEST(ScreenReaderTest, core)
#include "screen_reader_test.moc"
