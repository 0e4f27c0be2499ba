// Running the build step that makes a C++ table, and compiling what it makes.
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>

struct Outcome {
    int exitCode = -1; // -1 if the program did not start or did not end properly
    QByteArray output;
    QByteArray errors;
};

// Runs a program to its end.
Outcome runProgram(const QString &program, const QStringList &arguments);

bool writeText(const QString &path, const QByteArray &text);

// Makes `folder`/table.cpp from `table` with the script at `scriptPath`.
Outcome makeTable(const QTemporaryDir &folder, const QString &scriptPath, const QByteArray &table);

// Runs the compiler with the warnings that the project has.
Outcome compile(const QStringList &arguments);

// Compiles `folder`/table.cpp together with `sources` and the program `mainSource`, and runs that.
// `folder` comes before the project's own headers.
Outcome runWithTable(const QTemporaryDir &folder, const QByteArray &mainSource,
                     const QStringList &sources);
