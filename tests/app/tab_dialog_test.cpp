// The window: title and tabs, and that closing it never leaves a job.
#include "app/tab_dialog.h"
#include "file_dialog_answer.h"
#include "files.h"
#include "log_check.h"
#include "reader_fixture.h"

#include "script/erase_poll.h"
#include "test_class.h"
#include "ui/guarded_job.h"
#include "ui/main_tab.h"
#include "ui/settings.h"
#include "virtual/gb_cartridges.h"
#include "worker/famicom_thread.h"

#include <QDate>
#include <QLocale>
#include <QPushButton>
#include <QRegularExpression>
#include <QSemaphore>
#include <QTabWidget>
#include <QVBoxLayout>
#include <QtTest>

#include <functional>
#include <memory>

using namespace virtual_reader;

namespace
{
constexpr int kJobTimeoutMs = 60000;
const QString kClosingLine =
    "A job is running and has been asked to stop. The window closes when it has ended.";

// Erasing this cartridge takes for ever: its first byte never reads as erased.
std::unique_ptr<Cartridge> makeStubbornCartridge()
{
    return std::make_unique<GbCartridge>(ByteVector(32 * 1024, 0x11), 0);
}

constexpr char kFlashScript[] = "function cpu_erase(dev, size, width) {}\n"
                                "function cpu_flash(dev, size, max) {}\n";
constexpr char kDumpScript[] = "function cpu_dump(dev, size, max) {\n"
                               "    cpu_read(dev, 0, 0x4000);\n"
                               "    cpu_read(dev, 0x4000, 0x4000);\n"
                               "}\n";
constexpr char kWholeDumpScript[] =
    "function cpu_dump(dev, size, max) {\n"
    "    for (local done = 0; done < size; done += 0x8000) cpu_read(dev, 0, 0x8000);\n"
    "}\n";
constexpr char kSaveScript[] =
    "function save_write(dev, size, max) { ram_write(dev, 0xA000, size); }\n";

QStringList *threadWarnings = nullptr;

void collectThreadWarnings(QtMsgType, const QMessageLogContext &, const QString &message)
{
    if (message.contains("QThread") || message.contains("QObject"))
        *threadWarnings << message;
}
} // namespace

using CloseFunction = std::function<void(TabDialog &)>;
Q_DECLARE_METATYPE(CloseFunction)

class TabDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void titleHasTheBuildDate();
    void tabsStandInOrder();
    void dialogHasNoSlotsOrSignalsOfItsOwn();
    void dialogHoldsOnlyTheTabs();
    void fileNameChangesNothing();

    void idleWindowCloses_data();
    void idleWindowCloses();
    void windowWaitsForTheJob_data();
    void windowWaitsForTheJob();
    void escapeDoesNothingDuringAJob();
    void forgottenCancelIsAskedAgain();
    void secondCloseLeavesAReadBehind();
    void secondCloseEndsAReadBetweenTwoOperations();
    void secondCloseNeverLeavesAWrite();
    void hangIsToldWithTheWayOut_data();
    void hangIsToldWithTheWayOut();
    void windowStaysForTheNameOfABackup_data();
    void windowStaysForTheNameOfABackup();
    void noButtonIsPressedByEnter();
    void dumpIsFinishedBeforeTheWindowCloses();
    void finishedJobDoesNotCloseTheWindow();
    void destroyedWindowWaitsForTheJob();

private:
    void use(std::unique_ptr<Cartridge> cartridge, const QByteArray &script);
    void press(QPushButton *button, const QString &path);
    void startErasing();
    void startHeldDump(QSemaphore *mayGoOn, const QByteArray &oldFile = {});

    QStringList m_warnings;
    std::unique_ptr<ReaderFixture> m_fixture;
    std::unique_ptr<TabDialog> m_dialog;
    MainTab *m_tab = nullptr;
};

void TabDialogTest::init()
{
    m_warnings.clear();
    threadWarnings = &m_warnings;
    qInstallMessageHandler(collectThreadWarnings);
    use(makeStubbornCartridge(), kFlashScript);
}

void TabDialogTest::cleanup()
{
    m_dialog.reset();
    m_fixture.reset();
    qInstallMessageHandler(nullptr);
    QCOMPARE(m_warnings, QStringList());
}

