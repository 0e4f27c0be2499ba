#include "ui/corner_actions.h"

#include "device/device_link.h"
#include "device/drive_advice.h"
#include "trust/backup_store.h"
#include "ui/backup_task.h"
#include "ui/console.h"
#include "ui/guarded_job.h"
#include "ui/main_tab.h"
#include "ui/reader_corner.h"
#include "worker/log_text.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QPushButton>
#include <QTimer>
#include <QUrl>

#include <memory>
#include <utility>

CornerActions::CornerActions(MainTab *tab, ReaderCorner *corner,
                             std::function<bool(bool isOn)> useDemo)
    : QObject(tab), m_tab(tab), m_corner(corner), m_useDemo(std::move(useDemo)),
      m_watch([this] { look(); })
{
    connectButtons();
    connectTasks();
    connectChoices();
    connect(m_tab->guarded, &GuardedJob::changed, this, &CornerActions::onChanged);
    onChanged();
    m_corner->showReader({});
    QTimer::singleShot(0, this, &CornerActions::look);
}

void CornerActions::connectButtons()
{
    const std::pair<QAction *, QPushButton *> rows[] = {
        {m_corner->infoAction, m_tab->infoButton},
        {m_corner->dumpAction, m_tab->dumpButton},
        {m_corner->flashAction, m_tab->flashButton},
        {m_corner->readRamAction, m_tab->readRamButton},
        {m_corner->writeRamAction, m_tab->writeRamButton}};
    for (const auto &row : rows)
        connect(row.first, &QAction::triggered, row.second, [button = row.second] {
            button->setFocus();
            button->click();
        });
    connect(m_corner->cancelAction, &QAction::triggered, m_tab->cancelButton, &QPushButton::click);
    // What Info has found is shown as well. Connected behind the tab's own slot.
    connect(m_tab->infoButton, &QPushButton::clicked, this, &CornerActions::look);
}

void CornerActions::connectTasks()
{
    connect(m_corner->backUpAction, &QAction::triggered, this, &CornerActions::backUp);
    connect(m_corner->readAgainAction, &QAction::triggered, this, &CornerActions::readAgain);
    connect(m_corner->checkFileAction, &QAction::triggered, this,
            &CornerActions::askForFileToCheck);
    connect(m_corner->whyNoReaderAction, &QAction::triggered, this,
            &CornerActions::tellWhyNoReader);
}

void CornerActions::connectChoices()
{
    GuardedJob *guarded = m_tab->guarded;
    connect(m_corner->guardWritesAction, &QAction::toggled, guarded,
            [guarded](bool isOn) { guarded->guardsWrites = isOn; });
    connect(m_corner->readTwiceAction, &QAction::toggled, guarded,
            [guarded](bool isOn) { guarded->readsUnknownTwice = isOn; });
    connect(m_corner->openFolderAction, &QAction::triggered, this, &CornerActions::openFolder);
    connect(m_corner->copyLogAction, &QAction::triggered, m_tab->console,
            [this] { QApplication::clipboard()->setText(m_tab->console->toPlainText()); });
    connect(m_corner->demoAction, &QAction::toggled, this, &CornerActions::switchDemo);
}

void CornerActions::onChanged()
{
    m_corner->setBusy(m_tab->guarded->isBusy());
    m_corner->setCanReadAgain(m_tab->guarded->canReadAgain());
    if (m_mustLook && !m_tab->guarded->isBusy())
        look();
}

// With the demo on the system's drives come first, for it may not stand beside a real reader.
void CornerActions::look()
{
    const auto found = std::make_shared<FoundReader>();
    const bool isDemo = m_isDemo;
    m_mustLook = !m_tab->guarded->look(
        [this, found, isDemo] {
            if (isDemo)
                m_useDemo(false);
            found->reader = findNamedReader();
            found->endsDemo = isDemo && found->reader.letter != 0;
            if (isDemo && !found->endsDemo) {
                found->endsDemo = !m_useDemo(true);
                found->reader = findNamedReader();
            }
        },
        [this, found] { showFound(*found); });
}

