// The Info action when something is wrong: the complete log, the settings that it leaves alone, and
// the reader that it gives up.
#include "drive_faults.h"
#include "file_dialog_answer.h"
#include "log_check.h"
#include "reader_fixture.h"

#include "test_class.h"
#include "ui/guarded_job.h"
#include "ui/settings.h"

#include <QPushButton>
#include <QSemaphore>
#include <QtTest>

#include <memory>

using namespace virtual_reader;

class MainTabReportFailureTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void noReader();
    void modeThatCanNotBeSelected_data();
    void modeThatCanNotBeSelected();
    void faultOfTheModeIsExplained_data();
    void faultOfTheModeIsExplained();
    void hangingReaderLeavesTheWindowAlive_data();
    void hangingReaderLeavesTheWindowAlive();
    void headerThatComesShort_data();
    void headerThatComesShort();
    void failuresLeaveTheSettings_data();
    void failuresLeaveTheSettings();
    void readerIsReleased_data();
    void readerIsReleased();

private:
    void use(std::unique_ptr<Cartridge> cartridge);
    void pressInfo() { QTest::mouseClick(m_tab->infoButton, Qt::LeftButton); }

    std::unique_ptr<ReaderFixture> m_fixture;
    std::unique_ptr<MainTab> m_tab;
};

void MainTabReportFailureTest::use(std::unique_ptr<Cartridge> cartridge)
{
    m_fixture = std::make_unique<ReaderFixture>(std::move(cartridge));
    m_tab = std::make_unique<MainTab>();
    m_tab->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_tab.get()));
}

void MainTabReportFailureTest::cleanup()
{
    m_tab.reset();
    m_fixture.reset();
}

void MainTabReportFailureTest::noReader()
{
    use(makeMbc5Cartridge(32 * 1024));
    m_fixture->drive().setGone(true);
    pressInfo();
    COMPARE_LOG(*m_tab, QStringList{"Can not found dump device."});
    QCOMPARE(m_fixture->traffic(), QStringList());
    QVERIFY(isIdle(*m_tab));
}

void MainTabReportFailureTest::modeThatCanNotBeSelected_data()
{
    QTest::addColumn<int>("goodCommands"); // before the one that is not written
    QTest::addColumn<QStringList>("traffic");
    QTest::newRow("GB, both commands") << 0 << QStringList();
    QTest::newRow("GB, second command") << 1 << QStringList{"F0/02"};
    QTest::newRow("GBA, both commands") << 2 << gbHeaderTraffic();
    QTest::newRow("GBA, second command") << 3 << gbHeaderTraffic() + QStringList{"F0/03"};
}

void MainTabReportFailureTest::modeThatCanNotBeSelected()
{
    QFETCH(int, goodCommands);
    use(makeGbaGame("AWRP"));
    m_fixture->drive().addFault(
        commandFault(static_cast<unsigned>(goodCommands), DriveFault::kForever));
    pressInfo();
    COMPARE_LOG(*m_tab, deviceLines() + QStringList{"Initialize device error."});
    QTEST(m_fixture->traffic(), "traffic");
    QVERIFY(isIdle(*m_tab));
}

void MainTabReportFailureTest::faultOfTheModeIsExplained_data()
{
    QTest::addColumn<bool>("isDump"); // or Info
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("judgement");
    QTest::addColumn<QString>("advice");
    const QString inUse = "failed: Another program uses the reader. E:\\CMD.CMD: injected fault. "
                          "The cartridge was not touched.";
    const QString strange = "failed: The drive that was taken for the reader is none. "
                            "E:\\CMD.CMD: injected fault. The cartridge was not touched.";
    for (const bool isDump : {false, true}) {
        const char *action = isDump ? "Dump" : "Info";
        QTest::addRow("%s, in use", action)
            << isDump << int(DriveErrorCode::InUse) << inUse << "Leave the reader plugged in";
        QTest::addRow("%s, a stick", action)
            << isDump << int(DriveErrorCode::NotTheReader) << strange << "Take that drive out.";
    }
}

void MainTabReportFailureTest::faultOfTheModeIsExplained()
{
    QFETCH(bool, isDump);
    QFETCH(int, code);
    QFETCH(QString, judgement);
    QFETCH(QString, advice);
    use(makeMbc5Cartridge(32 * 1024));
    m_fixture->findReader();
    DriveFault fault = everyCommandFault();
    fault.code = static_cast<DriveErrorCode>(code);
    m_fixture->drive().addFault(fault);
    if (isDump) {
        FileDialogAnswer answer(m_fixture->path("dump.gb"));
        QTest::mouseClick(m_tab->dumpButton, Qt::LeftButton);
        QVERIFY(answer.wasAsked);
    } else {
        pressInfo();
    }
    COMPARE_LOG(*m_tab,
                (isDump ? QStringList() : deviceLines()) + QStringList{"Initialize device error."});
    const QStringList judgements = judgementsOf(*m_tab);
    QCOMPARE(judgements.value(0), judgement);
    QVERIFY2(judgements.value(1).startsWith(advice), qPrintable(judgements.join('\n')));
    QVERIFY(!judgements.join('\n').contains("Unplug"));
    QCOMPARE(m_fixture->traffic(), QStringList());
    QVERIFY(isIdle(*m_tab));
}

void MainTabReportFailureTest::hangingReaderLeavesTheWindowAlive_data()
{
    QTest::addColumn<bool>("isDump"); // or Info
    QTest::newRow("Info") << false;
    QTest::newRow("Dump") << true;
}

