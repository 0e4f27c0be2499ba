#include "cli_cases.h"

namespace
{

// Reads every bank by itself and looks at nothing.
const Files kTrusting{{"file", kOld},
                      {"mapper/gb_mbc5.nut",
                       "function cpu_dump(dev, size, max)\n"
                       "{\n"
                       "    cpu_read(dev, 0, 0x4000);\n"
                       "    for (local bank = 1; bank * 0x4000 < size; bank++)\n"
                       "        cpu_read(dev, 0x4000, 0x4000);\n"
                       "}\n"}};
const QString kDump = "dump DIR/file --overwrite --no-auto --system gb --mapper mbc5 --rom-size ";

} // namespace

QVector<CliCase> faultyReaderCases()
{
    QVector<CliCase> rows;
    // A read that comes short ends the script: the next bank would land at the wrong place.
    const auto comesShort = [&](const QString &name, const QString &romSize, const QString &reader,
                                const QString &error, const QString &reason) {
        rows.append({name,
                     kDump + romSize,
                     reader,
                     kTrusting,
                     ExitCode::TransferFailed,
                     "usedCartridge",
                     {is("")},
                     {holds(error), holds(reason), holds("Check plug and contacts and try again.")},
                     {},
                     {},
                     true,
                     true});
    };
    const QString half = "[cpu_read: only 8192 of 16384 bytes arrived]";
    comesShort("in the last read", "32K", "folder:24576", half,
               "incomplete: 16384 of 32768 bytes arrived");
    comesShort("in all reads but the first", "64K", "folder:24576", half,
               "incomplete: 16384 of 65536 bytes arrived");
    comesShort("no byte at all", "32K", "folder:0", "[cpu_read: the reader did not answer]",
               "incomplete: 0 of 32768 bytes arrived");
    // The same with all the data, so that the rows above fail for their shortness alone. Noise is
    // no game, and said to be none.
    const QByteArray data = noise(0x8000, 3);
    rows.append({"whole",
                 kDump + "64K",
                 "folder:32768",
                 kTrusting,
                 ExitCode::DataMismatch,
                 "usedCartridge judged",
                 {begins("suspicious: there is no boot logo in the header")},
                 {},
                 {{"file.suspicious", data + data.mid(0x4000) + data.mid(0x4000)}},
                 {},
                 true,
                 true});

    const Files old{{"file", kOld}, {"new.sav", otherSave()}};
    rows.append({"no command",
                 kDump + "64K",
                 "mute:32768",
                 old,
                 ExitCode::NoAnswer,
                 "usedCartridge",
                 {is("")},
                 {holds("Initialize device error.")}});
    rows.append({"write-ram, no command",
                 "write-ram DIR/new.sav --backup DIR/backups",
                 "mute:32768",
                 old,
                 ExitCode::NoAnswer,
                 "",
                 {is("")}});
    // Nor do the scripts that come with the program make a success of it.
    rows.append({"short, shipped script",
                 kDump + "64K",
                 "folder:24576",
                 old,
                 ExitCode::TransferFailed,
                 "usedCartridge",
                 {is("")},
                 {holds("bytes arrived")}});

    struct Fault {
        const char *reader;
        const char *error;
    };
    // One byte less than a report reads.
    for (const Fault &fault : {Fault{"mute:8191", "Initialize device error."},
                               Fault{"folder:8191", "Read ROM error."}}) {
        for (const QString more : {"", " --auto --system gb --mapper mbc5 --rom-size 32K"})
            rows.append({QString("dump, ") + fault.error + more,
                         "dump DIR/file --overwrite" + more,
                         fault.reader,
                         old,
                         ExitCode::NoAnswer,
                         "",
                         {is("")},
                         {holds(QString("\n\n%1\nThe reader does not answer.").arg(fault.error))}});
        rows.append({QString("info, ") + fault.error,
                     "info",
                     fault.reader,
                     {},
                     ExitCode::NoAnswer,
                     "noCartridge",
                     {ends(QString("\n\n%1\n").arg(fault.error))},
                     {},
                     {},
                     {{{"event", "detected"},
                       {"what", "cartridge"},
                       {"error", fault.error},
                       {"reader", QJsonObject{{"label", "READER"}, {"firmware", "FOLDER"}}}}}});
    }
    return rows;
}
