// File names on their way to the system.
#pragma once

#include <QByteArray>
#include <QString>

// `path` in the system's 8-bit encoding. A path that the encoding cannot represent becomes empty,
// which no file can be opened with: a name with replaced characters would be another file's.
QByteArray localPath(const QString &path);
