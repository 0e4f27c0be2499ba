// Runs a built program to its end and looks at what it said.
#pragma once

#include "files.h"
#include "process_run.h"
#include "samples.h"

#include "cli/exit_code.h"

struct ProgramResult {
    int exitCode = -1; // -1: did not start, did not end, or crashed
    QString out;       // standard output, lines ending in "\n" on every platform
    QString err;       // standard error, likewise; or why there is no exit code

    QStringList errLines() const { return err.split('\n'); }
};

// The exit code of gbdriver-cli; -1 is none of its own.
inline ExitCode codeOf(const ProgramResult &result)
{
    return static_cast<ExitCode>(result.exitCode);
}

// The two variables that choose the reader; an empty one is not set.
struct ReaderChoice {
    QString virtualReader; // GBDRIVER_VIRTUAL_READER
    QString drives;        // GBDRIVER_DRIVES
};

// Blocks until the program has ended, for two minutes at most.
ProgramResult runProgram(const QString &program, const QStringList &arguments,
                         const ReaderChoice &reader = {});

// As above, for a command line without names that have spaces.
ProgramResult runProgram(const QString &program, const QString &words,
                         const ReaderChoice &reader = {});

// Image of a GB cartridge with this type in its header; sizes in bytes.
QByteArray gbImage(std::uint8_t type, std::uint32_t romSize, std::uint32_t ramSize);

// Image of a GBA cartridge with the game code `code`, "VIRTUAL" being the header's own title.
QByteArray gbaImage(const QString &code, std::uint32_t romSize);

// Image of an MBC5 cartridge with RAM; sizes in bytes.
QByteArray mbc5Image(std::uint32_t romSize, std::uint32_t ramSize);

// A GB image with its global checksum right again: the sum of all bytes but its own two.
QByteArray withGlobalChecksum(QByteArray image);

// A GB image with another byte at `offset` of its header, and both checksums right again.
QByteArray withHeaderByte(QByteArray image, int offset, char value);
