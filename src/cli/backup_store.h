// Where the command line keeps what a write is about to replace.
//
// Thread: pure functions and file names; the main thread.
#pragma once

#include <QDateTime>
#include <QString>

// The folder for backups unless the user names one: below the user's data directory.
QString defaultBackupFolder();

// `title` as part of a file name that every system can hold: what a file system or the 8-bit
// encoding can not hold becomes an underscore, device names of Windows get one in front. Never
// empty.
QString safeFileName(const QString &title);

// "FOLDER/Title 2026-11-21 14-30-05.sav", with " (2)" and so on behind it while such a file exists.
// `suffix` with its dot.
QString datedPath(const QString &folder, const QString &title, const QDateTime &time,
                  const QString &suffix);

// "FOLDER/Title.gb" likewise.
QString freePath(const QString &folder, const QString &name, const QString &suffix);
