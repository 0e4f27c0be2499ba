// The built program on a terminal: the bar and the colours, and what the environment takes away.
#include "program_run.h"
#include "test_class.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

namespace
{

constexpr int kDeadlineMs = 60000;
constexpr char kClearLine[] = "\033[K";
constexpr char kGreen[] = "\033[32m";

// A program whose standard output and standard error are a terminal.
class TerminalProcess : public QProcess
{
public:
    TerminalProcess() : m_terminal(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK))
    {
        if (m_terminal < 0 || grantpt(m_terminal) != 0 || unlockpt(m_terminal) != 0)
            qFatal("no pseudo terminal");
        m_programSide = ::open(ptsname(m_terminal), O_RDWR | O_NOCTTY);
        if (m_programSide < 0)
            qFatal("the pseudo terminal cannot be opened");
        setStandardOutputFile(ptsname(m_terminal));
        setStandardErrorFile(ptsname(m_terminal));
    }
    ~TerminalProcess() override
    {
        ::close(m_programSide);
        ::close(m_terminal);
    }

    // Reads on; what the terminal would show so far. The terminal makes \r\n of every \n.
    QByteArray shown()
    {
        char bytes[1024];
        for (ssize_t count = 0; (count = ::read(m_terminal, bytes, sizeof(bytes))) > 0;)
            m_shown.append(bytes, static_cast<int>(count));
        return QByteArray(m_shown).replace("\r\n", "\n");
    }

private:
    int m_terminal;
    int m_programSide; // a terminal that nobody has open cannot be read
    QByteArray m_shown;
};

} // namespace

class TerminalProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        putFile(m_folder->filePath("cart.gb"), gbImage(0x19, 512 * 1024, 0));
    }

    void environmentTakesBarAndColourAway_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("hasBar");
        QTest::addColumn<bool>("hasColor");
        QTest::newRow("terminal") << "TERM"
                                  << "xterm" << true << true;
        QTest::newRow("no colour") << "NO_COLOR"
                                   << "1" << true << false;
        QTest::newRow("no colour, any value") << "NO_COLOR"
                                              << "no" << true << false;
        QTest::newRow("dumb terminal") << "TERM"
                                       << "dumb" << false << false;
    }
    void environmentTakesBarAndColourAway()
    {
        QFETCH(QString, name);
        QFETCH(QString, value);
        const QByteArray shown = dump({}, name, value);
        QVERIFY2(shown.contains("consistent: "), shown.constData());
        QTEST(shown.contains(kClearLine), "hasBar");
        QTEST(shown.contains(kGreen), "hasColor");
        // Each phase ends its line before the next text.
        QVERIFY2(shown.contains("Dump rom finish.\n"), shown.constData());
        QCOMPARE(shown.contains('\033'), shown.contains(kClearLine) || shown.contains(kGreen));
    }

    void quietTerminalHasNoBar()
    {
        const QByteArray shown = dump({"--quiet"}, "TERM", "xterm");
        QVERIFY2(shown.startsWith(kGreen), shown.constData());
        QCOMPARE(shown.count('\n'), 2);
        QVERIFY(!shown.contains(kClearLine));
    }

    void jsonOnATerminalIsJson()
    {
        const QByteArray shown = dump({"--json"}, "TERM", "xterm");
        QVERIFY(!shown.contains('\033'));
        for (const QByteArray &line : shown.trimmed().split('\n'))
            QVERIFY2(line.startsWith("{\"") && line.endsWith('}'), line.constData());
    }

private:
    // What the terminal shows of a dump.
    QByteArray dump(const QStringList &options, const QString &name, const QString &value)
    {
        TerminalProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove("NO_COLOR");
        environment.insert("TERM", "xterm");
        environment.insert("GBDRIVER_VIRTUAL_READER", "cart=" + m_folder->filePath("cart.gb"));
        environment.insert(name, value);
        program.setProcessEnvironment(environment);
        program.start(CLI_PROGRAM, QStringList{"dump", m_folder->filePath("dump.gb")} + options);
        // The program waits while the terminal is full.
        const bool hasEnded = QTest::qWaitFor(
            [&] {
                program.shown();
                return program.state() == QProcess::NotRunning;
            },
            kDeadlineMs);
        return hasEnded && program.exitCode() == 0 ? program.shown() : QByteArray("no success");
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

GBDRIVER_TEST(TerminalProgramTest, core)
#include "terminal_program_test.moc"
