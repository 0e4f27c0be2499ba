#include "ui/main_tab.h"

#include "device/device_link.h"
#include "device/device_ops.h"
#include "ui/console.h"
#include "ui/file_action.h"
#include "ui/guarded_job.h"
#include "ui/judgement_text.h"
#include "ui/settings.h"
#include "worker/cartridge_report.h"
#include "worker/famicom_thread.h"
#include "worker/flash_chip_probe.h"
#include "worker/job_run.h"
#include "worker/log_text.h"

#include <QCoreApplication>
#include <QFile>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include <memory>

namespace
{
void createWidgets(MainTab *tab)
{
    tab->settings = new Settings(tab);
    tab->console = new Console(tab);
    tab->progress = new JobBar(tab);
    tab->cancelButton = new QPushButton(MainTab::tr("Cancel"), tab);
    tab->infoButton = new QPushButton(MainTab::tr("Info"), tab);
    tab->dumpButton = new QPushButton(MainTab::tr("Dump"), tab);
    tab->flashButton = new QPushButton(MainTab::tr("FLASH"), tab);
    tab->readRamButton = new QPushButton(MainTab::tr("Read RAM"), tab);
    tab->writeRamButton = new QPushButton(MainTab::tr("Write RAM"), tab);

    tab->infoButton->setToolTip(MainTab::tr("Show cartridge information!"));
    tab->dumpButton->setToolTip(MainTab::tr("Dump ROM from cartridge!"));
    tab->flashButton->setToolTip(MainTab::tr("Flash ROM to a writeable cartridge!"));
    tab->readRamButton->setToolTip(MainTab::tr("Read SRAM from cartridge!"));
    tab->writeRamButton->setToolTip(MainTab::tr("Write SRAM to cartridge!"));
    tab->progress->setAccessibleName(MainTab::tr("Progress"));
    tab->progress->setAccessibleDescription(MainTab::tr("How far the job that runs has come"));
}

void layOutWidgets(MainTab *tab)
{
    tab->buttonLayout = new QVBoxLayout;
    tab->consoleLayout = new QVBoxLayout;
    tab->progressLayout = new QHBoxLayout;
    tab->topLayout = new QHBoxLayout;
    tab->mainLayout = new QVBoxLayout;

    for (QPushButton *button : {tab->infoButton, tab->dumpButton, tab->flashButton,
                                tab->readRamButton, tab->writeRamButton})
        tab->buttonLayout->addWidget(button);
    tab->consoleLayout->addWidget(tab->console);
    tab->progressLayout->addWidget(tab->progress);
    tab->progressLayout->addWidget(tab->cancelButton);
    tab->topLayout->addWidget(tab->settings);
    tab->topLayout->addLayout(tab->buttonLayout);
    tab->mainLayout->addLayout(tab->topLayout);
    tab->mainLayout->addLayout(tab->consoleLayout);
    tab->mainLayout->addLayout(tab->progressLayout);
    tab->setLayout(tab->mainLayout);
}

// A push button of a dialog becomes its default one by itself, and an Enter too many would press
// the one that happens to be enabled: Cancel, during an erase. The keyboard goes through the tab as
// the eye does: settings, actions, log, Cancel.
void setKeyboardOrder(MainTab *tab)
{
    for (QPushButton *button : {tab->infoButton, tab->dumpButton, tab->flashButton,
                                tab->readRamButton, tab->writeRamButton, tab->cancelButton})
        button->setAutoDefault(false);
    QWidget::setTabOrder(tab->writeRamButton, tab->console);
    QWidget::setTabOrder(tab->console, tab->cancelButton);
}

void connectButtons(MainTab *tab)
{
    QObject::connect(tab->infoButton, SIGNAL(clicked(bool)), tab, SLOT(push_info()));
    QObject::connect(tab->dumpButton, SIGNAL(clicked(bool)), tab, SLOT(push_read_rom()));
    QObject::connect(tab->readRamButton, SIGNAL(clicked(bool)), tab, SLOT(push_read_ram()));
    QObject::connect(tab->flashButton, SIGNAL(clicked(bool)), tab, SLOT(push_write_flash()));
    QObject::connect(tab->writeRamButton, SIGNAL(clicked(bool)), tab, SLOT(push_write_ram()));
}

void createWorker(MainTab *tab)
{
    tab->worker = new FamicomThread;
    QObject::connect(tab->worker, SIGNAL(set_progress(int, int)), tab, SLOT(setProgress(int, int)));
    QObject::connect(tab->worker, SIGNAL(error(int)), tab, SLOT(print_error(int)));
    QObject::connect(tab->worker, SIGNAL(log(QString)), tab, SLOT(info(QString)));
    QObject::connect(tab->cancelButton, SIGNAL(clicked()), tab->worker, SLOT(canceled()));
}

void greet(MainTab *tab)
{
    tab->info(MainTab::tr("Velora Driver Series for GB/GBC/GBA 3.0 started."));
    tab->info(MainTab::tr("Support all functions, need <span style=\"color: "
                          "#ffcc00;\">QDX_PCB02_FW303</span> firmware."));
    tab->info(MainTab::tr("To dump GB/GBC cartridge,please switch power to 5V."));
    tab->info(MainTab::tr("To dump GBA cartridge,please switch power to 3.3V."));
    tab->info(MainTab::tr("Part of homebrew GB/GBC flash cart need 3.3V power."));
    tab->info(MainTab::tr("\r\n"));
}

// The mapper script that the settings ask for, as a full path.
QString scriptPath(Settings *settings)
{
    const QString name =
        settings->sysType == kSystemGba ? MainTab::tr("gba.nut") : settings->getMbcScript();
    return QCoreApplication::applicationDirPath() + MainTab::tr("/mapper/") + name;
}

void fillJobSizes(const Settings &settings, FamicomThread *worker)
{
    if (settings.sysType == kSystemGba) {
        worker->rom_size = settings.gbaRomSize;
        worker->ram_size = settings.gbaRamSize;
        worker->save_type = settings.gbaRamType;
    } else {
        worker->rom_size = settings.gbRomSize;
        worker->ram_size = settings.gbRamSize;
    }
}

// A value that a list does not offer leaves the list as it is.
void select(Settings *settings, const DetectedSettings &detected)
{
    settings->selectSysType(detected.sysType);
    if (detected.item1)
        settings->selectItem1(*detected.item1);
    if (detected.item2)
        settings->selectItem2(*detected.item2);
    if (detected.item3)
        settings->selectItem3(*detected.item3);
}

// Starts the prepared job. The line about it comes from this thread, while the worker's lines are
// queued, so it always stands above them.
void startJob(MainTab *tab, const FileAction &action)
{
    tab->setEnabledButtons(false);
    tab->guarded->start();
    tab->info(logText(MainTab::tr(action.logText) + QStringLiteral("\n") + tab->worker->file_name));
}

// An action on its way to its job, its file dialog among it. The reader that it will use is the one
// that the user sees when it begins: no look for another comes in between, and one that has just
// taken the demo reader away ends the action.
class ActionStart
{
public:
    explicit ActionStart(MainTab *tab) : m_guarded(tab->guarded)
    {
        const DriveBackend *const seen = m_guarded->shownBackend();
        m_guarded->holdLooks(true);
        m_isReady = m_guarded->waitForLook() && seen == &driveBackend();
    }
    ~ActionStart() { m_guarded->holdLooks(false); }
    ActionStart(const ActionStart &) = delete;
    ActionStart &operator=(const ActionStart &) = delete;

