// The command line: what every option means, and what is refused.
#include "cli/cli_options.h"

#include "cli/cli_command.h"
#include "worker/famicom_thread.h"

#include <QtTest>

namespace
{

constexpr int kKiB = 1024;
constexpr int kMiB = 1024 * 1024;

CliOptions parse(const QString &words)
{
    return parseCliOptions(QString("gbdriver-cli " + words).simplified().split(' '));
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
        QTest::addColumn<int>("operate");
        QTest::addColumn<int>("romSize");
        QTest::addColumn<int>("ramSize");
        const auto add = [](const char *words, int operate, int romSize, int ramSize) {
            QTest::newRow(words) << words << operate << romSize << ramSize;
        };
        add("dump f --system gb --mapper mbc5 --rom-size 8M", GB_READ_ROM, 8 * kMiB, 0);
        add("read-ram f --system gb --mapper mbc5 --ram-size 512", GB_READ_RAM, 0, 512);
        add("write-ram f --system gb --mapper mbc1 --ram-size 32K", GB_WRITE_RAM, 0, 32 * kKiB);
        add("dump f --system gba --rom-size 64M", GBA_READ_ROM, 64 * kMiB, 0);
        add("read-ram f --system gba --save-type sram --ram-size 32K", GBA_READ_RAM, 0, 32 * kKiB);
        add("write-ram f --system gba --save-type flash --ram-size 128K", GBA_WRITE_RAM, 0,
            128 * kKiB);
        add("--system gb --mapper none --rom-size 32K dump f", GB_READ_ROM, 32 * kKiB, 0);
        add("dump --system=gb f --mapper=none --rom-size=32K", GB_READ_ROM, 32 * kKiB, 0);
        add("dump f --system GB --mapper NONE --rom-size 32k", GB_READ_ROM, 32 * kKiB, 0);
    }
    void commands()
    {
        QFETCH(QString, words);
        const CliOptions options = parse(words);
        QVERIFY2(options.request == CliRequest::RunJob, qPrintable(options.text));
        QCOMPARE(options.job.fileName, QString("f"));
        QTEST(options.job.operate, "operate");
        QTEST(options.job.romSize, "romSize");
        QTEST(options.job.ramSize, "ramSize");
        QCOMPARE(options.driveLetter, '\0');
        QVERIFY(options.text.isEmpty());
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
        const QString dump = "dump f --system gb --rom-size 32K --mapper ";
        QCOMPARE(parse(dump + QTest::currentDataTag()).job.scriptName, script);
    }

    void gbaHasOneScript()
    {
        QCOMPARE(parse("dump f --system gba --rom-size 1M").job.scriptName, QString("gba.nut"));
    }

