// Any words as a command line, for libFuzzer, separated by line breaks: what is accepted is
// complete, inside its bounds, without contradictions, and can be said again in one form; what is
// refused is told why.
#include "cart/setting_tables.h"
#include "cli/cli_options.h"
#include "cli/command_table.h"
#include "rule.h"

#include <QCoreApplication>

#include <cstdint>

namespace
{

constexpr int kMostWords = 40; // then nothing new comes
constexpr int kLargestSize = 64 * 1024 * 1024;

bool isSame(const CartridgeValues &a, const CartridgeValues &b)
{
    return a.system == b.system && a.mapper == b.mapper && a.romSize == b.romSize &&
           a.ramSize == b.ramSize && a.saveType == b.saveType;
}

bool isSame(const CliOptions &a, const CliOptions &b)
{
    return a.request == b.request && a.text == b.text && a.path == b.path &&
           isSame(a.values, b.values) && a.driveLetter == b.driveLetter && a.asJson == b.asJson &&
           a.isQuiet == b.isQuiet && a.isQuick == b.isQuick && a.looks == b.looks &&
           a.reads == b.reads && a.verifies == b.verifies && a.datFiles == b.datFiles &&
           a.overwrites == b.overwrites && a.ignoresSize == b.ignoresSize &&
           a.ignoresContradiction == b.ignoresContradiction && a.ignoresBlank == b.ignoresBlank &&
           a.makesBackup == b.makesBackup && a.backupFolder == b.backupFolder &&
           a.count == b.count && a.scriptKind == b.scriptKind && a.allowsFiles == b.allowsFiles;
}

bool isSize(const std::optional<int> &size)
{
    return !size || (*size >= 1 && *size <= kLargestSize);
}

const CommandRow &rowOf(CliRequest request)
{
    const CommandRow *row = findCommand(QLatin1String(commandName(request)));
    require(row != nullptr && row->request == request, "every request has a command");
    return *row;
}

void checkBounds(const CliOptions &options)
{
    const CommandRow &row = rowOf(options.request);
    const bool takesPath =
        row.argument == ArgumentKind::File || row.argument == ArgumentKind::Folder;
    require(takesPath != options.path.isEmpty(), "a path where the command takes one, only there");
    require(options.path != QLatin1String("-"), "the path is no standard stream");
    require(options.text.isEmpty(), "a job has no text");
    require(!(options.asJson && options.isQuiet), "output has one form");
    require(options.driveLetter == 0 || (options.driveLetter >= 'A' && options.driveLetter <= 'Z'),
            "a drive has a letter");
    require(options.reads >= 0 && options.reads <= 9, "one to nine reads, or the default");
    require(options.verifies || options.reads == 0, "one read that is counted, or several");
    require(options.count >= 0 && options.count <= 9999, "a stack has an end");
    require(options.makesBackup || options.backupFolder.isEmpty(), "no folder without a backup");
    require(isSize(options.values.romSize) && isSize(options.values.ramSize), "sizes can be held");
    require(!options.values.mapper || rowWithValue(kMappers, *options.values.mapper) != kNoRow,
            "the mapper is one of the settings'");
    require(!options.values.saveType ||
                rowWithValue(kGbaSaveTypes, *options.values.saveType) != kNoRow,
            "the save type is one of the settings'");
    for (const QString &name : options.datFiles)
        require(!name.isEmpty() && !name.startsWith(QLatin1String("--")), "a DAT file has a name");
    const std::optional<CartridgeTask> task = taskOf(options.request);
    CartridgeJob job;
    require(!task || options.looks || makeJob(*task, options.values, &job) == MissingValue::None,
            "a job that does not look has all that it needs");
}

void addValue(QStringList *words, const OptionRow &option, const QString &value)
{
    *words << QStringLiteral("--%1=%2").arg(QLatin1String(option.name), value);
}

void addSwitch(QStringList *words, const OptionRow &option, bool isSet)
{
    if (isSet)
        *words << QLatin1String("--") + QLatin1String(option.name);
}

void addNumber(QStringList *words, const OptionRow &option, int number)
{
    if (number != 0)
        addValue(words, option, QString::number(number));
}

void addSize(QStringList *words, const OptionRow &option, const std::optional<int> &size)
{
    if (size)
        addValue(words, option, QString::number(*size));
}

template <typename Table>
void addChoice(QStringList *words, const OptionRow &option, const Table &table,
               const std::optional<int> &value)
{
    if (value)
        addValue(words, option, labelOf(table, *value));
}

// A command line that asks for the same.
QStringList saidAgain(const CliOptions &options)
{
    const CartridgeValues &values = options.values;
    QStringList words = {QStringLiteral("gbdriver-cli"),
                         QLatin1String(commandName(options.request))};
    if (values.system)
        addValue(&words, kSystemOption, *values.system == kSystemGb ? "gb" : "gba");
    addChoice(&words, kMapperOption, kMappers, values.mapper);
    addChoice(&words, kSaveTypeOption, kGbaSaveTypes, values.saveType);
    addSize(&words, kRomSizeOption, values.romSize);
    addSize(&words, kRamSizeOption, values.ramSize);
    if (options.driveLetter != 0)
        addValue(&words, kDriveOption, QString(QLatin1Char(options.driveLetter)));
    addSwitch(&words, kJsonOption, options.asJson);
    addSwitch(&words, kQuietOption, options.isQuiet);
    addSwitch(&words, kQuickOption, options.isQuick);
    addSwitch(&words, kNoAutoOption, !options.looks);
    addNumber(&words, kReadsOption, options.reads);
    addSwitch(&words, kNoVerifyOption, !options.verifies);
    for (const QString &name : options.datFiles)
        addValue(&words, kDatOption, name);
    addSwitch(&words, kOverwriteOption, options.overwrites);
    addSwitch(&words, kIgnoreSizeOption, options.ignoresSize);
    addSwitch(&words, kIgnoreContradictionOption, options.ignoresContradiction);
    addSwitch(&words, kIgnoreBlankOption, options.ignoresBlank);
    addSwitch(&words, kNoBackupOption, !options.makesBackup);
    if (!options.backupFolder.isEmpty())
        addValue(&words, kBackupOption, options.backupFolder);
    addNumber(&words, kCountOption, options.count);
    addSwitch(&words, kAllowFilesOption, options.allowsFiles);
    if (!options.path.isEmpty())
        words << QStringLiteral("--") << options.path;
    return words;
}

bool isPlainAscii(const QString &text)
{
    for (const QChar letter : text) {
        if (letter != QLatin1Char('\n') && (letter < QLatin1Char(' ') || letter > QLatin1Char('~')))
            return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "gbdriver-cli";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv); // where scripts are found

    QStringList words =
        QString::fromUtf8(reinterpret_cast<const char *>(data),
                          static_cast<int>(qstrnlen(reinterpret_cast<const char *>(data),
                                                    static_cast<uint>(size))))
            .split(QLatin1Char('\n'))
            .mid(0, kMostWords);
    words.prepend(QStringLiteral("gbdriver-cli"));
    const CliOptions options = parseCliOptions(words);
    switch (options.request) {
    case CliRequest::Refuse:
        require(options.text.contains(QLatin1String("Nothing was read or written.\n")),
                "a refusal says that nothing has happened");
        require(options.text.endsWith(QLatin1Char('\n')), "a refusal ends with a line break");
        require(options.path.isEmpty() && options.datFiles.isEmpty(), "a refusal asks for nothing");
        break;
    case CliRequest::ShowText:
        require(options.text.endsWith(QLatin1Char('\n')), "a text ends with a line break");
        require(isPlainAscii(options.text), "a text is plain ASCII");
        break;
    default:
        checkBounds(options);
        require(isSame(options, parseCliOptions(saidAgain(options))),
                "what is asked can be said again");
    }
    return 0;
}
