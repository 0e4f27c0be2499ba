// The corner of the tabs in its window: which reader is there, and what its menu does.
#include "app/tab_dialog.h"
#include "file_dialog_answer.h"
#include "log_check.h"
#include "reader_fixture.h"
#include "test_class.h"

#include "device/device_link.h"
#include "device/one_drive_backend.h"
#include "ui/guarded_job.h"
#include "ui/reader_corner.h"
#include "ui/settings.h"
#include "virtual/gb_cartridges.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QDropEvent>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>
#include <QtTest>

#include <memory>

using namespace virtual_reader;

namespace
{

constexpr int kJobTimeoutMs = 60000;
constexpr std::uint32_t kRomSize = 64 * 1024;
const QString kReader = "E: QDX_PCB02_FW303";

} // namespace

class CornerActionsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void readerIsKnownWithoutInfo();
    void missingReaderIsTold();
    void demoReaderStandsInForNone();
    void lastDumpIsComparedAgain();
    void changedCartridgeIsNoticed();
    void cartridgeIsBackedUp();
    void unknownCartridgeIsNotBackedUp();
    void romFileIsChecked();
    void droppedFileIsChecked();
    void drivesAreTold();
    void logIsCopied();
    void choicesReachTheJob();
    void actionsRestWhileAJobRuns();

private:
    void use(std::unique_ptr<Cartridge> cartridge);
    void openWindow();
    void useWithoutDrive();
    void trigger(QAction *action, const QString &path = {});
    void dump(const QString &path);
    bool shows(const QString &text) const { return m_corner->text() == text; }
    QString log() const { return m_tab->console->toPlainText(); }

    std::unique_ptr<ReaderFixture> m_fixture;
    std::unique_ptr<OneDriveBackend> m_noDrive;
    std::unique_ptr<TabDialog> m_dialog;
    MainTab *m_tab = nullptr;
    ReaderCorner *m_corner = nullptr;
};

void CornerActionsTest::init()
{
    use(makeMbc5Cartridge(kRomSize));
}

void CornerActionsTest::cleanup()
{
    m_dialog.reset();
    m_fixture.reset();
}

void CornerActionsTest::use(std::unique_ptr<Cartridge> cartridge)
{
    m_dialog.reset();
    m_fixture.reset();
    m_fixture = std::make_unique<ReaderFixture>(std::move(cartridge));
    ReaderFixture::addShippedScripts();
    openWindow();
}

// No drive has the letter that is looked at.
void CornerActionsTest::useWithoutDrive()
{
    m_dialog.reset();
    m_noDrive = std::make_unique<OneDriveBackend>(driveBackend(), 'Z');
    setDriveBackend(m_noDrive.get());
    openWindow();
}

void CornerActionsTest::openWindow()
{
    m_dialog = std::make_unique<TabDialog>(".");
    m_tab = m_dialog->findChild<MainTab *>();
    m_corner = m_dialog->findChild<ReaderCorner *>();
    m_tab->guarded->backupFolder = m_fixture->path("backups");
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
}

// `path`: what the action's file dialog is answered with; empty: it has none.
void CornerActionsTest::trigger(QAction *action, const QString &path)
{
    QVERIFY(action->isEnabled());
    FileDialogAnswer answer(path);
    action->trigger();
    QCOMPARE(answer.wasAsked, !path.isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(*m_tab), kJobTimeoutMs);
}

void CornerActionsTest::dump(const QString &path)
{
    QTRY_VERIFY(shows(kReader));
    m_tab->settings->selectItem2(kRomSize);
    trigger(m_corner->dumpAction, path);
}

void CornerActionsTest::readerIsKnownWithoutInfo()
{
    dump(m_fixture->path("dump.gb"));
    QVERIFY(m_fixture->fileBytes("dump.gb") == m_fixture->rom());
}

void CornerActionsTest::missingReaderIsTold()
{
    QTRY_VERIFY(shows(kReader));
    QVERIFY(!m_corner->demoAction->isEnabled());
    m_noDrive = std::make_unique<OneDriveBackend>(driveBackend(), 'Z');
    setDriveBackend(m_noDrive.get());
    m_tab->infoButton->click(); // looks again
    QTRY_VERIFY(shows("No reader"));
    QVERIFY(m_corner->demoAction->isEnabled());
}

void CornerActionsTest::demoReaderStandsInForNone()
{
    useWithoutDrive();
    m_corner->demoAction->setChecked(true);
    QTRY_VERIFY(shows("Demo reader"));
    QVERIFY(log().contains("no real cartridge is read or written"));
    trigger(m_corner->dumpAction, m_fixture->path("demo.gb"));
    QVERIFY(!m_fixture->fileBytes("demo.gb").isEmpty());

    // A dump of the one reader is not compared with the cartridge in the other.
    QVERIFY(m_tab->guarded->canReadAgain());
    m_corner->demoAction->setChecked(false);
    QVERIFY(!m_tab->guarded->canReadAgain());
    QTRY_VERIFY(shows("No reader"));
    QCOMPARE(&driveBackend(), static_cast<DriveBackend *>(m_noDrive.get()));
}

