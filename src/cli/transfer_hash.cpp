#include "cli/transfer_hash.h"

#include "worker/famicom_thread.h"

TransferHash::TransferHash(FamicomThread *job) : m_job(job), m_hash(QCryptographicHash::Sha1)
{
    connect(job, &FamicomThread::set_progress, this, &TransferHash::onProgress,
            Qt::DirectConnection);
    connect(job, &FamicomThread::error, this, &TransferHash::onEnd, Qt::DirectConnection);
    m_thread = std::thread([this] { follow(); });
}

TransferHash::~TransferHash()
{
    allow(0, true);
    if (m_thread.joinable())
        m_thread.join();
}

void TransferHash::onProgress(int doneBytes, int maximum)
{
    // The job ends with a full bar of 1 of 1; those are no bytes.
    if (maximum != 1)
        allow(doneBytes, false);
}

void TransferHash::onEnd()
{
    // A script that moved less leaves zeros, which are saved like the rest. Without memory for a
    // buffer there is nothing to look at.
    allow(m_job->data_buf == nullptr ? 0 : jobBufferSize(*m_job), true);
    m_thread.join();
}

void TransferHash::allow(int doneBytes, bool isEnd)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_allowed = qMax(m_allowed, qMin(doneBytes, jobBufferSize(*m_job)));
        m_isEnd = m_isEnd || isEnd;
    }
    m_moved.notify_one();
}

void TransferHash::follow()
{
    int hashed = 0;
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_isEnd || hashed < m_allowed) {
        m_moved.wait(lock, [&] { return m_isEnd || hashed < m_allowed; });
        const int end = m_allowed;
        lock.unlock();
        if (hashed < end)
            m_hash.addData(reinterpret_cast<const char *>(m_job->data_buf) + hashed, end - hashed);
        hashed = end;
        lock.lock();
    }
}
