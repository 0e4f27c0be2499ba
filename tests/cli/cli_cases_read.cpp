#include "cli_cases.h"

namespace
{

const Files kCartThere{{"cart", gbSample()}};
const Files kOldThere{{"cart", gbSample()}, {"file", kOld}};
const Files kSavedThere{{"cart", gbSample()}, {"kept.sav", saveSample()}};
const Files kGbaThere{{"cart", gbaSample()}};
const char kFacts[] = "FACTS(file)\n";

// The script of the mapper in place of the program's own, beside a copy of it.
Files withScript(const QByteArray &script)
{
    return kOldThere + Files{{"mapper/gb_mbc5.nut", script}};
}

} // namespace

QVector<CliCase> readCases()
{
    QVector<CliCase> rows;
    const QString consistent = "consistent: logo, header checksum and checksum over the whole ROM "
                               "are right; 2 equal reads; not a known dump; the checksum is a sum "
                               "and does not see swapped banks\n";
    const auto done = [&](const QString &name, const QString &words, const QString &reader,
                          const Files &files, const QByteArray &read, const Texts &answer = {},
                          const Texts &problem = {}) {
        rows.append({name,
                     words,
                     reader,
                     files,
                     ExitCode::Done,
                     "usedCartridge judged",
                     answer,
                     problem,
                     {{"file", read}}});
    };
    done("dump", "dump DIR/file", kCart, kCartThere, gbSample(), {is(consistent + kFacts)},
         {holds("  ROM        131072 bytes     header\n"), holds("Start dump rom...\n"),
          holds("] 100%  128.0 KiB of 128.0 KiB"), holds("Dump rom finish.\n"), holds("compare ["),
          holds("] 100%  128.0 KiB of 128.0 KiB")});
    done("dump, replacing a longer file", "dump DIR/file --overwrite", kCart,
         kCartThere + Files{{"file", QByteArray(2048 * kKibi, 'x')}}, gbSample());
    done("dump, quiet", "dump DIR/file --quiet", kCart, kCartThere, gbSample(),
         {begins("consistent: ")}, {is("")});
    rows.last().hasJson = false; // these contradict each other
    done("dump, the usual letter", "dump DIR/file --drive E" + kAllSaid, kCart, kCartThere,
         gbSample());
    done("dump, small letter", "dump DIR/file --drive e" + kAllSaid, kCart, kCartThere, gbSample());
    done("dump, another letter", "dump DIR/file --drive K" + kAllSaid, kCart + ",drive=K",
         kCartThere, gbSample());
    done("dump, no choice", "dump DIR/file" + kAllSaid, kCart + ",drive=K", kCartThere, gbSample());
    // Reads that a disk would refuse are refused.
    done("dump, strict sectors", "dump DIR/file", kCart + ",strict=1", kCartThere, gbSample());
    done("read-ram", "read-ram DIR/file", kSaved, kSavedThere, saveSample(),
         {is(QString("consistent: 2 equal reads\n") + kFacts)},
         {holds("Start dump save...\n"), holds("] 100%  32.0 KiB of 32.0 KiB"),
          holds("Dump save finish.\n"), holds("compare ["), holds("] 100%  32.0 KiB of 32.0 KiB")});
    done("read-ram, replacing", "read-ram DIR/file --overwrite", kSaved,
         kSavedThere + Files{{"file", kOld}}, saveSample());
    rows.append({"read-ram, GBA",
                 "read-ram DIR/file",
                 "cart=DIR/cart,save-type=eep",
                 kGbaThere,
                 ExitCode::DataMismatch,
                 "usedCartridge judged",
                 {},
                 {},
                 {{"file", kAnyBytes}}});
    rows.append(
        {"backup",
         "backup DIR/stack --count 1",
         kSaved,
         kSavedThere,
         ExitCode::Done,
         "usedCartridge judged",
         {},
         {},
         {{"stack/*.gb", gbSample()}, {"stack/*.sav", saveSample()}, {"stack/*.txt", kAnyBytes}}});
    rows.append({"backup, GBA",
                 "backup DIR/stack --count 1",
                 "cart=DIR/cart,save-type=eep",
                 kGbaThere,
                 ExitCode::Unverified,
                 "usedCartridge judged",
                 {},
                 {},
                 {{"stack/*.gba", gbaSample()},
                  {"stack/*.sav", QByteArray(512, '\xFF')},
                  {"stack/*.txt", kAnyBytes}}});

    const auto fails = [&](const QString &name, const QString &words, const QString &reader,
                           const Files &files, ExitCode code, const Texts &problem,
                           const QString &events = "") {
        rows.append({name, words, reader, files, code, events, {is("")}, problem});
    };
    fails("dump, existing file", "dump DIR/file", kCart, kOldThere, ExitCode::Refused, {});
    fails("read-ram, existing file", "read-ram DIR/file", kSaved, kOldThere, ExitCode::Refused, {});
    fails("dump, no folder", "dump DIR/none/file" + kAllSaid, kCart, kCartThere,
          ExitCode::FileError,
          {holds("Cannot write DIR/none/file: the folder does not exist. Nothing was read.")});
    fails("dump, a folder", "dump DIR/." + kAllSaid, kCart, kCartThere, ExitCode::FileError,
          {holds("Cannot write DIR/.: it is a folder. Nothing was read.")});
    fails("read-ram, a folder", "read-ram DIR", kCart, kCartThere, ExitCode::FileError, {});
    fails("dump, no table", "dump DIR/file --dat DIR/none.dat", kCart, kCartThere,
          ExitCode::FileError, {});
    fails("verify, no file", "verify DIR/file", "", {}, ExitCode::FileError, {});
    fails("backup, in a file", "backup DIR/cart --count 1", kCart, kCartThere, ExitCode::FileError,
          {});
    fails("dump, no cartridge", "dump DIR/file --overwrite", kNoCart, kOldThere,
          ExitCode::NotRecognised, {});
    fails("read-ram, no cartridge", "read-ram DIR/file", kNoCart, {}, ExitCode::NotRecognised, {});
    fails("dump, size that the mapper cannot have", "dump DIR/file --overwrite --rom-size 48K",
          kCart, kOldThere, ExitCode::Refused, {holds("49152 bytes")}, "usedCartridge");
    fails("dump, unseen, size that the mapper cannot have",
          "dump DIR/file --overwrite --no-auto --system gb --mapper mbc5 --rom-size 48K", kCart,
          kOldThere, ExitCode::Refused, {holds("49152 bytes")}, "usedCartridge");

    rows.append({"dump, no mapper folder",
                 "dump DIR/file --overwrite" + kAllSaid,
                 kCart,
                 kOldThere,
                 ExitCode::FileError,
                 "usedCartridge",
                 {is("")},
                 {holds("There is no mapper script \"DIR/mapper/gb_mbc5.nut\""),
                  holds("Install the mapper folder beside the program.")},
                 {},
                 {},
                 true,
                 true});
    rows.append({"dump, broken script",
                 "dump DIR/file --overwrite" + kAllSaid,
                 kCart,
                 withScript("function cpu_dump(\n"),
                 ExitCode::ScriptError,
                 "usedCartridge",
                 {is("")},
                 {holds("dump core script error"),
                  holds("script error: gb_mbc5.nut line = (2) column = (1)"),
                  holds("The mapper script is wrong; mend it, or install the program anew. The "
                        "cartridge was not touched.")},
                 {},
                 {},
                 true,
                 true});
    return rows;
}

