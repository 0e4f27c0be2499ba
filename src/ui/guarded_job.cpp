#include "ui/guarded_job.h"

#include "cart/setting_tables.h"
#include "device/device_link.h"
#include "trust/backup_store.h"
#include "trust/cartridge_task.h"
#include "trust/judgement_words.h"
#include "trust/left_behind.h"
#include "trust/old_file.h"
#include "trust/words.h"
#include "ui/announcement.h"
#include "ui/careful_thread.h"
#include "ui/console.h"
#include "ui/job_bar.h"
#include "ui/main_tab.h"
#include "worker/famicom_thread.h"
#include "worker/log_text.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTextDocumentFragment>

#include <algorithm>
#include <utility>

namespace
{

// Between two operations lie some hundred milliseconds.
constexpr unsigned long kLongestLeaveMs = 1000;
constexpr int kHangPollMs = 500;

// Where an erase comes first, which tells no progress.
bool erasesFirst(const CartridgeJob &job)
{
    return isFlashJob(job.operate) || (job.operate == GBA_WRITE_RAM && job.saveType == kSaveFlash);
}

QString stepText(Phase phase)
{
    switch (phase) {
    case Phase::Read:
        return GuardedJob::tr("Reading");
    case Phase::Compare:
        return GuardedJob::tr("Reading again");
    case Phase::Backup:
        return GuardedJob::tr("Keeping a backup");
    case Phase::Write:
        return GuardedJob::tr("Writing");
    case Phase::Check:
        return GuardedJob::tr("Comparing");
    }
    return QString();
}

} // namespace

GuardedJob::GuardedJob(MainTab *tab)
    : QObject(tab), m_tab(tab), m_thread(new CarefulThread), m_lookThread(new CarefulThread)
{
    connect(m_lookThread, &QThread::finished, this, [this] {
        m_isLooking = false;
        const std::function<void()> behind = m_behindLook; // it may begin another look
        behind();
    });
    connect(&m_hangTimer, &QTimer::timeout, this, &GuardedJob::tellIfReaderHangs);
    connect(m_thread, &CarefulThread::phaseBegan, this, &GuardedJob::showPhase);
    connect(m_thread, &CarefulThread::progressed, m_tab, &MainTab::setProgress);
    connect(m_thread, &QThread::finished, this, &GuardedJob::onStepsEnd);
}

GuardedJob::~GuardedJob()
{
    m_thread->requestStop();
    m_thread->wait();
    m_lookThread->wait();
    delete m_thread;
    delete m_lookThread;
}

void GuardedJob::start()
{
    m_guard = WriteGuard();
    m_oldFile.clear();
    m_leftBehind.clear();
    m_judged = JudgedJob();
    m_finished = FinishedJob();
    m_finished.job = m_tab->worker->job();
    m_finished.path = m_tab->worker->file_name;
    const CartridgeJob &job = m_finished.job;
    if (!guardsWrites)
        startWorker();
    else if (isWriteJob(job.operate))
        guard();
    else if (job.operate == GBA_READ_ROM && job.romSize > kLargestGbaRom)
        refuse(GuardFault::BeyondBus);
    else if (isReadJob(job.operate))
        guardRead();
    else
        startWorker();
}

void GuardedJob::guard()
{
    WantedWrite wanted;
    wanted.job = m_finished.job;
    wanted.file = m_finished.path;
    wanted.folder = backupFolder;
    wanted.isReadBack = m_tab->worker->verify;
    runSteps(
        Stage::Before,
        [this, wanted](TrustListener &listener) {
            m_leftBehind =
                leftBehindIn(wanted.folder.isEmpty() ? defaultBackupFolder() : wanted.folder);
            m_guard = guardWrite(wanted, listener);
        },
        [this] { startUnlessRefused(); });
}

// A name, a folder or a disk that cannot take the file is told before the cartridge is read for
// minutes.
void GuardedJob::guardRead()
{
    runSteps(
        Stage::Before,
        [this](TrustListener & /*listener*/) {
            m_leftBehind = leftBehindIn(QFileInfo(m_finished.path).path());
            m_guard.outcome = targetTrouble(m_finished.path, bytesToMove(m_finished.job));
            if (!m_guard.outcome.isDone()) {
                m_guard.fault = GuardFault::Target;
                return;
            }
            m_guard = ::guardRead(m_finished.job);
            if (m_guard.fault == GuardFault::None)
                keepOldFile();
        },
        [this] { startUnlessRefused(); });
}

