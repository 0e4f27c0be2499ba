#include "ui/firmware_update_tab.h"

#include "ui/console.h"
#include "worker/update_thread.h"

#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{
// Closes an update's block in the log. The only log text that is not translated.
const char kRule[] = "<hr><br>";

void createWidgets(FirmwareUpdateTab *tab)
{
    tab->console = new Console(tab);
    tab->progress = new QProgressBar(tab);
    tab->progress->setAccessibleName(FirmwareUpdateTab::tr("Progress"));
    tab->progress->setAccessibleDescription(FirmwareUpdateTab::tr("How far the update has come"));
    tab->updateButton = new QPushButton(FirmwareUpdateTab::tr("Update Firmware"), tab);
    // An Enter that was meant for something else must not start an update.
    tab->updateButton->setAutoDefault(false);
}

void layOutWidgets(FirmwareUpdateTab *tab)
{
    tab->buttonLayout = new QVBoxLayout;
    tab->consoleLayout = new QVBoxLayout;
    tab->progressLayout = new QHBoxLayout;
    tab->mainLayout = new QVBoxLayout;

    tab->buttonLayout->addWidget(tab->updateButton);
    tab->consoleLayout->addWidget(tab->console);
    tab->progressLayout->addWidget(tab->progress);
    tab->mainLayout->addLayout(tab->buttonLayout);
    tab->mainLayout->addLayout(tab->consoleLayout);
    tab->mainLayout->addLayout(tab->progressLayout);
    tab->setLayout(tab->mainLayout);
}

void createWorker(FirmwareUpdateTab *tab)
{
    tab->worker = new UpdateThread;
    QObject::connect(tab->updateButton, SIGNAL(clicked(bool)), tab, SLOT(push_update()));
    QObject::connect(tab->worker, SIGNAL(set_progress(int, int)), tab, SLOT(setProgress(int, int)));
    QObject::connect(tab->worker, SIGNAL(error(int)), tab, SLOT(print_error(int)));
    QObject::connect(tab->worker, SIGNAL(log(QString)), tab, SLOT(info(QString)));
}

void tellHowToPrepare(FirmwareUpdateTab *tab)
{
    tab->info(FirmwareUpdateTab::tr("First turn off anti-virus software."));
    tab->info(FirmwareUpdateTab::tr("Next press \"Update Firmware\" to update firmware."));
    tab->info(FirmwareUpdateTab::tr("\r\n"));
}
} // namespace

FirmwareUpdateTab::FirmwareUpdateTab(QWidget *parent) : QWidget(parent)
{
    createWidgets(this);
    layOutWidgets(this);
    createWorker(this);
    setProgress(0, 1);
    tellHowToPrepare(this);
}

FirmwareUpdateTab::~FirmwareUpdateTab()
{
    worker->wait();
    delete worker;
}

void FirmwareUpdateTab::push_update()
{
    setEnabledButtons(false);
    worker->start(QThread::NormalPriority);
    // The worker's lines are queued to this thread, so this one always stands above them.
    info(tr("Starting update firmware , pelase wait..."));
}

void FirmwareUpdateTab::info(QString msg)
{
    appendLog(console, msg);
}

void FirmwareUpdateTab::setEnabledButtons(bool stan)
{
    updateButton->setEnabled(stan);
}

void FirmwareUpdateTab::setProgress(int ile, int max)
{
    progress->setMinimum(0);
    progress->setMaximum(max);
    progress->setValue(ile);
}

void FirmwareUpdateTab::print_error(int err)
{
    if (err == 1)
        info(tr(">Success!"));
    else if (err == 0)
        info(tr(">Operation failure."));
    info(QString::fromLatin1(kRule));
    // The lines above say more than was done.
    if (err == 1)
        info(tr("Nothing was sent to the reader: this program transfers no firmware."));
    setProgress(0, 1);
    // The update has told its end, but its thread may still be on the way out, and a thread that
    // runs cannot be started: the next press would be lost and the button stay disabled.
    worker->wait();
    setEnabledButtons(true);
}
