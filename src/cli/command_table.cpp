#include "cli/command_table.h"

#include <algorithm>

namespace
{

using Code = ExitCode;

const std::vector<CommandRow> kCommands = {
    {"info",
     CliRequest::Info,
     ArgumentKind::None,
     "Say what the reader and its cartridge are.",
     {"Prints what is known of the cartridge and whether the checksums in its header are right. "
      "The global checksum of a GB cartridge covers the whole ROM, which is read for it."},
     {&kQuickOption, &kDriveOption, &kJsonOption, &kQuietOption, &kHelpOption},
     {{"info", "The reader, the cartridge and its checksums."},
      {"info --quick --json", "The same for a program, without reading the whole ROM."}},
     {Code::Done, Code::Usage, Code::NoReader, Code::NoAnswer, Code::NotRecognised,
      Code::TransferFailed, Code::FileError, Code::Cancelled, Code::InUse}},

    {"dump",
     CliRequest::Dump,
     ArgumentKind::File,
     "Copy the cartridge's ROM into FILE.",
     {"Looks at the cartridge, copies its ROM and says how far the copy can be trusted: verified "
      "(size and SHA-1 are those of a known dump), consistent (not known; every checksum is "
      "right and a second read is equal), unverified (a check was not made or does not exist), "
      "unstable (two reads differ) or suspicious (the bytes cannot be right).",
      "FILE gets its name when the copy is complete. A file that exists is kept unless "
      "--overwrite is given."},
     {&kSystemOption, &kMapperOption, &kRomSizeOption, &kAutoOption, &kNoAutoOption, &kReadsOption,
      &kNoVerifyOption, &kDatOption, &kOverwriteOption, &kIgnoreContradictionOption, &kDriveOption,
      &kJsonOption, &kQuietOption, &kHelpOption},
     {{"dump game.gb", "The cartridge says system, mapper and size itself."},
      {"dump game.gb --rom-size 4M", "The header's size is wrong; take this one."},
      {"dump game.gba --reads 3 --dat hacks.dat", "Three reads, and a DAT file of one's own."}},
     {Code::Done, Code::Usage, Code::NoReader, Code::NoAnswer, Code::NotRecognised,
      Code::TransferFailed, Code::FileError, Code::DataMismatch, Code::Refused, Code::Cancelled,
      Code::Unverified, Code::ScriptError, Code::InUse}},

    {"read-ram",
     CliRequest::ReadRam,
     ArgumentKind::File,
     "Copy the cartridge's save into FILE.",
     {"Looks at the cartridge and copies its save memory, twice: dirty contacts make reads that "
      "look good and differ from one another.",
      "FILE gets its name when the copy is complete. A file that exists is kept unless "
      "--overwrite is given."},
     {&kSystemOption, &kMapperOption, &kRamSizeOption, &kSaveTypeOption, &kAutoOption,
      &kNoAutoOption, &kSaveReadsOption, &kNoVerifyOption, &kOverwriteOption,
      &kIgnoreContradictionOption, &kDriveOption, &kJsonOption, &kQuietOption, &kHelpOption},
     {{"read-ram game.sav", "The cartridge says what save memory it has."},
      {"read-ram game.sav --save-type flash --ram-size 128K",
       "A GBA cartridge whose game is not known."}},
     {Code::Done, Code::Usage, Code::NoReader, Code::NoAnswer, Code::NotRecognised,
      Code::TransferFailed, Code::FileError, Code::DataMismatch, Code::Refused, Code::Cancelled,
      Code::Unverified, Code::ScriptError, Code::InUse}},

    {"write-ram",
     CliRequest::WriteRam,
     ArgumentKind::File,
     "Write the save in FILE into the cartridge.",
     {"Reads the old save twice into a dated backup file, writes FILE, reads it back and "
      "compares. If the two reads differ nothing is written. If the comparison fails, the bytes "
      "that differ and the backup file are named.",
      "FILE must have the size of the cartridge's save memory."},
     {&kSystemOption, &kMapperOption, &kRamSizeOption, &kSaveTypeOption, &kAutoOption,
      &kNoAutoOption, &kBackupOption, &kNoBackupOption, &kIgnoreSizeOption,
      &kIgnoreContradictionOption, &kIgnoreBlankOption, &kDriveOption, &kJsonOption, &kQuietOption,
      &kHelpOption},
     {{"write-ram game.sav", "Back up, write, compare."},
      {"write-ram game.sav --backup saves", "The backup goes into the folder \"saves\"."}},
     {Code::Done, Code::Usage, Code::NoReader, Code::NoAnswer, Code::NotRecognised,
      Code::TransferFailed, Code::FileError, Code::DataMismatch, Code::Refused, Code::Cancelled,
      Code::ScriptError, Code::InUse}},

    {"flash",
     CliRequest::Flash,
     ArgumentKind::File,
     "Write the ROM in FILE into a rewritable GB cartridge.",
     {"Reads what is in the cartridge twice into a dated backup file, erases the flash chip, "
      "writes FILE, reads it back and compares."},
     {&kSystemOption, &kMapperOption, &kBackupSizeOption, &kAutoOption, &kNoAutoOption,
      &kBackupOption, &kNoBackupOption, &kIgnoreSizeOption, &kIgnoreContradictionOption,
      &kDriveOption, &kJsonOption, &kQuietOption, &kHelpOption},
     {{"flash game.gb", "Back up, erase, write, compare."},
      {"flash game.gb --system gb --mapper mbc5", "An empty cartridge, which has no header."}},
     {Code::Done, Code::Usage, Code::NoReader, Code::NoAnswer, Code::NotRecognised,
      Code::TransferFailed, Code::FileError, Code::DataMismatch, Code::Refused, Code::Cancelled,
      Code::ScriptError, Code::InUse}},

    {"verify",
     CliRequest::Verify,
     ArgumentKind::File,
     "Say how far the dump in FILE can be trusted.",
     {"Needs no reader. The verdict is that of the command dump, but for the second read: a file "
      "that is no known dump is unverified at best."},
     {&kDatOption, &kJsonOption, &kQuietOption, &kHelpOption},
     {{"verify game.gb", "Is it a known dump?"},
      {"verify hack.gba --dat hacks.dat", "Look in a DAT file of one's own too."}},
     {Code::Done, Code::Usage, Code::FileError, Code::DataMismatch, Code::Unverified}},

    {"backup",
     CliRequest::Backup,
     ArgumentKind::Folder,
     "Copy a stack of cartridges into DIR, one after the other.",
     {"Waits for a cartridge, copies its ROM and its save under the game's title, writes a "
      "report beside them and asks for the next one. Ctrl-C ends it."},
     {&kDatOption, &kStackReadsOption, &kCountOption, &kDriveOption, &kJsonOption, &kQuietOption,
      &kHelpOption},
     {{"backup games", "Until Ctrl-C."}, {"backup games --count 10", "Ten cartridges."}},
     {Code::Done, Code::Usage, Code::NoReader, Code::NoAnswer, Code::NotRecognised,
      Code::TransferFailed, Code::FileError, Code::DataMismatch, Code::Refused, Code::Cancelled,
      Code::Unverified, Code::ScriptError, Code::InUse}},

    {"drives",
     CliRequest::Drives,
     ArgumentKind::None,
     "List the drives, and why each is or is not taken as a reader.",
     {"Looks at every drive that the program can see and sends nothing to any of them."},
     {&kJsonOption, &kQuietOption, &kHelpOption},
     {{"drives", "Why is my reader not found?"}},
     {Code::Done, Code::Usage, Code::NoReader}},

    {"scripts",
     CliRequest::Scripts,
     ArgumentKind::None,
     "List the mapper scripts and what each can do.",
     {"One line a script of the program's folder \"mapper\": the operations that it defines."},
     {&kJsonOption, &kQuietOption, &kHelpOption},
     {{"scripts", "Which cartridges can be written?"}},
     {Code::Done, Code::Usage, Code::FileError}},

    {"selftest",
     CliRequest::SelfTest,
     ArgumentKind::None,
     "Try the program itself on a virtual reader.",
     {"Runs a fixed set of jobs inside the program, without hardware, and prints a result to "
      "paste into a bug report."},
     {&kJsonOption, &kQuietOption, &kHelpOption},
     {{"selftest", "Does the program work on this machine?"}},
     {Code::Done, Code::Usage, Code::DataMismatch}},

    {"check-script",
     CliRequest::CheckScript,
     ArgumentKind::File,
     "Try the mapper script FILE on virtual cartridges.",
     {"Says for each operation what the script does with a virtual cartridge: bytes moved, and "
      "device operations beside the least possible. The file's name tells the kind of cartridge, "
      "unless an option does."},
     {&kSystemOption, &kMapperOption, &kAllowFilesOption, &kJsonOption, &kQuietOption,
      &kHelpOption},
     {{"check-script gb_mbc5.nut", "The name says which cartridges it is for."},
      {"check-script mine.nut --mapper mbc3", "The same for a name of one's own."}},
     {Code::Done, Code::Usage, Code::TransferFailed, Code::FileError, Code::DataMismatch,
      Code::ScriptError}},

    {"tidy",
     CliRequest::Tidy,
     ArgumentKind::Folder,
     "Remove what a program that was ended has left in DIR.",
     {"A file is written under a temporary name (*.gbdriver-N.part) until it is whole. Who kills "
      "the "
      "program leaves that behind. This removes such files, and names each; one that a running "
      "program uses stays."},
     {&kJsonOption, &kQuietOption, &kHelpOption},
     {{"tidy games", "The folder \"games\"."}},
     {Code::Done, Code::Usage, Code::FileError}},

    {"completion",
     CliRequest::ShowText,
     ArgumentKind::Shell,
     "Print what a shell needs to complete command lines.",
     {"For a shell that does not look where the program was installed."},
     {&kHelpOption},
     {{"completion bash >> ~/.bash_completion", "For bash with the package bash-completion."},
      {"completion zsh > ~/.zsh/_gbdriver-cli", "For zsh, if ~/.zsh is in its fpath."},
      {"completion fish > ~/.config/fish/completions/gbdriver-cli.fish", "For fish."}},
     {Code::Done, Code::Usage}},

    {"manual",
     CliRequest::ShowText,
     ArgumentKind::None,
     "Print the manual page.",
     {"In the form that the program man reads."},
     {&kHelpOption},
     {{"manual > gbdriver-cli.1", "Then: man -l gbdriver-cli.1"}},
     {Code::Done, Code::Usage}},

    {"help",
     CliRequest::ShowText,
     ArgumentKind::Command,
     "Show the help, or that of COMMAND.",
     {"The same as COMMAND --help."},
     {&kHelpOption},
     {{"help dump", "All about the command dump."}},
     {Code::Done, Code::Usage}},
};

} // namespace

