// The scripts and CMake modules that stand before the first line of the program.
#include "test_class.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace
{

constexpr int kProcessLimitMs = 60000;

struct Outcome {
    int exitCode = -1;
    QByteArray output;
    QByteArray errors;
};

// Runs a program to its end; exit code -1 if it did not start or did not end properly.
Outcome runProgram(const QString &program, const QStringList &arguments,
                   const QProcessEnvironment &environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    Outcome outcome;
    if (process.waitForFinished(kProcessLimitMs) && process.exitStatus() == QProcess::NormalExit)
        outcome.exitCode = process.exitCode();
    outcome.output = process.readAllStandardOutput();
    outcome.errors = process.readAllStandardError();
    return outcome;
}

Outcome runProgram(const QString &program, const QStringList &arguments)
{
    return runProgram(program, arguments, QProcessEnvironment::systemEnvironment());
}

QString source(const QString &name)
{
    return QStringLiteral(SOURCE_FOLDER "/") + name;
}

bool writeText(const QString &path, const QByteArray &text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

// Copies the headers of Squirrel with every `before` in them made an `after`.
bool copyHeaders(const QString &folder, const QByteArray &before, const QByteArray &after)
{
    const QDir headers(QStringLiteral(SQUIRREL_HEADERS));
    for (const QString &name : headers.entryList({"sq*.h"}, QDir::Files)) {
        QFile header(headers.filePath(name));
        if (!header.open(QIODevice::ReadOnly))
            return false;
        if (!writeText(folder + "/" + name, header.readAll().replace(before, after)))
            return false;
    }
    return true;
}

// Configures a project that does nothing but look for Squirrel with the given headers.
Outcome configureWithHeaders(const QString &folder, const QString &definitions)
{
    if (!writeText(folder + "/CMakeLists.txt",
                   "cmake_minimum_required(VERSION 3.20)\n"
                   "project(width_check LANGUAGES CXX)\n"
                   "list(APPEND CMAKE_MODULE_PATH \"" SOURCE_FOLDER "/cmake\")\n"
                   "find_package(Squirrel REQUIRED)\n"))
        return {};
    return runProgram(
        CMAKE_PROGRAM,
        {"-G", "Ninja", "-S", folder, "-B", folder + "/build", "-DCMAKE_CXX_COMPILER=" CXX_COMPILER,
         "-DSQUIRREL_INCLUDE_DIR=" + folder + "/include", "-DSQUIRREL_LIBRARY=" SQUIRREL_ARCHIVE,
         "-DSQSTDLIB_LIBRARY=" SQSTDLIB_ARCHIVE, "-DSQUIRREL_DEFINITIONS=" + definitions});
}

} // namespace

class BuildFilesTest : public QObject
{
    Q_OBJECT

private slots:
    void squirrelIsTakenWhereHeadersAndLibraryAgree();
    void configurationFailsWhereIntegerWidthsDiffer();
    void windowsSourceCompiles_data();
    void windowsSourceCompiles();
    void setupNamesThePackagesOfOtherSystems();
    void unknownArgumentsAreRefused_data();
    void unknownArgumentsAreRefused();
};

void BuildFilesTest::squirrelIsTakenWhereHeadersAndLibraryAgree()
{
    QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir("include"));
    QVERIFY(copyHeaders(folder.filePath("include"), {}, {}));
    const Outcome outcome = configureWithHeaders(folder.path(), "_SQ64");
    QVERIFY2(outcome.exitCode == 0, outcome.errors);
}

// The headers choose 64 bits on a 64-bit system by themselves; these do not any more.
void BuildFilesTest::configurationFailsWhereIntegerWidthsDiffer()
{
    QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir("include"));
    QVERIFY(copyHeaders(folder.filePath("include"), "#define _SQ64", "#define NARROW_INTEGERS"));
    const Outcome outcome = configureWithHeaders(folder.path(), {});
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY2(outcome.errors.simplified().contains("disagree on the width of SQInteger"),
             outcome.errors);
}

void BuildFilesTest::windowsSourceCompiles_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"device/drive_windows.cpp", "device/sector_window.cpp",
                             "script/fatal_assertion_windows.cpp", "virtual/disk_sync_windows.cpp",
                             "cli/terminal_windows.cpp"})
        QTest::newRow(name) << QString(name);
}

void BuildFilesTest::windowsSourceCompiles()
{
    QFETCH(QString, name);
    QString compiler = QStandardPaths::findExecutable("x86_64-w64-mingw32-g++-posix");
    if (compiler.isEmpty())
        compiler = QStandardPaths::findExecutable("x86_64-w64-mingw32-g++");
    QVERIFY2(!compiler.isEmpty(), "the mingw-w64 compiler is missing; tools/setup.sh installs it");

    QTemporaryDir folder;
    const Outcome outcome =
        runProgram(compiler, {"-std=c++17", "-Wall", "-Wextra", "-Wpedantic", "-Wshadow",
                              "-Wconversion", "-Werror", "-O2", "-I" + source("src"), "-c",
                              source("src/" + name), "-o", folder.filePath("object.o")});
    QVERIFY2(outcome.exitCode == 0, outcome.errors);
    QVERIFY(QFile(folder.filePath("object.o")).size() > 0);
}

void BuildFilesTest::setupNamesThePackagesOfOtherSystems()
{
    QTemporaryDir programs;
    for (const char *name : {"bash", "dirname", "cat"})
        QVERIFY(QFile::link(QStandardPaths::findExecutable(name), programs.filePath(name)));
    QProcessEnvironment environment;
    environment.insert("PATH", programs.path());

    const Outcome outcome =
        runProgram(programs.filePath("bash"), {source("tools/setup.sh"), "test"}, environment);
    QCOMPARE(outcome.exitCode, 0);
    for (const char *system : {"Fedora", "Arch", "MSYS2"})
        QVERIFY2(outcome.output.contains(system), system);
}

void BuildFilesTest::unknownArgumentsAreRefused_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("test") << "test" << QStringList{"--no-such-option"};
    QTest::newRow("run") << "run" << QStringList{"anything"};
    QTest::newRow("setup") << "tools/setup.sh" << QStringList{"anything"};
    QTest::newRow("setup, nothing said") << "tools/setup.sh" << QStringList{};
}

void BuildFilesTest::unknownArgumentsAreRefused()
{
    QFETCH(QString, script);
    QFETCH(QStringList, arguments);
    const Outcome outcome = runProgram(source(script), arguments);
    QCOMPARE(outcome.exitCode, 2);
    QVERIFY2(outcome.errors.contains("usage:"), outcome.errors);
}

GBDRIVER_TEST(BuildFilesTest, core)
#include "build_files_test.moc"
