// The commands of the headless program.
//
// Thread: any of an application, one command at a time; each blocks until it has ended. Commands
// that need a reader need the drive backend of the process; check-script and selftest leave it
// without one.
#pragma once

#include "cli/cli_options.h"
#include "cli/exit_code.h"
#include "cli/reporter.h"

// Looks at the cartridge. Beyond the window's report it says whether the header's checksums are
// right; the global checksum of a GB cartridge needs the whole ROM, which is read for it unless
// `options.isQuick`.
ExitCode runInfo(const CliOptions &options, Reporter &reporter);

// Reads the ROM into a file and judges it. It is read a second time only if its content stands in
// no table of known dumps, unless the user says otherwise.
ExitCode runDump(const CliOptions &options, Reporter &reporter);

// Judges a file; needs no reader.
ExitCode runVerify(const CliOptions &options, Reporter &reporter);

// Reads the save into a file, twice unless told otherwise, and says what it is worth.
ExitCode runReadRam(const CliOptions &options, Reporter &reporter);

// Keeps the cartridge's save in a backup, writes the file, reads it back and compares. At every
// moment the old save is in the cartridge or in the backup, unless the user wants no backup.
ExitCode runWriteRam(const CliOptions &options, Reporter &reporter);

// Keeps what the flash chip holds in a backup, erases and writes it, reads it back and compares.
ExitCode runFlash(const CliOptions &options, Reporter &reporter);

// Between two looks at the slot. A header that stays the same for so long is the cartridge's.
constexpr int kPauseBetweenLooksMs = 300;

// Waits for a cartridge, reads what it holds, tells to swap it and goes on, until the user presses
// Ctrl-C or `options.count` cartridges are done.
// Returns: Done if everything that was read is verified or consistent; else the first other code.
ExitCode runBackup(const CliOptions &options, Reporter &reporter,
                   int pauseMs = kPauseBetweenLooksMs);

// Removes from the folder `options.path` the temporary files that no running program uses.
// Returns: Done, or FileError if there is no such folder or one of the files stayed.
ExitCode runTidy(const CliOptions &options, Reporter &reporter);

// Names such files in the folder that the command writes to; removes none.
void tellLeftBehind(const CliOptions &options, Reporter &reporter);

// Looks at every drive of the process's backend and lists them; writes nothing. Events: see
// docs/cli-events.schema.json. Returns: Done if a drive is taken, else NoReader.
ExitCode runDrives(Reporter &reporter);

// Lists the scripts in `folder`. Their top levels are run; nothing reaches a reader.
// Returns: Done, or FileError if a script that the program needs is missing or does not load.
ExitCode runScripts(Reporter &reporter, const QString &folder);

// A fixed set of jobs on virtual cartridges with the scripts in `scriptFolder`, and a result to
// paste into a bug report. No drive is looked at. The result names no user and no folder above the
// scripts'. Returns: Done, or DataMismatch if a job did not go as it should.
ExitCode runSelfTest(Reporter &reporter, const QString &scriptFolder);

// Tells about each operation of the script `options.path`. Where `options.scriptKind` is empty the
// script's own file name tells the kind of cartridge. Unless `options.allowsFiles`, it gets at no
// files.
// Returns: Done if the script defines something and nothing that it defines went wrong (a refusal
// of the script itself is no fault); ScriptError if it is wrong; DataMismatch if bytes were not
// where they belong; TransferFailed if nothing worked; FileError or Usage if there is nothing to
// try.
ExitCode runCheckScript(const CliOptions &options, Reporter &reporter);