const std::vector<CommandRow> &commandTable()
{
    return kCommands;
}

const CommandRow *findCommand(const QString &name)
{
    for (const CommandRow &row : kCommands) {
        if (name == QLatin1String(row.name))
            return &row;
    }
    return nullptr;
}

QStringList commandNames()
{
    QStringList names;
    for (const CommandRow &row : kCommands)
        names << QLatin1String(row.name);
    return names;
}

const char *commandName(CliRequest request)
{
    const auto row =
        std::find_if(kCommands.begin(), kCommands.end(),
                     [request](const CommandRow &command) { return command.request == request; });
    return row == kCommands.end() ? "" : row->name;
}

std::optional<CartridgeTask> taskOf(CliRequest request)
{
    switch (request) {
    case CliRequest::Dump:
        return CartridgeTask::Dump;
    case CliRequest::ReadRam:
        return CartridgeTask::ReadSave;
    case CliRequest::WriteRam:
        return CartridgeTask::WriteSave;
    case CliRequest::Flash:
        return CartridgeTask::Flash;
    default:
        return std::nullopt;
    }
}

const OptionRow *findOption(const CommandRow &command, const QString &name)
{
    for (const OptionRow *option : command.options) {
        if (name == QLatin1String(option->name))
            return option;
    }
    return nullptr;
}