void MainTabReportFailureTest::hangingReaderLeavesTheWindowAlive()
{
    QFETCH(bool, isDump);
    use(makeMbc5Cartridge(32 * 1024));
    m_fixture->findReader();
    m_tab->guarded->longestUseMs = 100;
    QSemaphore mayGoOn;
    m_fixture->reader().setListener(
        [&mayGoOn](const Operation & /*operation*/) { mayGoOn.acquire(); });
    const QString told = "The reader does not answer. Unplug it, or close the window.";
    {
        FileDialogAnswer answer(m_fixture->path("dump.gb"));
        QTest::mouseClick(isDump ? m_tab->dumpButton : m_tab->infoButton, Qt::LeftButton);
    }
    COMPARE_LOG(*m_tab, QStringList{told});
    QVERIFY(isIdle(*m_tab));
    // Nothing else uses the reader meanwhile.
    pressInfo();
    COMPARE_LOG(*m_tab, (QStringList{told, told}));

    mayGoOn.release(1000);
    m_tab->guarded->longestUseMs = 60000;
    pressInfo();
    const QString log = m_tab->console->toPlainText();
    QVERIFY2(log.contains("Cart type: "), qPrintable(log));
}

void MainTabReportFailureTest::headerThatComesShort_data()
{
    QTest::addColumn<int>("goodReads"); // before the one that comes short
    QTest::addColumn<int>("bytes");     // of it; -1: it fails
    QTest::newRow("GB, last byte missing") << 0 << 8191;
    QTest::newRow("GB, header only") << 0 << 336;
    QTest::newRow("GB, no byte") << 0 << 0;
    QTest::newRow("GB, failed") << 0 << -1;
    QTest::newRow("GBA, last byte missing") << 1 << 8191;
    QTest::newRow("GBA, header only") << 1 << 192;
    QTest::newRow("GBA, no byte") << 1 << 0;
    QTest::newRow("GBA, failed") << 1 << -1;
}

void MainTabReportFailureTest::headerThatComesShort()
{
    QFETCH(int, goodReads);
    QFETCH(int, bytes);
    // Each bus would find its cartridge.
    use(goodReads == 0 ? makeMbc5Cartridge(32 * 1024) : makeGbaGame("AWRP"));
    DriveFault fault{DriveCall::Read, "DUMP.ROM", static_cast<std::uint32_t>(goodReads)};
    fault.code = bytes < 0 ? DriveErrorCode::InputOutput : DriveErrorCode::None;
    fault.bytes = static_cast<std::uint32_t>(qMax(0, bytes));
    m_fixture->drive().addFault(fault);
    pressInfo();
    COMPARE_LOG(*m_tab, deviceLines() + QStringList{"Read ROM error."});
    QVERIFY(isIdle(*m_tab));

    // The next report is none the wiser.
    pressInfo();
    const QString log = m_tab->console->toPlainText();
    QVERIFY2(log.contains(goodReads == 0 ? "Cart type: " : "Advance Wars (Euro)"), qPrintable(log));
}

void MainTabReportFailureTest::failuresLeaveTheSettings_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"no reader", "no mode", "short read", "no cartridge", "unknown game"})
        QTest::newRow(kind) << kind;
}

void MainTabReportFailureTest::failuresLeaveTheSettings()
{
    QFETCH(QString, kind);
    use(kind == "unknown game" ? makeGbaGame("ZZZZ") : std::unique_ptr<Cartridge>());
    m_tab->settings->selectSysType(1);
    m_tab->settings->selectItem1(4194304);
    m_tab->settings->selectItem2(2);
    m_tab->settings->selectItem3(8192);
    QCOMPARE(shownSettings(*m_tab->settings), (QStringList{"GBA", "32 Mb", "EEP", "8 K"}));

    m_fixture->drive().setGone(kind == "no reader");
    if (kind == "no mode")
        m_fixture->drive().addFault(everyCommandFault());
    if (kind == "short read")
        m_fixture->drive().addFault(dumpOpenFault());
    pressInfo();
    QVERIFY(m_tab->console->toPlainText() != plainLog(greetingLines()));
    QCOMPARE(shownSettings(*m_tab->settings), (QStringList{"GBA", "32 Mb", "EEP", "8 K"}));
    QCOMPARE(m_tab->settings->getSysType(), 1);
    QCOMPARE(m_tab->settings->getGbaRomSize(), 4194304);
    QCOMPARE(m_tab->settings->getGbaRamType(), 2);
    QCOMPARE(m_tab->settings->getGbaRamSize(), 8192);
}

void MainTabReportFailureTest::readerIsReleased_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind :
         {"GB cartridge", "GBA cartridge", "no cartridge", "no reader", "no mode", "short read"})
        QTest::newRow(kind) << kind;
}

void MainTabReportFailureTest::readerIsReleased()
{
    QFETCH(QString, kind);
    use(kind == "GBA cartridge"  ? makeGbaGame("AWRP")
        : kind == "GB cartridge" ? makeMbc5Cartridge(32 * 1024)
                                 : nullptr);
    m_fixture->drive().setGone(kind == "no reader");
    if (kind == "no mode")
        m_fixture->drive().addFault(everyCommandFault());
    if (kind == "short read")
        m_fixture->drive().addFault(dumpOpenFault());
    pressInfo();
    QCOMPARE(m_fixture->releases(), 1);
}

GBDRIVER_TEST(MainTabReportFailureTest, gui)
#include "main_tab_report_failure_test.moc"
