// The main tab without a job: its looks, its slots, its connections, and the device report.
#include "log_check.h"
#include "reader_fixture.h"

#include "device/device_link.h"
#include "test_class.h"
#include "ui/settings.h"
#include "worker/famicom_thread.h"

#include <QBoxLayout>
#include <QMetaMethod>
#include <QProgressBar>
#include <QPushButton>
#include <QtTest>

#include <memory>

using namespace virtual_reader;

using ButtonMember = QPushButton *MainTab::*;
Q_DECLARE_METATYPE(ButtonMember)

class MainTabTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void methodsAreDeclaredInOrder();
    void freshTabGreets();
    void freshTabIsIdle();
    void buttonsHaveTextsAndToolTips_data();
    void buttonsHaveTextsAndToolTips();
    void widgetsAreLaidOutInOrder();
    void workerHasNoParent();

    void infoAppendsToTheLog();
    void progressTakesMaximumAndValue();
    void progressWithoutMaximumIsBusy();
    void buttonsFollowTheState();
    void endOfJobIsLogged_data();
    void endOfJobIsLogged();

    void workerSignalsReachTheTab();
    void cancelReachesTheWorker();

private:
    void useReader(VirtualReaderConfig config = {});

    std::unique_ptr<ReaderFixture> m_fixture;
    std::unique_ptr<MainTab> m_tab;
};

void MainTabTest::useReader(VirtualReaderConfig config)
{
    m_tab.reset();
    m_fixture.reset();
    m_fixture = std::make_unique<ReaderFixture>(makeMbc5Cartridge(32 * 1024), std::move(config));
    m_tab = std::make_unique<MainTab>();
}

void MainTabTest::init()
{
    useReader();
}

void MainTabTest::cleanup()
{
    m_tab.reset();
    m_fixture.reset();
}

void MainTabTest::methodsAreDeclaredInOrder()
{
    const QMetaObject &meta = MainTab::staticMetaObject;
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        QCOMPARE(method.methodType(), QMetaMethod::Slot);
        QCOMPARE(method.access(), QMetaMethod::Public);
        QCOMPARE(QString::fromLatin1(method.typeName()), QString("void"));
        methods << QString::fromLatin1(method.methodSignature()) + " " +
                       QString::fromLatin1(method.parameterNames().join(','));
    }
    const QStringList expected = {"push_info() ",
                                  "push_read_rom() ",
                                  "push_read_ram() ",
                                  "push_write_flash() ",
                                  "push_write_ram() ",
                                  "info(QString) msg",
                                  "setProgress(int,int) ile,max",
                                  "setEnabledButtons(bool) stan",
                                  "print_error(int) err"};
    QCOMPARE(methods, expected);
}

void MainTabTest::freshTabGreets()
{
    const QStringList shown = m_tab->console->toPlainText().split('\n');
    QCOMPARE(shown.mid(0, 5), (QStringList{"Velora Driver Series for GB/GBC/GBA 3.0 started.",
                                           "Support all functions, need QDX_PCB02_FW303 firmware.",
                                           "To dump GB/GBC cartridge,please switch power to 5V.",
                                           "To dump GBA cartridge,please switch power to 3.3V.",
                                           "Part of homebrew GB/GBC flash cart need 3.3V power."}));
    COMPARE_LOG(*m_tab, QStringList());
}

void MainTabTest::freshTabIsIdle()
{
    QVERIFY(isIdle(*m_tab));
    QCOMPARE(m_tab->progress->minimum(), 0);
    QCOMPARE(m_tab->progress->maximum(), 1);
    QCOMPARE(m_tab->progress->value(), 0);
    QCOMPARE(m_tab->settings->getSysType(), 0);
    QVERIFY(m_fixture->reader().operations().empty());
}

void MainTabTest::buttonsHaveTextsAndToolTips_data()
{
    QTest::addColumn<QPushButton * MainTab::*>("button");
    QTest::addColumn<QString>("toolTip");
    QTest::newRow("Info") << &MainTab::infoButton << "Show cartridge information!";
    QTest::newRow("Dump") << &MainTab::dumpButton << "Dump ROM from cartridge!";
    QTest::newRow("FLASH") << &MainTab::flashButton << "Flash ROM to a writeable cartridge!";
    QTest::newRow("Read RAM") << &MainTab::readRamButton << "Read SRAM from cartridge!";
    QTest::newRow("Write RAM") << &MainTab::writeRamButton << "Write SRAM to cartridge!";
    QTest::newRow("Cancel") << &MainTab::cancelButton << "";
}

void MainTabTest::buttonsHaveTextsAndToolTips()
{
    QFETCH(ButtonMember, button);
    QFETCH(QString, toolTip);
    QCOMPARE((m_tab.get()->*button)->text(), QString(QTest::currentDataTag()));
    QCOMPARE((m_tab.get()->*button)->toolTip(), toolTip);
    QCOMPARE((m_tab.get()->*button)->parentWidget(), m_tab.get());
}

