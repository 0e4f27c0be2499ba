// The user's Ctrl-C while the built program waits for a chip that never finishes.
#include "program_run.h"
#include "test_class.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

namespace
{

constexpr int kStepMs = 60000;
constexpr std::uint32_t kRomSize = 64 * 1024;

} // namespace

class CliFlashTest : public QObject
{
    Q_OBJECT

private slots:
    void interruptEndsTheWaitForAnErase_data();
    void interruptEndsTheWaitForAnErase();
};

void CliFlashTest::interruptEndsTheWaitForAnErase_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<int>("backupCount");
    QTest::addColumn<QByteArray>("state");
    QTest::newRow("backup") << "--backup DIR/backups" << 1 << QByteArray("DIR/backups/");
    QTest::newRow("no backup") << "--no-auto --no-backup --system gb --mapper mbc5" << 0
                               << QByteArray("What the chip held may be lost.");
}

void CliFlashTest::interruptEndsTheWaitForAnErase()
{
    QFETCH(QString, options);
    QFETCH(int, backupCount);
    QFETCH(QByteArray, state);
    const QTemporaryDir folder;
    const QString cart = folder.filePath("cart.gb");
    const QByteArray old = gbImage(0x1B, 2 * kRomSize, 8192);
    putFile(cart, old);
    putFile(folder.filePath("rom.gb"), gbImage(0x19, kRomSize, 0));
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("GBDRIVER_VIRTUAL_READER", "cart=" + cart + ",flash=8,chip-fault=endless");
    program.setProcessEnvironment(environment);
    program.start(CLI_PROGRAM,
                  QString("flash DIR/rom.gb " + options).replace("DIR", folder.path()).split(' '));
    QByteArray log;
    QTRY_VERIFY_WITH_TIMEOUT(
        (log += program.readAllStandardError()).contains("Start erase flash chip..."), kStepMs);
    QCOMPARE(::kill(static_cast<pid_t>(program.processId()), SIGINT), 0);
    QVERIFY(program.waitForFinished(kStepMs));
    log += program.readAllStandardError();
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(static_cast<ExitCode>(program.exitCode()), ExitCode::Cancelled);
    QCOMPARE(log.count("Asked to stop."), 1);
    QVERIFY(!log.contains("Start flash ROM..."));
    QVERIFY2(log.contains("Stopped while the chip was being erased. " +
                          (backupCount == 0 ? state : QByteArray())),
             log.constData());
    QVERIFY(log.replace(folder.path().toLocal8Bit(), "DIR").contains(state));

    const QStringList backups = QDir(folder.filePath("backups")).entryList(QDir::Files);
    QCOMPARE(backups.size(), backupCount);
    for (const QString &backup : backups)
        QVERIFY(contentOf(folder.filePath("backups/") + backup) == old);
    QDirIterator temporary(folder.path(), {"*.part"}, QDir::Files | QDir::Hidden,
                           QDirIterator::Subdirectories);
    QVERIFY(!temporary.hasNext());
}

GBDRIVER_TEST(CliFlashTest, core)
#include "cli_flash_test.moc"
