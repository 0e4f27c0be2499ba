// The SHA-1 of a ROM while it is read: a thread of its own follows the job's cursor through the
// transfer buffer, so that the hash is ready when the last byte arrives.
//
// Thread: made and asked by the thread that owns the job. The two slots run in the job's thread:
// the end of the job waits there for the hash, because the buffer is gone right after it.
#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <QObject>

#include <condition_variable>
#include <mutex>
#include <thread>

class FamicomThread;

class TransferHash : public QObject
{
    Q_OBJECT

public:
    // Attaches to `job`, a dump that has not been started. It must outlive this object.
    explicit TransferHash(FamicomThread *job);
    ~TransferHash() override;

    // SHA-1 of the whole buffer, 20 bytes. Valid once the job has ended.
    QByteArray sha1() const { return m_hash.result(); }

private slots:
    void onProgress(int doneBytes, int maximum);
    void onEnd();

private:
    // Lets the hash run up to `doneBytes`. Those are final: a job only appends, but for a read that
    // failed, and then the job fails and its hash means nothing.
    void allow(int doneBytes, bool isEnd);
    void follow();

    FamicomThread *m_job;
    QCryptographicHash m_hash;
    std::mutex m_mutex;
    std::condition_variable m_moved;
    int m_allowed = 0;
    bool m_isEnd = false;
    std::thread m_thread;
};
