#include "virtual/fuse/program_options.h"

#include "virtual/option_values.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>

namespace virtual_reader
{

namespace
{

const std::string kDashes = "--";

bool parseType(const std::string &text, std::uint8_t *type)
{
    std::uint64_t value = 0;
    std::string rest;
    if (!parseNumber(text, &value, &rest) || !rest.empty() || value > 0xFF)
        return false;
    *type = static_cast<std::uint8_t>(value);
    return true;
}

bool setPath(const std::string &text, std::string *path)
{
    std::error_code code;
    *path = std::filesystem::absolute(text, code).string();
    return !text.empty() && !code;
}

bool setText(const std::string &text, std::string *target)
{
    *target = text;
    return true;
}

struct OptionRow {
    const char *name;
    const char *value; // its name in the help; null: the option takes none
    const char *help;
    // False if the value cannot be used.
    bool (*apply)(const std::string &value, ProgramOptions *options);
};

using T = const std::string &;
using O = ProgramOptions *;

// In the order of the help text.
const OptionRow kOptions[] = {
    {"--mount", "DIR", "folder to mount the reader's drive on",
     [](T v, O o) { return setPath(v, &o->mount.mountPoint); }},
    {"--cart", "FILE", "cartridge image; without it the slot is empty",
     [](T v, O o) { return setPath(v, &o->setup.cartPath); }},
    {"--demo", nullptr, "insert a generated cartridge instead",
     [](T, O o) { return o->setup.demo = true; }},
    {"--save", "FILE", "file that keeps the cartridge's save memory",
     [](T v, O o) { return setPath(v, &o->setup.savePath); }},
    {"--label", "TEXT", "name of the drive in the list of mounts",
     [](T v, O o) { return setText(v, &o->mount.label); }},
    {"--identity", "TEXT", "identity of the reader, up to 16 bytes",
     [](T v, O o) { return setText(v, &o->setup.config.identity); }},
    {"--strict-sectors", nullptr, "refuse unbuffered reads of anything but whole sectors",
     [](T, O o) { return o->setup.config.strictSectors = true; }},
    {"--fail-command", "NUMBER", "let this command file fail and do nothing, counted from 1",
     [](T v, O o) { return parseCount(v, &o->setup.config.fault.failedCommand); }},
    {"--pull-out", "NUMBER", "at this command file the reader is gone, as if pulled out",
     [](T v, O o) { return parseCount(v, &o->setup.config.fault.pulledAt); }},
    {"--timing", "MODEL",
     "take the time of a reader: full-speed, or BYTES:MICROSECONDS (per second, "
     "per transfer)",
     [](T v, O o) { return parseTiming(v, &o->setup.config.timing); }},
    {"--log", "FILE", "write one JSON object a line for every operation",
     [](T v, O o) { return setPath(v, &o->logPath); }},
    {"--foreground", nullptr, "stay in the foreground (the default)",
     [](T, O o) {
         o->mount.background = false;
         return true;
     }},
    {"--background", nullptr, "go to the background when the mount stands",
     [](T, O o) { return o->mount.background = true; }},
    {"--make-image", "FILE", "write a generated cartridge image and exit",
     [](T v, O o) { return setPath(v, &o->imagePath); }},
    {"--type", "CODE", "its header type if it is for GB, for example 0x1B",
     [](T v, O o) { return parseType(v, &o->image.type); }},
    {"--code", "TEXT", "its game code if it is for GBA, for example AWRP",
     [](T v, O o) { return setText(v, &o->gbaImage.code); }},
    {"--rom-size", "SIZE", "its ROM size, for example 8M",
     [](T v, O o) {
         return parseSize(v, &o->image.romSize) && parseSize(v, &o->gbaImage.romSize);
     }},
    {"--ram-size", "SIZE", "its RAM size if it is for GB, for example 32K",
     [](T v, O o) { return parseSize(v, &o->image.ramSize); }},
    {"--title", "TEXT", "its title",
     [](T v, O o) { return setText(v, &o->image.title) && setText(v, &o->gbaImage.title); }},
    {"--seed", "NUMBER", "another number makes other contents",
     [](T v, O o) {
         std::string rest;
         const bool ok = parseNumber(v, &o->image.seed, &rest) && rest.empty();
         o->gbaImage.seed = o->image.seed;
         return ok;
     }},
    {"--help", nullptr, "this text", [](T, O o) { return o->help = true; }},
};

const OptionRow *findOption(const std::string &name)
{
    for (const OptionRow &row : kOptions) {
        if (name == row.name)
            return &row;
    }
    return nullptr;
}

const CartridgeOptionRow *findOptionOfCartridge(const std::string &name)
{
    return name.compare(0, kDashes.size(), kDashes) == 0
               ? findCartridgeOption(name.substr(kDashes.size()))
               : nullptr;
}

// `*valueName`: null if the option takes none. Returns: false if there is no such option.
bool findValueName(const std::string &name, const char **valueName)
{
    const OptionRow *row = findOption(name);
    const CartridgeOptionRow *cartridgeRow = findOptionOfCartridge(name);
    if (row != nullptr)
        *valueName = row->value;
    else if (cartridgeRow != nullptr)
        *valueName = cartridgeRow->value;
    return row != nullptr || cartridgeRow != nullptr;
}

bool applyOption(const std::string &name, const std::string &value, ProgramOptions *options)
{
    const OptionRow *row = findOption(name);
    return row != nullptr ? row->apply(value, options)
                          : findOptionOfCartridge(name)->apply(value, &options->setup.cartridge);
}

std::string usageLine(const std::string &name, const char *value, const char *help)
{
    constexpr std::size_t kColumn = 24;
    std::string line = "  " + name;
    if (value != nullptr)
        line += std::string(" ") + value;
    line.resize(std::max(line.size() + 1, kColumn), ' ');
    return line + help + "\n";
}

bool failed(const std::string &reason, std::string *error)
{
    *error = reason;
    return false;
}

bool checkTogether(const ProgramOptions &options, std::string *error)
{
    if (options.help)
        return true;
    if (options.mount.mountPoint.empty() == options.imagePath.empty())
        return failed("either --mount or --make-image must be given", error);
    if (options.setup.demo && !options.setup.cartPath.empty())
        return failed("--demo and --cart exclude each other", error);
    return true;
}

} // namespace

bool parseProgramOptions(int argc, const char *const *argv, ProgramOptions *options,
                         std::string *error)
{
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        const char *valueName = nullptr;
        if (!findValueName(name, &valueName))
            return failed("unknown option " + name, error);
        if (valueName != nullptr && i + 1 == argc)
            return failed(name + " needs a value", error);
        const std::string value = valueName != nullptr ? argv[++i] : "";
        if (!applyOption(name, value, options))
            return failed(name + " " + value + ": not a " + valueName, error);
    }
    return checkTogether(*options, error);
}

std::string programUsage()
{
    std::string text = "Usage: gbdriver-virtual-reader --mount DIR [--cart FILE] [options]\n"
                       "       gbdriver-virtual-reader --make-image FILE [options]\n\n";
    for (const OptionRow &row : kOptions)
        text += usageLine(row.name, row.value, row.help);
    text +=
        "\nOptions of the cartridge; an image for GBA takes its system and save type from them:\n";
    for (const CartridgeOptionRow &row : cartridgeOptionRows())
        text += usageLine(kDashes + std::string(row.name), row.value, row.help);
    return text;
}

} // namespace virtual_reader
