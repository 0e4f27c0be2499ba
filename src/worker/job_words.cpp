#include "worker/job_words.h"

#include "worker/famicom_thread.h"

#include <QRegularExpression>

namespace
{

// A script's path may have gone through another encoding and may hold blanks: it goes with all that
// stands before it.
QString withoutScriptFolder(const QString &text)
{
    static const QRegularExpression kFolder(QStringLiteral("^.*[/\\\\](?=[^/\\\\]*\\.nut)"));
    return QString(text).remove(kFolder).trimmed();
}

} // namespace

QString jobEndLine(JobEnd end)
{
    switch (end) {
    case JobEnd::NoReader:
        return FamicomThread::tr("Can not found device.");
    case JobEnd::NoMode:
        return FamicomThread::tr("Initialize device error.");
    case JobEnd::NoMemory:
        return FamicomThread::tr("Not enough memory.");
    case JobEnd::InputNotOpened:
        return FamicomThread::tr("Open File error.");
    case JobEnd::InputNotRead:
        return FamicomThread::tr("Read File error.");
    case JobEnd::OutputNotWritten:
        return FamicomThread::tr("Save file error.");
    case JobEnd::Done:
    case JobEnd::NoScript:
    case JobEnd::Refused:
    case JobEnd::ScriptFailed:
    case JobEnd::Cancelled:
        break;
    }
    return QString();
}

QString reasonOf(const JobResult &result)
{
    if (!result.scriptError.isEmpty())
        return withoutScriptFolder(result.scriptError);
    const QString line = jobEndLine(result.end);
    if (!line.isEmpty())
        return line;
    return result.failedOperation.isEmpty() ? result.driveError : result.failedOperation;
}
