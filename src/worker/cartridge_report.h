// The cartridge report: finds the reader, says what it is, recognises the inserted cartridge and
// says what the settings should be. The window and the command line show the same report.
//
// Thread: any, but no job may run meanwhile. Blocks while the device files are read. The caller
// holds a ReaderSession.
#pragma once

#include "cart/gb_header.h"
#include "cart/gba_header.h"
#include "script/job.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

// First bytes of the cartridge that a report looks at.
constexpr std::uint32_t kReportedBytes = 8192;

// Values for the settings box, selected from the top: the system first, then the items that are
// known. What an item means depends on the system, as in the box.
struct DetectedSettings {
    int sysType = 0;
    std::optional<int> item1; // GB: mapper; GBA: ROM size in bytes
    std::optional<int> item2; // GB: ROM size in bytes; GBA: save type
    std::optional<int> item3; // save size in bytes
};

// Where the report goes while it is made, in order. All must be set.
struct ReportOutput {
    // One line, translated ("MainTab"); plain text, in part from the cartridge and the drive.
    std::function<void(const QString &)> line;
    std::function<void()> rule; // ends what is said of a cartridge
    std::function<void(const DetectedSettings &)> settings;
    // The window's advice is for an empty slot. Whoever says more of the game behind a GBA logo
    // leaves it out.
    bool hasAdviceForUnknownGames = true;
};

// What recognises a header.
struct HeaderDecoders {
    int (*gb)(const std::uint8_t *header, GbHeaderInfo *info) = decodeGbHeader;
    int (*gba)(const std::uint8_t *header, GbaHeaderInfo *info) = decodeGbaHeader;
};

enum class ReportOutcome {
    NoReader,     // no drive answered
    NoMode,       // a bus mode could not be selected; see `modeFault`
    ShortRead,    // the header could not be read
    GbCartridge,  // `gb` is filled
    GbaCartridge, // `gba` is filled
    Unknown       // neither header was recognised; `header` may still be a GBA cartridge's
};

struct CartridgeReport {
    ReportOutcome outcome = ReportOutcome::NoReader;
    JobEnd modeFault = JobEnd::NoMode; // of NoMode, as modeFault() has it
    QString driveError;                // of NoMode, in the system's words
    QString label;                     // of the reader's drive
    QString firmware;                  // the reader's name for itself
    QString error; // the line that says why no cartridge was recognised; empty if one was
    GbHeaderInfo gb;
    GbaHeaderInfo gba;
    QByteArray header; // the last kReportedBytes bytes read; zeros where nothing arrived
};

CartridgeReport makeCartridgeReport(const ReportOutput &output,
                                    const HeaderDecoders &decoders = {});

// True for a GBA cartridge whose game stands in no row of the table. The window's report cannot
// tell it from an empty slot; its header's title and code can still be shown.
bool isUnknownGbaGame(const CartridgeReport &report);
