#include "table_script.h"

#include <QFile>
#include <QProcess>

namespace
{

constexpr int kProcessLimitMs = 60000;

} // namespace

Outcome runProgram(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    Outcome outcome;
    if (process.waitForFinished(kProcessLimitMs) && process.exitStatus() == QProcess::NormalExit)
        outcome.exitCode = process.exitCode();
    outcome.output = process.readAllStandardOutput();
    outcome.errors = process.readAllStandardError();
    return outcome;
}

bool writeText(const QString &path, const QByteArray &text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

Outcome makeTable(const QTemporaryDir &folder, const QString &scriptPath, const QByteArray &table)
{
    const QString input = folder.filePath("table.tsv");
    if (!writeText(input, table))
        return {};
    return runProgram(
        CMAKE_PROGRAM,
        {"-DINPUT=" + input, "-DOUTPUT=" + folder.filePath("table.cpp"), "-P", scriptPath});
}

Outcome compile(const QStringList &arguments)
{
    return runProgram(CXX_COMPILER, QStringList{"-std=c++17", "-Wall", "-Wextra", "-Wpedantic",
                                                "-Wconversion", "-Werror"} +
                                        arguments);
}

Outcome runWithTable(const QTemporaryDir &folder, const QByteArray &mainSource,
                     const QStringList &sources)
{
    const bool isWritten = writeText(folder.filePath("print.cpp"), mainSource);
    const QString program = folder.filePath("print");
    const Outcome outcome = compile(QStringList{"-I" + folder.path(), "-I" SOURCE_FOLDER "/src",
                                                folder.filePath("table.cpp"),
                                                folder.filePath("print.cpp"), "-o", program} +
                                    sources);
    return isWritten && outcome.exitCode == 0 ? runProgram(program, {}) : outcome;
}
