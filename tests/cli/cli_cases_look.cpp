#include "cli_cases.h"

namespace
{

constexpr int kColourFlag = 0x143;
constexpr int kHeaderChecksum = 0x14D;
constexpr int kGlobalChecksum = 0x14E;
constexpr int kGbaComplement = 0xBD;

const QString kDevice = "--Device information--\n"
                        "Driver label: VIRTUAL\n"
                        "Device firmware: QDX_PCB02_FW303\n"
                        "\n";
const QString kGb = kDevice + "--GB/GBC Cartridge information--\n"
                              "Title: VIRTUAL\n"
                              "Cart type: ROM+MBC5+RAM+BATT\n"
                              "ROM Size: 128KB\n"
                              "RAM Size: 32KB\n"
                              "Header checksum: %1\n"
                              "Global checksum: %2\n";
const QString kNothing = kDevice + "Can not auto detect cartridge information.\n"
                                   "Maybe no insert cart or it's a black cart.\n"
                                   "Also try:\n"
                                   " 1.Turn off anti-virus software.\n"
                                   " 2.Damaged or Dirty.\n"
                                   " 3.Switch correct volte on dump board.\n"
                                   " 4.Try again.\n";

QJsonObject detected(const QJsonObject &more)
{
    QJsonObject event{
        {"event", "detected"},
        {"what", "cartridge"},
        {"reader", QJsonObject{{"label", "VIRTUAL"}, {"firmware", "QDX_PCB02_FW303"}}}};
    for (auto key = more.begin(); key != more.end(); ++key)
        event.insert(key.key(), key.value());
    return event;
}

QJsonObject detectedGb(const QString &header, const QString &global)
{
    return detected({{"system", "gb"},
                     {"title", "VIRTUAL"},
                     {"type", "ROM+MBC5+RAM+BATT"},
                     {"mapper", "mbc5"},
                     {"romSize", 131072},
                     {"ramSize", 32768},
                     {"headerChecksum", header},
                     {"globalChecksum", global}});
}

QVector<CliCase> gbCases()
{
    QVector<CliCase> rows;
    const QByteArray good = gbSample();
    QByteArray otherFlag = good;
    otherFlag[kColourFlag] = '\x80'; // behind the text, which stays as it is
    const auto add = [&](const QString &name, const QByteArray &image, const QString &header,
                         const QString &global) {
        // The whole ROM is read for the global checksum; that is shown, but not as a job's log.
        rows.append({name,
                     "info",
                     kCart,
                     {{"cart", image}},
                     ExitCode::Done,
                     "gbCartridge",
                     {is(kGb.arg(header, global))},
                     {holds("] 100%  128.0 KiB of 128.0 KiB"), lacks("Start dump rom")},
                     {},
                     {detectedGb(header, global)}});
    };
    add("right", good, "right", "right");
    add("header checksum", withGlobalChecksum(raised(good, kHeaderChecksum)), "wrong", "right");
    add("high byte of the global one", raised(good, kGlobalChecksum), "right", "wrong");
    add("low byte of the global one", raised(good, kGlobalChecksum + 1), "right", "wrong");
    add("last byte of the ROM", raised(good, good.size() - 1), "right", "wrong");
    add("colour flag", otherFlag, "wrong", "wrong");
    rows.append({"quick",
                 "info --quick",
                 kCart,
                 {{"cart", good}},
                 ExitCode::Done,
                 "gbCartridge",
                 {is(kGb.arg("right", "not checked"))},
                 {is("")},
                 {},
                 {detectedGb("right", "not checked")}});
    // Without its script the ROM stays unread; everything else is said all the same.
    rows.append({"no script",
                 "info",
                 kCart,
                 {{"cart", good}},
                 ExitCode::FileError,
                 "gbCartridge",
                 {is(kGb.arg("right", "not checked, the ROM cannot be read"))},
                 {holds("There is no mapper script")},
                 {},
                 {},
                 true,
                 true});
    rows.append({"without RAM",
                 "info",
                 kCart,
                 {{"cart", gbImage(0x00, 32 * kKibi, 0)}},
                 ExitCode::Done,
                 "gbCartridge",
                 {holds("Cart type: ROM ONLY\nROM Size: 32KB\nRAM Size: 0B\n")},
                 {},
                 {},
                 {{{"mapper", "none"}, {"ramSize", 0}}}});
    return rows;
}

QVector<CliCase> gbaCases()
{
    QVector<CliCase> rows;
    const QByteArray known = gbaImage("ALXP", 64 * kKibi);
    for (const QString check : {"right", "wrong"}) {
        rows.append({"GBA, complement " + check,
                     "info",
                     kCart,
                     {{"cart", check == "right" ? known : raised(known, kGbaComplement)}},
                     ExitCode::Done,
                     "gbaCartridge",
                     {is(kDevice +
                         "--GBA Cartridge information--\n"
                         "Title: Ace Lightning (Euro)\n"
                         "Year: 2002\n"
                         "Publisher: BBC Worldwide\n"
                         "ROM Size: 4096KB\n"
                         "RAM Size: 512B\n"
                         "Complement check: " +
                         check + '\n')},
                     {is("")},
                     {},
                     {detected({{"system", "gba"},
                                {"title", "Ace Lightning (Euro)"},
                                {"year", "2002"},
                                {"publisher", "BBC Worldwide"},
                                {"codes", "AGB-ALXP-UKV"},
                                {"romSize", 4194304},
                                {"ramSize", 512},
                                {"saveType", "eep"},
                                {"headerTitle", "VIRTUAL"},
                                {"headerCode", "ALXP"},
                                {"complementCheck", check}})}});
    }
    const auto save = [&](const QString &code, const QJsonValue &type, int size) {
        rows.append({code,
                     "info",
                     kCart,
                     {{"cart", gbaImage(code, 64 * kKibi)}},
                     ExitCode::Done,
                     "gbaCartridge",
                     {},
                     {},
                     {},
                     {{{"what", "cartridge"}, {"saveType", type}, {"ramSize", size}}}});
    };
    save("BVDJ", "sram", 32768);
    save("AC4J", "eep", 8192);
    save("AWRP", "flash", 65536);
    save("BIXJ", "flash", 131072);
    save("AC9E", QJsonValue::Null, 0);
    // The program prints UTF-8 on every system; what it prints as text this test reads in its own
    // encoding.
    const char *const title = u8"Pokémon - Edición Esmeralda (Spa)";
    rows.append({"BPES",
                 "info",
                 kCart,
                 {{"cart", gbaImage("BPES", 64 * kKibi)}},
                 ExitCode::Done,
                 "gbaCartridge",
                 {holds("Title: " + QString::fromLocal8Bit(title) + '\n')},
                 {},
                 {},
                 {{{"title", QString::fromUtf8(title)}}}});
    rows.append({"unknown GBA game",
                 "info",
                 kCart,
                 {{"cart", gbaImage("ZZZZ", 64 * kKibi)}},
                 ExitCode::Done,
                 "unknownGbaCartridge",
                 {is(kDevice + "\n"
                               "It is a GBA cartridge with an unknown game.\n"
                               "Game code: ZZZZ\n"
                               "Header title: VIRTUAL\n"
                               "Complement check: right\n")},
                 {},
                 {},
                 {detected({{"system", "gba"},
                            {"headerTitle", "VIRTUAL"},
                            {"headerCode", "ZZZZ"},
                            {"complementCheck", "right"}})}});
    return rows;
}

} // namespace

