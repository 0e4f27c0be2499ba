#include "cli/reporter.h"

#include "cli/print_line.h"
#include "cli/terminal.h"

#include <QJsonDocument>

#include <cerrno>

namespace
{

// JSON escapes the first 32 controls only; a terminal takes C1 for commands too.
QByteArray jsonLine(const QJsonObject &object)
{
    const QString text = QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
    QString line;
    for (const QChar letter : text) {
        const bool isControl = letter.category() == QChar::Other_Control;
        line += isControl ? QStringLiteral("\\u00") + QString::number(letter.unicode(), 16)
                          : QString(letter);
    }
    return line.toUtf8();
}

QJsonObject logObject(const char *level, const QString &line)
{
    return {{QStringLiteral("level"), QLatin1String(level)},
            {QStringLiteral("line"), line.trimmed()}};
}

} // namespace

void Reporter::answer(const QString &line, const char *color)
{
    if (!isJson() && !printLine(m_target.answers, line, m_target.hasColor ? color : ""))
        noteBrokenAnswer();
}

// The first reason is the one that counts.
void Reporter::noteBrokenAnswer()
{
    if (m_answerError == 0)
        m_answerError = errno == 0 ? EIO : errno;
}

void Reporter::event(const char *name, QJsonObject object)
{
    if (!isJson())
        return;
    object.insert(QStringLiteral("event"), QLatin1String(name));
    if (!writeLine(m_target.answers, jsonLine(object)))
        noteBrokenAnswer();
}

void Reporter::log(const QString &line)
{
    if (m_target.style == OutputStyle::Text && m_printer)
        m_printer->printLine(line);
    else if (m_target.style == OutputStyle::Text)
        printLine(m_target.messages, line);
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
        printLine(m_target.messages, text);
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

// What went wrong with the job counts more than an answer that nobody gets.
ExitCode Reporter::end(ExitCode code)
{
    endPhase();
    const bool isWell = code == ExitCode::Done || code == ExitCode::Unverified;
    const ExitCodeRow &row = rowOf(isWell && m_answerError != 0 ? ExitCode::FileError : code);
    event("end", {{QStringLiteral("exitCode"), static_cast<int>(row.code)},
                  {QStringLiteral("status"), QLatin1String(row.word)},
                  {QStringLiteral("meaning"), QLatin1String(row.meaning)}});
    if (m_answerError == 0)
        return row.code;
    printLine(m_target.messages,
              QStringLiteral("The answer could not be written: ") + qt_error_string(m_answerError));
    return isWell ? ExitCode::FileError : code;
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
