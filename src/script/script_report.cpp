#include "script/script_report.h"

#include "script/script_owner.h"

namespace
{

// More functions than that are a recursion.
constexpr SQInteger kMostFunctions = 40;
constexpr SQInteger kLocalLevels = 10;
constexpr int kMostLocals = 100;
constexpr std::size_t kLongestLine = 1022;

// The value on top of the stack.
QString valueText(HSQUIRRELVM v)
{
    SQInteger integer = 0;
    SQFloat number = 0;
    SQBool isTrue = SQFalse;
    const SQChar *text = nullptr;
    switch (sq_gettype(v, -1)) {
    case OT_NULL:
        return QStringLiteral("NULL");
    case OT_INTEGER:
        sq_getinteger(v, -1, &integer);
        return QString::number(integer);
    case OT_FLOAT:
        sq_getfloat(v, -1, &number);
        return QString::number(static_cast<double>(number), 'g', 14);
    case OT_BOOL:
        sq_getbool(v, -1, &isTrue);
        return isTrue == SQTrue ? QStringLiteral("true") : QStringLiteral("false");
    case OT_STRING:
        sq_getstring(v, -1, &text);
        return QLatin1Char('"') + QString::fromUtf8(text, qstrnlen(text, kLongestLine)) +
               QLatin1Char('"');
    case OT_USERPOINTER:
        return QStringLiteral("USERPOINTER");
    case OT_TABLE:
        return QStringLiteral("TABLE");
    case OT_ARRAY:
        return QStringLiteral("ARRAY");
    case OT_CLOSURE:
        return QStringLiteral("CLOSURE");
    case OT_NATIVECLOSURE:
        return QStringLiteral("NATIVECLOSURE");
    case OT_GENERATOR:
        return QStringLiteral("GENERATOR");
    case OT_USERDATA:
        return QStringLiteral("USERDATA");
    case OT_THREAD:
        return QStringLiteral("THREAD");
    case OT_CLASS:
        return QStringLiteral("CLASS");
    case OT_INSTANCE:
        return QStringLiteral("INSTANCE");
    case OT_WEAKREF:
        return QStringLiteral("WEAKREF");
    default:
        return QStringLiteral("?");
    }
}

int lineOf(const RunningJob &job, const SQStackInfos &infos)
{
    const int line = static_cast<int>(infos.line);
    return infos.source == nullptr ? line : job.sources.lineOf(infos.source, line);
}

void addFunctions(HSQUIRRELVM v, RunningJob *job)
{
    SQStackInfos infos;
    // Level 0 is the handler itself.
    for (SQInteger level = 1; SQ_SUCCEEDED(sq_stackinfos(v, level, &infos)); ++level) {
        if (level > kMostFunctions) {
            job->report << QStringLiteral("...\n");
            return;
        }
        const QString name = QString::fromUtf8(infos.funcname ? infos.funcname : "unknown");
        const QString source = QString::fromUtf8(infos.source ? infos.source : "unknown");
        job->report << QStringLiteral("*FUNCTION [") + name + QStringLiteral("()] ") + source +
                           QStringLiteral(" line [%1]\n").arg(lineOf(*job, infos));
    }
}

void addLocals(HSQUIRRELVM v, RunningJob *job)
{
    int count = 0;
    for (SQInteger level = 0; level < kLocalLevels; ++level) {
        const SQChar *name = nullptr;
        for (SQInteger index = 0;
             count < kMostLocals &&
             (name = sq_getlocal(v, static_cast<SQUnsignedInteger>(level),
                                 static_cast<SQUnsignedInteger>(index))) != nullptr;
             ++index, ++count) {
            job->report << QStringLiteral("[") + QString::fromUtf8(name) + QStringLiteral("] ") +
                               valueText(v) + QLatin1Char('\n');
            sq_pop(v, 1);
        }
    }
}

// The first function with lines is where the error was raised.
void notePlace(HSQUIRRELVM v, RunningJob *job)
{
    SQStackInfos infos;
    for (SQInteger level = 1; SQ_SUCCEEDED(sq_stackinfos(v, level, &infos)); ++level) {
        if (infos.line < 0 || infos.source == nullptr)
            continue;
        const int line = lineOf(*job, infos);
        job->scriptPlace = placeText(QString::fromUtf8(infos.source), line);
        job->isThrown = job->sources.throwsAt(infos.source, line);
        return;
    }
}

SQInteger keepReport(HSQUIRRELVM v)
{
    RunningJob &job = ownerOf(v);
    const SQChar *text = nullptr;
    const bool isText = sq_gettop(v) >= 2 && SQ_SUCCEEDED(sq_getstring(v, 2, &text));
    const QString error =
        isText ? QString::fromUtf8(text, qstrnlen(text, kLongestLine)) : QStringLiteral("unknown");
    const QString heading =
        QStringLiteral("\nAN ERROR HAS OCCURED [") + error + QStringLiteral("]\n");
    if (!job.report.isEmpty() && job.report.first() == heading)
        return 0; // on its way out, or thrown again
    job.report = QStringList{heading, QStringLiteral("\nCALLSTACK\n")};
    addFunctions(v, &job);
    job.report << QStringLiteral("\nLOCALS\n");
    addLocals(v, &job);
    if (error != job.scriptError) // a compile error has its own
        notePlace(v, &job);
    return 0;
}

} // namespace

void keepErrorReports(HSQUIRRELVM v)
{
    sq_newclosure(v, keepReport, 0);
    sq_seterrorhandler(v);
    sq_notifyallexceptions(v, SQTrue);
}

void tellErrorReport(RunningJob &job)
{
    for (const QString &line : job.report)
        job.listener.onLine(line);
    job.report.clear();
}