QVector<CliCase> usingCases()
{
    QVector<CliCase> rows;
    struct Kind {
        std::uint8_t type;
        std::uint32_t romSize, ramSize;
        QString values;
    };
    for (const Kind &kind :
         {Kind{0x00, 32 * kKibi, 0, "mapper none header, ROM 32768 bytes header"},
          Kind{0x03, 2048 * kKibi, 8 * kKibi,
               "mapper mbc1 header, ROM 2097152 bytes header, save 8192 bytes header"},
          Kind{0x1B, 1024 * kKibi, 32 * kKibi,
               "mapper mbc5 header, ROM 1048576 bytes header, save 32768 bytes header"}}) {
        const QByteArray image = gbImage(kind.type, kind.romSize, kind.ramSize);
        for (const QString option : {"", " --auto", " --system gb"}) {
            const QString system = option.contains("gb") ? "user: --system" : "header";
            rows.append({kind.values.section(' ', 1, 1) + option,
                         "dump DIR/file" + option,
                         kCart,
                         {{"cart", image}},
                         ExitCode::Done,
                         "usedCartridge judged",
                         {begins("consistent: ")},
                         {uses("system gb " + system + ", " + kind.values)},
                         {{"file", image}},
                         {},
                         option.isEmpty()});
        }
    }

    const QByteArray gb = mbc5Image(512 * kKibi, kRamSize);
    const Files gbThere{{"cart", gb}, {"file", kOld}};
    const QString values = "system gb header, mapper mbc5 header, ROM 524288 bytes header, "
                           "save 32768 bytes header";
    const char kTable[] = "Using:\n"
                          "  system     gb               header\n"
                          "  mapper     mbc5             header\n"
                          "  ROM        524288 bytes     header\n"
                          "  save       32768 bytes      header\n";
    rows.append({"report first",
                 "dump DIR/file --overwrite",
                 kCart,
                 gbThere,
                 ExitCode::Done,
                 "usedCartridge judged",
                 {begins("consistent: ")},
                 {begins(QString("--Device information--\n"
                                 "Driver label: VIRTUAL\n"
                                 "Device firmware: QDX_PCB02_FW303\n"
                                 "\n"
                                 "--GB/GBC Cartridge information--\n"
                                 "Title: VIRTUAL\n"
                                 "Cart type: ROM+MBC5+RAM+BATT\n"
                                 "ROM Size: 512KB\n"
                                 "RAM Size: 32KB\n") +
                         kTable + "Start dump rom...\n")},
                 {{"file", gb}}});
    rows.append({"not looked at",
                 "dump DIR/file --overwrite --no-auto --system gb --mapper mbc5 "
                 "--rom-size 512K",
                 kCart,
                 gbThere,
                 ExitCode::Done,
                 "usedCartridge judged",
                 {begins("consistent: ")},
                 {begins("Using:\n"
                         "  system     gb               user: --system\n"
                         "  mapper     mbc5             user: --mapper\n"
                         "  ROM        524288 bytes     user: --rom-size\n"
                         "Start dump rom...\n")},
                 {{"file", gb}}});
    const Files savedThere = gbThere + Files{{"kept.sav", saveSample()}};
    rows.append({"read-ram",
                 "read-ram DIR/file --overwrite",
                 kSaved,
                 savedThere,
                 ExitCode::Done,
                 "usedCartridge judged",
                 {},
                 {holds(kTable)},
                 {{"file", saveSample()}}});
    rows.append({"write-ram",
                 "write-ram DIR/new.sav --backup DIR/backups",
                 kSaved,
                 savedThere + Files{{"new.sav", otherSave()}},
                 ExitCode::Done,
                 "usedCartridge written",
                 {},
                 {holds(kTable), uses(values)},
                 {{"kept.sav", otherSave()}, {"backups/VIRTUAL *", saveSample()}}});

    rows.append({"ROM size",
                 "dump DIR/file --overwrite --rom-size 256K",
                 kCart,
                 gbThere,
                 ExitCode::DataMismatch,
                 "usedCartridge judged",
                 {holds("the header speaks of 524288 bytes, these are 262144")},
                 {uses("system gb header, mapper mbc5 header, ROM 262144 bytes user: --rom-size "
                       "(the cartridge says 524288 bytes), save 32768 bytes header")},
                 {{"file.suspicious", gb.left(256 * 1024)}}});
    rows.append({"RAM size",
                 "read-ram DIR/file --overwrite --ram-size 8K",
                 kSaved,
                 savedThere,
                 ExitCode::Done,
                 "usedCartridge judged",
                 {},
                 {},
                 {{"file", saveSample().left(8192)}}});
    rows.append({"mapper",
                 "dump DIR/file --overwrite --mapper mbc1 --ignore-contradiction",
                 kCart,
                 gbThere,
                 ExitCode::Done,
                 "usedCartridge judged",
                 {},
                 {holds("mapper     mbc1             user: --mapper (the cartridge says mbc5)")},
                 {{"file", gb}}});
    // A header that misleads is not followed in silence.
    const Files tama5{{"cart", tama5Sample()}, {"file", kOld}};
    rows.append({"mapper against a TAMA5",
                 "dump DIR/file --overwrite --mapper mbc5 --ignore-contradiction",
                 kCart,
                 tama5,
                 ExitCode::DataMismatch,
                 "usedCartridge judged",
                 {},
                 {holds("(the cartridge says tama5)"), holds("The header names the mapper TAMA5")},
                 {{"file.suspicious", kAnyBytes}}});
    rows.append({"TAMA5",
                 "dump DIR/file --overwrite",
                 kCart,
                 tama5,
                 ExitCode::Done,
                 "usedCartridge judged",
                 {},
                 {uses("system gb header, mapper tama5 header, ROM 131072 bytes header"),
                  lacks("The header names")},
                 {{"file", tama5Sample()}}});

    const auto refused = [&](const QString &name, const QString &words, const QByteArray &cart,
                             const Texts &problem, const QString &events = "") {
        rows.append({name,
                     words,
                     kCart,
                     {{"cart", cart}, {"file", noise(8192, 1)}},
                     ExitCode::Refused,
                     events,
                     {is("")},
                     problem});
    };
    // Neither mapper that takes saves of this size may touch it.
    const Texts leftAlone{holds("The save of a TAMA5 cannot be read or written"),
                          ends(" The cartridge was only looked at.\n")};
    refused("TAMA5, write", "write-ram DIR/file --ram-size 8K", tama5Sample(), leftAlone);
    refused("TAMA5, write as another mapper", "write-ram DIR/file --ram-size 8K --mapper mbc5",
            tama5Sample(), leftAlone);
    refused("TAMA5, read", "read-ram DIR/file --ram-size 8K --overwrite", tama5Sample(), leftAlone);
    refused("TAMA5, read without a size", "read-ram DIR/file --overwrite", tama5Sample(), {});
    const Texts otherSystem{
        ends("\nrefused: The cartridge is of another system than --system says; leave "
             "--system out. The cartridge was only looked at.\n")};
    const QByteArray gba = gbaImage("ALXP", 64 * kKibi);
    refused("GB cartridge", "dump DIR/file --overwrite --system gba --auto", gbSample(),
            otherSystem);
    refused("GB cartridge, all said", "dump DIR/file --overwrite --system gba --rom-size 4M",
            gbSample(), otherSystem);
    refused("GBA cartridge", "read-ram DIR/file --overwrite --auto --system gb", gba, otherSystem);
    // A write with the wrong commands destroys what a read with them does not show.
    rows.append({"write that contradicts the table",
                 "write-ram DIR/file --ram-size 8K",
                 "cart=DIR/cart,save-type=eep",
                 {{"cart", gba}, {"file", noise(8192, 1)}},
                 ExitCode::Refused,
                 "usedCartridge",
                 {is("")},
                 {holds("The cartridge names another size of its save memory than was chosen"),
                  lacks("Start write save")}});
    const Texts otherMapper{
        holds("(the cartridge says mbc5)"),
        ends("\nrefused: The header names another mapper than was chosen; what is meant for one "
             "mapper can destroy what another keeps. Leave --mapper out, or give "
             "--ignore-contradiction if you know better. The cartridge was only looked at.\n")};
    for (const QString command : {"dump", "read-ram", "write-ram"})
        refused(command + " as another mapper",
                command + " DIR/file --mapper tama5" +
                    (command == "write-ram" ? "" : " --overwrite"),
                gbSample(), otherMapper, "usedCartridge");
    // Whoever knows better can say so.
    refused("save that the header denies", "read-ram DIR/file --overwrite",
            gbImage(0x00, 32 * kKibi, 0),
            {ends("The header says that this cartridge has no save memory. If that is wrong, give "
                  "--ram-size. The cartridge was only looked at.\n")},
            "usedCartridge");

    // `code`: of a GBA game, or none for no cartridge. What is there but cannot be is the user's.
    const auto asked = [&](const QString &name, const QString &code, const QString &words,
                           const QString &used, const QString &reason) {
        const QString again = QString(" Try \"gbdriver-cli %1 --help\". The cartridge was only "
                                      "looked at.\n")
                                  .arg(words.section(' ', 0, 0));
        // Else the word stands before why the cartridge did not tell.
        const QString word = code == "AC9E" ? "failed: " : "";
        rows.append({name,
                     words,
                     code == "none" ? kNoCart : kCart,
                     {{"cart", gbaImage(code.leftJustified(4), 64 * kKibi)}, {"file", kOld}},
                     reason.startsWith("Missing") ? ExitCode::NotRecognised : ExitCode::Usage,
                     used.isEmpty() ? "" : "usedCartridge",
                     {is("")},
                     {ends('\n' + word + reason + again), uses(used)}});
    };
    const QString noSize = "the size cannot be guessed.";
    asked("unknown game, ROM", "ZZZZ", "dump DIR/file --overwrite", "system gba header",
          "Missing --rom-size: " + noSize);
    asked("unknown game, save", "ZZZZ", "read-ram DIR/file --overwrite", "system gba header",
          "Missing --save-type: one of sram, flash, eep.");
    asked("unknown game, save of a type", "ZZZZ", "write-ram DIR/file --save-type eep",
          "system gba header, save type eep user: --save-type", "Missing --ram-size: " + noSize);
    asked("game whose save is not known", "AC9E", "read-ram DIR/file --overwrite",
          "system gba header, ROM 4194304 bytes game table",
          "Missing --save-type: one of sram, flash, eep.");
    asked("type that does not fit the size found", "ALXP",
          "read-ram DIR/file --save-type flash --overwrite",
          "system gba header, ROM 4194304 bytes game table, save type flash user: --save-type "
          "(the cartridge says eep), save 512 bytes game table",
          "--ram-size 512: a save of type flash has 65536 or 131072 bytes.");
    asked("size that does not fit the type found", "ALXP", "write-ram DIR/file --ram-size 32K",
          "system gba header, ROM 4194304 bytes game table, save type eep game table, "
          "save 32768 bytes user: --ram-size (the cartridge says 512 bytes)",
          "--ram-size 32768: a save of type eep has 512 or 8192 bytes.");
    asked("no cartridge", "none", "dump DIR/file --overwrite", "",
          "Missing --system: one of gb, gba.");
    asked("no cartridge, some values", "none",
          "dump DIR/file --overwrite --mapper mbc5 --rom-size 64K",
          "mapper mbc5 user: --mapper, ROM 65536 bytes user: --rom-size",
          "Missing --system: one of gb, gba.");
    asked("no cartridge, system said", "none", "dump DIR/file --overwrite --system gb",
          "system gb user: --system",
          "Missing --mapper: one of none, mbc1, mbc2, mbc3, mbc5, mbc7, tama5.");

    // An empty slot reads 0xFF; who says everything gets that.
    rows.append({"no cartridge, all said",
                 "dump DIR/file --overwrite --auto --system gb --mapper mbc5 --rom-size 32K",
                 kNoCart,
                 {{"file", kOld}},
                 ExitCode::DataMismatch,
                 "usedCartridge judged",
                 {begins("suspicious: all bytes are equal")},
                 {uses("system gb user: --system, mapper mbc5 user: --mapper, "
                       "ROM 32768 bytes user: --rom-size")},
                 {{"file.suspicious", QByteArray(32768, '\xFF')}}});

    // Dumps from address 0, as much as the job asks for.
    const Files script{{"mapper/gba.nut", "function cpu_dump(dev, size, max)\n"
                                          "{\n"
                                          "    local piece = size < 0x8000 ? size : 0x8000;\n"
                                          "    for (local at = 0; at < size; at += piece)\n"
                                          "        cpu_read(dev, at / 2, piece);\n"
                                          "}\n"}};
    rows.append({"GBA table",
                 "dump DIR/file --overwrite",
                 kCart,
                 script + Files{{"cart", gbaSample()}, {"file", kOld}},
                 ExitCode::Unverified,
                 "usedCartridge judged",
                 {},
                 {uses("system gba header, ROM 4194304 bytes game table, save type eep game table, "
                       "save 512 bytes game table")},
                 {{"file", gbaSample()}},
                 {},
                 true,
                 true});
    const QByteArray unknown = gbaImage("ZZZZ", 64 * kKibi);
    rows.append({"unknown GBA game, size said",
                 "dump DIR/file --overwrite --rom-size 64K",
                 kCart,
                 script + Files{{"cart", unknown}, {"file", kOld}},
                 ExitCode::Unverified,
                 "usedCartridge judged",
                 {},
                 {uses("system gba header, ROM 65536 bytes user: --rom-size")},
                 {{"file", unknown}},
                 {},
                 true,
                 true});
    return rows;
}
