#include "cli/cli_options.h"

#include "cart/setting_tables.h"
#include "cli/choices.h"
#include "cli/cli_command.h"

#include <QCommandLineParser>

#include <algorithm>

namespace
{

constexpr int kLargestSize = 64 * 1024 * 1024;

const QString kSystem = QStringLiteral("system");
const QString kMapper = QStringLiteral("mapper");
const QString kRomSize = QStringLiteral("rom-size");
const QString kRamSize = QStringLiteral("ram-size");
const QString kSaveType = QStringLiteral("save-type");
const QString kDrive = QStringLiteral("drive");
const QString kAuto = QStringLiteral("auto");
const QString kJson = QStringLiteral("json");
const QString kHelp = QStringLiteral("help");
const QString kQuick = QStringLiteral("quick");
const QString kCommandNames =
    QStringLiteral("info, dump, read-ram, write-ram, flash or check-script");

void describeCommandLine(QCommandLineParser *parser)
{
    parser->setApplicationDescription(QStringLiteral(
        "Reads and writes Game Boy, Game Boy Color and Game Boy Advance cartridges.\n\n"
        "Commands:\n"
        "  info            say what the reader and its cartridge are\n"
        "  dump FILE       copy the cartridge's ROM into FILE\n"
        "  read-ram FILE   copy the cartridge's save into FILE\n"
        "  write-ram FILE  write the save in FILE into the cartridge\n"
        "  flash FILE      write the ROM in FILE into a rewritable GB cartridge\n"
        "  check-script FILE  try a mapper script on virtual cartridges\n\n"
        "Without --system the cartridge is looked at first, and what its header says is used.\n"
        "An option that is given as well wins over the header.\n\n"
        "Examples:\n"
        "  gbdriver-cli dump game.gb\n"
        "  gbdriver-cli dump game.gb --system gb --mapper mbc5 --rom-size 4M"));
    parser->addOption({{QStringLiteral("h"), kHelp}, QStringLiteral("Show this help.")});
    parser->addVersionOption();
    parser->addPositionalArgument(QStringLiteral("command"), kCommandNames);
    parser->addPositionalArgument(QStringLiteral("file"),
                                  QStringLiteral("The file on this computer."));
    parser->addOptions({
        {kSystem, QStringLiteral("The cartridge's system: gb (Color too) or gba."),
         QStringLiteral("gb|gba")},
        {kMapper, QStringLiteral("GB mapper: none, mbc1, mbc2, mbc3, mbc5, mbc7 or tama5."),
         QStringLiteral("name")},
        {kRomSize, QStringLiteral("ROM size in bytes, or with suffix K or M."),
         QStringLiteral("size")},
        {kRamSize, QStringLiteral("Save size in bytes, or with suffix K or M."),
         QStringLiteral("size")},
        {kSaveType, QStringLiteral("GBA save memory: sram, flash or eep."), QStringLiteral("type")},
        {kAuto, QStringLiteral("Look at the cartridge first, also when --system is given.")},
        {kJson, QStringLiteral("info: print one JSON object.")},
        {kQuick, QStringLiteral("info: leave out the global checksum, which needs the whole ROM.")},
        {kDrive, QStringLiteral("Look for the reader on this drive only."),
         QStringLiteral("letter")},
    });
}

// Reads the options one after the other; the first one without a good answer leaves its reason in
// `problem`.
struct OptionReader {
    const QCommandLineParser &parser;
    CliOptions options;
    QString problem;

    bool refuse(const QString &reason)
    {
        problem = reason;
        return false;
    }

    bool readSize(const QString &option, std::optional<int> *size)
    {
        if (!parser.isSet(option))
            return true;
        int bytes = 0;
        if (!parseSize(parser.value(option), &bytes))
            return refuse(QStringLiteral("--%1 %2: not a size. Give bytes, or a number with suffix "
                                         "K or M, up to 64M.")
                              .arg(option, parser.value(option)));
        *size = bytes;
        return true;
    }

    // The value of the row that `option` names in `table`.
    template <typename Table>
    bool readChoice(const QString &option, const Table &table, std::optional<int> *value)
    {
        if (!parser.isSet(option))
            return true;
        const int row = rowWithLabel(table, parser.value(option).toStdString());
        if (row == kNoRow)
            return refuse(QStringLiteral("--%1 %2: not one of %3.")
                              .arg(option, parser.value(option), choices(table)));
        *value = table[static_cast<std::size_t>(row)].value;
        return true;
    }

    bool readSystem()
    {
        const QString system = parser.value(kSystem).toLower();
        if (system == QLatin1String("gb"))
            options.values.system = kSystemGb;
        else if (system == QLatin1String("gba"))
            options.values.system = kSystemGba;
        else if (parser.isSet(kSystem))
            return refuse(
                QStringLiteral("--system %1: not one of gb, gba.").arg(parser.value(kSystem)));
        return true;
    }

