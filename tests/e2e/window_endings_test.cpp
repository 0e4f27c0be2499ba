// How the real window ends when the system ends it, in the middle of jobs: a write is finished, a
// file is whole, and nothing is left behind.
#include "cartridge_files.h"
#include "driven_window.h"
#include "session_manager.h"
#include "test_class.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QtTest>

#include <csignal>
#include <memory>

namespace
{

constexpr int kStepMs = 60000;
constexpr std::uint32_t kKibi = 1024;
// Jobs of a second or more, so that there is a middle to stop them in.
constexpr std::uint32_t kFlashSize = 1024 * kKibi;
constexpr std::uint32_t kDumpSize = 8 * 1024 * kKibi;
constexpr int kDumpCommands = 500; // of 511 banks
constexpr int kDumpMoment = 100;   // operations from the file dialog on
// From the tab bar of a fresh window.
const QStringList kRom1M = {"Tab", "Tab", "Tab", "End", "Up", "Up", "Up"};
const QStringList kRom8M = {"Tab", "Tab", "Tab", "End"};

} // namespace

class WindowEndingsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_files = std::make_unique<CartridgeFiles>();
        m_reader = std::make_unique<MountedReader>();
        m_window = std::make_unique<DrivenWindow>();
    }
    void cleanup()
    {
        m_window.reset();
        m_session.reset();
        m_reader.reset();
        m_files.reset();
    }

    void flashIsFinishedFirst_data() { addSignals(); }
    void flashIsFinishedFirst()
    {
        QFETCH(int, number);
        const QString old = m_files->addImage(0x19, kFlashSize, 0, 1);
        const QString game = m_files->addImage(0x19, kFlashSize, 0, 2);
        start(old, {"--flash", "8"}, kRom1M);
        // The look, two reads for the backup and the erase come before.
        holdReaderInFlash(game);
        QVERIFY(programmedBytes() < static_cast<int>(kFlashSize));
        QCOMPARE(::kill(pid(m_window->processId()), number), 0);
        QCOMPARE(::kill(pid(m_reader->processId()), SIGCONT), 0);
        QCOMPARE(m_window->waitForEnd(), QString());

        QCOMPARE(programmedBytes(), static_cast<int>(kFlashSize));
        QCOMPARE(m_window->backups(), QList<QByteArray>{contentOf(old)});
        QCOMPARE(m_reader->unmount(), QString());
    }

    void dumpIsFinishedFirst_data() { addSignals(); }
    void dumpIsFinishedFirst()
    {
        QFETCH(int, number);
        const QString game = m_files->addImage(0x19, kDumpSize, 0, 1);
        const QString dump = m_files->addFile("dump.gb", "an old file");
        m_reader = selfHoldingReader();
        start(game, {}, kRom8M);
        holdReaderInDump(dump);
        QVERIFY(countOf("gb-write") < kDumpCommands);
        QCOMPARE(::kill(pid(m_window->processId()), number), 0);
        QCOMPARE(::kill(pid(m_reader->processId()), SIGCONT), 0);
        QCOMPARE(m_window->waitForEnd(), QString());

        QVERIFY(contentOf(dump) == contentOf(game));
        QCOMPARE(m_window->backups(), QList<QByteArray>{"an old file"});
        QCOMPARE(m_reader->unmount(), QString());
    }

    // Nobody can ask such a program for anything. The drive is free all the same.
    void killedProgramLeavesTheOldFile()
    {
        const QString game = m_files->addImage(0x19, kDumpSize, 0, 1);
        const QString dump = m_files->addFile("dump.gb", "an old file");
        m_reader = selfHoldingReader();
        start(game, {}, kRom8M);
        holdReaderInDump(dump);
        QCOMPARE(::kill(pid(m_window->processId()), SIGKILL), 0);
        QCOMPARE(::kill(pid(m_reader->processId()), SIGCONT), 0);
        QVERIFY(!m_window->waitForEnd().isEmpty());

        QCOMPARE(contentOf(dump), QByteArray("an old file"));
        QCOMPARE(m_reader->unmount(), QString());
    }

    // As a laptop does that is closed for a while: nothing has gone wrong.
    void suspendedProgramGoesOn()
    {
        const QString game = m_files->addImage(0x19, kDumpSize, 0, 1);
        const QString dump = m_files->path("dump.gb");
        m_reader = selfHoldingReader();
        start(game, {}, kRom8M);
        holdReaderInDump(dump);
        QCOMPARE(::kill(pid(m_window->processId()), SIGSTOP), 0);
        QCOMPARE(::kill(pid(m_reader->processId()), SIGCONT), 0);
        QCOMPARE(::kill(pid(m_window->processId()), SIGCONT), 0);
        QVERIFY(m_window->logWith("unverified: ").contains("\n>Success!"));
        QVERIFY(contentOf(dump) == contentOf(game));
        QCOMPARE(m_window->close(), QString());
    }

    void sessionEndsWithAWindowAtRest()
    {
        startInSession(m_files->addImage(0x19, kDumpSize, 0, 1), {}, kRom8M);
        m_session->say("end");
        QCOMPARE(m_session->answer(), QString("saved"));
        m_session->say("die");
        QCOMPARE(m_session->answer(), QString("left"));
        QCOMPARE(m_window->waitForEnd(), QString());
        QCOMPARE(m_reader->unmount(), QString());
    }

    // The user who logs out is told that the window is still at work; some desktops end all the
    // same.
    void sessionWaitsForAFlash_data()
    {
        QTest::addColumn<bool>("isForced");
        QTest::newRow("the session goes on") << false;
        QTest::newRow("the session ends all the same") << true;
    }
    void sessionWaitsForAFlash()
    {
        QFETCH(bool, isForced);
        const QString old = m_files->addImage(0x19, kFlashSize, 0, 1);
        const QString game = m_files->addImage(0x19, kFlashSize, 0, 2);
        startInSession(old, {"--flash", "8"}, kRom1M);
        holdReaderInFlash(game);
        QVERIFY(programmedBytes() < static_cast<int>(kFlashSize));
        m_session->say("end");
        QCOMPARE(m_session->answer(), QString("cancelled"));
        if (isForced)
            m_session->say("die");
        QCOMPARE(::kill(pid(m_reader->processId()), SIGCONT), 0);
        QCOMPARE(m_session->answer(), QString("left"));
        QCOMPARE(m_window->waitForEnd(), QString());

        QCOMPARE(programmedBytes(), static_cast<int>(kFlashSize));
        QCOMPARE(m_window->backups(), QList<QByteArray>{contentOf(old)});
        QCOMPARE(m_reader->unmount(), QString());
    }

