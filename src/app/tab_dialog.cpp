#include "app/tab_dialog.h"

#include "ui/firmware_update_tab.h"
#include "ui/main_tab.h"
#include "ui/tab_about.h"
#include "worker/famicom_thread.h"

#include <QFileInfo>
#include <QTabWidget>
#include <QVBoxLayout>

TabDialog::TabDialog(const QString &fileName, QWidget *parent) : QDialog(parent)
{
    setWindowTitle(tr("GB Driver 3.0 build - ") + QStringLiteral(__DATE__));
    const QFileInfo fileInfo(fileName);

    tabWidget = new QTabWidget;
    m_mainTab = new MainTab;
    tabWidget->addTab(m_mainTab, tr("GB"));
    tabWidget->addTab(new FirmwareUpdateTab, tr("Update"));
    tabWidget->addTab(new TabAbout(fileInfo), tr("About"));

    auto *layout = new QVBoxLayout;
    layout->addWidget(tabWidget);
    setLayout(layout);

    connect(m_mainTab->worker, &QThread::finished, this, &TabDialog::onJobEnded);
    connect(&m_cancelTimer, &QTimer::timeout, m_mainTab->worker, &FamicomThread::canceled);
}

void TabDialog::done(int result)
{
    if (m_mainTab->worker->isRunning())
        askJobToEnd();
    else
        QDialog::done(result);
}

void TabDialog::askJobToEnd()
{
    constexpr int kAskAgainMs = 100;
    m_mainTab->worker->canceled();
    m_cancelTimer.start(kAskAgainMs);
    if (m_closesAfterJob)
        return;
    m_closesAfterJob = true;
    tabWidget->setCurrentWidget(m_mainTab);
    m_mainTab->info(tr("A job is running and has been asked to stop. "
                       "The window closes when it has ended."));
}

void TabDialog::onJobEnded()
{
    if (!m_closesAfterJob)
        return;
    m_cancelTimer.stop();
    m_closesAfterJob = false;
    close();
}
