#include "fault_bench.h"

#include "cli/cli_command.h"
#include "cli/dump_command.h"
#include "cli/flash_command.h"
#include "cli/interrupt.h"
#include "cli/save_commands.h"
#include "report_capture.h"
#include "script/erase_poll.h"
#include "virtual/image_generator.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <atomic>
#include <csignal>

using namespace virtual_reader;

namespace
{

struct CommandRow {
    CliRequest request;
    const char *name;
    ExitCode (*run)(const CliOptions &, Reporter &);
    bool writes;
    bool movesSave;
};

// By BenchCommand.
constexpr CommandRow kCommands[] = {{CliRequest::Dump, "dump", runDump, false, false},
                                    {CliRequest::ReadRam, "read-ram", runReadRam, false, true},
                                    {CliRequest::WriteRam, "write-ram", runWriteRam, true, true},
                                    {CliRequest::Flash, "flash", runFlash, true, false}};

const CommandRow &rowOf(const BenchCase &bench)
{
    return kCommands[static_cast<std::size_t>(bench.command)];
}

// Looks at an erase before the user gives up; virtual chips need three.
constexpr int kMostLooks = 50;
std::atomic<int> looksLeft{0};

// A second interrupt would end the program.
void countLook(unsigned long /*timeMs*/)
{
    if (--looksLeft == 0 && !wasInterrupted())
        std::raise(SIGINT);
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read a file of the test");
    return file.readAll();
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write a file of the test");
}

QByteArray noise(int size, unsigned seed)
{
    const ByteVector bytes = makeNoise(static_cast<std::uint32_t>(size), seed);
    return {reinterpret_cast<const char *>(bytes.data()), size};
}

// The cartridge, its user's folder, and the command that the user gives.
class Table
{
public:
    explicit Table(const BenchCase &bench)
        : m_row(rowOf(bench)), m_case(bench), m_bench(bench.cartridge)
    {
        if (m_row.movesSave)
            giveSave();
        m_options.request = m_row.request;
        m_options.command = findCliCommand(m_row.name);
        m_options.values = bench.values;
        m_options.path = m_folder.filePath("file");
        m_options.backupFolder = m_folder.filePath("backups");
        m_options.overwrites = bench.replaces;
        m_options.forces = bench.forces;
        m_options.makesBackup = bench.makesBackup;
        if (bench.isFolderTaken)
            writeFile(m_options.backupFolder, "not a folder");
        if (bench.isKnown)
            knowTheDump();
    }

    BenchRun run(const QVector<DriveFault> &faults)
    {
        BenchRun run;
        run.old = content();
        const QByteArray file = m_row.writes ? newFile() : QByteArray();
        run.wanted =
            m_row.writes ? file.left(run.old.size()) + rest(run.old.mid(file.size())) : run.old;
        if (m_row.writes)
            writeFile(m_options.path, file);
        else if (m_case.replaces)
            writeFile(m_options.path, kOldFile);
        for (const DriveFault &fault : faults)
            m_bench.drive().addFault(fault);
        give(&run);
        run.found = content();
        for (std::size_t kind = 0; kind < kDriveCallKinds; ++kind)
            run.calls[kind] = m_bench.drive().callCount(static_cast<DriveCall>(kind));
        lookAround(&run);
        return run;
    }

private:
    void giveSave()
    {
        const QByteArray save = m_case.save ? *m_case.save : noise(m_bench.save().size(), 7);
        if (!m_bench.reader().cartridge().loadSave(ByteVector(save.begin(), save.end())))
            qFatal("the cartridge does not take its save");
    }

    void knowTheDump()
    {
        const QByteArray rom = m_bench.rom();
        const QByteArray sha1 = QCryptographicHash::hash(rom, QCryptographicHash::Sha1).toHex();
        m_options.datFiles << m_folder.filePath("known.dat");
        writeFile(m_options.datFiles.first(), "<datafile><game name=\"Known\"><rom size=\"" +
                                                  QByteArray::number(rom.size()) + "\" sha1=\"" +
                                                  sha1 + "\"/></game></datafile>");
    }

    QByteArray content() { return m_row.movesSave ? m_bench.save() : m_bench.rom(); }

    // What becomes of `old` bytes behind the end of a short file: a flash chip is erased as a whole.
    QByteArray rest(const QByteArray &old) const
    {
        return m_row.movesSave ? old : QByteArray(old.size(), '\xFF');
    }

    // What the user wants to have in the cartridge.
    QByteArray newFile()
    {
        if (m_case.file)
            return *m_case.file;
        if (m_row.movesSave)
            return noise(m_bench.save().size(), 8);
        TrialCartridge other = m_case.cartridge;
        if (m_case.flashedBytes != 0)
            other.romSize = m_case.flashedBytes;
        return trialImage(other, 2);
    }

    void give(BenchRun *run)
    {
        ReportCapture capture(OutputStyle::Quiet);
        watchForInterrupt();
        looksLeft = kMostLooks;
        setPollWaiter(countLook);
        run->code = m_row.run(m_options, capture.reporter());
        setPollWaiter(nullptr);
        run->answers = capture.answers();
        run->told = capture.messages();
    }