// On the steps' thread.
void GuardedJob::keepOldFile()
{
    const OldFileCopy kept = ::keepOldFile(m_finished.path, backupFolder);
    m_oldFile = kept.path;
    m_guard.outcome = kept.outcome;
    m_guard.fault = kept.outcome.isDone() ? GuardFault::None : GuardFault::Trouble;
}

void GuardedJob::startUnlessRefused()
{
    // Cancel may come behind the steps' last question, while the backup is written.
    const bool isWrite = isWriteJob(m_finished.job.operate);
    if (isWrite && m_guard.fault == GuardFault::None && m_thread->isStopRequested()) {
        m_guard.fault = GuardFault::Trouble;
        m_guard.outcome.trouble = Trouble::Stopped;
        m_guard.outcome.state = unwritten(m_guard.backup.outcome.state);
    }
    if (m_guard.fault != GuardFault::None) {
        endRefused();
        return;
    }
    if (m_guard.isFileBlank)
        m_tab->info(warningEntry(blankFileText(m_finished.path)));
    startWorker();
}

void GuardedJob::refuse(GuardFault fault)
{
    m_guard.fault = fault;
    endRefused();
}

// The job's block ends with the reason and its rule, as one that the worker has ended does.
void GuardedJob::endRefused()
{
    useReader([] { releaseReader(); });
    m_stage = Stage::After;
    // The line of the action comes first, and its caller has yet to write it.
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_tab->info(logText(guardText(m_guard)));
            m_tab->info(QString::fromLatin1(kLogRule));
            tell(refusalEntries(m_guard));
            becomeIdle();
        },
        Qt::QueuedConnection);
}

void GuardedJob::startWorker()
{
    m_stage = Stage::Job;
    m_hangTimer.start(kHangPollMs);
    if (isWriteJob(m_finished.job.operate))
        forgetLastRead(); // the cartridge will hold something else
    m_tab->progress->showStep(QString());
    m_tab->setProgress(0, 1);
    m_tab->worker->start(QThread::NormalPriority);
    if (erasesFirst(m_finished.job))
        m_tab->progress->showWaiting(tr("Erasing; Cancel ends the wait"));
    emit changed();
}

void GuardedJob::onWorkerEnd()
{
    if (m_stage != Stage::Job)
        return;
    m_finished.job = m_tab->worker->job(); // a flash job has taken its size from the file
    m_finished.result = m_tab->worker->result();
    m_finished.before = m_guard.backup.outcome.state;
    const bool isWrite = isWriteJob(m_finished.job.operate);
    const bool compares = m_tab->worker->verify;
    const bool readsAgain = readsUnknownTwice;
    runSteps(
        Stage::After,
        [=](TrustListener &listener) {
            m_judged = isWrite ? judgeWrite(m_finished, compares, listener)
                               : judgeRead(m_finished, readsAgain, listener);
            dropOldFile();
        },
        [this] { tellJudgement(); });
}

// On the steps' thread: files of 32 MiB are compared.
void GuardedJob::dropOldFile()
{
    if (m_oldFile.isEmpty())
        return;
    // Of a save two equal reads say little: so reads a lost one as well.
    const bool isNewGood =
        m_judged.kind == JudgementKind::Verified ||
        (m_judged.kind == JudgementKind::Consistent && !movesSave(m_finished.job.operate));
    if ((isNewGood || areEqualFiles(m_oldFile, m_finished.path)) && QFile::remove(m_oldFile))
        m_oldFile.clear();
}

void GuardedJob::tellJudgement()
{
    if (isReadJob(m_finished.job.operate) && isVerdict(m_judged.kind))
        m_lastRead = m_finished;
    tell(judgementEntries(m_judged, {m_guard.backup.path, m_oldFile, m_savedBytes, m_leftBehind,
                                     m_guard.keepsWhatIsShown}));
    becomeIdle();
}

void GuardedJob::readAgain()
{
    m_guard = WriteGuard();
    m_oldFile.clear();
    const bool guardsRead = guardsWrites;
    runTask(
        [this, guardsRead](TrustListener &listener) {
            if (guardsRead)
                m_guard = ::guardRead(m_lastRead.job);
            if (m_guard.fault == GuardFault::None)
                m_judged = compareAgain(m_lastRead, listener);
        },
        [this] {
            if (m_guard.fault == GuardFault::None)
                tell(judgementEntries(m_judged, {}));
            else
                tell(QStringList{adviceEntry(guardText(m_guard))} + refusalEntries(m_guard));
        });
}

void GuardedJob::noteReport(const CartridgeReport &report)
{
    m_savedBytes = valuesFound(report).ramSize.value_or(0);
}

void GuardedJob::stop()
{
    m_thread->requestStop();
}

