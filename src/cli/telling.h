// How what the careful steps found reaches the user of the command line: as text with the way out
// in terms of options, as an event, as the program's exit code.
//
// Thread: the one that runs the command.
#pragma once

#include "cli/exit_code.h"
#include "cli/reporter.h"
#include "trust/kept_backup.h"
#include "trust/verdict.h"
#include "worker/cartridge_report.h"

// NoReader, NoAnswer or InUse if the report says that the reader cannot be used; else Done.
ExitCode readerFault(const CartridgeReport &report);

// What the user can do about it, and what the drive said in the last detectCartridge(), if it was
// the drive.
QString readerProblem(const CartridgeReport &report);

// Done for Verified and Consistent.
ExitCode exitCodeOf(VerdictKind kind);
ExitCode exitCodeOf(const Outcome &outcome);

// Tells what went wrong, the way out and the state of the cartridge. Returns: exitCodeOf(outcome).
ExitCode tellTrouble(const Outcome &outcome, Reporter &reporter);

// Tells a problem that is none of a job's, with the state of the cartridge behind it.
// Returns: `code`.
ExitCode tellProblem(ExitCode code, const QString &problem, CartridgeState state,
                     Reporter &reporter);

// What is said of a file that holds a read.
struct ReadFile {
    QString path;
    qint64 size = 0; // bytes
    QByteArray sha1; // 20 bytes
    int reads = 0;
};

// Prints the verdict as the command's answer, or as an event "verdict".
void tellVerdict(const Verdict &verdict, const ReadFile &file, Reporter &reporter);
