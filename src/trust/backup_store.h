// Where is kept what a write is about to replace.
//
// Thread: pure functions and file names; any thread.
#pragma once

#include "trust/verdict.h"

#include <QDateTime>
#include <QString>

// The folder for backups unless the user names one: below the user's data directory.
QString defaultBackupFolder();

// `title` as part of a file name that every system can hold: what a file system or the 8-bit
// encoding cannot hold becomes an underscore, device names of Windows get one in front. Never
// empty.
QString safeFileName(const QString &title);

// "FOLDER/Title 2026-11-21 14-30-05.sav", with " (2)" and so on behind it while such a file exists.
// `suffix` with its dot.
QString datedPath(const QString &folder, const QString &title, const QDateTime &time,
                  const QString &suffix);

// "FOLDER/Title.gb" likewise.
QString freePath(const QString &folder, const QString &name, const QString &suffix);

// The name of a first read for `path` that nobody could read again: ".unverified" behind it. Never
// one that exists.
QString unverifiedPath(const QString &path);

// The name under which a read for `path` is kept. An unstable read gets ".unstable" behind it, so
// that nobody takes it for a dump; a suspicious one that would replace a file ".suspicious", for
// the save of an empty battery must not take the place of the last good one. Where an older one
// stands, another name, unless `replaces`.
QString keptReadPath(const QString &path, VerdictKind kind, bool replaces);
