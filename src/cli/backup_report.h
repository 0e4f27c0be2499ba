// The small text file that a stack's backup writes beside the files of each cartridge.
//
// Thread: pure functions over records; any thread.
#pragma once

#include "cli/cli_options.h"

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
#include <QString>

// ROM or save.
struct BackedUpMemory {
    QByteArray bytes;
    QByteArray sha1; // 20 bytes
    QString path;    // empty: no file
    QString verdict; // one line, or why there is none
    int reads = 0;
    qint64 milliseconds = 0; // of the first read
};

struct BackupRecord {
    QString title;
    QString label; // of the reader's drive
    QString firmware;
    CartridgeValues values;
    QString script; // file name in the mapper folder
    QString scriptSha1;
    QDateTime begin;
    QDateTime end;
    BackedUpMemory rom;
    BackedUpMemory save;
};

QString reportText(const BackupRecord &record);

// What the event "verdict" says of a file.
QJsonObject factsOf(const BackedUpMemory &memory);
