// How the headless program ends. The numbers are a promise to scripts: they are never given
// another meaning.
// Thread: constant data; any thread.
#pragma once

#include <array>
#include <cstddef>

enum class ExitCode {
    Done = 0,
    Usage = 1,
    NoReader = 2,
    NoAnswer = 3,
    NotRecognised = 4,
    TransferFailed = 5,
    FileError = 6,
    DataMismatch = 7,
    Refused = 8,
    Cancelled = 9,
    Unverified = 10,
    ScriptError = 11,
    InUse = 12
};

// One row of the documented table.
struct ExitCodeRow {
    ExitCode code;
    const char *word;    // in JSON
    const char *meaning; // for help, manual page and documents
};

// By number, without a gap.
constexpr std::array<ExitCodeRow, 13> kExitCodes = {{
    {ExitCode::Done, "done", "done; a dump is verified or consistent"},
    {ExitCode::Usage, "usage", "wrong usage; nothing was touched"},
    {ExitCode::NoReader, "no-reader", "no reader was found"},
    {ExitCode::NoAnswer, "no-answer", "the reader was found but does not answer"},
    {ExitCode::NotRecognised, "not-recognised", "the cartridge was not recognised"},
    {ExitCode::TransferFailed, "transfer-failed", "a transfer to or from the cartridge failed"},
    {ExitCode::FileError, "file-error", "a file on this computer could not be read or written"},
    {ExitCode::DataMismatch, "data-mismatch", "reads differ, or the bytes cannot be right"},
    {ExitCode::Refused, "refused", "refused for safety"},
    {ExitCode::Cancelled, "cancelled", "cancelled by the user"},
    {ExitCode::Unverified, "unverified", "done, but a check was not made or does not exist"},
    {ExitCode::ScriptError, "script-error", "the mapper script is wrong"},
    {ExitCode::InUse, "in-use", "another program uses the reader; nothing was sent to it"},
}};

constexpr const ExitCodeRow &rowOf(ExitCode code)
{
    return kExitCodes[static_cast<std::size_t>(code)];
}
