// Runs a program to its end and tells what it said.
#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QStringList>

struct ProcessRun {
    int exitCode = -1;    // -1: did not start, did not end, or crashed
    bool crashed = false; // ended by a signal
    QByteArray output;
    QByteArray errors; // or why it did not run to its end
};

// What a program printed in the system's encoding, with lines that end in "\n": those of Windows
// programs end in two characters.
QString printedText(const QByteArray &bytes);

// Blocks until the program has ended, for two minutes at most.
ProcessRun
runProcess(const QString &program, const QStringList &arguments,
           const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment());
