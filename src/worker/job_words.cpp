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

// A compiler's error names its place itself.
QString scriptErrorText(const QString &error, const QString &place)
{
    const bool namesPlace =
        place.isEmpty() || error.startsWith(place.section(QLatin1Char(','), 0, 0));
    return namesPlace ? FamicomThread::tr("script error: %1").arg(error)
                      : FamicomThread::tr("script error: %1 (%2)").arg(error, place);
}

} // namespace

QString jobEndLine(JobEnd end)
{
    switch (end) {
    case JobEnd::NoReader:
        return FamicomThread::tr("Can not found device.");
    case JobEnd::NoMode:
    case JobEnd::ReaderInUse:
    case JobEnd::NotTheReader:
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
    case JobEnd::ScriptError:
    case JobEnd::ScriptStopped:
    case JobEnd::Left:
    case JobEnd::EraseFailed:
    case JobEnd::Cancelled:
        break;
    }
    return QString();
}

QString reasonOf(const JobResult &result)
{
    const QString error = withoutScriptFolder(result.scriptError);
    if (result.end == JobEnd::ScriptError && !error.isEmpty())
        return scriptErrorText(error, result.scriptPlace);
    if (!error.isEmpty())
        return error;
    const QString line = jobEndLine(result.end);
    if (!line.isEmpty())
        return line;
    return result.failedOperation.isEmpty() ? result.driveError : result.failedOperation;
}
