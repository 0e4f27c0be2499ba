// Temporary files that a program left in a folder because it was ended before its time: killed, or
// by a power cut. They are told, and removed only when the user says so.
//
// Thread: file names and locks only; any thread.
#pragma once

#include <QStringList>

// Paths of such files in `folder`, sorted; none that a running program uses, or of which nobody can
// tell.
QStringList leftBehindIn(const QString &folder);

// Paths of all files in `folder` that have such a name.
QStringList temporariesIn(const QString &folder);