    void saveTypes_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<int>("saveType");
        QTest::addColumn<int>("ramSize");
        QTest::newRow("sram 32K") << "--save-type sram --ram-size 32K" << 0 << 32 * kKiB;
        QTest::newRow("sram 64K") << "--save-type sram --ram-size 64K" << 0 << 64 * kKiB;
        QTest::newRow("flash 64K") << "--save-type flash --ram-size 64K" << 1 << 64 * kKiB;
        QTest::newRow("flash 128K") << "--save-type flash --ram-size 128K" << 1 << 128 * kKiB;
        QTest::newRow("eep 512") << "--save-type eep --ram-size 512" << 2 << 512;
        QTest::newRow("eep 8K") << "--save-type EEP --ram-size 8K" << 2 << 8 * kKiB;
    }
    void saveTypes()
    {
        QFETCH(QString, words);
        const CliOptions options = parse("read-ram f --system gba " + words);
        QVERIFY2(options.request == CliRequest::RunJob, qPrintable(options.text));
        QTEST(options.job.saveType, "saveType");
        QTEST(options.job.ramSize, "ramSize");
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
        const QString dump = "dump f --system gba --rom-size 1M --drive ";
        QCOMPARE(parse(dump + QTest::currentDataTag()).driveLetter, letter);
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
        const CliOptions options = parseCliOptions({"gbdriver-cli", "dump", name, "--system", "gb",
                                                    "--mapper", "none", "--rom-size", "32K"});
        QVERIFY2(options.request == CliRequest::RunJob, qPrintable(options.text));
        QCOMPARE(options.job.fileName, name);
    }

    void nameThatLooksLikeAnOptionGoesBehindTwoDashes()
    {
        const CliOptions options =
            parse("--system gb --mapper none --rom-size 32K dump -- --odd.gb");
        QVERIFY2(options.request == CliRequest::RunJob, qPrintable(options.text));
        QCOMPARE(options.job.fileName, QString("--odd.gb"));
    }

    // Who does not say what the cartridge is, asks the cartridge.
    void cartridgeIsLookedAtFirst_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("values"); // what the user said: system, mapper, sizes, type
        const auto add = [](const char *words, const char *values) {
            QTest::newRow(words) << words << values;
        };
        add("dump f", "- - - - -");
        add("read-ram f", "- - - - -");
        add("write-ram f", "- - - - -");
        add("dump f --auto", "- - - - -");
        add("dump f --mapper mbc1", "- 1 - - -");
        add("dump f --mapper none --rom-size 64K", "- 0 65536 - -");
        add("read-ram f --save-type sram", "- - - - 0");
        add("dump f --system gb --auto", "0 - - - -");
        add("dump f --system gba --auto", "1 - - - -");
        add("write-ram f --auto --system gba --save-type eep --ram-size 8K", "1 - - 8192 2");
        add("dump f --auto --system gb --mapper mbc5 --rom-size 8M", "0 4 8388608 - -");
    }
    void cartridgeIsLookedAtFirst()
    {
        QFETCH(QString, words);
        const CliOptions options = parse(words);
        QVERIFY2(options.request == CliRequest::DetectThenRun, qPrintable(options.text));
        QCOMPARE(options.fileName, QString("f"));
        QVERIFY(options.command != nullptr);
        QCOMPARE(QString(options.command->name), words.split(' ').first());
        const CartridgeValues &said = options.values;
        QStringList values;
        for (const std::optional<int> &value :
             {said.system, said.mapper, said.romSize, said.ramSize, said.saveType})
            values << (value ? QString::number(*value) : "-");
        QTEST(values.join(' '), "values");
        QVERIFY(options.text.isEmpty());
    }

    void infoIsShown_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<bool>("asJson");
        QTest::addColumn<bool>("isQuick");
        QTest::addColumn<char>("letter");
        QTest::newRow("plain") << "info" << false << false << '\0';
        QTest::newRow("JSON") << "info --json" << true << false << '\0';
        QTest::newRow("quick") << "--quick info" << false << true << '\0';
        QTest::newRow("all") << "info --json --quick --drive k" << true << true << 'K';
    }
    void infoIsShown()
    {
        QFETCH(QString, words);
        const CliOptions options = parse(words);
        QVERIFY2(options.request == CliRequest::ShowInfo, qPrintable(options.text));
        QTEST(options.asJson, "asJson");
        QTEST(options.isQuick, "isQuick");
        QTEST(options.driveLetter, "letter");
    }

    // Every refusal says what to give instead.
    void refusals_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("reason");
        const auto add = [](const char *words, const char *reason) {
            QTest::newRow(*words == '\0' ? "nothing" : words) << words << reason;
        };
        add("", "Missing command: info, dump, read-ram, write-ram, flash or check-script.");
        add("--system gb",
            "Missing command: info, dump, read-ram, write-ram, flash or check-script.");
        add("erase f",
            "\"erase\" is no command: use info, dump, read-ram, write-ram, flash or check-script.");
        add("Dump f",
            "\"Dump\" is no command: use info, dump, read-ram, write-ram, flash or check-script.");
        add("read-ram", "read-ram takes exactly one file name.");
        add("dump a b", "dump takes exactly one file name.");
        add("dump", "dump takes exactly one file name.");
        add("info f", "info takes no file name.");
        add("info --json f", "info takes no file name.");
        add("info --drive 5", "--drive 5: not a drive letter from A to Z.");
        add("--auto", "Missing command: info, dump, read-ram, write-ram, flash or check-script.");
        add("dump f --fast", "Unknown option 'fast'.");
        add("--help-all", "Unknown option 'help-all'.");
        add("dump f --help-all", "Unknown option 'help-all'.");
        add("dump f --system", "Missing value after '--system'.");
        add("dump f --system snes", "--system snes: not one of gb, gba.");
        add("dump f --system=", "--system : not one of gb, gba.");
        add("dump f --system gb",
            "Missing --mapper: one of none, mbc1, mbc2, mbc3, mbc5, mbc7, tama5.");
        add("dump f --system gb --mapper mbc4",
            "--mapper mbc4: not one of none, mbc1, mbc2, mbc3, mbc5, mbc7, tama5.");
        add("dump f --system gb --mapper mbc5", "Missing --rom-size: the size can not be guessed.");
        add("dump f --system gb --mapper mbc5 --ram-size 32K",
            "Missing --rom-size: the size can not be guessed.");
        add("dump f --system gb --mapper mbc5 --rom-size big",
            "--rom-size big: not a size. Give bytes, or a number with suffix K or M, up to 64M.");
        add("dump f --system gb --mapper mbc5 --rom-size +1M",
            "--rom-size +1M: not a size. Give bytes, or a number with suffix K or M, up to 64M.");
        add("dump f --auto --rom-size +1M",
            "--rom-size +1M: not a size. Give bytes, or a number with suffix K or M, up to 64M.");
        add("dump f --mapper mbc4",
            "--mapper mbc4: not one of none, mbc1, mbc2, mbc3, mbc5, mbc7, tama5.");
        add("dump f --system gb --mapper mbc5 --rom-size -1",
            "--rom-size -1: not a size. Give bytes, or a number with suffix K or M, up to 64M.");
        add("read-ram f --system gb --mapper mbc5",
            "Missing --ram-size: the size can not be guessed.");
        add("write-ram f --system gb --mapper mbc5 --ram-size 65M",
            "--ram-size 65M: not a size. Give bytes, or a number with suffix K or M, up to 64M.");
        add("dump f --system gba", "Missing --rom-size: the size can not be guessed.");
        add("read-ram f --system gba", "Missing --save-type: one of sram, flash, eep.");
        add("read-ram f --system gba --save-type rom",
            "--save-type rom: not one of sram, flash, eep.");
        add("read-ram f --system gba --save-type eep",
            "Missing --ram-size: the size can not be guessed.");
        add("read-ram f --system gba --save-type sram --ram-size 8K",
            "--ram-size 8192: a save of type sram has 32768 or 65536 bytes.");
        add("read-ram f --system gba --save-type flash --ram-size 32K",
            "--ram-size 32768: a save of type flash has 65536 or 131072 bytes.");
        add("write-ram f --system gba --save-type eep --ram-size 64K",
            "--ram-size 65536: a save of type eep has 512 or 8192 bytes.");
        for (const char *letter : {"EE", "1", "", "E:"}) {
            const QString words = QString("dump f --system gb --drive=") + letter;
            QTest::newRow(qPrintable(words))
                << words << QString("--drive %1: not a drive letter from A to Z.").arg(letter);
        }
    }
    void refusals()
    {
        QFETCH(QString, words);
        QFETCH(QString, reason);
        const CliOptions options = parse(words);
        QVERIFY(options.request == CliRequest::Refuse);
        QCOMPARE(options.text,
                 reason + "\nTry \"gbdriver-cli --help\". Nothing was read or written.\n");
    }

    void letterOfAnotherAlphabetIsNoDrive()
    {
        const CliOptions options = parse(QString::fromUtf8("dump f --system gb --drive Ä"));
        QVERIFY(options.request == CliRequest::Refuse);
        QVERIFY2(options.text.contains("not a drive letter"), qPrintable(options.text));
    }

    void helpNamesEverything_data()
    {
        QTest::addColumn<QString>("words");
        for (const char *words : {"--help", "-h", "dump --help", "dump f --system snes --help"})
            QTest::newRow(words) << words;
    }
    void helpNamesEverything()
    {
        QFETCH(QString, words);
        const CliOptions options = parse(words);
        QVERIFY(options.request == CliRequest::ShowText);
        for (const char *part : {"info", "dump FILE", "read-ram FILE", "write-ram FILE", "--system",
                                 "--mapper", "--rom-size", "--ram-size", "--save-type", "--drive",
                                 "--auto", "--json", "--quick", "--help", "--version", "Examples:"})
            QVERIFY2(options.text.contains(part), part);
    }

    void versionIsOneLine()
    {
        const CliOptions options = parse("--version");
        QVERIFY(options.request == CliRequest::ShowText);
        QCOMPARE(options.text, QString("gbdriver-cli " GBDRIVER_VERSION "\n"));
    }

    // Every option that the help lists must do something.
    void listedHelpOptionsShowHelp()
    {
        const QString help = parse("--help").text;
        QRegularExpressionMatchIterator matches =
            QRegularExpression("--help[a-z-]*").globalMatch(help);
        int count = 0;
        for (; matches.hasNext(); ++count) {
            const QString option = matches.next().captured();
            QVERIFY2(parse(option).request == CliRequest::ShowText, qPrintable(option));
        }
        QVERIFY(count > 0);
    }
};

QTEST_GUILESS_MAIN(CliOptionsTest)
#include "cli_options_test.moc"
