// The command line: what every option means, and what is refused.
#include "cli/cli_options.h"

#include "cart/setting_tables.h"
#include "cli/command_table.h"
#include "test_class.h"

#include <QFileInfo>
#include <QtTest>

Q_DECLARE_METATYPE(CliRequest)

namespace
{

constexpr int kKiB = 1024;
constexpr int kMiB = 1024 * 1024;

CliOptions parse(const QString &words)
{
    return parseCliOptions(QString("gbdriver-cli " + words).simplified().split(' '));
}

// "system mapper romSize ramSize saveType", a dash for what is not said.
QString valuesText(const CartridgeValues &values)
{
    QStringList texts;
    for (const std::optional<int> &value :
         {values.system, values.mapper, values.romSize, values.ramSize, values.saveType})
        texts << (value ? QString::number(*value) : "-");
    return texts.join(' ');
}

// A word that the option takes, with a blank before it.
QString someValue(const OptionRow &option)
{
    const QStringList choices = valueChoices(option.kind);
    if (!choices.isEmpty())
        return ' ' + choices.last();
    switch (option.kind) {
    case ValueKind::None:
        return {};
    case ValueKind::Letter:
        return " K";
    case ValueKind::Size:
        return " 8K";
    default:
        return " 3";
    }
}

// The command with its argument.
QString someLine(const CommandRow &row)
{
    switch (row.argument) {
    case ArgumentKind::File:
    case ArgumentKind::Folder:
        return row.name + QString(" f");
    case ArgumentKind::Shell:
        return row.name + QString(" bash");
    case ArgumentKind::None:
    case ArgumentKind::Command:
        break;
    }
    return row.name;
}

} // namespace