void TabDialogTest::use(std::unique_ptr<Cartridge> cartridge, const QByteArray &script)
{
    m_dialog.reset();
    m_fixture.reset();
    m_fixture = std::make_unique<ReaderFixture>(std::move(cartridge));
    m_fixture->findReader();
    // Each look takes its time, so that a job that is asked to stop is still seen to run.
    setPollWaiter(nullptr);
    ReaderFixture::addScript("gb_mbc5.nut", script);
    m_dialog = std::make_unique<TabDialog>(".");
    m_tab = m_dialog->findChild<MainTab *>();
    QVERIFY(m_tab);
    m_tab->guarded->guardsWrites = false; // the erase comes at once
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
    QVERIFY(m_tab->guarded->waitForLook()); // who listens to the reader must not change meanwhile
}

void TabDialogTest::press(QPushButton *button, const QString &path)
{
    FileDialogAnswer answer(path);
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(answer.wasAsked);
}

void TabDialogTest::startErasing()
{
    press(m_tab->flashButton, m_fixture->addFile("rom.gb", "rom"));
    QTRY_VERIFY(m_tab->console->toPlainText().contains("Start erase flash chip..."));
    QVERIFY(isBusy(*m_tab));
}

// A dump of two reads, each of which waits for the semaphore.
void TabDialogTest::startHeldDump(QSemaphore *mayGoOn, const QByteArray &oldFile)
{
    use(makeMbc5Cartridge(32 * 1024), kDumpScript);
    if (!oldFile.isEmpty())
        putFile(m_fixture->path("dump.gb"), oldFile);
    m_fixture->reader().setListener([mayGoOn](const Operation &operation) {
        if (operation.kind == Operation::Kind::Read && operation.file == ReaderFile::Dump)
            mayGoOn->acquire();
    });
    press(m_tab->dumpButton, m_fixture->path("dump.gb"));
    QTRY_VERIFY(m_tab->console->toPlainText().contains("Start dump rom..."));
}

void TabDialogTest::titleHasTheBuildDate()
{
    const QRegularExpression pattern("^GB Driver 3\\.0 build - ([A-Z][a-z]{2} [ 1-3]\\d \\d{4})$");
    const QRegularExpressionMatch match = pattern.match(m_dialog->windowTitle());
    QVERIFY2(match.hasMatch(), qPrintable(m_dialog->windowTitle()));
    const QDate date = QLocale::c().toDate(match.captured(1).simplified(), "MMM d yyyy");
    QVERIFY(date.isValid());
    QVERIFY(date <= QDate::currentDate().addDays(1));
}

void TabDialogTest::tabsStandInOrder()
{
    auto *tabs = m_dialog->findChild<QTabWidget *>();
    QVERIFY(tabs);
    QStringList titles;
    for (int i = 0; i < tabs->count(); ++i)
        titles << tabs->tabText(i);
    QCOMPARE(titles, (QStringList{"GB", "Update", "About"}));
    QCOMPARE(tabs->currentIndex(), 0);
    QCOMPARE(tabs->widget(0), m_tab);
}

void TabDialogTest::dialogHasNoSlotsOrSignalsOfItsOwn()
{
    const QMetaObject &meta = TabDialog::staticMetaObject;
    QCOMPARE(QString(meta.className()), QString("TabDialog"));
    QCOMPARE(meta.methodCount(), meta.methodOffset());
}

void TabDialogTest::dialogHoldsOnlyTheTabs()
{
    auto *layout = qobject_cast<QVBoxLayout *>(m_dialog->layout());
    QVERIFY(layout);
    QCOMPARE(layout->count(), 1);
    QCOMPARE(layout->itemAt(0)->widget(), m_dialog->findChild<QTabWidget *>());
    QCOMPARE(layout->stretch(0), 0);
    QCOMPARE(m_dialog->layout()->sizeConstraint(), QLayout::SetDefaultConstraint);
    QCOMPARE(m_dialog->width(), m_dialog->sizeHint().width());
    QVERIFY(m_dialog->width() > 400);
}

void TabDialogTest::fileNameChangesNothing()
{
    TabDialog other(m_fixture->addFile("some.gb", "x"));
    QCOMPARE(other.windowTitle(), m_dialog->windowTitle());
    QCOMPARE(other.findChild<MainTab *>()->console->toPlainText(), m_tab->console->toPlainText());
}

