#include "worker/famicom_thread.h"

#include "device/device_link.h"
#include "device/local_path.h"
#include "script/script_host.h"
#include "worker/job_run.h"
#include "worker/job_words.h"
#include "worker/log_text.h"

#include <QFileInfo>

#include <limits>
#include <new>

namespace
{

// Passes on what a running job tells, and keeps the thread's own cursor beside the job's.
class ThreadListener : public JobListener
{
public:
    explicit ThreadListener(FamicomThread &thread) : m_thread(thread) {}

    void onLine(const QString &line) override { emit m_thread.log(logText(line)); }
    void onProgress(int doneBytes, int maximum) override
    {
        m_thread.data_pos = doneBytes;
        emit m_thread.set_progress(doneBytes, maximum);
    }
    bool isStopWanted() override
    {
        return m_thread.cancel_flag.load(std::memory_order_relaxed) == 1;
    }
    bool isLeaveWanted() override { return m_thread.leave_flag.load(std::memory_order_relaxed); }

private:
    FamicomThread &m_thread;
};

// Size of the file to be flashed; -1 if it is too large to be one.
int flashFileSize(const QString &fileName)
{
    const qint64 size = QFileInfo(fileName).size();
    return size <= std::numeric_limits<int>::max() - kTransferSlack ? static_cast<int>(size) : -1;
}

// Cleared, so that a script which fills too little leaves zeros and not bytes of an older job.
JobEnd allocateBuffer(FamicomThread *thread, RunningJob *running)
{
    CartridgeJob &job = running->job;
    if (isFlashJob(job.operate)) {
        job.romSize = thread->rom_size = flashFileSize(thread->file_name);
        keyCipher();
    }
    const int size = bytesToMove(job);
    if (size < 0 || !(isReadJob(job.operate) || isWriteJob(job.operate)))
        return JobEnd::Done;
    thread->data_buf =
        new (std::nothrow) unsigned char[static_cast<std::size_t>(size) + kTransferSlack]();
    running->data = thread->data_buf;
    return thread->data_buf == nullptr ? JobEnd::NoMemory : JobEnd::Done;
}

JobEnd readInputFile(FamicomThread *thread, const RunningJob &running)
{
    DriveFile *file = openForRead(localPath(thread->file_name).constData());
    emit thread->log(logText(FamicomThread::tr("Read file :") + thread->file_name));
    if (file == nullptr)
        return JobEnd::InputNotOpened;
    const int size = bytesToMove(running.job);
    const bool isRead =
        size >= 0 && readHandle(file, running.data, static_cast<std::uint32_t>(size)) ==
                         static_cast<std::uint32_t>(size);
    if (isRead)
        emit thread->log(FamicomThread::tr("Read ") + QString::number(size) +
                         FamicomThread::tr(" Bytes"));
    closeHandle(file);
    return isRead ? JobEnd::Done : JobEnd::InputNotRead;
}

JobEnd saveDump(const FamicomThread &thread, const RunningJob &running)
{
    // A negative size has no buffer, and as a count it would look like a failure that was expected.
    const auto size = static_cast<std::uint32_t>(bytesToMove(running.job));
    const bool isWritten =
        running.data != nullptr &&
        writeFileWhole(localPath(thread.file_name).constData(), running.data, size) == size;
    return isWritten ? JobEnd::Done : JobEnd::OutputNotWritten;
}

JobResult runSteps(FamicomThread *thread)
{
    ThreadListener listener(*thread);
    RunningJob running(thread->job(), listener);
    clearLastDriveError();
    const int operate = running.job.operate;
    JobEnd end = selectReader(running.job);
    if (end == JobEnd::Done)
        end = allocateBuffer(thread, &running);
    if (end == JobEnd::Done && isWriteJob(operate))
        end = readInputFile(thread, running);
    if (end == JobEnd::Done)
        end = runOperation(&running);
    // The user's file is touched only now: a failed dump leaves the old one as it was.
    if (end == JobEnd::Done && isReadJob(operate))
        end = saveDump(*thread, running);
    return resultOf(running, end);
}

} // namespace

FamicomThread::FamicomThread() : QThread(nullptr) {}

CartridgeJob FamicomThread::job() const
{
    CartridgeJob job;
    job.operate = operate;
    job.scriptPath = script_name;
    job.romSize = rom_size;
    job.ramSize = ram_size;
    job.saveType = save_type;
    job.flashWidth = flash_width;
    job.chipSize = chip_size;
    return job;
}

void FamicomThread::canceled()
{
    cancel_flag.store(1, std::memory_order_relaxed);
}

void FamicomThread::run()
{
    cancel_flag.store(0, std::memory_order_relaxed);
    leave_flag.store(false, std::memory_order_relaxed);
    data_pos = 0;
    data_buf = nullptr;
    {
        // The drive is given up before the end is told, so that it can be unmounted at once.
        const ReaderSession session;
        m_result = runSteps(this);
        const QString line = jobEndLine(m_result.end);
        if (!line.isEmpty())
            emit log(line);
    }
    emit set_progress(1, 1);
    emit error(m_result.end == JobEnd::Done ? 1 : 0);
    delete[] data_buf;
    data_buf = nullptr;
}
