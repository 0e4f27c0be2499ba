// What a command says while it works: to a person, as lines and a progress bar on standard error
// and its answer on standard output; to a program, as one JSON object a line on standard output; or
// with --quiet nothing but answers and problems.
//
// Thread: one at a time. CliListener sees to it while the watch for Ctrl-C runs beside a job.
#pragma once

#include "cli/exit_code.h"
#include "cli/progress_printer.h"

#include <QJsonObject>
#include <QString>

#include <cstdio>
#include <memory>

enum class OutputStyle {
    Text,
    Quiet, // answers and problems only
    Json
};

// Where everything goes; the streams are not owned.
struct OutputTarget {
    OutputStyle style = OutputStyle::Text;
    std::FILE *answers = stdout;
    std::FILE *messages = stderr;
    bool isTerminal = false; // `messages` is one that can be drawn over
    bool hasColor = false;   // answers may be coloured
};

class Reporter
{
public:
    explicit Reporter(const OutputTarget &target) : m_target(target) {}

    // A line of the command's answer: standard output, not as JSON.
    // `color`: a terminal's code for it, used where answers may be coloured.
    void answer(const QString &line, const char *color = "");

    // The same for a program: one line of JSON, only in that style. `name` is the event's.
    void event(const char *name, QJsonObject object);

    // What happens: standard error, or an event "log" of level "info".
    void log(const QString &line);

    // What went wrong, on which file or drive, what state the cartridge is in and what to try:
    // standard error in every style, or an event "log" of level "error".
    void problem(const QString &text);

    // A transfer of `totalBytes` (0: not known). `phase` is one word of the documented list:
    // "read", "compare", "backup", "write", "check".
    void startPhase(const char *phase, qint64 totalBytes);
    void progress(qint64 doneBytes);
    void endPhase();

    // The last thing a command says.
    // Returns: how the program ends: FileError if all went well and an answer could not be written
    // (a full disk, a pipe that nobody reads any more), which is then said; else `code`.
    ExitCode end(ExitCode code);

    bool isJson() const { return m_target.style == OutputStyle::Json; }

private:
    void progressEvent(qint64 doneBytes);
    void noteBrokenAnswer();

    OutputTarget m_target;
    std::unique_ptr<ProgressPrinter> m_printer; // during a phase, in Text
    const char *m_phase = "";
    qint64 m_totalBytes = 0;
    int m_lastPercent = -1;
    int m_answerError = 0; // errno of the first answer that could not be written
};

// Where the program's own output goes: terminal or not, coloured unless NO_COLOR is set to
// anything. A dumb terminal is written to like a file.
OutputTarget standardOutput(OutputStyle style);