    bool readDrive()
    {
        if (!parser.isSet(kDrive))
            return true;
        const QString letter = parser.value(kDrive).toUpper();
        if (letter.size() != 1 || letter[0] < QLatin1Char('A') || letter[0] > QLatin1Char('Z'))
            return refuse(QStringLiteral("--drive %1: not a drive letter from A to Z.")
                              .arg(parser.value(kDrive)));
        options.driveLetter = letter[0].toLatin1();
        return true;
    }

    bool readValues()
    {
        CartridgeValues &values = options.values;
        options.asJson = parser.isSet(kJson);
        options.isQuick = parser.isSet(kQuick);
        return readDrive() && readSystem() && readChoice(kMapper, kMappers, &values.mapper) &&
               readChoice(kSaveType, kGbaSaveTypes, &values.saveType) &&
               readSize(kRomSize, &values.romSize) && readSize(kRamSize, &values.ramSize);
    }

    bool readInfo(const QStringList &words)
    {
        if (words.size() != 1)
            return refuse(QStringLiteral("info takes no file name."));
        options.request = CliRequest::ShowInfo;
        return readValues();
    }

    bool readCheckScript(const QStringList &words)
    {
        if (words.size() != 2)
            return refuse(QStringLiteral("check-script takes exactly one file name."));
        options.request = CliRequest::CheckScript;
        options.fileName = words[1];
        if (!readValues())
            return false;
        const CartridgeValues &values = options.values;
        if (values.system == kSystemGba)
            options.scriptKind = kGbaScript;
        else if (values.mapper)
            options.scriptKind = QString::fromLatin1(
                kMappers[static_cast<std::size_t>(rowWithValue(kMappers, *values.mapper))].script);
        return true;
    }

    bool readJob(const QStringList &words)
    {
        options.command = findCliCommand(words[0]);
        if (options.command == nullptr)
            return refuse(
                QStringLiteral("\"%1\" is no command: use %2.").arg(words[0], kCommandNames));
        if (words.size() != 2)
            return refuse(QStringLiteral("%1 takes exactly one file name.").arg(words[0]));
        options.fileName = words[1];
        if (!readValues())
            return false;
        if (parser.isSet(kAuto) || !options.values.system) {
            options.request = CliRequest::DetectThenRun;
            return true;
        }
        options.request = CliRequest::RunJob;
        return completeJob(*options.command, options.fileName, options.values, &options.job,
                           &problem);
    }

    bool read(const QStringList &words)
    {
        if (words.isEmpty())
            return refuse(QStringLiteral("Missing command: %1.").arg(kCommandNames));
        if (words[0] == QLatin1String("info"))
            return readInfo(words);
        return words[0] == QLatin1String("check-script") ? readCheckScript(words) : readJob(words);
    }
};

// Neither signs nor blanks, which a conversion would let pass.
bool isDigitsOnly(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar character) {
        return character >= QLatin1Char('0') && character <= QLatin1Char('9');
    });
}

CliOptions answer(CliRequest request, const QString &text)
{
    CliOptions options;
    options.request = request;
    options.text = text;
    return options;
}

// Every refusal says where to read on, and that nothing has happened.
CliOptions refusal(const QString &reason)
{
    return answer(CliRequest::Refuse,
                  reason + QStringLiteral("\nTry \"gbdriver-cli --help\". Nothing was read or "
                                          "written.\n"));
}

} // namespace

bool parseSize(const QString &text, int *sizeBytes)
{
    qlonglong unit = 1;
    QString digits = text;
    if (digits.endsWith(QLatin1Char('K'), Qt::CaseInsensitive))
        unit = 1024;
    else if (digits.endsWith(QLatin1Char('M'), Qt::CaseInsensitive))
        unit = 1024 * 1024;
    if (unit != 1)
        digits.chop(1);
    bool isNumber = false;
    const qlonglong number = digits.toLongLong(&isNumber);
    if (!isNumber || !isDigitsOnly(digits) || number < 1 || number > kLargestSize / unit)
        return false;
    *sizeBytes = static_cast<int>(number * unit);
    return true;
}

CliOptions parseCliOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    describeCommandLine(&parser);
    if (!parser.parse(arguments))
        return refusal(parser.errorText());
    if (parser.isSet(kHelp))
        return answer(CliRequest::ShowText, parser.helpText());
    if (parser.isSet(QStringLiteral("version")))
        return answer(CliRequest::ShowText, QStringLiteral("gbdriver-cli " GBDRIVER_VERSION "\n"));

    OptionReader reader{parser, {}, {}};
    if (!reader.read(parser.positionalArguments()))
        return refusal(reader.problem);
    return reader.options;
}
