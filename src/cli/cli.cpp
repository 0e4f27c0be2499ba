#include "cli/cli.h"

#include "cli/cli_options.h"
#include "cli/commands.h"
#include "cli/interrupt.h"
#include "cli/print_line.h"
#include "cli/terminal.h"
#include "device/device_link.h"
#include "device/local_path.h"
#include "device/one_drive_backend.h"
#include "virtual/backend_choice.h"

#include <QCoreApplication>
#include <QThread>

#include <cstdio>

using namespace virtual_reader;

namespace
{

constexpr unsigned long kPollMs = 200;
// A single read or command takes a second at most.
constexpr int kPatienceMs = 2000;

OutputStyle styleOf(const CliOptions &options)
{
    if (options.asJson)
        return OutputStyle::Json;
    return options.isQuiet ? OutputStyle::Quiet : OutputStyle::Text;
}

// Commands that need a reader.
ExitCode runWithReader(const CliOptions &options, Reporter &reporter)
{
    switch (options.request) {
    case CliRequest::Info:
        return runInfo(options, reporter);
    case CliRequest::Dump:
        return runDump(options, reporter);
    case CliRequest::ReadRam:
        return runReadRam(options, reporter);
    case CliRequest::WriteRam:
        return runWriteRam(options, reporter);
    case CliRequest::Flash:
        return runFlash(options, reporter);
    case CliRequest::Backup:
        return runBackup(options, reporter);
    default:
        return runDrives(reporter);
    }
}

// A system call that waits for the reader keeps a signal from its thread. So the command has one of
// its own, and this one waits for its end, and for Ctrl-C.
class CommandThread : public QThread
{
public:
    CommandThread(const CliOptions &options, Reporter &reporter)
        : m_options(options), m_reporter(reporter)
    {
    }

    ExitCode runToEnd()
    {
        start();
        bool isTold = false;
        while (!wait(kPollMs)) {
            // It says what it is asked itself, unless it waits.
            if (!isTold && wasInterrupted() && readerCallMs() >= kPatienceMs) {
                std::fputs(nextInterruptEnds()
                               ? "Asked to stop. The reader does not answer; the same signal again "
                                 "ends the program at once.\n"
                               : "Asked to stop. The reader does not answer; unplug it to end the "
                                 "job.\n",
                           stderr);
                isTold = true;
            }
        }
        return m_code;
    }

private:
    void run() override { m_code = runWithReader(m_options, m_reporter); }

    const CliOptions &m_options;
    Reporter &m_reporter;
    ExitCode m_code = ExitCode::Done;
};

ExitCode chooseReaderAndRun(const CliOptions &options, Reporter &reporter)
{
    const ChosenBackend chosen = chooseDriveBackend(qgetenv(kVirtualReaderVariable).constData());
    if (chosen.backend() == nullptr) {
        reporter.problem(QStringLiteral("gbdriver-cli: ") +
                         QString::fromLocal8Bit(chosen.error.c_str()));
        return ExitCode::Usage;
    }
    const bool isOneDrive = options.driveLetter != 0;
    OneDriveBackend oneDrive(*chosen.backend(), isOneDrive ? options.driveLetter : 'A');
    setDriveBackend(isOneDrive ? static_cast<DriveBackend *>(&oneDrive) : chosen.backend());
    watchForInterrupt();
    tellLeftBehind(options, reporter);
    const ExitCode code = CommandThread(options, reporter).runToEnd();
    setDriveBackend(nullptr);
    return code;
}

ExitCode runCommand(const CliOptions &options, Reporter &reporter)
{
    switch (options.request) {
    case CliRequest::Verify:
        return runVerify(options, reporter);
    case CliRequest::Scripts:
        return runScripts(reporter, mapperFolder());
    case CliRequest::SelfTest:
        return runSelfTest(reporter, mapperFolder());
    case CliRequest::CheckScript:
        return runCheckScript(options, reporter);
    case CliRequest::Tidy:
        return runTidy(options, reporter);
    default:
        return chooseReaderAndRun(options, reporter);
    }
}

// Number of the first argument that is no text in the system's encoding, and would become another
// name than the one that was given; 0 if there is none.
int foreignArgument(int argc, char **argv)
{
    for (int number = 1; number < argc; ++number) {
        if (QString::fromLocal8Bit(argv[number]).toLocal8Bit() != argv[number])
            return number;
    }
    return 0;
}

} // namespace

int runCli(int &argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const ConsoleCodePage codePage;
    const int foreign = foreignArgument(argc, argv);
    if (foreign != 0) {
        printLine(stderr,
                  QStringLiteral("gbdriver-cli: argument %1 is no text in this system's encoding. "
                                 "Rename the file, or set the locale that its name was made in.")
                      .arg(foreign));
        return static_cast<int>(ExitCode::Usage);
    }
    const CliOptions options = parseCliOptions(QCoreApplication::arguments());
    if (options.request == CliRequest::Refuse) {
        printLine(stderr, options.text);
        return static_cast<int>(ExitCode::Usage);
    }
    if (options.request == CliRequest::ShowText) {
        Reporter text(standardOutput(OutputStyle::Text));
        text.answer(options.text);
        return static_cast<int>(text.end(ExitCode::Done));
    }
    OutputTarget target = standardOutput(styleOf(options));
    const bool isRead =
        options.request == CliRequest::Dump || options.request == CliRequest::ReadRam;
    // Words among the bytes would spoil both.
    if (isRead && isStandardOutput(localPath(options.path).constData())) {
        target.answers = target.messages;
        target.hasColor = false;
    }
    Reporter reporter(target);
    return static_cast<int>(reporter.end(runCommand(options, reporter)));
}
