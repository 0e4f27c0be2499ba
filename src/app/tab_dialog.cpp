#include "app/tab_dialog.h"

#include "ui/corner_actions.h"
#include "ui/firmware_update_tab.h"
#include "ui/guarded_job.h"
#include "ui/main_tab.h"
#include "ui/reader_corner.h"
#include "ui/tab_about.h"
#include "worker/famicom_thread.h"
#include "worker/log_text.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMimeData>
#include <QTabWidget>
#include <QUrl>
#include <QVBoxLayout>

namespace
{
// What a read that goes well needs at most to come to its next step.
constexpr int kPatienceMs = 3000;

QString withCopyNote(const QString &line, const QString &oldFile)
{
    if (oldFile.isEmpty())
        return line;
    return TabDialog::tr("%1 %2").arg(
        line, TabDialog::tr("The file that was there before is in %1").arg(oldFile));
}

// The one local file that is dragged; empty if it is anything else.
QString droppedFile(const QDropEvent &event)
{
    const QList<QUrl> urls = event.mimeData()->urls();
    return urls.size() == 1 ? urls[0].toLocalFile() : QString();
}
} // namespace

TabDialog::TabDialog(const QString &fileName, QWidget *parent) : QDialog(parent)
{
    setWindowTitle(tr("GB Driver 3.0 build - ") + QStringLiteral(__DATE__));
    const QFileInfo fileInfo(fileName);

    tabWidget = new QTabWidget;
    // The window has room for the whole row of tabs and what stands in the corner, in any language.
    tabWidget->setUsesScrollButtons(false);
    m_mainTab = new MainTab;
    tabWidget->addTab(m_mainTab, tr("GB"));
    tabWidget->addTab(new FirmwareUpdateTab, tr("Update"));
    tabWidget->addTab(new TabAbout(fileInfo), tr("About"));

    auto *corner = new ReaderCorner;
    tabWidget->setCornerWidget(corner);
    m_corner = new CornerActions(m_mainTab, corner, [this](bool isOn) { return m_demo.use(isOn); });
    setAcceptDrops(true);

    auto *layout = new QVBoxLayout;
    layout->addWidget(tabWidget);
    setLayout(layout);

    connect(m_mainTab->guarded, &GuardedJob::changed, this, &TabDialog::onJobChanged);
    connect(&m_askTimer, &QTimer::timeout, this, &TabDialog::askAgain);
}

TabDialog::~TabDialog()
{
    delete tabWidget; // with the job that may still use the demo reader
}

bool TabDialog::isBusy() const
{
    return m_mainTab->guarded->isBusy() || m_mainTab->worker->isRunning();
}

void TabDialog::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && isBusy())
        event->accept();
    else
        QDialog::keyPressEvent(event);
}

void TabDialog::dragEnterEvent(QDragEnterEvent *event)
{
    if (!isBusy() && !droppedFile(*event).isEmpty())
        event->acceptProposedAction();
}

void TabDialog::dropEvent(QDropEvent *event)
{
    tabWidget->setCurrentWidget(m_mainTab);
    m_corner->checkFile(droppedFile(*event));
    event->acceptProposedAction();
}

void TabDialog::done(int result)
{
    const bool isPatienceOver = m_closesAfterJob && m_sinceAsked.hasExpired(kPatienceMs);
    // A look for the reader that does not end hangs in a drive, and reads as well.
    const bool leaves = isBusy() && isPatienceOver && m_mainTab->guarded->mayBeLeft();
    if (leaves)
        m_hasLeftJob = !m_mainTab->guarded->leave();
    else if (!isBusy())
        m_hasLeftJob = !m_mainTab->guarded->waitForLook();
    if (!isBusy() || leaves) {
        m_askTimer.stop();
        QDialog::done(result);
    } else if (isPatienceOver) {
        tellOnce(tr("The cartridge is being written. The window stays until that has ended."));
    } else {
        askJobToEnd();
    }
}

void TabDialog::endProgram()
{
    m_endsProgram = true;
    QApplication::closeAllWindows();
}

void TabDialog::askJobToEnd()
{
    constexpr int kAskAgainMs = 100;
    if (m_closesAfterJob)
        return;
    m_closesAfterJob = true;
    m_sinceAsked.start();
    tabWidget->setCurrentWidget(m_mainTab);
    tellOnce(tr("A job is running and has been asked to stop. "
                "The window closes when it has ended."));
    m_askTimer.start(kAskAgainMs);
    askAgain();
}

void TabDialog::askAgain()
{
    m_mainTab->worker->canceled();
    m_mainTab->guarded->stop();
    if (m_sinceAsked.hasExpired(kPatienceMs) && m_mainTab->guarded->mayBeLeft())
        tellOnce(withCopyNote(tr("The job has not ended yet. Close the window again to leave it "
                                 "behind; it only reads."),
                              m_mainTab->guarded->oldFilePath()));
}

void TabDialog::tellOnce(const QString &line)
{
    if (line != m_lastTold)
        m_mainTab->info(logText(line));
    m_lastTold = line;
}

void TabDialog::onJobChanged()
{
    if (!m_closesAfterJob || isBusy())
        return;
    m_askTimer.stop();
    m_closesAfterJob = false;
    m_lastTold.clear();
    // What replaces the only copy of something must not vanish before it was read.
    if (m_mainTab->guarded->namesCopy() && !m_endsProgram)
        m_mainTab->info(tr("The window stays open, for you to read this. Close it again."));
    else
        close();
}
