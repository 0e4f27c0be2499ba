#include "cli/option_reader.h"

#include "cart/setting_tables.h"
#include "cli/command_table.h"
#include "cli/help_text.h"
#include "cli/manual.h"
#include "cli/shell_completion.h"

#include <QCommandLineParser>

namespace
{

constexpr int kMostReads = 9;
constexpr int kMostCartridges = 9999;

// The whole number `text`. Returns: 0 unless it is one from 1 to `most`.
int numberFrom(const QString &text, int most)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    const bool isPlain = isNumber && text == QString::number(number);
    return isPlain && number >= 1 && number <= most ? number : 0;
}

// Each function reads one thing. Returns: false with the reason in `problem`.
struct OptionReader {
    const QCommandLineParser &parser;
    const CommandRow &command;
    CliOptions options;
    QString problem;

    bool refuse(const QString &reason)
    {
        problem = reason;
        return false;
    }

    bool isSet(const OptionRow &row) const { return parser.isSet(QLatin1String(row.name)); }
    QString value(const OptionRow &row) const { return parser.value(QLatin1String(row.name)); }

    bool refuseValue(const OptionRow &row, const QString &reason)
    {
        return refuse(
            QStringLiteral("--%1 %2: %3.").arg(QLatin1String(row.name), value(row), reason));
    }

    bool readSize(const OptionRow &row, std::optional<int> *size)
    {
        if (!isSet(row))
            return true;
        int bytes = 0;
        if (!parseSize(value(row), &bytes))
            return refuseValue(row, QStringLiteral("not a size. Give bytes, or a number with "
                                                   "suffix K or M, up to 64M"));
        *size = bytes;
        return true;
    }

    bool readNumber(const OptionRow &row, int most, int *number)
    {
        if (!isSet(row))
            return true;
        *number = numberFrom(value(row), most);
        return *number != 0 ||
               refuseValue(row, QStringLiteral("not a number from 1 to %1").arg(most));
    }

    // The value of the row that the option names in `table`.
    template <typename Table>
    bool readChoice(const OptionRow &option, const Table &table, std::optional<int> *choice)
    {
        if (!isSet(option))
            return true;
        const int row = rowWithLabel(table, value(option).toStdString());
        if (row == kNoRow)
            return refuseValue(option, QStringLiteral("not one of %1").arg(choices(table)));
        *choice = table[static_cast<std::size_t>(row)].value;
        return true;
    }

    bool readSystem()
    {
        const QString system = value(kSystemOption).toLower();
        if (system == QLatin1String("gb"))
            options.values.system = kSystemGb;
        else if (system == QLatin1String("gba"))
            options.values.system = kSystemGba;
        else if (isSet(kSystemOption))
            return refuseValue(kSystemOption, QStringLiteral("not one of gb, gba"));
        return true;
    }

    bool readDrive()
    {
        if (!isSet(kDriveOption))
            return true;
        const QString letter = value(kDriveOption).toUpper();
        if (letter.size() != 1 || letter[0] < QLatin1Char('A') || letter[0] > QLatin1Char('Z'))
            return refuseValue(kDriveOption, QStringLiteral("not a drive letter from A to Z"));
        options.driveLetter = letter[0].toLatin1();
        return true;
    }

    bool readCartridge()
    {
        CartridgeValues &values = options.values;
        return readSystem() && readChoice(kMapperOption, kMappers, &values.mapper) &&
               readChoice(kSaveTypeOption, kGbaSaveTypes, &values.saveType) &&
               readSize(kRomSizeOption, &values.romSize) &&
               readSize(kRamSizeOption, &values.ramSize);
    }

    void readSwitches()
    {
        options.asJson = isSet(kJsonOption);
        options.isQuiet = isSet(kQuietOption);
        options.isQuick = isSet(kQuickOption);
        options.looks = !isSet(kNoAutoOption);
        options.verifies = !isSet(kNoVerifyOption);
        options.overwrites = isSet(kOverwriteOption);
        options.ignoresSize = isSet(kIgnoreSizeOption);
        options.ignoresContradiction = isSet(kIgnoreContradictionOption);
        options.ignoresBlank = isSet(kIgnoreBlankOption);
        options.makesBackup = !isSet(kNoBackupOption);
        options.allowsFiles = isSet(kAllowFilesOption);
    }

    // A value left out would take the option behind it: "--backup --json" is no folder.
    bool checkNamesOnDisk()
    {
        for (const OptionRow *row : command.options) {
            if (row->kind != ValueKind::File && row->kind != ValueKind::Folder)
                continue;
            for (const QString &name : parser.values(QLatin1String(row->name))) {
                if (name.isEmpty() || name.startsWith(QLatin1String("--")))
                    return refuse(QStringLiteral("Missing value after '--%1'.")
                                      .arg(QLatin1String(row->name)));
            }
        }
        options.datFiles = parser.values(QLatin1String(kDatOption.name));
        options.backupFolder = value(kBackupOption);
        return true;
    }

