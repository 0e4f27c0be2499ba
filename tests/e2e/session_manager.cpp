#include "session_manager.h"

namespace
{

constexpr int kAnswerMs = 60000;

} // namespace

SessionManager::~SessionManager()
{
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(kAnswerMs))
        m_process.kill();
}

QString SessionManager::start()
{
    m_process.start(SESSION_MANAGER_PROGRAM, QStringList());
    m_address = answer();
    return m_address.isEmpty() ? QStringLiteral("No session manager: ") +
                                     QString::fromLocal8Bit(m_process.readAllStandardError())
                               : QString();
}

void SessionManager::say(const QByteArray &line)
{
    m_process.write(line + '\n');
    m_process.waitForBytesWritten(kAnswerMs);
}

QString SessionManager::answer()
{
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(kAnswerMs))
            return QString();
    }
    return QString::fromLocal8Bit(m_process.readLine()).trimmed();
}
