// Texts that a user can show to anybody: without the folders of this computer, which often have
// somebody's name in them.
#pragma once

#include <QString>
#include <QStringList>

// The line of a job's log that tells best why it failed: the error of a script or of its compiler,
// else the last line that says something. The folders in front of a script's name are cut off.
QString tellingLine(const QStringList &log);

// `text` with the names of `folder`, the temporary and the home folder taken out.
QString withoutPaths(const QString &text, const QString &folder);

// `folder` for people: "mapper, beside the program", or its last part.
QString folderText(const QString &folder);
