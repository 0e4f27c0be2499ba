// A mounted file system that never answers, somewhere on the computer, is nobody's business: the
// real programs work as they do without it.
#include "cartridge_files.h"
#include "driven_window.h"
#include "mounted_reader.h"
#include "process_run.h"
#include "silent_mount.h"

#include "cli/exit_code.h"
#include "test_class.h"

#include <QtTest>

namespace
{

constexpr std::uint32_t kRomSize = 64 * 1024;

// An empty declaration: every removable drive of the system is looked at.
ProcessRun runCli(const QString &declaration, const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("GBDRIVER_VIRTUAL_READER");
    environment.remove("GBDRIVER_DRIVES");
    if (!declaration.isEmpty())
        environment.insert("GBDRIVER_DRIVES", declaration);
    return runProcess(CLI_PROGRAM, arguments, environment);
}

} // namespace

class DeadMountTest : public QObject
{
    Q_OBJECT

private slots:
    void commandsGoOn_data()
    {
        QTest::addColumn<QString>("source");
        QTest::newRow("of itself") << QString();
        QTest::newRow("of a disk") << "/dev/sda1";
        QTest::newRow("of a server") << "host:/export";
    }
    void commandsGoOn()
    {
        QFETCH(QString, source);
        SilentMount dead;
        QCOMPARE(dead.start(source), QString());
        const auto noReader = static_cast<int>(ExitCode::NoReader);
        for (const char *command : {"info", "drives"}) {
            const ProcessRun run = runCli(QString(), {command});
            QVERIFY2(run.exitCode == noReader, run.errors.constData());
            QVERIFY(!run.output.contains(dead.folder().toLocal8Bit()));
        }
        const ProcessRun dump = runCli(QString(), {"dump", m_files.path("none.gb")});
        QVERIFY2(dump.exitCode == noReader, dump.errors.constData());
    }

    void readerBesideItIsUsed()
    {
        const QString image = m_files.addImage(0x19, kRomSize, 0);
        MountedReader reader;
        QCOMPARE(reader.start(image), QString());
        SilentMount dead;
        QCOMPARE(dead.start(), QString());
        for (const char *command : {"info", "drives"}) {
            const ProcessRun run = runCli(reader.declaration(), {command});
            QVERIFY2(run.exitCode == 0, run.errors.constData());
        }
        const ProcessRun dump = runCli(reader.declaration(), {"dump", m_files.path("dump.gb")});
        QVERIFY2(dump.exitCode == 0, dump.errors.constData());
        QVERIFY(contentOf(m_files.path("dump.gb")) == contentOf(image));
    }

    void windowGoesOn()
    {
        SilentMount dead;
        QCOMPARE(dead.start(), QString());
        DrivenWindow window;
        QCOMPARE(window.start(QString()), QString());
        window.press(WindowButton::Info);
        const QString log = window.logWith("Can not found dump device.");
        QVERIFY2(log.contains("Can not found dump device."), qPrintable(log));
        QVERIFY(!log.contains("does not answer"));
        QCOMPARE(window.close(), QString());
    }

private:
    CartridgeFiles m_files;
};

GBDRIVER_TEST(DeadMountTest, core)
#include "dead_mount_test.moc"