class CliOptionsTest : public QObject
{
    Q_OBJECT

private slots:
    void sizes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("bytes");
        QTest::newRow("one byte") << "1" << 1;
        QTest::newRow("bytes") << "32768" << 32768;
        QTest::newRow("K") << "32K" << 32 * kKiB;
        QTest::newRow("small k") << "512k" << 512 * kKiB;
        QTest::newRow("M") << "8M" << 8 * kMiB;
        QTest::newRow("small m") << "1m" << kMiB;
        QTest::newRow("largest in bytes") << "67108864" << 64 * kMiB;
        QTest::newRow("largest in K") << "65536K" << 64 * kMiB;
        QTest::newRow("largest in M") << "64M" << 64 * kMiB;
        QTest::newRow("leading zeros") << "0010K" << 10 * kKiB;
    }
    void sizes()
    {
        QFETCH(QString, text);
        int bytes = 0;
        QVERIFY(parseSize(text, &bytes));
        QTEST(bytes, "bytes");
    }

    void refusedSizes_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text : {"",
                                 "0",
                                 "0K",
                                 "0M",
                                 "-1",
                                 "-1K",
                                 "+1",
                                 "+1M",
                                 " 1",
                                 "1 K",
                                 "1 ",
                                 "K",
                                 "M",
                                 "KM",
                                 "1KK",
                                 "1MK",
                                 "1G",
                                 "1.5M",
                                 "1,5M",
                                 "0x8000",
                                 "1e6",
                                 "abc",
                                 "1Mbit",
                                 "67108865",
                                 "65537K",
                                 "65M",
                                 "2147483648",
                                 "4294967296",
                                 "4294967297K",
                                 "9223372036854775807",
                                 "9223372036854775807M",
                                 "9223372036854775808",
                                 "99999999999999999999K"})
            QTest::newRow(*text == '\0' ? "nothing" : text) << text;
    }
    void refusedSizes()
    {
        QFETCH(QString, text);
        int bytes = 1234;
        QVERIFY(!parseSize(text, &bytes));
        QCOMPARE(bytes, 1234);
    }

    void commands_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<CliRequest>("request");
        QTest::addColumn<QString>("path");
        const auto add = [](const char *words, CliRequest request, const char *path) {
            QTest::newRow(words) << words << request << path;
        };
        add("info", CliRequest::Info, "");
        add("dump f", CliRequest::Dump, "f");
        add("read-ram f", CliRequest::ReadRam, "f");
        add("write-ram f", CliRequest::WriteRam, "f");
        add("flash f", CliRequest::Flash, "f");
        add("verify f", CliRequest::Verify, "f");
        add("backup d", CliRequest::Backup, "d");
        add("drives", CliRequest::Drives, "");
        add("scripts", CliRequest::Scripts, "");
        add("selftest", CliRequest::SelfTest, "");
        add("check-script f.nut", CliRequest::CheckScript, "f.nut");
        add("--quiet info", CliRequest::Info, "");
        add("--drive e --json dump f", CliRequest::Dump, "f");
        add("dump --system=gb f --mapper=none", CliRequest::Dump, "f");
    }
    void commands()
    {
        QFETCH(QString, words);
        const CliOptions options = parse(words);
        QVERIFY2(options.text.isEmpty(), qPrintable(options.text));
        QTEST(options.request, "request");
        QTEST(options.path, "path");
    }

    // The table and the parser agree on every pair of command and option.
    void commandsTakeTheirOptionsOnly_data()
    {
        QTest::addColumn<QString>("command");
        for (const CommandRow &row : commandTable())
            QTest::newRow(row.name) << row.name;
    }
    void commandsTakeTheirOptionsOnly()
    {
        QFETCH(QString, command);
        const CommandRow *row = findCommand(command);
        QVERIFY(row != nullptr);
        QVERIFY(parse(someLine(*row)).request == row->request);
        for (const OptionRow *option : optionsByName()) {
            if (option == &kVersionOption || option == &kNoAutoOption)
                continue; // one asks for a text, the other for more options; tests of their own
            const QString words = someLine(*row) + " --" + option->name + someValue(*option);
            const CliOptions options = parse(words);
            if (findOption(*row, option->name) != nullptr) {
                const bool asksForHelp = option == &kHelpOption;
                QVERIFY2(options.request == (asksForHelp ? CliRequest::ShowText : row->request),
                         qPrintable(words + ": " + options.text));
            } else {
                const QString reason = QString("%1 has no option --%2.").arg(command, option->name);
                QVERIFY2(options.request == CliRequest::Refuse, qPrintable(words));
                QVERIFY2(options.text.startsWith(reason), qPrintable(options.text));
            }
        }
    }

    void jobsHaveTheirTasks_data()
    {
        QTest::addColumn<int>("gbCode");
        QTest::addColumn<int>("gbaCode");
        QTest::newRow("dump") << static_cast<int>(GB_READ_ROM) << static_cast<int>(GBA_READ_ROM);
        QTest::newRow("read-ram") << static_cast<int>(GB_READ_RAM)
                                  << static_cast<int>(GBA_READ_RAM);
        QTest::newRow("write-ram")
            << static_cast<int>(GB_WRITE_RAM) << static_cast<int>(GBA_WRITE_RAM);
        QTest::newRow("flash") << static_cast<int>(GB_WRITE_FLASH)
                               << static_cast<int>(GBA_WRITE_FLASH);
    }
    void jobsHaveTheirTasks()
    {
        const CliOptions options = parse(QTest::currentDataTag() + QString(" f"));
        QCOMPARE(QString(commandName(options.request)), QString(QTest::currentDataTag()));
        const std::optional<CartridgeTask> task = taskOf(options.request);
        QVERIFY(task.has_value());
        CartridgeJob job;
        const CartridgeValues gb = {kSystemGb, 0, 32 * kKiB, 8 * kKiB, {}};
        QVERIFY(makeJob(*task, gb, &job) == MissingValue::None);
        QTEST(job.operate, "gbCode");
        const CartridgeValues gba = {kSystemGba, {}, 32 * kKiB, 32 * kKiB, kSaveSram};
        QVERIFY(makeJob(*task, gba, &job) == MissingValue::None);
        QTEST(job.operate, "gbaCode");
    }

    void otherCommandsHaveNoJob()
    {
        for (const char *words : {"info", "verify f", "backup d", "drives", "check-script f"})
            QVERIFY2(!taskOf(parse(words).request), words);
    }

    void defaults()
    {
        const CliOptions options = parse("dump f");
        QCOMPARE(valuesText(options.values), QString("- - - - -"));
        QCOMPARE(options.driveLetter, '\0');
        QVERIFY(options.looks && options.verifies && options.makesBackup);
        QVERIFY(!options.asJson && !options.isQuiet && !options.isQuick);
        QVERIFY(!options.overwrites && !options.ignoresSize);
        QVERIFY(!options.ignoresContradiction && !options.ignoresBlank);
        QCOMPARE(options.reads, 0);
        QCOMPARE(options.count, 0);
        QVERIFY(options.datFiles.isEmpty() && options.backupFolder.isEmpty());
        QVERIFY(options.scriptKind.isEmpty() && options.text.isEmpty());
    }

    void valuesOfTheCartridge_data()
    {
        QTest::addColumn<QString>("values");
        const auto add = [](const char *words, const char *values) {
            QTest::newRow(words) << values;
        };
        add("dump f --system gb", "0 - - - -");
        add("dump f --system GBA", "1 - - - -");
        add("dump f --mapper mbc1", "- 1 - - -");
        add("dump f --mapper NONE --rom-size 64k", "- 0 65536 - -");
        add("read-ram f --save-type sram", "- - - - 0");
        add("read-ram f --save-type FLASH --ram-size 128K", "- - - 131072 1");
        add("write-ram f --system gba --save-type eep --ram-size 512", "1 - - 512 2");
        add("flash f --rom-size 8M --mapper mbc5 --auto", "- 4 8388608 - -");
        add("check-script f --mapper tama5", "- 6 - - -");
    }
    void valuesOfTheCartridge()
    {
        const CliOptions options = parse(QTest::currentDataTag());
        QVERIFY2(options.text.isEmpty(), qPrintable(options.text));
        QTEST(valuesText(options.values), "values");
        QVERIFY(options.looks);
    }

    void switches()
    {
        QVERIFY(parse("info --json").asJson);
        QVERIFY(parse("info --quiet").isQuiet);
        QVERIFY(parse("info --quick").isQuick);
        QVERIFY(parse("check-script x.nut --allow-files").allowsFiles);
        QVERIFY(!parse("check-script x.nut").allowsFiles);
        QVERIFY(!parse("dump f --no-verify").verifies);
        QVERIFY(parse("dump f --overwrite").overwrites);
        QVERIFY(parse("write-ram f --no-backup --ignore-size").ignoresSize);
        QVERIFY(parse("dump f --ignore-contradiction").ignoresContradiction);
        QVERIFY(parse("write-ram f --ignore-blank").ignoresBlank);
        QVERIFY(!parse("write-ram f --no-backup").makesBackup);
        QVERIFY(parse("flash f --auto").looks);
    }

    // It dropped three checks at once, and so lost a save that only one of them was in the way of.
    void forceNamesTheThreeItWas_data()
    {
        QTest::addColumn<QString>("words");
        for (const char *words : {"write-ram f --force", "flash --force f", "dump f --force",
                                  "--force", "write-ram f --ignore-size --force=1"})
            QTest::newRow(words) << words;
    }
    void forceNamesTheThreeItWas()
    {
        QFETCH(QString, words);
        const CliOptions options = parse(words);
        QVERIFY(options.request == CliRequest::Refuse);
        for (const char *part :
             {"no option --force any more", "\n  --ignore-size: ", "\n  --ignore-contradiction: ",
              "\n  --ignore-blank: ", "Nothing was read or written."})
            QVERIFY2(options.text.contains(part), qPrintable(options.text));
    }

    // Each check has its option where it is made, and nowhere else.
    void checksAreIgnoredWhereTheyAreMade_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QStringList>("options");
        const QString size = "ignore-size";
        const QString contradiction = "ignore-contradiction";
        QTest::newRow("dump") << "dump" << QStringList{contradiction};
        QTest::newRow("read-ram") << "read-ram" << QStringList{contradiction};
        QTest::newRow("write-ram")
            << "write-ram" << QStringList{size, contradiction, "ignore-blank"};
        QTest::newRow("flash") << "flash" << QStringList{size, contradiction};
        QTest::newRow("verify") << "verify" << QStringList{};
    }
    void checksAreIgnoredWhereTheyAreMade()
    {
        QFETCH(QString, command);
        QFETCH(QStringList, options);
        for (const char *option : {"ignore-size", "ignore-contradiction", "ignore-blank"}) {
            const CliOptions parsed = parse(QString("%1 f --%2").arg(command, option));
            QCOMPARE(parsed.request != CliRequest::Refuse, options.contains(option));
        }
    }

    void optionsWithValues()
    {
        QCOMPARE(parse("dump f --reads 9").reads, 9);
        QCOMPARE(parse("backup d --count 12").count, 12);
        QCOMPARE(parse("write-ram f --backup saves").backupFolder, QString("saves"));
        QVERIFY(parse("write-ram f --backup saves").makesBackup);
        QCOMPARE(parse("verify f --dat a --dat=b").datFiles, QStringList({"a", "b"}));
        QCOMPARE(parse("dump f --mapper mbc1 --mapper mbc2").values.mapper.value_or(-1), 2);
    }

    // Without a look at the cartridge all that the job needs has to be said.
    void jobsWithoutALookAreComplete_data()
    {
        QTest::addColumn<QString>("reason"); // empty: complete
        const auto add = [](const char *words, const char *reason) {
            QTest::newRow(words) << reason;
        };
        add("dump f --no-auto --system gb --mapper mbc5 --rom-size 8M", "");
        add("dump f --no-auto --system gba --rom-size 64M", "");
        add("read-ram f --no-auto --system gb --mapper mbc5 --ram-size 512", "");
        add("read-ram f --no-auto --system gba --save-type eep --ram-size 8K", "");
        add("flash f --no-auto --system gb --mapper mbc5", "");
        add("dump f --no-auto", "Missing --system: one of gb, gba.");
        add("dump f --no-auto --system gb",
            "Missing --mapper: one of none, mbc1, mbc2, mbc3, mbc5, mbc7, tama5.");
        add("dump f --no-auto --system gb --mapper mbc5",
            "Missing --rom-size: the size cannot be guessed.");
        add("write-ram f --no-auto --system gb --mapper mbc5",
            "Missing --ram-size: the size cannot be guessed.");
        add("read-ram f --no-auto --system gba", "Missing --save-type: one of sram, flash, eep.");
        add("read-ram f --no-auto --system gba --save-type eep",
            "Missing --ram-size: the size cannot be guessed.");
        add("read-ram f --no-auto --system gba --save-type sram --ram-size 8K",
            "--ram-size 8192: a save of type sram has 32768 or 65536 bytes.");
        add("write-ram f --no-auto --system gba --save-type flash --ram-size 32K",
            "--ram-size 32768: a save of type flash has 65536 or 131072 bytes.");
    }
    void jobsWithoutALookAreComplete()
    {
        QFETCH(QString, reason);
        const CliOptions options = parse(QTest::currentDataTag());
        if (reason.isEmpty()) {
            QVERIFY2(taskOf(options.request), qPrintable(options.text));
            QVERIFY(!options.looks);
        } else {
            QVERIFY(options.request == CliRequest::Refuse);
            QVERIFY2(options.text.startsWith(reason + '\n'), qPrintable(options.text));
        }
    }

    void mappersHaveTheirScripts_data()
    {
        QTest::addColumn<QString>("script");
        QTest::newRow("none") << "gb_mbc0.nut";
        QTest::newRow("mbc1") << "gb_mbc1.nut";
        QTest::newRow("mbc2") << "gb_mbc2.nut";
        QTest::newRow("mbc3") << "gb_mbc3.nut";
        QTest::newRow("mbc5") << "gb_mbc5.nut";
        QTest::newRow("mbc7") << "gb_mbc7.nut";
        QTest::newRow("tama5") << "gb_tama5.nut";
    }
    void mappersHaveTheirScripts()
    {
        QFETCH(QString, script);
        const QString mapper = QTest::currentDataTag();
        const CliOptions options = parse("dump f --system gb --rom-size 32K --mapper " + mapper);
        CartridgeJob job;
        QVERIFY(makeJob(CartridgeTask::Dump, options.values, &job) == MissingValue::None);
        QCOMPARE(QFileInfo(job.scriptPath).fileName(), script);
        QCOMPARE(parse("check-script f --mapper " + mapper).scriptKind, script);
    }

    void gbaHasOneScript()
    {
        const CliOptions options = parse("dump f --system gba --rom-size 1M");
        CartridgeJob job;
        QVERIFY(makeJob(CartridgeTask::Dump, options.values, &job) == MissingValue::None);
        QCOMPARE(QFileInfo(job.scriptPath).fileName(), QString("gba.nut"));
        QCOMPARE(parse("check-script f --system gba").scriptKind, QString("gba.nut"));
    }

    void driveLetters_data()
    {
        QTest::addColumn<char>("letter");
        QTest::newRow("A") << 'A';
        QTest::newRow("e") << 'E';
        QTest::newRow("Z") << 'Z';
    }
    void driveLetters()
    {
        QFETCH(char, letter);
        QCOMPARE(parse(QString("info --drive ") + QTest::currentDataTag()).driveLetter, letter);
    }

    void fileNamesAreTakenAsTheyAre_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("spaces") << "my old game.gb";
        QTest::newRow("other letters") << QString::fromUtf8("Jeu d'été.gb");
        QTest::newRow("named like a command") << "dump";
    }
    void fileNamesAreTakenAsTheyAre()
    {
        QFETCH(QString, name);
        const CliOptions options = parseCliOptions({"gbdriver-cli", "dump", name});
        QVERIFY2(options.request == CliRequest::Dump, qPrintable(options.text));
        QCOMPARE(options.path, name);
    }

    void nameThatLooksLikeAnOptionGoesBehindTwoDashes()
    {
        const CliOptions options = parse("--quiet dump -- --odd.gb");
        QVERIFY2(options.request == CliRequest::Dump, qPrintable(options.text));
        QCOMPARE(options.path, QString("--odd.gb"));
    }

    // Every refusal says what to give instead, and where to read on.
    void refusals_data()
    {
        QTest::addColumn<QString>("help");
        QTest::addColumn<QString>("reason");
        const auto add = [](const char *words, const char *help, const QString &reason) {
            QTest::newRow(words) << help << reason;
        };
        const QString all = commandNames().join(", ");
        add(" ", "", "Missing command: one of " + all + ".");
        add("--quiet", "", "Missing command: one of " + all + ".");
        add("erase f", "", "\"erase\" is no command. Use one of " + all + ".");
        add("Dump f", "", "\"Dump\" is no command. Did you mean dump?");
        add("dmp f --fast", "", "\"dmp\" is no command. Did you mean dump?");
        add("--fast", "", "There is no option --fast.");
        add("--help-all", "", "There is no option --help-all.");
        add("read-ram", "read-ram ", "read-ram takes exactly one file name.");
        add("dump a b", "dump ", "dump takes exactly one file name.");
        add("backup", "backup ", "backup takes exactly one folder.");
        add("info f", "info ", "info takes no \"f\".");
        add("completion", "completion ", "completion takes one of bash, zsh, fish.");
        add("completion csh", "completion ", "completion takes one of bash, zsh, fish.");
        add("help me", "help ", "help takes one of " + all + ".");
        add("dump -", "dump ",
            "dump needs the name of a file or folder: it cannot use standard input or output "
            "(\"-\").");
        add("--hlep", "", "There is no option --hlep. Did you mean --help?");
        add("dump f --fast", "dump ", "dump has no option --fast.");
        add("dump f --ovrewrite", "dump ",
            "dump has no option --ovrewrite. Did you mean --overwrite?");
        add("dump f --over", "dump ", "dump has no option --over. Did you mean --overwrite?");
        add("dump f -json", "dump ", "dump has no option -json. Did you mean --json?");
        add("dump f -x", "dump ", "dump has no option -x.");
        add("info --mapper mbc1", "info ", "info has no option --mapper.");
        add("read-ram f --rom-size 8K", "read-ram ",
            "read-ram has no option --rom-size. Did you mean --ram-size?");
        add("dump f --system", "dump ", "Missing value after '--system'.");
        add("dump f --quiet=yes", "dump ", "Unexpected value after '--quiet'.");
        add("write-ram f --backup --force", "write-ram ", "Missing value after '--backup'.");
        add("write-ram f --backup=", "write-ram ", "Missing value after '--backup'.");
        add("verify f --dat --json", "verify ", "Missing value after '--dat'.");
        add("dump f --system snes", "dump ", "--system snes: not one of gb, gba.");
        add("dump f --system=", "dump ", "--system : not one of gb, gba.");
        add("dump f --mapper mbc4", "dump ",
            "--mapper mbc4: not one of none, mbc1, mbc2, mbc3, mbc5, mbc7, tama5.");
        add("read-ram f --save-type rom", "read-ram ",
            "--save-type rom: not one of sram, flash, eep.");
        for (const char *size : {"big", "+1M", "-1", "65M"}) {
            const QString words = QString("dump f --rom-size ") + size;
            add(qPrintable(words), "dump ",
                QString("--rom-size %1: not a size. Give bytes, or a number with suffix K or M, up "
                        "to 64M.")
                    .arg(size));
        }
        for (const char *reads : {"0", "10", "-1", "+2", "02", "two", "99999999999"}) {
            const QString words = QString("dump f --reads ") + reads;
            add(qPrintable(words), "dump ",
                QString("--reads %1: not a number from 1 to 9.").arg(reads));
        }
        add("backup d --count 0", "backup ", "--count 0: not a number from 1 to 9999.");
        add("backup d --count 10000", "backup ", "--count 10000: not a number from 1 to 9999.");
        for (const char *letter : {"EE", "5", "", "E:"}) {
            const QString words = QString("info --drive=") + letter;
            add(qPrintable(words), "info ",
                QString("--drive %1: not a drive letter from A to Z.").arg(letter));
        }
        add("dump f --json --quiet", "dump ", "--json and --quiet contradict each other.");
        add("dump f --no-auto --auto", "dump ", "--auto and --no-auto contradict each other.");
        add("dump f --no-verify --reads 2", "dump ",
            "--reads and --no-verify contradict each other.");
        add("flash f --no-backup --backup d", "flash ",
            "--backup and --no-backup contradict each other.");
    }
    void refusals()
    {
        QFETCH(QString, help);
        QFETCH(QString, reason);
        const QString words = QString(QTest::currentDataTag()).trimmed();
        const CliOptions options =
            words.isEmpty() ? parseCliOptions({"gbdriver-cli"}) : parse(words);
        QVERIFY(options.request == CliRequest::Refuse);
        QCOMPARE(options.text, reason + "\nTry \"gbdriver-cli " + help +
                                   "--help\". Nothing was read or written.\n");
    }

    void emptyFileNameIsRefused()
    {
        const CliOptions options = parseCliOptions({"gbdriver-cli", "dump", ""});
        QVERIFY(options.request == CliRequest::Refuse);
        QVERIFY2(options.text.startsWith("The name behind dump is empty.\n"),
                 qPrintable(options.text));
    }

    void letterOfAnotherAlphabetIsNoDrive()
    {
        const CliOptions options = parse(QString::fromUtf8("info --drive Ä"));
        QVERIFY(options.request == CliRequest::Refuse);
        QVERIFY2(options.text.contains("not a drive letter"), qPrintable(options.text));
    }

    // The first line tells which text it is.
    void texts_data()
    {
        QTest::addColumn<QString>("beginning");
        const auto add = [](const char *words, const char *beginning) {
            QTest::newRow(words) << beginning;
        };
        add("--help", "Usage: gbdriver-cli COMMAND [FILE] [options]\n");
        add("-h", "Usage: gbdriver-cli COMMAND [FILE] [options]\n");
        add("help", "Usage: gbdriver-cli COMMAND [FILE] [options]\n");
        add("dump --help", "Usage: gbdriver-cli dump FILE [options]\n");
        add("-h dump f --system snes", "Usage: gbdriver-cli dump FILE [options]\n");
        add("help dump", "Usage: gbdriver-cli dump FILE [options]\n");
        add("help help", "Usage: gbdriver-cli help [COMMAND] [options]\n");
        add("--version", "gbdriver-cli " GBDRIVER_VERSION "\n");
        add("-v", "gbdriver-cli " GBDRIVER_VERSION "\n");
        add("manual", ".TH GBDRIVER\\-CLI 1 ");
        add("completion bash", "# Completion of gbdriver-cli for bash.\n");
        add("completion zsh", "#compdef gbdriver-cli\n");
        add("completion fish", "# Completion of gbdriver-cli for fish.\n");
    }
    void texts()
    {
        QFETCH(QString, beginning);
        const CliOptions options = parse(QTest::currentDataTag());
        QVERIFY2(options.request == CliRequest::ShowText, qPrintable(options.text));
        QVERIFY2(options.text.startsWith(beginning), qPrintable(options.text.left(200)));
        QVERIFY(options.text.endsWith('\n'));
    }
};

GBDRIVER_TEST(CliOptionsTest, core)
#include "cli_options_test.moc"
