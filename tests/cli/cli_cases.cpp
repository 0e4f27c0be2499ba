#include "cli_cases.h"

#include <QCryptographicHash>
#include <QtTest>

QByteArray gbSample()
{
    static const QByteArray image = mbc5Image(kRomSize, kRamSize);
    return image;
}

QByteArray gbaSample()
{
    static const QByteArray image = gbaImage("ALXP", 4096 * kKibi);
    return image;
}

QByteArray saveSample()
{
    return noise(kRamSize, 1);
}

QByteArray otherSave()
{
    return noise(kRamSize, 2);
}

QByteArray tama5Sample()
{
    return gbImage(0xFD, kRomSize, 0);
}

QByteArray datOf(const QByteArray &image)
{
    return "<?xml version=\"1.0\"?>\n"
           "<datafile><header><name>Our games</name></header>\n"
           "<game name=\"A Game (World)\"><rom name=\"A Game (World).gb\" size=\"" +
           QByteArray::number(image.size()) + "\" sha1=\"" +
           QCryptographicHash::hash(image, QCryptographicHash::Sha1).toHex() +
           "\"/></game></datafile>\n";
}

QByteArray raised(QByteArray image, int offset)
{
    image[offset] = static_cast<char>(image.at(offset) + 1);
    return image;
}

Files operator+(Files files, const Files &more)
{
    for (auto file = more.begin(); file != more.end(); ++file)
        files[file.key()] = file.value();
    return files;
}

void addCases(const QVector<CliCase> &rows)
{
    QTest::addColumn<CliCase>("row");
    for (const CliCase &row : rows)
        QTest::newRow(qPrintable(row.name)) << row;
}

QVector<CliCase> noReaderCases()
{
    const Files files{{"file", kOld}, {"new.sav", otherSave()}, {"rom", gbSample()}};
    QVector<CliCase> rows;
    for (const QString &words :
         {QString("dump DIR/file --overwrite"), "dump DIR/file --overwrite" + kAllSaid,
          QString("dump DIR/file --overwrite --auto --system gb --mapper mbc5 --rom-size 32K"),
          QString("read-ram DIR/file --overwrite"),
          QString("write-ram DIR/new.sav --backup DIR/backups"),
          QString("flash DIR/rom --backup DIR/backups")}) {
        rows.append({words,
                     words,
                     kNoDrive,
                     files,
                     ExitCode::NoReader,
                     words.contains("--no-auto") ? "usedCartridge" : "",
                     {is("")},
                     {holds("Can not found d"), holds("evice.\nNo reader was found."),
                      holds("Plug it in")}});
    }
    const QJsonObject none{
        {"event", "detected"}, {"what", "cartridge"}, {"error", "Can not found dump device."}};
    const Texts answer{is("Can not found dump device.\n")};
    const Texts problem{begins("No reader was found. Plug it in")};
    rows.append({"info",
                 "info",
                 kNoDrive,
                 {},
                 ExitCode::NoReader,
                 "noCartridge",
                 answer,
                 problem,
                 {},
                 {none}});
    rows.append({"info, another drive",
                 "info --drive F",
                 "demo",
                 {},
                 ExitCode::NoReader,
                 "noCartridge",
                 answer,
                 problem,
                 {},
                 {none}});
    rows.append({"drives", "drives", kNoDrive, {}, ExitCode::NoReader, ""});
    for (const QString reader : {"drives:E=/nonexistent/reader", "drives:reader"}) {
        rows.append({reader,
                     "dump DIR/file" + kAllSaid + " --overwrite",
                     reader,
                     files,
                     ExitCode::NoReader,
                     "usedCartridge",
                     {is("")},
                     {holds("Can not found device."), holds("Plug it in")},
                     {},
                     {},
                     reader != "drives:reader"}); // which is warned of on standard error
    }
    rows.append({"another drive",
                 "dump DIR/file --drive F" + kAllSaid + " --overwrite",
                 kCart,
                 files + Files{{"cart", gbSample()}},
                 ExitCode::NoReader,
                 "usedCartridge",
                 {is("")},
                 {holds("Can not found device."), holds("Plug it in")}});
    return rows;
}

QVector<CliCase> usageCases()
{
    const Files old{{"file", kOld}};
    QVector<CliCase> rows;
    const auto add = [&](const QString &name, const QString &words, const QString &reason,
                         bool hasJson = true) {
        rows.append({name,
                     words,
                     "demo",
                     old,
                     ExitCode::Usage,
                     "",
                     {is("")},
                     {holds(reason)},
                     {},
                     {},
                     hasJson});
    };
    add("nothing", "", "Missing command", false);
    add("unknown option", "dump DIR/file --fast", "dump has no option --fast.", false);
    add("unknown command", "erase DIR/file", "\"erase\" is no command", false);
    add("missing file", "dump", "exactly one file name", false);
    add("option of a library", "--help-all", "There is no option --help-all.", false);
    add("size with a sign", "dump DIR/file --system gb --mapper mbc5 --rom-size +1M",
        "--rom-size +1M: not a size", false);
    add("file name for info", "info DIR/file", "info takes no \"", false);
    add("missing option", "dump DIR/file --no-auto --system gb --rom-size 64K", "Missing --mapper",
        false);
    add("wrong value", "dump DIR/file --system gb --mapper mbc9 --rom-size 64K",
        "--mapper mbc9: not one of", false);
    add("too large", "dump DIR/file --system gb --mapper mbc5 --rom-size 65M", "up to 64M", false);

    const auto addReader = [&](const QString &reader, const QString &reason) {
        rows.append({reader,
                     "dump DIR/file" + kAllSaid + " --overwrite",
                     reader,
                     old + Files{{"odd.sav", noise(100, 1)}, {"cart", gbSample()}},
                     ExitCode::Usage,
                     "",
                     {is("")},
                     {begins("gbdriver-cli: GBDRIVER_VIRTUAL_READER: "), holds(reason)}});
    };
    addReader("something", "\"something\" is not understood");
    addReader("save=x.sav", "either demo or cart=FILE must be given");
    addReader("demo,cart=x.gb", "either demo or cart=FILE");
    addReader("cart=/nonexistent.gb", "/nonexistent.gb");
    addReader("cart=", "\"cart=\" is not understood");
    addReader("demo,drive=7", "\"drive=7\" is not understood");
    addReader("cart=DIR/cart,save=DIR/odd.sav", "odd.sav");
    rows.append({"info", "info", "cart=DIR/none", {}, ExitCode::Usage, ""});

    const QString versionStart = "gbdriver-cli " GBDRIVER_VERSION "\n";
    rows.append({"help",
                 "--help",
                 "",
                 {},
                 ExitCode::Done,
                 "",
                 {holds("write-ram FILE")},
                 {is("")},
                 {},
                 {},
                 false});
    rows.append({"help of a command",
                 "dump --help",
                 "",
                 {},
                 ExitCode::Done,
                 "",
                 {},
                 {is("")},
                 {},
                 {},
                 false});
    rows.append({"version",
                 "--version",
                 "",
                 {},
                 ExitCode::Done,
                 "",
                 {is(versionStart)},
                 {is("")},
                 {},
                 {},
                 false});
    return rows;
}