    bool isReady() const { return m_isReady; }

private:
    GuardedJob *m_guarded;
    bool m_isReady = false;
};

// What the report of Info leaves, made while the window waits.
struct MadeReport {
    QStringList entries;
    QVector<DetectedSettings> settings;
    CartridgeReport report;
};

void makeReport(MadeReport *made)
{
    const ReaderSession session;
    ReportOutput output;
    output.line = [made](const QString &line) { made->entries << logText(line); };
    output.rule = [made] { made->entries << QString::fromLatin1(kLogRule); };
    output.settings = [made](const DetectedSettings &found) { made->settings << found; };
    made->report = makeCartridgeReport(output);
}

// How selecting a bus mode ended; Done if it is selected.
struct ModeAnswer {
    JobEnd end = JobEnd::NoMode;
    QString driveError;
};

ModeAnswer selectMode(bool isGba)
{
    if ((isGba ? selectGbaMode() : selectGbMode()) != 0)
        return {JobEnd::Done, {}};
    return {modeFault(), QString::fromLocal8Bit(lastDriveError().c_str())};
}

void reportFlashChip(MainTab *tab, const FlashChipAnswer &chip)
{
    if (!chip.isWide) {
        tab->info(MainTab::tr("Flash chip is 8bit width"));
        return;
    }
    tab->info(MainTab::tr("Flash chip is 16bit width"));
    tab->info(MainTab::tr("Flash chip size is :") + QString::number(chip.sizeBytes / 1024) +
              MainTab::tr("KB"));
}
} // namespace

MainTab::MainTab(QWidget *parent) : QWidget(parent)
{
    createWidgets(this);
    layOutWidgets(this);
    setKeyboardOrder(this);
    connectButtons(this);
    createWorker(this);
    guarded = new GuardedJob(this);
    connect(cancelButton, &QPushButton::clicked, guarded, &GuardedJob::stop);
    setProgress(0, 1);
    setEnabledButtons(true);
    greet(this);
}

