#include "cli_cases.h"

namespace
{

constexpr int kLogoOffset = 0x104;
constexpr int kRomSizeCode = 0x148;
constexpr char k256Kibi = 3; // as a size code
constexpr int kHeaderChecksum = 0x14D;
constexpr int kGbaComplement = 0xBD;

const QString kKnown = "verified: A Game (World) (Our games)";
const QString kGbaUnverified =
    "unverified: not a known dump; such a ROM has no checksum over all of its bytes";
const QString kSuspicious = "suspicious: ";

QVector<CliCase> dumpVerdicts()
{
    const QByteArray good = gbSample();
    const QByteArray gba = gbaSample();
    const Files table{{"games.dat", datOf(good)}};
    QVector<CliCase> rows;
    // `image`: empty for no cartridge; `options`: of the reader.
    const auto add = [&](const QString &name, const QByteArray &image, const QString &options,
                         const QString &more, int reads, const QString &summary, ExitCode code) {
        const bool isKnown = summary == kKnown;
        const bool isUnstable = summary.startsWith("unstable");
        const QString file = isUnstable ? "file.unstable" : "file";
        rows.append({name,
                     "dump DIR/file" + more,
                     (image.isEmpty() ? kNoCart : kCart) + options,
                     table + (image.isEmpty() ? Files() : Files{{"cart", image}}),
                     code,
                     isKnown ? "usedCartridge verified" : "usedCartridge judged",
                     {is(summary + "\nFACTS(" + file + ")\n")},
                     {},
                     {{file, isUnstable || code == ExitCode::DataMismatch ? kAnyBytes : image}},
                     {{{"verdict", summary.section(':', 0, 0)}, {"reads", reads}}}});
        if (image.isEmpty())
            rows.last().left["file"] = QByteArray(static_cast<int>(kRomSize), '\xFF');
    };
    add("known", good, "", " --dat DIR/games.dat", 1, kKnown, ExitCode::Done);
    add("known, read three times", good, "", " --dat DIR/games.dat --reads 3", 3, kKnown,
        ExitCode::Done);
    add("not known", good, "", "", 2,
        "consistent: logo, header checksum and checksum over the whole ROM are right; 2 equal "
        "reads; not a known dump; the checksum is a sum and does not see swapped banks",
        ExitCode::Done);
    add("read once", good, "", " --no-verify", 1, "unverified: not a known dump; read only once",
        ExitCode::Unverified);
    add("GBA", gba, "", "", 2, kGbaUnverified, ExitCode::Unverified);
    add("GBA, read once", gba, "", " --reads 1", 1, kGbaUnverified + "; read only once",
        ExitCode::Unverified);

    add("bad contacts", good, ",flaky=5", "", 2, "unstable: reads differ in bank 5 of 8",
        ExitCode::DataMismatch);
    // The second read already tells.
    add("bad contacts, three reads wanted", good, ",flaky=1", " --reads 3", 2,
        "unstable: reads differ in bank 1 of 8", ExitCode::DataMismatch);
    add("bad contacts, first read known", good, ",flaky=7", " --dat DIR/games.dat --reads 2", 2,
        "unstable: reads differ in bank 7 of 8", ExitCode::DataMismatch);

    add("header checksum", withGlobalChecksum(raised(good, kHeaderChecksum)), "", "", 2,
        kSuspicious + "the header's checksum is wrong", ExitCode::DataMismatch);
    add("global checksum", raised(good, good.size() - 1), "", "", 2,
        kSuspicious + "the checksum over the whole ROM is wrong", ExitCode::DataMismatch);
    add("logo", raised(good, kLogoOffset), "", kAllSaid, 2,
        kSuspicious + "there is no boot logo in the header", ExitCode::DataMismatch);
    add("complement check", raised(gba, kGbaComplement), "", "", 2,
        kSuspicious + "the header's checksum is wrong", ExitCode::DataMismatch);
    add("chip smaller than its header says", withHeaderByte(good, kRomSizeCode, k256Kibi),
        ",flash=8", "", 2, kSuspicious + "everything from byte 131072 repeats what is before",
        ExitCode::DataMismatch);
    add("chip smaller than was asked for", good, "", " --rom-size 256K", 2,
        kSuspicious + "everything from byte 131072 repeats what is before; the header speaks of "
                      "131072 bytes, these are 262144",
        ExitCode::DataMismatch);
    add("less asked for than there is", good, "", " --rom-size 64K", 2,
        kSuspicious + "the checksum over the whole ROM is wrong; the header speaks of 131072 "
                      "bytes, these are 65536",
        ExitCode::DataMismatch);
    add("GBA game smaller than the table says", gbaImage("ALXP", 2048 * kKibi), "", "", 2,
        kSuspicious + "from byte 2097152 no memory answers", ExitCode::DataMismatch);
    add("empty slot", {}, "", kAllSaid, 2,
        kSuspicious + "all bytes are equal: an empty slot or no contact", ExitCode::DataMismatch);

    const Files there{{"cart", good}, {"file", kOld}};
    // What stood under the name is better than what was read.
    rows.append({"bad contacts, replacing",
                 "dump DIR/file --overwrite",
                 kCart + ",flaky=0",
                 there,
                 ExitCode::DataMismatch,
                 "usedCartridge judged",
                 {holds(": 131072 bytes")},
                 {},
                 {{"file.unstable", kAnyBytes}}});
    // Nobody knows which of the reads is the better one.
    rows.append({"bad contacts again",
                 "dump DIR/file",
                 kCart + ",flaky=4",
                 {{"cart", good}, {"file.unstable", kOld}},
                 ExitCode::DataMismatch,
                 "usedCartridge judged",
                 {holds("\nDIR/file (2).unstable: 131072 bytes")},
                 {},
                 {{"file (2).unstable", kAnyBytes}}});
    rows.append({"bad contacts again, replacing",
                 "dump DIR/file --overwrite",
                 kCart + ",flaky=4",
                 {{"cart", good}, {"file.unstable", kOld}},
                 ExitCode::DataMismatch,
                 "usedCartridge judged",
                 {holds(": 131072 bytes")},
                 {},
                 {{"file.unstable", kAnyBytes}}});
    return rows;
}

QVector<CliCase> saveVerdicts()
{
    const QByteArray save = saveSample();
    QVector<CliCase> rows;
    const auto add = [&](const QString &name, const QByteArray &held, const QString &more,
                         int reads, const QString &summary, ExitCode code, const QByteArray &read) {
        rows.append({name,
                     "read-ram DIR/file" + more,
                     kSaved,
                     {{"cart", gbSample()}, {"kept.sav", held}},
                     code,
                     "usedCartridge judged",
                     {is(summary + "\nFACTS(file)\n")},
                     {},
                     {{"file", read}},
                     {{{"verdict", summary.section(':', 0, 0)}, {"reads", reads}}}});
    };
    const QByteArray empty(kRamSize, '\xFF');
    add("two reads", save, "", 2, "consistent: 2 equal reads", ExitCode::Done, save);
    add("four reads", save, " --reads 4", 4, "consistent: 4 equal reads", ExitCode::Done, save);
    add("read once", save, " --no-verify", 1, "unverified: read only once", ExitCode::Unverified,
        save);
    add("never saved", empty, "", 2,
        kSuspicious + "all bytes are equal: an empty save, no contact, or the wrong kind of save "
                      "memory",
        ExitCode::DataMismatch, empty);
    // The RAM of 32 KiB, read as if it had four times as much.
    add("smaller than was asked for", save, " --ram-size 128K", 2,
        "unverified: everything from byte 32768 repeats what is before: two copies, or a smaller "
        "save memory",
        ExitCode::Unverified, save + save + save + save);
    return rows;
}

QVector<CliCase> fileVerdicts()
{
    const QByteArray good = gbSample();
    QVector<CliCase> rows;
    const auto add = [&](const QString &name, const QByteArray &image, const QString &more,
                         const QString &summary, ExitCode code) {
        rows.append({name,
                     "verify DIR/file" + more,
                     "",
                     {{"file", image}, {"games.dat", datOf(good)}},
                     code,
                     summary == kKnown ? "verified" : "judged",
                     {is(summary + "\nFACTS(file)\n")},
                     {},
                     {},
                     {{{"verdict", summary.section(':', 0, 0)}, {"reads", 0}}}});
    };
    add("file, known", good, " --dat DIR/games.dat", kKnown, ExitCode::Done);
    add("file, not known", good, "", "unverified: not a known dump; nobody saw it read twice",
        ExitCode::Unverified);
    add("file, GBA", gbaImage("ALXP", 64 * kKibi), "",
        kGbaUnverified + "; nobody saw it read twice", ExitCode::Unverified);
    add("file, cut off", good.left(good.size() / 2), "",
        kSuspicious + "the checksum over the whole ROM is wrong; the header speaks of 131072 "
                      "bytes, these are 65536",
        ExitCode::DataMismatch);
    add("file, twice", good + good, "",
        kSuspicious + "everything from byte 131072 repeats what is before; the header speaks of "
                      "131072 bytes, these are 262144",
        ExitCode::DataMismatch);
    add("file, no game", noise(kRomSize, 1), "",
        kSuspicious + "there is no boot logo in the header", ExitCode::DataMismatch);
    add("file, erased chip", QByteArray(static_cast<int>(kRomSize), '\xFF'), "",
        kSuspicious + "all bytes are equal: an empty slot or no contact", ExitCode::DataMismatch);
    add("file, empty", {}, "", kSuspicious + "there are no bytes", ExitCode::DataMismatch);
    return rows;
}

} // namespace

QVector<CliCase> verdictCases()
{
    return dumpVerdicts() + saveVerdicts() + fileVerdicts();
}