std::vector<const OptionRow *> allOptions()
{
    std::vector<const OptionRow *> options;
    for (const CommandRow &row : kCommands) {
        for (const OptionRow *option : row.options) {
            if (std::find(options.begin(), options.end(), option) == options.end())
                options.push_back(option);
        }
    }
    options.push_back(&kVersionOption);
    return options;
}

std::vector<const OptionRow *> optionsByName()
{
    std::vector<const OptionRow *> options;
    QStringList names;
    for (const OptionRow *option : allOptions()) {
        if (names.contains(QLatin1String(option->name)))
            continue;
        names << QLatin1String(option->name);
        options.push_back(option);
    }
    return options;
}

QString commandUsage(const CommandRow &command)
{
    const QString name = QLatin1String(command.name);
    switch (command.argument) {
    case ArgumentKind::None:
        return name;
    case ArgumentKind::File:
        return name + QStringLiteral(" FILE");
    case ArgumentKind::Folder:
        return name + QStringLiteral(" DIR");
    case ArgumentKind::Shell:
        return name + QStringLiteral(" SHELL");
    case ArgumentKind::Command:
        return name + QStringLiteral(" [COMMAND]");
    }
    return name;
}

QStringList argumentChoices(ArgumentKind kind)
{
    if (kind == ArgumentKind::Shell)
        return {QStringLiteral("bash"), QStringLiteral("zsh"), QStringLiteral("fish")};
    return kind == ArgumentKind::Command ? commandNames() : QStringList();
}
