// The options of the headless program as data. Two rows may have one name where commands mean it
// differently; such rows take the same kind of value.
// Thread: constant data and pure functions; any thread.
#pragma once

#include "trust/cartridge_task.h"

#include <QString>
#include <QStringList>

#include <vector>

// What may follow an option.
enum class ValueKind { None, System, Mapper, SaveType, Size, Number, Letter, File, Folder };

struct OptionRow {
    const char *name; // without dashes
    ValueKind kind;
    const char *description;         // sentences; choices and default are added to them
    const char *otherwise = nullptr; // what happens without the option; null: the obvious
    const char *excludes = nullptr;  // name of the option that says the opposite; null: none
    char letter = 0;                 // the short form; 0: none
    bool isRepeatable = false;       // every value counts; else only the last one
};

inline constexpr OptionRow kHelpOption = {"help",  ValueKind::None, "Show this help.",
                                          nullptr, nullptr,         'h'};
inline constexpr OptionRow kVersionOption = {"version", ValueKind::None, "Show the version.",
                                             nullptr,   nullptr,         'v'};
inline constexpr OptionRow kJsonOption = {
    "json", ValueKind::None, "Print one JSON object a line on standard output.", nullptr, "quiet"};
inline constexpr OptionRow kQuietOption = {"quiet", ValueKind::None,
                                           "Print answers and errors only.", nullptr, "json"};
inline constexpr OptionRow kDriveOption = {
    "drive", ValueKind::Letter, "Look for the reader on this drive only.", "every removable drive"};
inline constexpr OptionRow kQuickOption = {
    "quick", ValueKind::None, "Leave out the global checksum, which needs the whole ROM."};

inline constexpr OptionRow kSystemOption = {"system", ValueKind::System,
                                            "The cartridge's system; gb is Game Boy Color too."};
inline constexpr OptionRow kMapperOption = {"mapper", ValueKind::Mapper,
                                            "The mapper of a GB cartridge."};
inline constexpr OptionRow kRomSizeOption = {"rom-size", ValueKind::Size, "The size of the ROM."};
inline constexpr OptionRow kBackupSizeOption = {"rom-size", ValueKind::Size,
                                                "How much of the cartridge to back up."};
inline constexpr OptionRow kRamSizeOption = {"ram-size", ValueKind::Size,
                                             "The size of the save memory."};
inline constexpr OptionRow kSaveTypeOption = {"save-type", ValueKind::SaveType,
                                              "The save memory of a GBA cartridge."};
inline constexpr OptionRow kAutoOption = {
    "auto", ValueKind::None,
    "Look at the cartridge first; a given value wins over what it says. This is the "
    "default.",
    nullptr, "no-auto"};
inline constexpr OptionRow kNoAutoOption = {"no-auto", ValueKind::None,
                                            "Do not look at the cartridge; take what is given.",
                                            nullptr, "auto"};

inline constexpr OptionRow kReadsOption = {
    "reads", ValueKind::Number, "Read the ROM N times, 1 to 9, and compare.",
    "a second read only where no known dump matches", "no-verify"};
inline constexpr OptionRow kSaveReadsOption = {
    "reads", ValueKind::Number, "Read the save N times, 1 to 9, and compare.", "2", "no-verify"};
inline constexpr OptionRow kStackReadsOption = {
    "reads", ValueKind::Number, "Read each ROM and save N times, 1 to 9, and compare.",
    "2 for a save; for a ROM a second read only where no known dump matches"};
inline constexpr OptionRow kNoVerifyOption = {
    "no-verify", ValueKind::None, "Read once and compare with nothing.", nullptr, "reads"};
inline constexpr OptionRow kDatOption = {
    "dat",   ValueKind::File, "Look for the dump in this DAT file too. May be given several times.",
    nullptr, nullptr,         0,
    true};
inline constexpr OptionRow kOverwriteOption = {"overwrite", ValueKind::None,
                                               "Replace the file if it exists."};
inline constexpr OptionRow kBackupOption = {
    "backup", ValueKind::Folder,
    "Keep what is in the cartridge in this folder before it is replaced.",
    "gbdriver/backups in the user's data folder", "no-backup"};
inline constexpr OptionRow kNoBackupOption = {
    "no-backup", ValueKind::None, "Write without a backup: what is in the cartridge is lost.",
    nullptr, "backup"};
inline constexpr OptionRow kIgnoreSizeOption = {
    "ignore-size", ValueKind::None, "Write a file whose size does not fit the cartridge."};
inline constexpr OptionRow kIgnoreContradictionOption = {
    "ignore-contradiction", ValueKind::None,
    "Go on although the cartridge contradicts the mapper, type or size that is given."};
inline constexpr OptionRow kIgnoreBlankOption = {
    "ignore-blank", ValueKind::None,
    "Replace a save whose bytes are all equal, although the cartridge does not name its save "
    "memory."};
// What a retired option is told to have become; such an option dropped all three checks at once.
inline constexpr char kRetiredForceOption[] = "force";
inline constexpr const OptionRow *kIgnoringOptions[] = {
    &kIgnoreSizeOption, &kIgnoreContradictionOption, &kIgnoreBlankOption};
inline constexpr OptionRow kAllowFilesOption = {
    "allow-files", ValueKind::None,
    "Let the script use files of this computer, as it could in a job. Read it first."};
inline constexpr OptionRow kCountOption = {"count", ValueKind::Number, "End after N cartridges.",
                                           "go on until Ctrl-C"};

// What a job lacks and with which option to give it: "Missing --mapper: one of none, mbc1."
// `values`: what is known. Returns: empty for None.
QString missingText(MissingValue missing, const CartridgeValues &values);

// "MAPPER", what stands for the value in a usage line. Returns: empty for a switch.
QString valueName(ValueKind kind);

// The values to choose from, as they are typed. Returns: empty where any value goes.
QStringList valueChoices(ValueKind kind);

// The rows of a settings table as a person types them: "none", "mbc1", "mbc2"
template <typename Table> QStringList choiceList(const Table &table)
{
    QStringList labels;
    for (const auto &row : table)
        labels << QString::fromLatin1(row.label).toLower();
    return labels;
}

// "none, mbc1, mbc2"
template <typename Table> QString choices(const Table &table)
{
    return choiceList(table).join(QStringLiteral(", "));
}

// "-h, --help", "--mapper MAPPER"
QString optionUsage(const OptionRow &option);

// The description with choices and default.
QString optionText(const OptionRow &option);

// What somebody may have meant by a word that is not known: the word of `words` that is closest to
// `typed`, or that `typed` is the beginning of; small and capital letters count as equal. Returns:
// empty if none is close.
QString nearWord(const QString &typed, const QStringList &words);

// " Did you mean --reads?". Returns: empty if none of `options` is close to `typed`.
QString nearOption(const QString &typed, const std::vector<const OptionRow *> &options);