    void lookAround(BenchRun *run)
    {
        const QDir backups(m_options.backupFolder);
        for (const QString &name : backups.entryList(QDir::Files | QDir::Hidden)) {
            if (!name.endsWith(".part"))
                run->backups[backups.filePath(name)] = readFile(backups.filePath(name));
        }
        QDirIterator all(m_folder.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (all.hasNext()) {
            if (all.next().endsWith(".part"))
                run->leftovers << all.fileName();
        }
        run->hasFile = QFile::exists(m_options.path);
        if (run->hasFile)
            run->file = readFile(m_options.path);
    }

    const CommandRow &m_row;
    const BenchCase &m_case;
    TrialBench m_bench;
    QTemporaryDir m_folder;
    CliOptions m_options;
};

DriveFault faultOf(DriveCall call, DriveErrorCode code, std::uint32_t bytes)
{
    DriveFault fault;
    fault.call = call;
    fault.code = code;
    fault.bytes = bytes;
    return fault;
}

DriveFault flipped(DriveCall call, std::uint8_t bits, std::uint32_t byte)
{
    DriveFault fault = faultOf(call, DriveErrorCode::None, DriveFault::kAllBytes);
    fault.flips = bits;
    fault.flippedByte = byte;
    return fault;
}

DriveFault claimed(DriveCall call, std::uint32_t bytes)
{
    DriveFault fault = faultOf(call, DriveErrorCode::None, bytes);
    fault.claimsAll = true;
    return fault;
}

DriveFault withInterrupt(DriveFault fault)
{
    fault.happens = [] {
        if (!wasInterrupted())
            std::raise(SIGINT);
    };
    return fault;
}

// The ways of call number `number`, each with its fault set to that call.
QVector<NamedFault> waysFor(DriveCall call, Ways ways, std::uint32_t number)
{
    QVector<NamedFault> all = waysToFail(call);
    for (NamedFault &way : all)
        way.fault.after = number;
    if (ways == Ways::All || qEnvironmentVariableIsSet("GBDRIVER_ALL_FAULTS"))
        return all;
    const int others = all.size() - 1;
    return {all[0], all[1 + static_cast<int>(number) % others]};
}

} // namespace

BenchRun runOnBench(const BenchCase &bench, const QVector<DriveFault> &faults)
{
    return Table(bench).run(faults);
}

bool isSameContent(const BenchCase &bench, const QByteArray &left, const QByteArray &right)
{
    if (left.size() != right.size())
        return false;
    for (int i = 0; i < left.size(); ++i) {
        if (((left[i] ^ right[i]) & bench.keptBits) != 0)
            return false;
    }
    return true;
}

QVector<NamedFault> waysToFail(DriveCall call)
{
    constexpr auto kNone = DriveErrorCode::None;
    constexpr auto kAll = DriveFault::kAllBytes;
    DriveFault vanishing = faultOf(call, kNone, kAll);
    vanishing.driveVanishes = true;
    QVector<NamedFault> ways = {{"error", faultOf(call, DriveErrorCode::InputOutput, 0)},
                                {"drive vanishes", vanishing},
                                {"Ctrl-C", withInterrupt(faultOf(call, kNone, kAll))},
                                {"drive vanishes, Ctrl-C", withInterrupt(vanishing)}};
    if (call == DriveCall::Read)
        ways << QVector<NamedFault>{{"nothing read", faultOf(call, kNone, 0)},
                                    {"512 bytes read", faultOf(call, kNone, 512)},
                                    {"old bytes in the buffer", claimed(call, 0)},
                                    {"a bit flips in every byte", flipped(call, 0x01, kAll)},
                                    {"all bits flip in byte 5", flipped(call, 0xFF, 5)}};
    if (call == DriveCall::Write)
        ways << QVector<NamedFault>{
            {"nothing written", faultOf(call, kNone, 0)},
            {"512 bytes written", faultOf(call, kNone, 512)},
            {"disk full after 512 bytes", faultOf(call, DriveErrorCode::Full, 512)},
            {"write lost", claimed(call, 0)},
            {"write lost after 512 bytes", claimed(call, 512)},
            {"bit flips in byte 300", flipped(call, 0x10, 300)}};
    return ways;
}

int failEveryCall(const BenchCase &bench, Ways ways, BenchCheck check, QStringList *problems)
{
    const BenchRun clean = runOnBench(bench);
    int injected = 0;
    for (std::size_t kind = 0; kind < kDriveCallKinds; ++kind) {
        for (std::uint32_t number = 0; number < clean.calls[kind]; ++number) {
            for (const NamedFault &way : waysFor(static_cast<DriveCall>(kind), ways, number)) {
                ++injected;
                const BenchRun run = runOnBench(bench, {way.fault});
                for (const QString &problem : check(bench, run))
                    *problems << QString("call kind %1, number %2, %3: exit code %4: %5")
                                     .arg(kind)
                                     .arg(number)
                                     .arg(way.name)
                                     .arg(int(run.code))
                                     .arg(problem);
            }
        }
    }
    return injected;
}