void CornerActionsTest::lastDumpIsComparedAgain()
{
    QVERIFY(!m_corner->readAgainAction->isEnabled());
    dump(m_fixture->path("dump.gb"));
    QVERIFY(log().contains("\nunverified: not a known dump; read only once\n"));
    trigger(m_corner->readAgainAction);
    QVERIFY2(log().contains("\nconsistent: logo, header checksum and checksum over the whole ROM "
                            "are right; 2 equal reads; not a known dump; the checksum is a sum "
                            "and does not see swapped banks\n"),
             qPrintable(log()));
}

void CornerActionsTest::changedCartridgeIsNoticed()
{
    dump(m_fixture->path("dump.gb"));
    QByteArray other = m_fixture->rom();
    other[0x5000] = static_cast<char>(~other[0x5000]);
    putFile(m_fixture->path("dump.gb"), other);
    trigger(m_corner->readAgainAction);
    QVERIFY2(log().contains("\nunstable: reads differ in bank 1 of 4\n"), qPrintable(log()));
}

void CornerActionsTest::cartridgeIsBackedUp()
{
    QTRY_VERIFY(shows(kReader));
    const QString folder = m_fixture->path("stack");
    QVERIFY(QDir().mkpath(folder));
    trigger(m_corner->backUpAction, folder);
    QVERIFY2(log().contains("\nconsistent: ROM, ") && log().contains("\nconsistent: save, "),
             qPrintable(log()));
    const QDir files(folder);
    QCOMPARE(files.entryList({"*.gb"}, QDir::Files).size(), 1);
    const QStringList saves = files.entryList({"*.sav"}, QDir::Files);
    QCOMPARE(saves.size(), 1);
    QVERIFY(contentOf(files.filePath(saves[0])) == m_fixture->save());
    QCOMPARE(files.entryList({"*.txt"}, QDir::Files).size(), 1);
}

void CornerActionsTest::unknownCartridgeIsNotBackedUp()
{
    use(nullptr);
    QTRY_VERIFY(shows(kReader));
    const QString folder = m_fixture->path("stack");
    QVERIFY(QDir().mkpath(folder));
    trigger(m_corner->backUpAction, folder);
    QVERIFY2(log().contains("\nrefused: No cartridge was recognised."), qPrintable(log()));
    QVERIFY(QDir(folder).isEmpty());
}

void CornerActionsTest::romFileIsChecked()
{
    const QString good = m_fixture->addFile("good.gb", m_fixture->rom());
    trigger(m_corner->checkFileAction, good);
    QVERIFY2(log().contains("Checking the ROM file:\n" + good) &&
                 log().contains("\nunverified: not a known dump; nobody saw it read twice\n"),
             qPrintable(log()));
    trigger(m_corner->checkFileAction, m_fixture->addFile("bad.gb", QByteArray(0x8000, '\xFF')));
    QVERIFY2(log().contains("\nsuspicious: all bytes are equal"), qPrintable(log()));
}

void CornerActionsTest::droppedFileIsChecked()
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(m_fixture->addFile("a&lt;b.gb", m_fixture->rom()))});
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_dialog.get(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_dialog.get(), &drop);
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(*m_tab), kJobTimeoutMs);
    QVERIFY2(log().contains("/a&lt;b.gb") && log().contains("\nunverified: "), qPrintable(log()));
}

void CornerActionsTest::drivesAreTold()
{
    trigger(m_corner->whyNoReaderAction);
    QVERIFY2(log().contains("\nE: removable drive") && log().contains("taken as the reader"),
             qPrintable(log()));
}

void CornerActionsTest::logIsCopied()
{
    trigger(m_corner->copyLogAction);
    QCOMPARE(QApplication::clipboard()->text(), log());
}

void CornerActionsTest::choicesReachTheJob()
{
    QVERIFY(m_tab->guarded->guardsWrites);
    QVERIFY(!m_tab->guarded->readsUnknownTwice);
    m_corner->guardWritesAction->setChecked(false);
    m_corner->readTwiceAction->setChecked(true);
    QVERIFY(!m_tab->guarded->guardsWrites);
    dump(m_fixture->path("dump.gb"));
    QVERIFY2(log().contains("2 equal reads"), qPrintable(log()));
}

void CornerActionsTest::actionsRestWhileAJobRuns()
{
    QTRY_VERIFY(shows(kReader));
    QSignalSpy changes(m_tab->guarded, &GuardedJob::changed);
    bool wasEnabled = false;
    connect(m_tab->guarded, &GuardedJob::changed, m_tab, [&] {
        if (m_tab->guarded->isBusy())
            wasEnabled = wasEnabled || m_corner->backUpAction->isEnabled() ||
                         m_corner->dumpAction->isEnabled() || m_corner->demoAction->isEnabled();
    });
    dump(m_fixture->path("dump.gb"));
    QVERIFY(changes.count() >= 2);
    QVERIFY(!wasEnabled);
    QVERIFY(m_corner->backUpAction->isEnabled());
    disconnect(m_tab->guarded, nullptr, m_tab, nullptr);
}

GBDRIVER_TEST(CornerActionsTest, gui)
#include "corner_actions_test.moc"
