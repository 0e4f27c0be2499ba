// The scripts and CMake modules that stand before the first line of the program.
#include "files.h"
#include "process_run.h"
#include "test_class.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace
{

QString source(const QString &name)
{
    return QStringLiteral(SOURCE_FOLDER "/") + name;
}

// Copies the headers of Squirrel with every `before` in them made an `after`.
void copyHeaders(const UserFolder &folder, const QByteArray &before, const QByteArray &after)
{
    QDir(folder.path()).mkdir("include");
    const QDir headers(QStringLiteral(SQUIRREL_HEADERS));
    for (const QString &name : headers.entryList({"sq*.h"}, QDir::Files))
        folder.addFile("include/" + name, contentOf(headers.filePath(name)).replace(before, after));
}

// Configures a project that does nothing but look for Squirrel with the given headers.
ProcessRun configureWithHeaders(const QString &folder, const QString &definitions)
{
    putFile(folder + "/CMakeLists.txt",
            "cmake_minimum_required(VERSION 3.20)\n"
            "project(width_check LANGUAGES CXX)\n"
            "list(APPEND CMAKE_MODULE_PATH \"" SOURCE_FOLDER "/cmake\")\n"
            "find_package(Squirrel REQUIRED)\n");
    return runProcess(
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
    void everyTestIsBuilt();
    void squirrelIsTakenWhereHeadersAndLibraryAgree();
    void configurationFailsWhereIntegerWidthsDiffer();
    void windowsSourceCompiles_data();
    void windowsSourceCompiles();
    void setupNamesThePackagesOfOtherSystems();
    void unknownArgumentsAreRefused_data();
    void unknownArgumentsAreRefused();
};

// A test that stands in no list would never run, and nobody would miss it.
void BuildFilesTest::everyTestIsBuilt()
{
    QDirIterator files(source("tests"), {"*_test.cpp"}, QDir::Files, QDirIterator::Subdirectories);
    int count = 0;
    for (; files.hasNext(); ++count) {
        const QFileInfo test(files.next());
        const QString list = QString::fromUtf8(contentOf(test.path() + "/CMakeLists.txt"));
        const QRegularExpression name("^[^#\n]*\\b" + test.completeBaseName() + "\\b",
                                      QRegularExpression::MultilineOption);
        QVERIFY2(name.match(list).hasMatch(),
                 qPrintable(test.filePath() + " stands in no list of its folder's CMakeLists.txt"));
    }
    QVERIFY(count > 0);
}

void BuildFilesTest::squirrelIsTakenWhereHeadersAndLibraryAgree()
{
    const UserFolder folder;
    copyHeaders(folder, {}, {});
    const ProcessRun outcome = configureWithHeaders(folder.path(), "_SQ64");
    QVERIFY2(outcome.exitCode == 0, outcome.errors);
}

// The headers choose 64 bits on a 64-bit system by themselves; these do not any more.
void BuildFilesTest::configurationFailsWhereIntegerWidthsDiffer()
{
    const UserFolder folder;
    copyHeaders(folder, "#define _SQ64", "#define NARROW_INTEGERS");
    const ProcessRun outcome = configureWithHeaders(folder.path(), {});
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY2(outcome.errors.simplified().contains("disagree on the width of SQInteger"),
             outcome.errors);
}

void BuildFilesTest::windowsSourceCompiles_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"device/drive_windows.cpp", "device/sector_window.cpp",
                             "device/standard_streams_windows.cpp", "device/user_file.cpp",
                             "device/user_file_windows.cpp", "device/windows_file.cpp",
                             "virtual/disk_sync_windows.cpp", "cli/terminal_windows.cpp"})
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
    const ProcessRun outcome =
        runProcess(compiler, {"-std=c++17", "-Wall", "-Wextra", "-Wpedantic", "-Wshadow",
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

    const ProcessRun outcome =
        runProcess(programs.filePath("bash"), {source("tools/setup.sh"), "test"}, environment);
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
    QTest::newRow("package") << "tools/package.sh" << QStringList{"anything"};
    QTest::newRow("package, source") << "tools/packages/source.sh" << QStringList{};
    QTest::newRow("package, build") << "tools/packages/build.sh" << QStringList{};
    QTest::newRow("package, archive") << "tools/packages/archive.sh" << QStringList{};
    QTest::newRow("package, clean build") << "tools/packages/clean_build.sh" << QStringList{};
    QTest::newRow("windows, build") << "tools/windows/build.sh" << QStringList{};
    QTest::newRow("windows, clean build") << "tools/windows/clean_build.sh" << QStringList{};
    QTest::newRow("release") << "tools/release.sh" << QStringList{};
    QTest::newRow("reproducible") << "tests/packages/reproducible_test.sh"
                                  << QStringList{"no-such-suite"};
    QTest::newRow("fuzz") << "tests/fuzz/run" << QStringList{"anything"};
    QTest::newRow("fuzz, unknown target") << "tests/fuzz/run" << QStringList{"1", "no_such_fuzz"};
    QTest::newRow("setup") << "tools/setup.sh" << QStringList{"anything"};
    QTest::newRow("setup, nothing said") << "tools/setup.sh" << QStringList{};
}

void BuildFilesTest::unknownArgumentsAreRefused()
{
    QFETCH(QString, script);
    QFETCH(QStringList, arguments);
    const ProcessRun outcome = runProcess(source(script), arguments);
    QCOMPARE(outcome.exitCode, 2);
    QVERIFY2(outcome.errors.contains("usage:"), outcome.errors);
}

GBDRIVER_TEST(BuildFilesTest, core)
#include "build_files_test.moc"