void MainTabTest::widgetsAreLaidOutInOrder()
{
    const auto isColumn = [](QBoxLayout *layout, const QList<QObject *> &items) {
        QList<QObject *> found;
        for (int i = 0; i < layout->count(); ++i) {
            QLayoutItem *item = layout->itemAt(i);
            found << (item->widget() ? static_cast<QObject *>(item->widget()) : item->layout());
            if (layout->stretch(i) != 0 || item->alignment() != Qt::Alignment())
                return false;
        }
        return found == items;
    };
    const MainTab &tab = *m_tab;
    QVERIFY(isColumn(tab.buttonLayout, {tab.infoButton, tab.dumpButton, tab.flashButton,
                                        tab.readRamButton, tab.writeRamButton}));
    QVERIFY(isColumn(tab.consoleLayout, {tab.console}));
    QVERIFY(isColumn(tab.progressLayout, {tab.progress, tab.cancelButton}));
    QVERIFY(isColumn(tab.topLayout, {tab.settings, tab.buttonLayout}));
    QVERIFY(isColumn(tab.mainLayout, {tab.topLayout, tab.consoleLayout, tab.progressLayout}));
    QCOMPARE(tab.layout(), tab.mainLayout);

    m_tab->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_tab.get()));
    QVERIFY(tab.settings->geometry().right() < tab.infoButton->geometry().left());
    QVERIFY(tab.flashButton->y() > tab.dumpButton->y());
    QVERIFY(tab.readRamButton->y() > tab.flashButton->y());
    QVERIFY(tab.console->y() > tab.settings->geometry().bottom());
    QVERIFY(tab.progress->y() > tab.console->geometry().bottom());
    QVERIFY(tab.cancelButton->x() > tab.progress->geometry().right());
    QVERIFY(tab.console->width() >= 400);
}

void MainTabTest::workerHasNoParent()
{
    QCOMPARE(m_tab->worker->parent(), nullptr);
    QCOMPARE(m_tab->worker->file_name, QString());
    QCOMPARE(m_tab->worker->script_name, QString());
}

void MainTabTest::infoAppendsToTheLog()
{
    m_tab->info("a line");
    m_tab->info("<hr><br>");
    COMPARE_LOG(*m_tab, (QStringList{"a line", "<hr><br>"}));
}

void MainTabTest::progressTakesMaximumAndValue()
{
    m_tab->setProgress(3, 7);
    QCOMPARE(m_tab->progress->minimum(), 0);
    QCOMPARE(m_tab->progress->maximum(), 7);
    QCOMPARE(m_tab->progress->value(), 3);
}

void MainTabTest::progressWithoutMaximumIsBusy()
{
    m_tab->setProgress(5, 0);
    QCOMPARE(m_tab->progress->minimum(), 0);
    QCOMPARE(m_tab->progress->maximum(), 0);
}

void MainTabTest::buttonsFollowTheState()
{
    for (const bool idle : {false, true, false}) {
        m_tab->setEnabledButtons(idle);
        for (const QPushButton *button : {m_tab->infoButton, m_tab->dumpButton, m_tab->flashButton,
                                          m_tab->readRamButton, m_tab->writeRamButton})
            QCOMPARE(button->isEnabled(), idle);
        QCOMPARE(m_tab->cancelButton->isEnabled(), !idle);
    }
}

void MainTabTest::endOfJobIsLogged_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("failure") << 0 << QStringList{">Operation failure.", "<hr><br>"};
    QTest::newRow("success") << 1 << QStringList{">Success!", "<hr><br>"};
    QTest::newRow("neither") << 2 << QStringList{"<hr><br>"};
    QTest::newRow("negative") << -1 << QStringList{"<hr><br>"};
}

void MainTabTest::endOfJobIsLogged()
{
    QFETCH(int, error);
    QFETCH(QStringList, lines);
    m_tab->setProgress(5, 9);
    m_tab->setEnabledButtons(false);
    m_tab->print_error(error);
    COMPARE_LOG(*m_tab, lines);
    QCOMPARE(m_tab->progress->value(), 0);
    QCOMPARE(m_tab->progress->maximum(), 1);
    QVERIFY(isIdle(*m_tab));
}

void MainTabTest::workerSignalsReachTheTab()
{
    m_tab->setEnabledButtons(false);
    emit m_tab->worker->log("from the worker");
    emit m_tab->worker->set_progress(2, 4);
    QCOMPARE(m_tab->progress->value(), 2);
    QCOMPARE(m_tab->progress->maximum(), 4);
    emit m_tab->worker->error(1);
    COMPARE_LOG(*m_tab, (QStringList{"from the worker", ">Success!", "<hr><br>"}));
    QVERIFY(isIdle(*m_tab));
}

void MainTabTest::cancelReachesTheWorker()
{
    m_tab->setEnabledButtons(false);
    QCOMPARE(m_tab->worker->cancel_flag.load(), 0);
    QTest::mouseClick(m_tab->cancelButton, Qt::LeftButton);
    QCOMPARE(m_tab->worker->cancel_flag.load(), 1);
    COMPARE_LOG(*m_tab, QStringList());
}

GBDRIVER_TEST(MainTabTest, gui)
#include "main_tab_test.moc"
