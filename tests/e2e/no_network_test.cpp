// No program of the project talks to a network, whatever it does: every system call about sockets
// is recorded while real programs do real jobs.
#include "cartridge_files.h"
#include "driven_window.h"
#include "process_run.h"
#include "test_class.h"

#include <QDir>
#include <QRegularExpression>
#include <QtTest>

#include <memory>

namespace
{

constexpr int kStepMs = 60000;
constexpr std::uint8_t kMbc5RamBattery = 0x1B;
constexpr std::uint32_t kRomSize = 128 * 1024;
constexpr std::uint32_t kSaveSize = 32 * 1024;

// Leaks cannot be looked for in a program that is being traced.
QStringList tracedInto(const QString &log)
{
    return {"strace",         "-f", "-q", "-E", "ASAN_OPTIONS=detect_leaks=0", "-e",
            "trace=%network", "-o", log};
}

// Sockets of the machine itself: of the X server, of services asked for names of users, of the
// kernel. All others would lead out of it.
QStringList foreignSockets(const QString &log)
{
    static const QRegularExpression opened("socket\\((\\w+)");
    static const QStringList own{"AF_UNIX", "AF_NETLINK"};
    QStringList foreign;
    for (const QByteArray &line : contentOf(log).split('\n')) {
        const QRegularExpressionMatch match = opened.match(QString::fromLatin1(line));
        if (match.hasMatch() && !own.contains(match.captured(1)))
            foreign << QString::fromLatin1(line);
    }
    return foreign;
}

} // namespace

class NoNetworkTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<CartridgeFiles>(); }
    void cleanup()
    {
        qunsetenv("GBDRIVER_VIRTUAL_READER");
        m_files.reset();
    }

    void socketIsNoticed()
    {
        run({"bash", "-c", "exec 3<>/dev/udp/127.0.0.1/9"}, 0);
        const QStringList found = foreignSockets(log());
        QVERIFY2(found.size() == 1 && found[0].contains("AF_INET"), qPrintable(found.join('\n')));
    }

    void commandLineOpensNone_data();
    void commandLineOpensNone();
    void windowAndMountedReaderOpenNone();

private:
    QString log() const { return m_files->path("calls"); }

    // Runs a program to its end; the calls are in log().
    void run(const QStringList &command, int exitCode)
    {
        const QStringList traced = tracedInto(log()) + command;
        const ProcessRun run = runProcess(traced.first(), traced.mid(1));
        QVERIFY2(run.exitCode == exitCode, run.errors.constData());
        QVERIFY(contentOf(log()).contains("+++ exited with"));
    }

    std::unique_ptr<CartridgeFiles> m_files;
};

void NoNetworkTest::commandLineOpensNone_data()
{
    QTest::addColumn<QString>("words"); // DIR stands for the folder of the files
    QTest::addColumn<int>("exitCode");
    const auto add = [](const char *words, int exitCode) {
        QTest::newRow(words) << words << exitCode;
    };
    add("--version", 0);
    add("help dump", 0);
    add("manual", 0);
    add("completion bash", 0);
    add("info", 0);
    add("drives", 0);
    add("dump DIR/dump.gb", 0);
    add("read-ram DIR/read.sav", 0);
    add("write-ram DIR/new.sav --backup DIR/kept", 0);
    add("flash DIR/new.gb --backup DIR/kept", 0);
    add("backup DIR/shelf --count 1", 0);
    add("verify DIR/cart.gb", 10);
    add("scripts", 0);
    add("selftest", 0);
    add("check-script " MAPPER_FOLDER "/gb_mbc5.nut --system gb", 0);
    add("tidy DIR", 0);
}

void NoNetworkTest::commandLineOpensNone()
{
    QFETCH(QString, words);
    QFETCH(int, exitCode);
    const QString cart = m_files->addImage(kMbc5RamBattery, kRomSize, kSaveSize, 1);
    m_files->addFile("cart.gb", contentOf(cart));
    m_files->addFile("new.gb",
                     contentOf(m_files->addImage(kMbc5RamBattery, kRomSize, kSaveSize, 2)));
    const QString chip = m_files->addNoise("chip.sav", kSaveSize, 5);
    m_files->addNoise("new.sav", kSaveSize, 6);
    qputenv("GBDRIVER_VIRTUAL_READER",
            QString("cart=%1,save=%2,flash=16,erase-polls=0").arg(cart, chip).toLocal8Bit());
    const QString folder = QFileInfo(log()).path();
    run(QStringList{CLI_PROGRAM} + words.replace("DIR", folder).split(' '), exitCode);
    QCOMPARE(foreignSockets(log()), QStringList());
}

void NoNetworkTest::windowAndMountedReaderOpenNone()
{
    const QString ofReader = m_files->path("calls of the reader");
    const QString cart = m_files->addImage(kMbc5RamBattery, kRomSize, kSaveSize, 1);
    const QString chip = m_files->addNoise("chip.sav", kSaveSize, 5);
    MountedReader reader(tracedInto(ofReader) + QStringList{VIRTUAL_READER_PROGRAM});
    QCOMPARE(reader.start(cart, chip), QString());
    DrivenWindow window(tracedInto(log()));
    QCOMPARE(window.start(reader), QString());
    window.press(WindowButton::Info);
    QVERIFY(window.logWith("Cart type:").contains("ROM+MBC5"));
    const QString dump = m_files->path("dump.gb");
    QCOMPARE(window.answerDialog(WindowButton::Dump, "Read ROM to...", dump), QString());
    QTRY_VERIFY_WITH_TIMEOUT(contentOf(dump) == contentOf(cart), kStepMs);
    const QString save = m_files->addNoise("new.sav", kSaveSize, 6);
    QCOMPARE(window.answerDialog(WindowButton::WriteRam, "Get Save File.", save), QString());
    QTRY_VERIFY_WITH_TIMEOUT(contentOf(chip) == contentOf(save), kStepMs);
    QCOMPARE(window.close(), QString());
    QCOMPARE(reader.unmount(), QString());

    QVERIFY(contentOf(log()).contains("AF_UNIX")); // the X server's
    QCOMPARE(foreignSockets(log()), QStringList());
    QVERIFY(contentOf(ofReader).contains("+++ exited with"));
    QCOMPARE(foreignSockets(ofReader), QStringList());
}

GBDRIVER_TEST(NoNetworkTest, core)
#include "no_network_test.moc"
