#include "cli/reporter.h"

#include "cli/terminal.h"

#include <QJsonDocument>

namespace
{

void printTo(std::FILE *stream, const QString &line)
{
    QString text = line;
    while (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    std::fprintf(stream, "%s\n", text.toLocal8Bit().constData());
    std::fflush(stream);
}

QJsonObject logObject(const char *level, const QString &line)
{
    return {{QStringLiteral("level"), QLatin1String(level)},
            {QStringLiteral("line"), line.trimmed()}};
}

} // namespace

void Reporter::answer(const QString &line)
{
    if (!isJson())
        printTo(m_target.answers, line);
}

void Reporter::event(const char *name, QJsonObject object)
{
    if (!isJson())
        return;
    object.insert(QStringLiteral("event"), QLatin1String(name));
    const QByteArray line = QJsonDocument(object).toJson(QJsonDocument::Compact);
    std::fprintf(m_target.answers, "%s\n", line.constData());
    std::fflush(m_target.answers);
}

void Reporter::log(const QString &line)
{
    if (m_target.style == OutputStyle::Text && m_printer)
        m_printer->printLine(line);
    else if (m_target.style == OutputStyle::Text)
        printTo(m_target.messages, line);
    else if (!line.trimmed().isEmpty())
        event("log", logObject("info", line));
}

void Reporter::problem(const QString &text)
{
    if (m_printer)
        m_printer->finish();
    if (isJson())
        event("log", logObject("error", text));
    else
        printTo(m_target.messages, text);
}

void Reporter::startPhase(const char *phase, qint64 totalBytes)
{
    endPhase();
    m_phase = phase;
    m_totalBytes = totalBytes;
    m_lastPercent = -1;
    if (m_target.style == OutputStyle::Text)
        m_printer = std::make_unique<ProgressPrinter>(m_target.messages, m_target.isTerminal,
                                                      totalBytes, QLatin1String(phase));
}

void Reporter::progress(qint64 doneBytes)
{
    if (m_printer)
        m_printer->showProgress(doneBytes);
    else
        progressEvent(doneBytes);
}

// One for every percent at most, so that a program is not flooded.
void Reporter::progressEvent(qint64 doneBytes)
{
    const int percent = progressPercent(doneBytes, m_totalBytes);
    if (!isJson() || percent == m_lastPercent)
        return;
    m_lastPercent = percent;
    event("progress", {{QStringLiteral("phase"), QLatin1String(m_phase)},
                       {QStringLiteral("done"), doneBytes},
                       {QStringLiteral("total"), m_totalBytes}});
}

void Reporter::endPhase()
{
    if (m_printer)
        m_printer->finish();
    m_printer.reset();
}

void Reporter::end(ExitCode code)
{
    endPhase();
    const ExitCodeRow &row = rowOf(code);
    event("end", {{QStringLiteral("exitCode"), static_cast<int>(row.code)},
                  {QStringLiteral("status"), QLatin1String(row.word)},
                  {QStringLiteral("meaning"), QLatin1String(row.meaning)}});
}

OutputTarget standardOutput(OutputStyle style)
{
    OutputTarget target;
    target.style = style;
    const bool knowsCodes = qgetenv("TERM") != "dumb";
    target.isTerminal = standardErrorIsTerminal() && knowsCodes;
    target.hasColor =
        standardOutputIsTerminal() && knowsCodes && qEnvironmentVariableIsEmpty("NO_COLOR");
    return target;
}
