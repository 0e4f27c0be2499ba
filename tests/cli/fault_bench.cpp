#include "fault_bench.h"

#include "drive_faults.h"
#include "files.h"
#include "report_capture.h"
#include "samples.h"

#include "cli/commands.h"
#include "cli/interrupt.h"
#include "script/erase_poll.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <vector>

using namespace virtual_reader;

namespace
{

struct BenchRow {
    CliRequest request;
    ExitCode (*run)(const CliOptions &, Reporter &);
    bool writes;
    bool movesSave;
};

// By BenchCommand.
constexpr BenchRow kCommands[] = {{CliRequest::Dump, runDump, false, false},
                                  {CliRequest::ReadRam, runReadRam, false, true},
                                  {CliRequest::WriteRam, runWriteRam, true, true},
                                  {CliRequest::Flash, runFlash, true, false}};

const BenchRow &rowOf(const BenchCase &bench)
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
        m_options.values = bench.values;
        m_options.path = m_folder.filePath("file");
        m_options.backupFolder = m_folder.filePath("backups");
        m_options.overwrites = bench.replaces;
        m_options.ignoresSize = bench.ignoresSize;
        m_options.ignoresContradiction = bench.ignoresContradiction;
        m_options.ignoresBlank = bench.ignoresBlank;
        m_options.looks = bench.looks;
        m_options.makesBackup = bench.makesBackup;
        if (bench.isFolderTaken)
            putFile(m_options.backupFolder, "not a folder");
        if (bench.isKnown)
            knowTheDump();
    }

    BenchRun run(const std::vector<DriveFault> &faults)
    {
        BenchRun run;
        run.old = content();
        const QByteArray file = m_row.writes ? newFile() : QByteArray();
        run.wanted =
            m_row.writes ? file.left(run.old.size()) + rest(run.old.mid(file.size())) : run.old;
        if (m_row.writes)
            putFile(m_options.path, file);
        else if (m_case.replaces)
            putFile(m_options.path, kOldFile);
        for (const DriveFault &fault : faults)
            m_bench.drive().addFault(fault);
        give(&run);
        run.found = content();
        for (std::size_t kind = 0; kind < kDriveCallKinds; ++kind)
            run.calls[kind] = m_bench.drive().callCount(static_cast<DriveCall>(kind));
        run.dumpReads = m_bench.drive().callCount(DriveCall::Read, "DUMP.ROM");
        lookAround(&run);
        return run;
    }

private:
    void giveSave()
    {
        const QByteArray save = m_case.save ? *m_case.save : noise(m_bench.save().size(), 7);
        putSave(&m_bench.reader().cartridge(), save);
    }

    void knowTheDump()
    {
        const QByteArray rom = m_bench.rom();
        const QByteArray sha1 = QCryptographicHash::hash(rom, QCryptographicHash::Sha1).toHex();
        m_options.datFiles << m_folder.filePath("known.dat");
        putFile(m_options.datFiles.first(), "<datafile><game name=\"Known\"><rom size=\"" +
                                                QByteArray::number(rom.size()) + "\" sha1=\"" +
                                                sha1 + "\"/></game></datafile>");
    }

    QByteArray content() { return m_row.movesSave ? m_bench.save() : m_bench.rom(); }

    // What becomes of `old` bytes behind the end of a short file: a flash chip is erased as a
    // whole.
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
        ReportCapture capture(m_case.isTold ? OutputStyle::Text : OutputStyle::Quiet);
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
                run->backups[backups.filePath(name)] = contentOf(backups.filePath(name));
        }
        QDirIterator all(m_folder.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (all.hasNext()) {
            if (all.next().endsWith(".part"))
                run->leftovers << all.fileName();
            else if (all.fileName().endsWith(".unverified"))
                run->unverified << contentOf(all.filePath());
        }
        run->hasFile = QFile::exists(m_options.path);
        if (run->hasFile)
            run->file = contentOf(m_options.path);
    }

    const BenchRow &m_row;
    const BenchCase &m_case;
    TrialBench m_bench;
    QTemporaryDir m_folder;
    CliOptions m_options;
};

DriveFault withInterrupt(DriveFault fault)
{
    fault.happens = [] {
        if (!wasInterrupted())
            std::raise(SIGINT);
    };
    return fault;
}

// All ways to fail, and those with the user's Ctrl-C at that moment.
std::vector<NamedFault> waysWithInterrupts(DriveCall call)
{
    const QVector<NamedFault> plain = waysToFail(call);
    std::vector<NamedFault> ways(plain.begin(), plain.end());
    DriveFault passing;
    passing.call = call;
    passing.code = DriveErrorCode::None;
    passing.bytes = DriveFault::kAllBytes;
    const std::vector<NamedFault> interrupts = {
        {"Ctrl-C", withInterrupt(passing)},
        {"drive vanishes, Ctrl-C", withInterrupt(plain[1].fault)}};
    ways.insert(ways.begin() + 2, interrupts.begin(), interrupts.end());
    return ways;
}

// Where a command makes many calls, an error for every call and one of the other ways in turn are
// tried; all ways if the environment has GBDRIVER_ALL_FAULTS.
bool triesAllWays(const BenchCase &bench)
{
    const bool hasManyCalls = bench.cartridge.isGba || bench.command == BenchCommand::Flash;
    return !hasManyCalls || qEnvironmentVariableIsSet("GBDRIVER_ALL_FAULTS");
}

// The ways of call number `number`, each with its fault set to that call.
std::vector<NamedFault> waysFor(const BenchCase &bench, DriveCall call, std::uint32_t number)
{
    std::vector<NamedFault> all = waysWithInterrupts(call);
    for (NamedFault &way : all)
        way.fault.after = number;
    if (triesAllWays(bench))
        return all;
    const std::size_t others = all.size() - 1;
    return {all[0], all[1 + number % others]};
}

} // namespace

BenchRun runOnBench(const BenchCase &bench, const std::vector<DriveFault> &faults)
{
    return Table(bench).run(faults);
}

bool isSameContent(const BenchCase &bench, const QByteArray &left, const QByteArray &right)
{
    constexpr char kAllBits = '\xFF';
    if (bench.keptBits == kAllBits) // asked thousands of times
        return left == right;
    const auto areSame = [&](char one, char other) {
        return ((one ^ other) & bench.keptBits) == 0;
    };
    return std::equal(left.cbegin(), left.cend(), right.cbegin(), right.cend(), areSame);
}

FaultCount failEveryCall(const BenchCase &bench, BenchCheck check)
{
    const BenchRun clean = runOnBench(bench);
    FaultCount count;
    for (std::size_t kind = 0; kind < kDriveCallKinds; ++kind) {
        for (std::uint32_t number = 0; number < clean.calls[kind]; ++number) {
            for (const NamedFault &way : waysFor(bench, static_cast<DriveCall>(kind), number)) {
                ++count.injected;
                const BenchRun run = runOnBench(bench, {way.fault});
                for (const QString &problem : check(bench, run)) {
                    ++count.problems;
                    qWarning("call kind %d, number %u, %s: exit code %d: %s", int(kind), number,
                             way.name, int(run.code), qPrintable(problem));
                }
            }
        }
    }
    qInfo("%d faults injected, %d problems", count.injected, count.problems);
    return count;
}
