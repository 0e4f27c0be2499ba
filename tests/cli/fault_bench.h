// One command of the command line on a virtual cartridge whose reader, or whose user's disk, fails
// in one place; and what is left of it.
//
// Thread: the main thread of an application, one at a time.
#pragma once

#include "cli/cli_options.h"
#include "cli/exit_code.h"
#include "trial/trial_bench.h"

#include <QMap>
#include <QStringList>
#include <QVector>

#include <array>
#include <optional>

#include <vector>

enum class BenchCommand { Dump, ReadRam, WriteRam, Flash };

struct BenchCase {
    BenchCommand command = BenchCommand::WriteRam;
    TrialCartridge cartridge;
    CartridgeValues values;         // what the user says
    char keptBits = '\xFF';         // of every byte of a save
    std::uint32_t flashedBytes = 0; // of the file that is flashed; 0: as large as the chip
    std::optional<QByteArray> save; // in the cartridge, if not noise
    bool replaces = false;          // the file that is read into exists, with kOldFile in it
    bool isKnown = false;           // the dump stands in a table of the user's
    std::optional<QByteArray> file; // what is written, if not something as large as the save
    bool ignoresSize = false;
    bool ignoresContradiction = false;
    bool ignoresBlank = false;
    bool looks = true;   // else `values` are complete
    bool isTold = false; // all that is logged, not with --quiet
    bool makesBackup = true;
    bool isFolderTaken = false; // a file stands where the folder for backups should be
};

const QByteArray kOldFile = "what was here before";

constexpr std::size_t kDriveCallKinds =
    static_cast<std::size_t>(virtual_reader::DriveCall::Reserve) + 1;

struct BenchRun {
    ExitCode code = ExitCode::Done;
    QByteArray old;    // what was in the chip that the command is about
    QByteArray found;  // what is in it now
    QByteArray wanted; // what a write should have brought; of a read, what should have been read
    QMap<QString, QByteArray> backups; // by path
    QStringList leftovers;             // temporary files beside the user's
    QList<QByteArray> unverified;      // what was kept of reads that nobody could compare
    bool hasFile = false;              // a read left one under its name
    QByteArray file;
    QString answers;                                    // standard output
    QString told;                                       // standard error
    std::array<std::uint32_t, kDriveCallKinds> calls{}; // by DriveCall
    std::uint32_t dumpReads = 0;                        // of the reader's data file
};

// Runs the command as with --quiet. An erase that does not end is interrupted as with Ctrl-C.
BenchRun runOnBench(const BenchCase &bench,
                    const std::vector<virtual_reader::DriveFault> &faults = {});

// Whether two contents of the chip are the same as far as it keeps them.
bool isSameContent(const BenchCase &bench, const QByteArray &left, const QByteArray &right);

// What is wrong with a run.
using BenchCheck = QStringList (*)(const BenchCase &, const BenchRun &);

struct FaultCount {
    int injected = 0;
    int problems = 0;
};

// Fails every call that the command makes, one after the other, each in a run of its own. Says the
// figures, and every problem with its fault on a line of its own.
FaultCount failEveryCall(const BenchCase &bench, BenchCheck check);
