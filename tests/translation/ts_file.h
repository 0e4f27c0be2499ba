// A file of translations as the translators edit it (.ts), and what lupdate finds in the sources.
//
// Thread: pure functions over files; any thread.
#pragma once

#include <QString>
#include <QVector>

enum class Language { Chinese, Japanese };

struct TsEntry {
    QString context;
    QString source;
    QString translation;
    QString type; // empty: finished; "unfinished", "vanished", "obsolete"
};

struct TsFile {
    QString language; // as its head names it
    QVector<TsEntry> entries;
    QString error; // why it could not be read; empty: it could
};

TsFile readTs(const QString &path);

// "Context: source"
QString keyOf(const TsEntry &entry);
