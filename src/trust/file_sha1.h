// Which version of a file this is, for lists and reports.
#pragma once

#include <QString>

// Returns: SHA-1 of the file's bytes in 40 lower-case hexadecimal digits; empty if the file cannot
// be read. Thread: any.
QString fileSha1(const QString &path);