MainTab::~MainTab()
{
    delete guarded;
    // A job that has only just been started clears the flag once more, so the wish is repeated.
    constexpr unsigned long kAskAgainMs = 100;
    do {
        worker->canceled();
    } while (!worker->wait(kAskAgainMs));
    delete worker;
}

void MainTab::push_info()
{
    const auto made = std::make_shared<MadeReport>();
    if (!guarded->useReader([made] { makeReport(made.get()); }))
        return;
    for (const QString &entry : made->entries)
        info(entry);
    for (const DetectedSettings &found : made->settings)
        select(settings, found);
    guarded->noteReport(made->report);
    if (made->report.outcome == ReportOutcome::NoMode)
        guarded->tell(modeFaultEntries(made->report.modeFault, made->report.driveError));
}

void MainTab::push_read_rom()
{
    const ActionStart start(this);
    if (!start.isReady())
        return;
    const QString fileName = askForFile(this, kReadRomAction, settings->sysType);
    if (!prepareJob(fileName))
        return;
    worker->operate = jobCode(kReadRomAction, settings->sysType);
    startJob(this, kReadRomAction);
}

void MainTab::push_read_ram()
{
    const ActionStart start(this);
    if (!start.isReady())
        return;
    const QString fileName = askForFile(this, kReadRamAction, settings->sysType);
    if (!prepareJob(fileName))
        return;
    worker->operate = jobCode(kReadRamAction, settings->sysType);
    startJob(this, kReadRamAction);
}

void MainTab::push_write_flash()
{
    const ActionStart start(this);
    if (!start.isReady())
        return;
    const QString fileName = askForFile(this, kWriteFlashAction, settings->sysType);
    if (!prepareJob(fileName))
        return;
    if (settings->sysType != kSystemGba) {
        const auto chip = std::make_shared<FlashChipAnswer>();
        if (!guarded->useReader([chip] { *chip = probeFlashChip(); }))
            return;
        worker->flash_width = chip->isWide ? 1 : 0;
        worker->chip_size = static_cast<int>(chip->sizeBytes);
        reportFlashChip(this, *chip);
    }
    worker->operate = jobCode(kWriteFlashAction, settings->sysType);
    startJob(this, kWriteFlashAction);
}

void MainTab::push_write_ram()
{
    const ActionStart start(this);
    if (!start.isReady())
        return;
    const QString fileName = askForFile(this, kWriteRamAction, settings->sysType);
    if (!prepareJob(fileName))
        return;
    worker->operate = jobCode(kWriteRamAction, settings->sysType);
    startJob(this, kWriteRamAction);
}

void MainTab::info(QString msg)
{
    appendLog(console, msg);
}

void MainTab::setProgress(int ile, int max)
{
    progress->setMinimum(0);
    progress->setMaximum(max);
    progress->setValue(ile);
}

void MainTab::setEnabledButtons(bool stan)
{
    // The action that was pressed cannot keep the keyboard. The tab holds it meanwhile, where no
    // key does anything, and gives it back unless the user has taken it elsewhere.
    for (QPushButton *button :
         {infoButton, dumpButton, readRamButton, flashButton, writeRamButton}) {
        if (!stan && window()->focusWidget() == button) {
            m_pressed = button;
            setFocus();
        }
        button->setEnabled(stan);
    }
    cancelButton->setEnabled(!stan);
    if (stan && window()->focusWidget() == this && m_pressed != nullptr)
        m_pressed->setFocus();
}

void MainTab::print_error(int err)
{
    if (err == 0)
        info(tr(">Operation failure."));
    else if (err == 1)
        info(tr(">Success!"));
    info(QString::fromLatin1(kLogRule));
    setProgress(0, 1);
    // The job has told its end, but its thread may still be on the way out. The actions come back
    // only when it has let go of the reader.
    worker->wait();
    setEnabledButtons(true);
    guarded->onWorkerEnd();
}

bool MainTab::prepareJob(const QString &fileName)
{
    const auto refuse = [this] {
        guarded->useReader([] { releaseReader(); });
        return false;
    };
    const QString script = scriptPath(settings);
    const bool isGba = settings->sysType == kSystemGba;
    const auto answer = std::make_shared<ModeAnswer>();
    if (!guarded->useReader([answer, isGba] { *answer = selectMode(isGba); }))
        return false;
    if (answer->end != JobEnd::Done) {
        info(tr("Initialize device error."));
        guarded->tell(modeFaultEntries(answer->end, answer->driveError));
        return refuse();
    }
    if (!QFile::exists(script)) {
        info(tr("Not exists script file :"));
        info(logText(script));
        info(QString::fromLatin1(kLogRule));
        return refuse();
    }
    if (fileName.isEmpty())
        return refuse();

    worker->script_name = script;
    worker->file_name = fileName;
    fillJobSizes(*settings, worker);
    worker->verify = settings->verify;
    return true;
}
