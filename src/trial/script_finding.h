// What stands in a folder of mapper scripts.
//
// Thread: any; blocks while the scripts' top levels run.
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

enum class ScriptRole {
    Mapper, // a mapper, or the GBA, names it
    Helper, // defines no operation: other scripts load it
    Other   // defines operations, but the program never chooses it
};

enum class ScriptState {
    Sound,
    Missing,     // named, but there is no such file
    NotCompiled, // or it cannot be read
    Threw        // its top level ends with an error for every operation
};

struct ScriptFinding {
    QString file; // name
    ScriptRole role = ScriptRole::Mapper;
    ScriptState state = ScriptState::Sound;
    QString usedBy;         // "MBC5", "GBA"; Mapper only
    QStringList operations; // "dump", "flash", ...
    QString problem;        // the compiler's or the error's own line

    // Whether a job of this program would fail for want of the script.
    bool isFault() const { return role == ScriptRole::Mapper && state != ScriptState::Sound; }
};

// Named scripts first, in the order of the mappers, then the others by name.
QVector<ScriptFinding> examineScripts(const QString &folder);

// Names of the scripts in the folder, by name.
QStringList scriptFiles(const QString &folder);

// What the script is for, and in which state it is or what it can do, a line each for people.
QString purposeText(const ScriptFinding &finding);
QString stateText(const ScriptFinding &finding);
