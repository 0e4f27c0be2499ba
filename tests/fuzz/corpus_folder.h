// The folder of files that a fuzzer starts from, where they are made and not kept.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

struct CorpusSample {
    QString name; // of its file
    QByteArray bytes;
};

// Puts one file for each sample into `folder`, which is made, and their paths, separated by commas,
// into its file "list". Returns: false with the reason on standard error.
bool writeCorpus(const QString &folder, const QVector<CorpusSample> &samples);
