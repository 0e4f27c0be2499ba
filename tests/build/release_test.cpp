// tools/release.sh in a repository of its own, whose builds take no time.
#include "files.h"
#include "process_run.h"
#include "test_class.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace
{

const QByteArray kFails = "\ngrep -qx \"$1\" \"$top/fails\" && exit 7\n";

// What a build of the kind that its first argument names leaves, each file a copy of `content`.
QByteArray buildScript(const QByteArray &folderArgument, const QByteArray &files)
{
    return "set -e\n"
           "folder=$(dirname \"" +
           folderArgument +
           "\")\n"
           "mkdir -p \"$folder\"\n"
           "for file in " +
           files +
           "; do\n"
           "    cp \"$top/content\" \"$folder/$file\"\n"
           "done\n";
}

// A repository with version 1.2.3 in it and the tags v1.2.3 and v1.2.4.
class Repository
{
public:
    // `fails` names the step that fails, if one shall.
    explicit Repository(const QByteArray &fails = {})
    {
        const QByteArray top = "#!/bin/sh\ntop=$(dirname \"$0\")/../..";
        addScript("tools/release.sh", contentOf(SOURCE_FOLDER "/tools/release.sh"));
        addScript("tools/setup.sh", "#!/bin/sh\ntop=$(dirname \"$0\")/.." + kFails + "exit 0\n");
        addScript("tools/packages/clean_build.sh",
                  top + kFails +
                      buildScript("$2", "gbdriver_1.2.3-1~$1_amd64.deb gbdriver_$1.changes"
                                        " $(test $1 = trixie || echo gbdriver-linux.tar.xz)"));
        addScript("tools/windows/clean_build.sh",
                  top + "\ngrep -qx windows-build \"$top/fails\" && exit 7\n" +
                      buildScript("$1", "gbdriver-windows.zip gbdriver-windows-setup.exe"));
        m_folder.addFile("CMakeLists.txt", "project(gbdriver VERSION 1.2.3 LANGUAGES CXX)\n");
        m_folder.addFile("content", "committed\n");
        m_folder.addFile("fails", fails + "\n");
        m_folder.addFile(".gitignore", "/build/\n");

        m_environment.insert("GIT_CONFIG_GLOBAL", "/dev/null");
        m_environment.insert("GIT_CONFIG_NOSYSTEM", "1");
        for (const char *who : {"AUTHOR", "COMMITTER"}) {
            m_environment.insert(QStringLiteral("GIT_%1_NAME").arg(who), "Tester");
            m_environment.insert(QStringLiteral("GIT_%1_EMAIL").arg(who), "tester@velora.example");
        }
        git({"init", "-q", "-b", "main"});
        git({"add", "."});
        git({"commit", "-q", "-m", "All"});
        git({"tag", "v1.2.3"});
        git({"tag", "v1.2.4"});
    }

    ProcessRun release(const QString &tag) const
    {
        return runProcess(path("tools/release.sh"), {tag}, m_environment);
    }
    QString path(const QString &name) const { return m_folder.path(name); }
    // Also those that begin with a dot.
    QStringList releases() const
    {
        return QDir(path("build/releases"))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private:
    void addScript(const QString &name, const QByteArray &text)
    {
        QVERIFY(QDir(m_folder.path()).mkpath(QFileInfo(name).path()));
        QFile file(m_folder.addFile(name, text));
        QVERIFY(file.setPermissions(file.permissions() | QFile::ExeOwner));
    }
    void git(const QStringList &words)
    {
        const ProcessRun run =
            runProcess("git", QStringList{"-C", m_folder.path()} + words, m_environment);
        QVERIFY2(run.exitCode == 0, run.errors);
    }

    UserFolder m_folder;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
};

} // namespace

class ReleaseTest : public QObject
{
    Q_OBJECT

private slots:
    void holdsWhatTheTagBuilds()
    {
        const Repository repository;
        putFile(repository.path("content"), "not committed\n");
        const ProcessRun run = repository.release("v1.2.3");
        QVERIFY2(run.exitCode == 0, run.errors);

        QCOMPARE(repository.releases(), QStringList{"v1.2.3"});
        const QDir folder(repository.path("build/releases/v1.2.3"));
        const QStringList files = {"gbdriver-linux.tar.xz", "gbdriver-windows-setup.exe",
                                   "gbdriver-windows.zip", "gbdriver_1.2.3-1~bookworm_amd64.deb",
                                   "gbdriver_1.2.3-1~trixie_amd64.deb"};
        QCOMPARE(folder.entryList(QDir::Files, QDir::Name), QStringList{"SHA256SUMS"} + files);
        QStringList summed;
        for (const QByteArray &line : contentOf(folder.filePath("SHA256SUMS")).split('\n'))
            summed << QString(line.mid(66));
        QCOMPARE(summed, files + QStringList{""});
        for (const QString &file : files)
            QCOMPARE(contentOf(folder.filePath(file)), QByteArray("committed\n"));

        QProcess check;
        check.setWorkingDirectory(folder.path());
        check.start("sha256sum", {"--quiet", "-c", "SHA256SUMS"});
        QVERIFY(check.waitForFinished());
        QCOMPARE(check.exitCode(), 0);
    }

    void aReleaseIsNotReplaced()
    {
        const Repository repository;
        QVERIFY(QDir().mkpath(repository.path("build/releases/v1.2.3")));
        const ProcessRun run = repository.release("v1.2.3");
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.errors.contains("is there already"), run.errors);
        QVERIFY(QDir(repository.path("build/releases/v1.2.3")).isEmpty());
    }

    void aTagHasToNameTheVersion_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("another version")
            << "v1.2.4" << QByteArray("the version at the tag v1.2.4 is 1.2.3");
        QTest::newRow("no tag") << "v1.2.5" << QByteArray("there is no tag v1.2.5");
        QTest::newRow("a branch") << "main" << QByteArray("there is no tag main");
    }
    void aTagHasToNameTheVersion()
    {
        QFETCH(QString, tag);
        QFETCH(QByteArray, message);
        const Repository repository;
        const ProcessRun run = repository.release(tag);
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.errors.contains(message), run.errors);
        QVERIFY(repository.releases().isEmpty());
    }

    void aFailureLeavesNothing_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("packages") << QByteArray("what building needs cannot be installed");
        QTest::newRow("windows") << QByteArray("what building needs cannot be installed");
        QTest::newRow("bookworm") << QByteArray("packages for Debian bookworm were not built");
        QTest::newRow("trixie") << QByteArray("packages for Debian trixie were not built");
        QTest::newRow("windows-build") << QByteArray("the Windows packages were not built");
    }
    void aFailureLeavesNothing()
    {
        QFETCH(QByteArray, message);
        const Repository repository(QTest::currentDataTag());
        const ProcessRun run = repository.release("v1.2.3");
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.errors.contains(message), run.errors);
        QVERIFY(repository.releases().isEmpty());
    }
};

GBDRIVER_TEST(ReleaseTest, core)
#include "release_test.moc"