void TabDialogTest::idleWindowCloses_data()
{
    QTest::addColumn<CloseFunction>("closeWindow");
    QTest::newRow("close button") << CloseFunction([](TabDialog &dialog) { dialog.close(); });
    QTest::newRow("Escape") << CloseFunction(
        [](TabDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    QTest::newRow("accepted") << CloseFunction([](TabDialog &dialog) { dialog.accept(); });
    QTest::newRow("log-out") << CloseFunction([](TabDialog &) { QApplication::closeAllWindows(); });
    QTest::newRow("signal") << CloseFunction([](TabDialog &dialog) { dialog.endProgram(); });
}

void TabDialogTest::idleWindowCloses()
{
    QFETCH(CloseFunction, closeWindow);
    closeWindow(*m_dialog);
    QVERIFY(!m_dialog->isVisible());
    COMPARE_LOG(*m_tab, QStringList());
}

void TabDialogTest::windowWaitsForTheJob_data()
{
    QTest::addColumn<CloseFunction>("closeWindow");
    QTest::newRow("close button") << CloseFunction([](TabDialog &dialog) { dialog.close(); });
    QTest::newRow("accepted") << CloseFunction([](TabDialog &dialog) { dialog.accept(); });
    QTest::newRow("log-out") << CloseFunction([](TabDialog &) { QApplication::closeAllWindows(); });
    QTest::newRow("signal") << CloseFunction([](TabDialog &dialog) { dialog.endProgram(); });
}

void TabDialogTest::windowWaitsForTheJob()
{
    QFETCH(CloseFunction, closeWindow);
    startErasing();
    auto *tabs = m_dialog->findChild<QTabWidget *>();
    tabs->setCurrentIndex(2);

    closeWindow(*m_dialog);
    QVERIFY(m_dialog->isVisible());
    QVERIFY(m_tab->worker->isRunning());
    QCOMPARE(m_tab->worker->cancel_flag.load(), 1);
    QCOMPARE(tabs->currentIndex(), 0);
    QVERIFY(m_tab->console->toPlainText().endsWith(kClosingLine));
    closeWindow(*m_dialog); // impatience changes nothing and says nothing more
    QVERIFY(m_dialog->isVisible());

    QTRY_VERIFY_WITH_TIMEOUT(!m_dialog->isVisible(), kJobTimeoutMs);
    QVERIFY(isIdle(*m_tab));
    const QString path = m_fixture->path("rom.gb");
    COMPARE_LOG(
        *m_tab,
        (QStringList{"Flash chip is 8bit width", "Writing rom to cartridge from file:\n" + path,
                     "Read file :" + path, "Read 3 Bytes", "Start erase flash chip...",
                     kClosingLine, ">Operation failure.", "<hr><br>"}));
}

// A job that has only just been started clears the flag as it begins, and with it the wish of a
// window that was quicker. The window must ask again.
void TabDialogTest::forgottenCancelIsAskedAgain()
{
    startErasing();
    m_dialog->close();
    m_tab->worker->cancel_flag.store(0);
    QTRY_VERIFY_WITH_TIMEOUT(!m_dialog->isVisible(), kJobTimeoutMs);
    QVERIFY(isIdle(*m_tab));
}

void TabDialogTest::escapeDoesNothingDuringAJob()
{
    startErasing();
    QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
    QVERIFY(m_dialog->isVisible());
    QVERIFY(isBusy(*m_tab));
    // An erase tells no progress, but for how long it has been running.
    QCOMPARE(m_tab->progress->maximum(), 0);
    QVERIFY2(m_tab->progress->text().startsWith("Erasing; Cancel ends the wait 0:"),
             qPrintable(m_tab->progress->text()));
    QCOMPARE(m_tab->worker->cancel_flag.load(), 0);
    QVERIFY(!m_tab->console->toPlainText().contains(kClosingLine));
}

// A reader that hangs must not hold the window.
void TabDialogTest::secondCloseLeavesAReadBehind()
{
    QSemaphore mayGoOn;
    startHeldDump(&mayGoOn, "old content");
    m_dialog->close();
    m_dialog->close(); // in the same breath
    QVERIFY(m_dialog->isVisible());
    QVERIFY(!m_dialog->hasLeftJob());

    QTRY_VERIFY_WITH_TIMEOUT(
        m_tab->console->toPlainText().endsWith("The job has not ended yet. Close the window again "
                                               "to leave it behind; it only reads."),
        kJobTimeoutMs);
    m_dialog->close();
    QVERIFY(!m_dialog->isVisible());
    QVERIFY(m_dialog->hasLeftJob());
    QVERIFY(m_tab->worker->isRunning());
    // Should the process end at any moment from now on, this is what it leaves.
    QCOMPARE(contentOf(m_fixture->path("dump.gb")), QByteArray("old content"));
    mayGoOn.release(2); // the test's process goes on, so this job has to end
    QTRY_VERIFY_WITH_TIMEOUT(!m_tab->worker->isRunning(), kJobTimeoutMs);
}

void TabDialogTest::secondCloseEndsAReadBetweenTwoOperations()
{
    use(makeMbc5Cartridge(32 * 1024),
        "function cpu_dump(dev, size, max) { while (true) cpu_read(dev, 0, 0); }");
    press(m_tab->dumpButton, m_fixture->path("dump.gb"));
    QTRY_VERIFY(m_tab->console->toPlainText().contains("Start dump rom..."));
    m_dialog->close();
    QTRY_VERIFY_WITH_TIMEOUT(m_tab->console->toPlainText().contains("Close the window again"),
                             kJobTimeoutMs);
    QVERIFY(m_tab->worker->isRunning()); // Cancel ends no dump that moves
    m_dialog->close();
    QVERIFY(!m_dialog->isVisible());
    QVERIFY(!m_dialog->hasLeftJob());
    QVERIFY(!m_tab->worker->isRunning());
    QVERIFY(!QFile::exists(m_fixture->path("dump.gb")));
}

// The window cannot end a call that hangs; the user can.
void TabDialogTest::hangIsToldWithTheWayOut_data()
{
    QTest::addColumn<bool>("isWrite");
    QTest::addColumn<QString>("wayOut");
    QTest::newRow("read") << false
                          << "Unplug it to end the job, or close the window twice to leave the job "
                             "behind; it only reads.";
    QTest::newRow("write") << true
                           << "The cartridge is being written. If no answer ever comes, unplug the "
                              "reader: that ends the job, and the cartridge is then partly "
                              "written.";
}

void TabDialogTest::hangIsToldWithTheWayOut()
{
    QFETCH(bool, isWrite);
    QFETCH(QString, wayOut);
    QSemaphore mayGoOn;
    use(makeMbc5Cartridge(32 * 1024), QByteArray(kDumpScript) + kSaveScript);
    m_tab->guarded->hangingMs = 1000;
    m_fixture->reader().setListener([&](const Operation &) {
        if (QThread::currentThread() == m_tab->worker)
            mayGoOn.acquire();
    });
    if (isWrite)
        press(m_tab->writeRamButton, m_fixture->addFile("new.sav", QByteArray(0x8000, 's')));
    else
        press(m_tab->dumpButton, m_fixture->path("dump.gb"));
    const QString told = "The reader has not answered for 1 seconds. " + wayOut;
    QTRY_VERIFY_WITH_TIMEOUT(m_tab->console->toPlainText().contains(told), kJobTimeoutMs);
    QVERIFY(isBusy(*m_tab));
    mayGoOn.release(1000);
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(*m_tab), kJobTimeoutMs);
    QCOMPARE(m_tab->console->toPlainText().count(told), 1);
}

// The user has to learn where the only copy is. Who sends a signal reads no log.
void TabDialogTest::windowStaysForTheNameOfABackup_data()
{
    QTest::addColumn<CloseFunction>("closeWindow");
    QTest::addColumn<bool>("stays");
    QTest::newRow("close button") << CloseFunction([](TabDialog &dialog) { dialog.close(); })
                                  << true;
    QTest::newRow("signal") << CloseFunction([](TabDialog &dialog) { dialog.endProgram(); })
                            << false;
}

void TabDialogTest::windowStaysForTheNameOfABackup()
{
    QFETCH(CloseFunction, closeWindow);
    QFETCH(bool, stays);
    use(makeStubbornCartridge(), QByteArray(kFlashScript) + kWholeDumpScript);
    m_tab->guarded->guardsWrites = true;
    m_tab->guarded->backupFolder = m_fixture->path("backups");
    press(m_tab->flashButton, m_fixture->addFile("rom.gb", QByteArray(0x8000, 'r')));
    QTRY_VERIFY_WITH_TIMEOUT(m_tab->console->toPlainText().contains("Start erase flash chip..."),
                             kJobTimeoutMs);
    closeWindow(*m_dialog);
    if (!stays) {
        QTRY_VERIFY_WITH_TIMEOUT(!m_dialog->isVisible(), kJobTimeoutMs);
        return;
    }
    const QString staying = "The window stays open, for you to read this. Close it again.";
    QTRY_VERIFY_WITH_TIMEOUT(m_tab->console->toPlainText().endsWith(staying), kJobTimeoutMs);
    QVERIFY(m_tab->console->toPlainText().contains("What the cartridge held before is in "));
    QVERIFY(m_dialog->isVisible());
    m_dialog->close();
    QVERIFY(!m_dialog->isVisible());
}

void TabDialogTest::secondCloseNeverLeavesAWrite()
{
    QSemaphore mayGoOn;
    use(makeMbc5Cartridge(32 * 1024), kSaveScript);
    m_fixture->reader().setListener([&](const Operation &operation) {
        if (operation.kind == Operation::Kind::CommandRun &&
            QThread::currentThread() == m_tab->worker)
            mayGoOn.acquire();
    });
    press(m_tab->writeRamButton, m_fixture->addFile("new.sav", QByteArray(0x8000, 's')));
    QVERIFY(isBusy(*m_tab));
    m_dialog->close();
    const QString refusal =
        "The cartridge is being written. The window stays until that has ended.";
    QTRY_VERIFY_WITH_TIMEOUT((m_dialog->close(), m_tab->console->toPlainText().endsWith(refusal)),
                             kJobTimeoutMs);
    QVERIFY(m_dialog->isVisible());
    QVERIFY(!m_dialog->hasLeftJob());
    mayGoOn.release(1000);
    QTRY_VERIFY_WITH_TIMEOUT(!m_dialog->isVisible(), kJobTimeoutMs);
}

// An Enter too many, from the file dialog, must not press Cancel during an erase.
void TabDialogTest::noButtonIsPressedByEnter()
{
    startErasing();
    for (QPushButton *button : m_dialog->findChildren<QPushButton *>())
        QVERIFY2(!button->isDefault() && !button->autoDefault(), qPrintable(button->text()));
    QTest::keyClick(m_dialog.get(), Qt::Key_Return);
    QTest::keyClick(m_dialog.get(), Qt::Key_Enter);
    QCOMPARE(m_tab->worker->cancel_flag.load(), 0);
    QVERIFY(isBusy(*m_tab));
}

// A dump cannot be cancelled. It goes on to its end, and the file is whole.
void TabDialogTest::dumpIsFinishedBeforeTheWindowCloses()
{
    QSemaphore mayGoOn;
    startHeldDump(&mayGoOn);
    m_dialog->close();
    QVERIFY(m_dialog->isVisible());
    QVERIFY(isBusy(*m_tab));

    mayGoOn.release(2);
    QTRY_VERIFY_WITH_TIMEOUT(!m_dialog->isVisible(), kJobTimeoutMs);
    QCOMPARE(m_fixture->fileBytes("dump.gb"), m_fixture->rom());
    COMPARE_LOG(*m_tab,
                (QStringList{"Reading data from ROM to file:\n" + m_fixture->path("dump.gb"),
                             "Start dump rom...", kClosingLine, "Dump rom finish.", ">Success!",
                             "<hr><br>"}));
}

void TabDialogTest::finishedJobDoesNotCloseTheWindow()
{
    use(makeMbc5Cartridge(32 * 1024), kDumpScript);
    // A spy would count on the worker's thread.
    int ends = 0;
    connect(m_tab->worker, &QThread::finished, m_tab, [&ends] { ++ends; });
    press(m_tab->dumpButton, m_fixture->path("dump.gb"));
    QTRY_COMPARE_WITH_TIMEOUT(ends, 1, kJobTimeoutMs);
    QTRY_VERIFY(isIdle(*m_tab));
    QVERIFY(m_dialog->isVisible());
}

void TabDialogTest::destroyedWindowWaitsForTheJob()
{
    press(m_tab->flashButton, m_fixture->addFile("rom.gb", "rom"));
    const QPointer<FamicomThread> worker = m_tab->worker;
    QVERIFY(worker->isRunning());
    m_dialog.reset();
    QVERIFY(worker.isNull());
}

GBDRIVER_TEST(TabDialogTest, gui)
#include "tab_dialog_test.moc"
