// What a mapper script defines. Its file is compiled and its top level run, as at the start of a
// job, but with natives that refuse: nothing can reach a reader.
//
// Thread: any; nothing is shared.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// An operation that scripts can define.
struct ScriptOperation {
    const char *name;            // as the command is called
    int operate;                 // a JobCode
    QList<const char *> entries; // functions, all of which it takes
};

// In the order of the job codes.
const QList<ScriptOperation> &scriptOperations(bool isGba);

// "cpu_dump", "cpu_erase and cpu_flash"
QString entryNames(const ScriptOperation &operation);

// Files that a script opens or writes by itself. Nobody may have read it yet.
struct FileUse {
    bool isAllowed = false;
    bool wasRefused = false; // it has tried
};

enum class ScriptLook {
    NotCompiled, // or the file cannot be read; then nothing is logged
    Threw,       // its top level, for this operation
    NotDefined,
    Defined
};

// Looks whether the script at `path` defines the operation. What it prints, and errors, are added
// to `*log` as a job's log has them; `*files` says what it may do, and learns whether it was
// refused.
ScriptLook lookAtScript(const QString &path, const ScriptOperation &operation, FileUse *files,
                        QStringList *log);
