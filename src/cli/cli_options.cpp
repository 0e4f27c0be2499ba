#include "cli/cli_options.h"

#include "cart/setting_tables.h"
#include "worker/famicom_thread.h"

#include <QCommandLineParser>

namespace
{

constexpr int kLargestSize = 64 * 1024 * 1024;

struct CommandRow {
    const char *name;
    int gbCode;
    int gbaCode;
    bool movesSave;
};

constexpr CommandRow kCommands[] = {
    {"dump", GB_READ_ROM, GBA_READ_ROM, false},
    {"read-ram", GB_READ_RAM, GBA_READ_RAM, true},
    {"write-ram", GB_WRITE_RAM, GBA_WRITE_RAM, true},
};

const QString kSystem = QStringLiteral("system");
const QString kMapper = QStringLiteral("mapper");
const QString kRomSize = QStringLiteral("rom-size");
const QString kRamSize = QStringLiteral("ram-size");
const QString kSaveType = QStringLiteral("save-type");
const QString kDrive = QStringLiteral("drive");

void describeCommandLine(QCommandLineParser *parser)
{
    parser->setApplicationDescription(QStringLiteral(
        "Reads and writes Game Boy, Game Boy Color and Game Boy Advance cartridges.\n\n"
        "Commands:\n"
        "  dump FILE       copy the cartridge's ROM into FILE\n"
        "  read-ram FILE   copy the cartridge's save into FILE\n"
        "  write-ram FILE  write the save in FILE into the cartridge\n\n"
        "Example:\n"
        "  gbdriver-cli dump game.gb --system gb --mapper mbc5 --rom-size 4M"));
    parser->addHelpOption();
    parser->addVersionOption();
    parser->addPositionalArgument(QStringLiteral("command"),
                                  QStringLiteral("dump, read-ram or write-ram."));
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
        {kDrive, QStringLiteral("Look for the reader on this drive only."),
         QStringLiteral("letter")},
    });
}

const CommandRow *findCommand(const QString &name)
{
    for (const CommandRow &row : kCommands) {
        if (name == QLatin1String(row.name))
            return &row;
    }
    return nullptr;
}

// Labels of a table for an error message: "none, mbc1, mbc2".
template <typename Table> QString choices(const Table &table)
{
    QStringList labels;
    for (const auto &row : table)
        labels << QString::fromLatin1(row.label).toLower();
    return labels.join(QStringLiteral(", "));
}

// Fills a CliJob from the options, one question after the other; the first one that has no good
// answer leaves its reason in `problem`.
struct JobReader {
    const QCommandLineParser &parser;
    const CommandRow &command;
    CliJob job;
    QString problem;

    bool refuse(const QString &reason)
    {
        problem = reason;
        return false;
    }

    bool readSize(const QString &option, int *size)
    {
        if (!parser.isSet(option))
            return refuse(QStringLiteral("Missing --%1: the size can not be guessed.").arg(option));
        if (parseSize(parser.value(option), size))
            return true;
        return refuse(QStringLiteral("--%1 %2: not a size. Give bytes, or a number with suffix K "
                                     "or M, up to 64M.")
                          .arg(option, parser.value(option)));
    }

    // The row that `option` names in `table`.
    template <typename Table> bool readChoice(const QString &option, const Table &table, int *row)
    {
        *row = rowWithLabel(table, parser.value(option).toStdString());
        if (*row != kNoRow)
            return true;
        if (!parser.isSet(option))
            return refuse(QStringLiteral("Missing --%1: one of %2.").arg(option, choices(table)));
        return refuse(QStringLiteral("--%1 %2: not one of %3.")
                          .arg(option, parser.value(option), choices(table)));
    }

    bool readDrive()
    {
        if (!parser.isSet(kDrive))
            return true;
        const QString letter = parser.value(kDrive).toUpper();
        if (letter.size() != 1 || letter[0] < QLatin1Char('A') || letter[0] > QLatin1Char('Z'))
            return refuse(QStringLiteral("--drive %1: not a drive letter from A to Z.")
                              .arg(parser.value(kDrive)));
        job.driveLetter = letter[0].toLatin1();
        return true;
    }

    bool readGb()
    {
        int mapper = kNoRow;
        if (!readChoice(kMapper, kMappers, &mapper))
            return false;
        job.operate = command.gbCode;
        job.scriptName = QString::fromLatin1(kMappers[static_cast<std::size_t>(mapper)].script);
        return command.movesSave ? readSize(kRamSize, &job.ramSize)
                                 : readSize(kRomSize, &job.romSize);
    }

    // Any other pair of type and size would silently be handled as SRAM.
    bool checkSaveSize()
    {
        const auto first = static_cast<std::size_t>(offeredSaveSizes(job.saveType));
        for (std::size_t row = first; row < first + kOfferedSaveSizes; ++row) {
            if (kGbaSaveSizes[row].value == job.ramSize)
                return true;
        }
        return refuse(QStringLiteral("--ram-size %1: a save of type %2 has %3 or %4 bytes.")
                          .arg(job.ramSize)
                          .arg(parser.value(kSaveType))
                          .arg(kGbaSaveSizes[first].value)
                          .arg(kGbaSaveSizes[first + 1].value));
    }

    bool readGba()
    {
        job.operate = command.gbaCode;
        job.scriptName = QStringLiteral("gba.nut");
        if (!command.movesSave)
            return readSize(kRomSize, &job.romSize);
        int saveType = kNoRow;
        if (!readChoice(kSaveType, kGbaSaveTypes, &saveType) || !readSize(kRamSize, &job.ramSize))
            return false;
        job.saveType = kGbaSaveTypes[static_cast<std::size_t>(saveType)].value;
        return checkSaveSize();
    }

    bool read()
    {
        const QString system = parser.value(kSystem).toLower();
        if (!readDrive())
            return false;
        if (system == QLatin1String("gb"))
            return readGb();
        if (system == QLatin1String("gba"))
            return readGba();
        return refuse(
            parser.isSet(kSystem)
                ? QStringLiteral("--system %1: not one of gb, gba.").arg(parser.value(kSystem))
                : QStringLiteral("Missing --system: one of gb, gba."));
    }
};

CliOptions refusal(const QString &reason)
{
    return {CliRequest::Refuse,
            reason +
                QStringLiteral("\nTry \"gbdriver-cli --help\". Nothing was read or written.\n"),
            {}};
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
    if (!isNumber || number < 1 || number > kLargestSize / unit)
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
    if (parser.isSet(QStringLiteral("help")))
        return {CliRequest::ShowText, parser.helpText(), {}};
    if (parser.isSet(QStringLiteral("version")))
        return {CliRequest::ShowText, QStringLiteral("gbdriver-cli " GBDRIVER_VERSION "\n"), {}};

    const QStringList words = parser.positionalArguments();
    if (words.isEmpty())
        return refusal(QStringLiteral("Missing command: dump, read-ram or write-ram."));
    const CommandRow *command = findCommand(words[0]);
    if (command == nullptr)
        return refusal(
            QStringLiteral("\"%1\" is no command: use dump, read-ram or write-ram.").arg(words[0]));
    if (words.size() != 2)
        return refusal(QStringLiteral("%1 takes exactly one file name.").arg(words[0]));

    JobReader reader{parser, *command, {}, {}};
    reader.job.fileName = words[1];
    if (!reader.read())
        return refusal(reader.problem);
    return {CliRequest::RunJob, {}, reader.job};
}
