#include "job_events.h"

#include "worker/famicom_thread.h"

#include <QRegularExpression>

namespace
{

const QString kLogPrefix = "log ";

QString progressEvent(int done, int maximum)
{
    return QString("progress %1/%2").arg(done).arg(maximum);
}

} // namespace

void JobRecorder::onLine(const QString &line)
{
    m_events->append(kLogPrefix + line);
}

void JobRecorder::onProgress(int doneBytes, int maximum)
{
    m_events->append(progressEvent(doneBytes, maximum));
}

void recordEvents(FamicomThread *job, QStringList *events)
{
    const Qt::ConnectionType atOnce = Qt::DirectConnection;
    QObject::connect(
        job, &FamicomThread::log, job,
        [events](const QString &text) { events->append(kLogPrefix + text); }, atOnce);
    QObject::connect(
        job, &FamicomThread::set_progress, job,
        [events](int done, int maximum) { events->append(progressEvent(done, maximum)); }, atOnce);
    QObject::connect(
        job, &FamicomThread::error, job,
        [events](int flag) { events->append(QString("error %1").arg(flag)); }, atOnce);
}

QStringList logTexts(const QStringList &events)
{
    QStringList texts;
    for (const QString &event : events) {
        if (event.startsWith(kLogPrefix))
            texts.append(event.mid(kLogPrefix.size()));
    }
    return texts;
}

QStringList scriptErrors(const QStringList &logs)
{
    static const QRegularExpression heading("^\nAN ERROR HAS OCCURR?ED \\[(.*)\\]\n$",
                                            QRegularExpression::DotMatchesEverythingOption);
    QStringList messages;
    for (const QString &line : logs) {
        const QRegularExpressionMatch match = heading.match(line);
        if (match.hasMatch())
            messages.append(match.captured(1));
    }
    return messages;
}