    bool checkOptions()
    {
        for (const OptionRow *row : allOptions()) {
            const QString name = QLatin1String(row->name);
            if (isSet(*row) && row != &kVersionOption && findOption(command, name) == nullptr)
                return refuse(
                    QStringLiteral("%1 has no option --%2.%3")
                        .arg(QLatin1String(command.name), name, nearOption(name, command.options)));
        }
        for (const OptionRow *row : command.options) {
            if (isSet(*row) && row->excludes != nullptr &&
                parser.isSet(QLatin1String(row->excludes)))
                return refuse(QStringLiteral("--%1 and --%2 contradict each other.")
                                  .arg(QLatin1String(row->name), QLatin1String(row->excludes)));
        }
        return true;
    }

    bool refuseCount(const QStringList &words)
    {
        const QString name = QLatin1String(command.name);
        switch (command.argument) {
        case ArgumentKind::None:
            return refuse(QStringLiteral("%1 takes no \"%2\".").arg(name, words[1]));
        case ArgumentKind::File:
            return refuse(QStringLiteral("%1 takes exactly one file name.").arg(name));
        case ArgumentKind::Folder:
            return refuse(QStringLiteral("%1 takes exactly one folder.").arg(name));
        case ArgumentKind::Shell:
        case ArgumentKind::Command:
            break;
        }
        return refuse(QStringLiteral("%1 takes one of %2.")
                          .arg(name, argumentChoices(command.argument).join(QStringLiteral(", "))));
    }

    // `words`: the command's name and what follows it.
    bool readArgument(const QStringList &words)
    {
        const int wanted = command.argument == ArgumentKind::None ? 1 : 2;
        const bool isOptional = command.argument == ArgumentKind::Command;
        if (words.size() != wanted && !(isOptional && words.size() == 1))
            return refuseCount(words);
        options.path = words.size() == 2 ? words[1] : QString();
        const QStringList possible = argumentChoices(command.argument);
        if (!possible.isEmpty() && !(isOptional && words.size() == 1) &&
            !possible.contains(options.path))
            return refuseCount(words);
        return true;
    }

    bool checkPath()
    {
        if (command.argument != ArgumentKind::File && command.argument != ArgumentKind::Folder)
            return true;
        if (options.path.isEmpty())
            return refuse(
                QStringLiteral("The name behind %1 is empty.").arg(QLatin1String(command.name)));
        if (options.path == QLatin1String("-"))
            return refuse(QStringLiteral("%1 needs the name of a file or folder: it cannot use "
                                         "standard input or output (\"-\").")
                              .arg(QLatin1String(command.name)));
        return true;
    }

    void chooseScriptKind()
    {
        const CartridgeValues &values = options.values;
        if (values.system == kSystemGba)
            options.scriptKind = QLatin1String(kGbaScript);
        else if (values.mapper)
            options.scriptKind = QString::fromLatin1(
                kMappers[static_cast<std::size_t>(rowWithValue(kMappers, *values.mapper))].script);
    }

    // Who forbids to look must say all that the job needs.
    bool checkJob()
    {
        const std::optional<CartridgeTask> task = taskOf(command.request);
        if (!task || options.looks)
            return true;
        CartridgeJob job;
        const MissingValue missing = makeJob(*task, options.values, &job);
        return missing == MissingValue::None || refuse(missingText(missing, options.values));
    }

    void makeText()
    {
        const QString argument = options.path;
        options.path.clear();
        if (command.argument == ArgumentKind::Shell)
            options.text = completionScript(argument);
        else if (command.argument == ArgumentKind::None)
            options.text = manualPage();
        else
            options.text =
                argument.isEmpty() ? overviewHelp() : commandHelp(*findCommand(argument));
    }

    bool read(const QStringList &words)
    {
        options.request = command.request;
        if (!checkOptions() || !readArgument(words) || !checkPath() || !readDrive() ||
            !readCartridge() || !checkNamesOnDisk() ||
            !readNumber(kReadsOption, kMostReads, &options.reads) ||
            !readNumber(kCountOption, kMostCartridges, &options.count))
            return false;
        readSwitches();
        if (command.request == CliRequest::CheckScript)
            chooseScriptKind();
        if (command.request == CliRequest::ShowText)
            makeText();
        return checkJob();
    }
};

} // namespace

bool readOptions(const QCommandLineParser &parser, const CommandRow &command, CliOptions *options,
                 QString *problem)
{
    OptionReader reader{parser, command, {}, {}};
    if (!reader.read(parser.positionalArguments())) {
        *problem = reader.problem;
        return false;
    }
    *options = reader.options;
    return true;
}
