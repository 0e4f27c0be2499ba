// The life of the mounted reader's program: how it begins, goes to the background, and ends.
#include "files.h"
#include "mount_bench.h"
#include "samples.h"
#include "test_class.h"

#include <QtTest>

using namespace virtual_reader;

class ReaderLifeTest : public QObject, private MountBench
{
    Q_OBJECT

private slots:
    void init() { QCOMPARE(prepare(), QString()); }
    void cleanup() { QVERIFY(isDone()); }

    void signalsUnmount_data();
    void signalsUnmount();
    void unmountingFromOutsideEndsTheProgram();
    void backgroundProcessServesAfterTheParentEnded();
    void badMountPointsAreExplained_data();
    void badMountPointsAreExplained();
    void imageIsMade();
};

void ReaderLifeTest::signalsUnmount_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void ReaderLifeTest::signalsUnmount()
{
    QFETCH(int, signal);
    QVERIFY(mountReader());
    QVERIFY(isMounted(m_mountPoint));
    QVERIFY(unmount(signal)); // looks at the exit code and at the mounts
}

void ReaderLifeTest::unmountingFromOutsideEndsTheProgram()
{
    QVERIFY(mountReader());
    QCOMPARE(QProcess::execute("fusermount3", {"-u", m_mountPoint}), 0);
    QVERIFY(m_program->waitForFinished(kDeadlineMs));
    QCOMPARE(m_program->exitCode(), 0);
    m_program.reset();
}

void ReaderLifeTest::backgroundProcessServesAfterTheParentEnded()
{
    QVERIFY(mountReader({"--background"}));
    QVERIFY(m_program->waitForFinished(kDeadlineMs));
    QCOMPARE(m_program->exitCode(), 0);
    m_program.reset();
    QVERIFY(isMounted(m_mountPoint));
    QVERIFY(send(selectGb()));
    QCOMPARE(logLines("command").size(), 1);
    QCOMPARE(QProcess::execute("fusermount3", {"-u", m_mountPoint}), 0);
    QVERIFY(!isMounted(m_mountPoint));
}

void ReaderLifeTest::badMountPointsAreExplained_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing") << "none"
                             << "none: No such file or directory";
    QTest::newRow("a file") << "game.gb"
                            << "game.gb: it is not a folder";
}

void ReaderLifeTest::badMountPointsAreExplained()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    QProcess program;
    program.start(READER_PROGRAM, {"--mount", m_folder->filePath(name)});
    QVERIFY(program.waitForFinished(kDeadlineMs));
    QCOMPARE(program.exitCode(), 1);
    const QByteArray text = program.readAllStandardError();
    QVERIFY2(text.contains(reason.toUtf8()), text.constData());
}

void ReaderLifeTest::imageIsMade()
{
    const QStringList arguments = {
        "--make-image", path("made.gb"), "--type",  "0x1B",    "--rom-size", "1M",
        "--ram-size",   "32K",           "--title", "MOUNTED", "--seed",     "17"};
    QCOMPARE(QProcess::execute(READER_PROGRAM, arguments), 0);
    QVERIFY(contentOf(path("made.gb")) == toByteArray(m_image));
    QCOMPARE(QProcess::execute(READER_PROGRAM, {"--make-image", path("x.gb"), "--rom-size", "5"}),
             1);
    QVERIFY(!QFile::exists(path("x.gb")));
}

GBDRIVER_TEST(ReaderLifeTest, core)
#include "reader_life_test.moc"