QVector<CliCase> lookCases()
{
    QVector<CliCase> rows = gbCases() + gbaCases();
    rows.append(
        {"no cartridge",
         "info",
         kNoCart,
         {},
         ExitCode::NotRecognised,
         "noCartridge",
         {is(kNothing)},
         {is("failed: No cartridge was recognised. Push it in again, clean its contacts. The "
             "cartridge was only looked at.\n")},
         {},
         {detected({{"error", "Can not auto detect cartridge information."}})}});
    rows.append(
        {"tidy",
         "tidy DIR",
         {},
         {{"a.gb", "whole"}, {"a.gb.gbdriver-1.part", "half"}},
         ExitCode::Done,
         "leftBehind",
         {is("removed: DIR/a.gb.gbdriver-1.part\n")},
         {},
         {{"a.gb.gbdriver-1.part", kNoFile}},
         {{{"event", "left-behind"}, {"file", "DIR/a.gb.gbdriver-1.part"}, {"removed", true}}}});
    rows.append({"drives, virtual reader", "drives", "demo", {}, ExitCode::Done, "drive"});
#ifndef Q_OS_WIN // a folder is no drive there
    const QByteArray identity(65536, '\0');
    rows.append({"drives",
                 "drives",
                 "drives:E=DIR/stick:STICK;F=DIR/reader;G=DIR/mute",
                 {{"stick/K-DRIVER.DMP", "short"},
                  {"reader/K-DRIVER.DMP", identity},
                  {"reader/DUMP.ROM", noise(0x6000, 3)},
                  {"mute/K-DRIVER.DMP", identity},
                  {"mute/CMD.CMD/file", "in the way"}},
                 ExitCode::Done,
                 "drive"});
#endif
    return rows;
}
