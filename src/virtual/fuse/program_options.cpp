#include "virtual/fuse/program_options.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <system_error>

namespace
{

// Reads a whole number, decimal or with 0x. `*rest` becomes what follows it.
bool parseNumber(const std::string &text, std::uint64_t *value, std::string *rest)
{
    if (text.empty() || text[0] < '0' || text[0] > '9')
        return false;
    char *end = nullptr;
    errno = 0;
    *value = std::strtoull(text.c_str(), &end, 0);
    *rest = end;
    return errno == 0;
}

// Bytes, or with a suffix K or M kibibytes or mebibytes.
bool parseSize(const std::string &text, std::uint32_t *size)
{
    std::uint64_t value = 0;
    std::string suffix;
    if (!parseNumber(text, &value, &suffix) || value > std::numeric_limits<std::uint32_t>::max())
        return false;
    if (suffix == "K" || suffix == "k")
        value <<= 10;
    else if (suffix == "M" || suffix == "m")
        value <<= 20;
    else if (!suffix.empty())
        return false;
    *size = static_cast<std::uint32_t>(value);
    return value == *size;
}

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
    {"--type", "CODE", "its header type, for example 0x1B",
     [](T v, O o) { return parseType(v, &o->image.type); }},
    {"--rom-size", "SIZE", "its ROM size, for example 8M",
     [](T v, O o) { return parseSize(v, &o->image.romSize); }},
    {"--ram-size", "SIZE", "its RAM size, for example 32K",
     [](T v, O o) { return parseSize(v, &o->image.ramSize); }},
    {"--title", "TEXT", "its title", [](T v, O o) { return setText(v, &o->image.title); }},
    {"--seed", "NUMBER", "another number makes other contents",
     [](T v, O o) {
         std::string rest;
         return parseNumber(v, &o->image.seed, &rest) && rest.empty();
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
        const OptionRow *row = findOption(name);
        if (row == nullptr)
            return failed("unknown option " + name, error);
        if (row->value != nullptr && i + 1 == argc)
            return failed(name + " needs a value", error);
        const std::string value = row->value != nullptr ? argv[++i] : "";
        if (!row->apply(value, options))
            return failed(name + " " + value + ": not a " + row->value, error);
    }
    return checkTogether(*options, error);
}

std::string programUsage()
{
    constexpr std::size_t kColumn = 24;
    std::string text = "Usage: gbdriver-virtual-reader --mount DIR [--cart FILE] [options]\n"
                       "       gbdriver-virtual-reader --make-image FILE [options]\n\n";
    for (const OptionRow &row : kOptions) {
        std::string line = std::string("  ") + row.name;
        if (row.value != nullptr)
            line += std::string(" ") + row.value;
        line.resize(std::max(line.size() + 1, kColumn), ' ');
        text += line + row.help + "\n";
    }
    return text;
}