void CornerActions::showFound(const FoundReader &found)
{
    if (found.endsDemo) {
        m_isDemo = false;
        tickDemo();
        m_tab->guarded->forgetLastRead();
        m_tab->info(tr("A reader was plugged in, so the demo reader is off."));
    }
    m_corner->showReader({found.reader.letter, found.reader.identity, m_isDemo});
    if (m_mustLook)
        look();
}

void CornerActions::switchDemo(bool isOn)
{
    if (isReady()) {
        m_isDemo = m_useDemo(isOn);
        m_tab->guarded->forgetLastRead();
        m_tab->info(m_isDemo ? tr("The demo reader is on: no real cartridge is read or written.")
                             : tr("The demo reader is off."));
        look();
    }
    tickDemo();
}

// The tick says what is so, whatever was wished for.
void CornerActions::tickDemo()
{
    const QSignalBlocker quiet(m_corner->demoAction);
    m_corner->demoAction->setChecked(m_isDemo);
}

// A look that hangs in a drive must not take the window with it.
bool CornerActions::isReady()
{
    return m_tab->guarded->waitForLook() && !m_tab->guarded->isBusy();
}

void CornerActions::checkFile(const QString &path)
{
    if (path.isEmpty() || !isReady())
        return;
    m_tab->guarded->tell({logText(tr("Checking the ROM file:") + QLatin1Char('\n') + path),
                          QString::fromLatin1(kLogRule)});
    const auto judged = std::make_shared<JudgedJob>();
    m_tab->guarded->runTask(
        [judged, path](TrustListener & /*listener*/) { *judged = judgeRomFile(path); },
        [this, judged] { m_tab->guarded->tell(judgementEntries(*judged, {})); });
}

void CornerActions::askForFileToCheck()
{
    checkFile(QFileDialog::getOpenFileName(m_tab, tr("Check a ROM file"), QStringLiteral("."),
                                           tr("ROM files (*.gb *.gbc *.gba *.sgb)") +
                                               QStringLiteral(";;") + tr("All files (*)")));
}

void CornerActions::backUp()
{
    const QString folder = QFileDialog::getExistingDirectory(
        m_tab, tr("Back up the cartridge into..."), QStringLiteral("."));
    if (folder.isEmpty() || !isReady())
        return;
    m_tab->guarded->tell(
        {logText(tr("Backing up the cartridge into the folder:") + QLatin1Char('\n') + folder),
         QString::fromLatin1(kLogRule)});
    const auto result = std::make_shared<CartridgeBackupResult>();
    m_tab->guarded->runTask(
        [result, folder](TrustListener &listener) { *result = backUpCartridge(folder, listener); },
        [this, result] { m_tab->guarded->tell(backupEntries(*result)); });
}

void CornerActions::readAgain()
{
    if (isReady())
        m_tab->guarded->readAgain();
}

void CornerActions::tellWhyNoReader()
{
    if (!isReady())
        return;
    const auto findings = std::make_shared<QVector<DriveFinding>>();
    m_tab->guarded->runTask(
        [findings](TrustListener & /*listener*/) {
            const ReaderSession session;
            const signed char before = deviceLink.driveLetter;
            *findings = examineDrives();
            deviceLink.driveLetter = before; // the reader stays the one that it was
        },
        [this, findings] {
            QStringList lines;
            bool isTaken = false;
            for (const DriveFinding &finding : *findings) {
                lines += driveLines(finding);
                isTaken = isTaken || finding.hasIdentity();
            }
            if (!isTaken)
                lines += noReaderAdvice();
            lines += scanNotes();
            QStringList entries;
            for (const QString &line : lines)
                entries << logText(line);
            m_tab->guarded->tell(entries << QString::fromLatin1(kLogRule));
            look();
        });
}

void CornerActions::openFolder()
{
    const QString &chosen = m_tab->guarded->backupFolder;
    const QString folder = chosen.isEmpty() ? defaultBackupFolder() : chosen;
    if (!QDir().mkpath(folder) || !QDesktopServices::openUrl(QUrl::fromLocalFile(folder)))
        m_tab->info(logText(tr("The backup folder is %1").arg(folder)));
}