bool GuardedJob::leave()
{
    m_thread->requestLeave();
    m_tab->worker->leave_flag = true;
    return m_tab->worker->wait(kLongestLeaveMs) && m_thread->wait(kLongestLeaveMs);
}

bool GuardedJob::namesCopy() const
{
    return !m_oldFile.isEmpty() ||
           (!m_guard.backup.path.isEmpty() && m_judged.kind != JudgementKind::Written);
}

void GuardedJob::forgetLastRead()
{
    m_lastRead = FinishedJob();
    emit changed();
}

bool GuardedJob::mayBeLeft() const
{
    return m_stage != Stage::Job || !isWriteJob(m_finished.job.operate);
}

void GuardedJob::runTask(const std::function<void(TrustListener &)> &steps,
                         const std::function<void()> &done)
{
    runSteps(Stage::After, steps, [this, done] {
        done();
        becomeIdle();
    });
}

bool GuardedJob::look(const std::function<void()> &steps, const std::function<void()> &done)
{
    if (isBusy() || m_isLooking || m_isHeld)
        return false;
    m_isLooking = true;
    m_shownBackend = &driveBackend();
    m_behindLook = done;
    m_lookThread->run([steps](TrustListener & /*listener*/) { steps(); });
    return true;
}

bool GuardedJob::waitForLook()
{
    if (!m_lookThread->wait(static_cast<unsigned long>(longestUseMs))) {
        m_tab->info(tr("The reader does not answer. Unplug it, or close the window."));
        return false;
    }
    // What follows it comes first, and begins no other.
    const bool wasHeld = m_isHeld;
    m_isHeld = true;
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    m_isHeld = wasHeld;
    return true;
}

bool GuardedJob::useReader(const std::function<void()> &steps)
{
    if (!waitForLook())
        return false;
    m_isLooking = true;
    m_shownBackend = &driveBackend();
    m_behindLook = [] {};
    m_lookThread->run([steps](TrustListener & /*listener*/) { steps(); });
    const bool hasEnded = waitForLook();
    if (!hasEnded)
        m_behindLook = [this] { emit changed(); }; // a look may be due
    return hasEnded;
}

const DriveBackend *GuardedJob::shownBackend() const
{
    return m_isLooking ? m_shownBackend : &driveBackend();
}

void GuardedJob::holdLooks(bool isHeld)
{
    m_isHeld = isHeld;
    if (!isHeld)
        emit changed(); // a look may be due
}

void GuardedJob::tell(const QStringList &entries)
{
    if (entries.isEmpty())
        return;
    for (const QString &entry : entries)
        m_tab->info(entry);
    const QString words = QTextDocumentFragment::fromHtml(entries.value(0)).toPlainText();
    m_tab->console->setAccessibleDescription(words);
    // Of the window: with the tab it would begin to show again whenever the user comes back to it.
    if (m_announcement == nullptr)
        m_announcement = new Announcement(m_tab->window());
    m_announcement->say(words);
}

void GuardedJob::runSteps(Stage stage, const std::function<void(TrustListener &)> &steps,
                          const std::function<void()> &behind)
{
    m_lookThread->wait();
    m_stage = stage;
    m_hangTimer.start(kHangPollMs);
    m_behind = behind;
    m_tab->setEnabledButtons(false);
    emit changed();
    m_thread->run(steps);
}

void GuardedJob::onStepsEnd()
{
    m_thread->wait();
    // What follows may begin other steps.
    const std::function<void()> behind = std::move(m_behind);
    m_behind = nullptr;
    behind();
}

void GuardedJob::becomeIdle()
{
    m_stage = Stage::Idle;
    m_hangTimer.stop();
    m_tab->progress->showStep(QString());
    m_tab->setProgress(0, 1);
    m_tab->setEnabledButtons(true);
    emit changed();
}

// A call that the system does not end cannot be ended from here: the way out is outside.
void GuardedJob::tellIfReaderHangs()
{
    const bool hasToldHang = m_hasToldHang;
    m_hasToldHang = readerCallMs() >= hangingMs;
    if (!m_hasToldHang || hasToldHang)
        return;
    m_tab->info(sentences(
        tr("The reader has not answered for %1 seconds.").arg(hangingMs / 1000),
        (mayBeLeft()
             ? tr("Unplug it to end the job, or close the window twice to leave the job "
                  "behind; it only reads.")
             : tr("The cartridge is being written. If no answer ever comes, unplug the "
                  "reader: that ends the job, and the cartridge is then partly written."))));
}

void GuardedJob::showPhase(int phase, int totalBytes)
{
    m_tab->progress->showStep(stepText(static_cast<Phase>(phase)));
    m_tab->setProgress(0, std::max(1, totalBytes));
}
