// One command line of the built program and what must come of it. It is run twice, as people do and
// with --json; exit code and files must be the same both times.
//
// In all texts "DIR" stands for the folder of the run, which holds nothing but the files of the
// case.
#pragma once

#include "program_run.h"

#include <QJsonObject>
#include <QMap>
#include <QMetaType>
#include <QVector>

// Something that a text must be, hold or lack.
struct TextPart {
    enum How { Whole, Begin, Inside, End, Absent, Used };
    How how;
    QString text;
};
using Texts = QVector<TextPart>;

// "FACTS(name)" stands for path, size and SHA-1 of that file after the run.
inline TextPart is(const QString &text)
{
    return {TextPart::Whole, text};
}
inline TextPart begins(const QString &text)
{
    return {TextPart::Begin, text};
}
// Found behind the `holds` before it.
inline TextPart holds(const QString &text)
{
    return {TextPart::Inside, text};
}
inline TextPart ends(const QString &text)
{
    return {TextPart::End, text};
}
inline TextPart lacks(const QString &text)
{
    return {TextPart::Absent, text};
}
// The table "Using:" has these rows and no other, as "system gb header, mapper mbc5 header".
inline TextPart uses(const QString &rows)
{
    return {TextPart::Used, rows};
}

// Names below DIR and what the files hold. A name with a * matches exactly one file.
using Files = QMap<QString, QByteArray>;

// Stands for the content of a file that must be there, with whatever bytes.
extern const QByteArray kAnyBytes;
// In CliCase::left: the file is gone.
extern const QByteArray kNoFile;

struct CliCase {
    QString name = {};
    QString arguments = {};
    // "cart=...", "demo,...": a virtual reader; "drives:...": drives declared; "folder:SIZE" and
    // "mute:SIZE": a drive with the reader's files and this much data, the latter taking no
    // commands.
    QString reader = {};
    Files files = {}; // that lie there before
    ExitCode code = ExitCode::Done;
    QString events = {}; // their definitions in the schema, in order and each once, without log,
                         // progress and end; known only where the schema's validator runs
    Texts answer = {};   // standard output
    Texts problem = {};  // standard error
    Files left = {};     // what the run made or changed; nothing else may differ
    // Exactly one line of JSON has these keys; one that names its event has no others.
    // Null stands for a key that is not there.
    QVector<QJsonObject> objects = {};
    bool hasJson = true;
    bool isAlone = false; // run a copy of the program from DIR, with what scripts lie there
};
Q_DECLARE_METATYPE(CliCase)

// The lines of a run with --json, and what the case says of them.
struct EventRun {
    QString name;
    QString events;
    QByteArray lines;
};

// Runs the case. Appends what is to be validated to `runs`.
// Returns: what is wrong, empty if nothing is.
QStringList problemsOf(const CliCase &row, QVector<EventRun> *runs);

#ifdef VALIDATOR
// Of one run: the definitions that its lines match, or why they do not.
struct Validation {
    QStringList definitions;
    QString problem;
};

// Validates all runs with one start of the validator.
QVector<Validation> validate(const QVector<QByteArray> &runs);

// Holds the runs against the schema and against what their cases say.
// Returns: what is wrong, empty if nothing is. Adds the definitions seen to `seen`.
QStringList problemsOfEvents(const QVector<EventRun> &runs, QStringList *seen);
#endif