private:
    static pid_t pid(qint64 process) { return static_cast<pid_t>(process); }

    static void addSignals()
    {
        QTest::addColumn<int>("number");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGHUP") << SIGHUP;
    }

    void startInSession(const QString &cart, const QStringList &options,
                        const QStringList &settings)
    {
        m_session = std::make_unique<SessionManager>();
        QCOMPARE(m_session->start(), QString());
        m_window = std::make_unique<DrivenWindow>(m_session->starter());
        start(cart, options, settings);
        QCOMPARE(m_session->answer(), QString("joined"));
    }

    void start(const QString &cart, const QStringList &options, const QStringList &settings)
    {
        QCOMPARE(m_reader->start(cart, QString(), options), QString());
        QCOMPARE(m_window->start(*m_reader), QString());
        m_window->pressInSettings(settings);
    }

    std::unique_ptr<MountedReader> selfHoldingReader() const
    {
        return std::make_unique<MountedReader>(
            QStringList{SIGNALLING_READER_PROGRAM, QString("+%1").arg(kDumpMoment),
                        QString::number(SIGSTOP), m_files->path("held")});
    }

    // Starts a job and stops the reader's program in the middle of it, behind the first command
    // that programs.
    void holdReaderInFlash(const QString &game)
    {
        QCOMPARE(m_window->answerDialog(WindowButton::Flash, "Get ROM File.", game), QString());
        QElapsedTimer clock;
        clock.start();
        while (programmedBytes() == 0 && clock.elapsed() < kStepMs) {
        }
        QCOMPARE(::kill(pid(m_reader->processId()), SIGSTOP), 0);
        QVERIFY(programmedBytes() > 0);
    }

    // A dump is over before a busy machine lets the test notice its first command, so the reader
    // stops itself. Nobody looks for the reader while the dialog is open.
    void holdReaderInDump(const QString &dump)
    {
        QCOMPARE(m_window->openDialog(WindowButton::Dump, "Read ROM to..."), QString());
        m_files->addFile("held", QByteArray::number(m_reader->processId()) + '\n');
        QCOMPARE(m_window->answerDialog("Read ROM to...", dump), QString());
        QTRY_VERIFY_WITH_TIMEOUT(readerHolds(), kStepMs);
        QVERIFY(countOf("gb-write") > 0);
    }

    bool readerHolds() const
    {
        const QByteArray state = contentOf(QString("/proc/%1/stat").arg(m_reader->processId()));
        return state.mid(state.lastIndexOf(')') + 2, 1) == "T";
    }

    int countOf(const QString &command) const
    {
        int count = 0;
        for (const QJsonObject &operation : m_reader->operations()) {
            for (const QJsonValue &block : operation["blocks"].toArray())
                count += block["name"].toString() == command ? 1 : 0;
        }
        return count;
    }

    int programmedBytes() const
    {
        int bytes = 0;
        for (const QJsonObject &operation : m_reader->operations()) {
            for (const QJsonValue &block : operation["blocks"].toArray())
                bytes += block["name"].toString() == "gb-program-8" ? block["length"].toInt() : 0;
        }
        return bytes;
    }

    std::unique_ptr<CartridgeFiles> m_files;
    std::unique_ptr<MountedReader> m_reader;
    std::unique_ptr<SessionManager> m_session;
    std::unique_ptr<DrivenWindow> m_window;
};

GBDRIVER_TEST(WindowEndingsTest, core)
#include "window_endings_test.moc"
