#include "cli_cases.h"

namespace
{

const Files kThere{{"cart", gbSample()},
                   {"kept.sav", saveSample()},
                   {"new.sav", otherSave()},
                   {"short.sav", noise(kRamSize - 1, 2)}};
const QString kWriteSave = "write-ram DIR/new.sav --backup DIR/backups";

} // namespace

QVector<CliCase> writeCases()
{
    QVector<CliCase> rows;
    const QString saveWritten = "written: 32768 bytes, read back and equal\n";
    rows.append({"write-ram",
                 kWriteSave,
                 kSaved,
                 kThere,
                 ExitCode::Done,
                 "usedCartridge written",
                 {begins(saveWritten + "backup: DIR/backups/VIRTUAL ")},
                 {holds("backup  ["), holds("compare ["), holds("Backup: DIR/backups/VIRTUAL "),
                  holds("Write file :DIR/new.sav"), holds("Start write save...\n"),
                  holds("] 100%  32.0 KiB of 32.0 KiB"), holds("Write save finish.\n"),
                  holds("check   ["), holds("] 100%  32.0 KiB of 32.0 KiB")},
                 {{"kept.sav", otherSave()}, {"backups/VIRTUAL *", saveSample()}}});
    rows.append({"write-ram, no backup",
                 "write-ram DIR/new.sav --no-backup",
                 kSaved,
                 kThere,
                 ExitCode::Done,
                 "usedCartridge written",
                 {is(saveWritten)},
                 {},
                 {{"kept.sav", otherSave()}}});

    // Of flash: `rom` in place of what the cartridge holds, which says for itself what it is.
    const QByteArray rom = gbImage(0x19, 64 * kKibi, 0);
    const QString unseen = " --no-auto --no-backup --system gb --mapper mbc5";
    const auto flashed = [&](const QString &name, const QString &reader, const QByteArray &image,
                             const QString &log) {
        rows.append({name,
                     "flash DIR/rom" + unseen,
                     reader,
                     {{"rom", image}},
                     ExitCode::Done,
                     "usedCartridge written",
                     {is(QString("written: %1 bytes, read back and equal\n").arg(image.size()))},
                     {holds(log), holds("Erase flash chip finish.")}});
    };
    flashed("flash, 8 bit", "demo,flash=8", rom, "\nFlash chip is 8bit width\n");
    flashed("flash, 16 bit, 4 MiB", "demo,flash=16,flash-size=4M", rom,
            "\nFlash chip is 16bit width\nFlash chip size is :4096KB\n");
    const QString oneMebi = "demo,flash=16,flash-code=20"; // says that it has 1 MiB
    flashed("flash, a full chip", oneMebi, gbImage(0x19, 1024 * kKibi, 0), "Flash chip size");
    const QByteArray large = gbImage(0x1B, 128 * kKibi, 8192);
    rows.append({"flash, backup",
                 "flash DIR/rom --backup DIR/backups",
                 "flash=8,cart=DIR/cart",
                 {{"rom", rom}, {"cart", large}},
                 ExitCode::Done,
                 "usedCartridge written",
                 {begins("written: 65536 bytes, read back and equal\n"),
                  holds("backup: DIR/backups/VIRTUAL ")},
                 {},
                 {{"backups/VIRTUAL *", large}}});

    const auto fails = [&](const QString &name, const QString &words, const QString &reader,
                           const Files &files, ExitCode code, const QString &events,
                           const Texts &problem, const Files &left = {}) {
        rows.append({name, words, reader, files, code, events, {is("")}, problem, left});
    };
    const Files romThere{{"rom", rom}};
    fails("write-ram, no cartridge", kWriteSave, kNoCart, kThere, ExitCode::NotRecognised, "", {});
    fails("flash, no cartridge", "flash DIR/rom --backup DIR/backups", kNoCart, romThere,
          ExitCode::NotRecognised, "", {});
    fails("write-ram, no file", "write-ram DIR/none" + kSaveSaid, kSaved, kThere,
          ExitCode::FileError, "usedCartridge", {holds("Cannot read DIR/none: ")});
    fails("flash, no file", "flash DIR/none" + unseen, "demo,flash=8", {}, ExitCode::FileError, "",
          {holds("Cannot read DIR/none: "), holds("The cartridge was not touched."),
           lacks("Start erase")});
    fails("write-ram, backup in a file", "write-ram DIR/new.sav --backup DIR/cart", kSaved, kThere,
          ExitCode::FileError, "usedCartridge", {});
    fails("write-ram, wrong size", "write-ram DIR/short.sav --backup DIR/backups", kSaved, kThere,
          ExitCode::Refused, "usedCartridge", {});
    fails("write-ram, unseen, wrong size", "write-ram DIR/short.sav" + kSaveSaid, kSaved, kThere,
          ExitCode::Refused, "usedCartridge",
          {holds("DIR/short.sav has 32767 bytes, the save of the cartridge has 32768.")});
    // The reader does not take a payload that it cannot keep.
    const QString lost = "cart=DIR/cart,save=DIR/none/kept.sav";
    fails("write-ram, save that does not arrive", "write-ram DIR/new.sav --no-backup", lost, kThere,
          ExitCode::TransferFailed, "usedCartridge",
          {holds("DIR/none/kept.sav"),
           ends("The write did not come to its end. There is no backup.\n")});
    fails("write-ram, unseen, save that does not arrive",
          "write-ram DIR/new.sav --no-backup" + kSaveSaid, lost, kThere, ExitCode::TransferFailed,
          "usedCartridge", {holds("DIR/none/kept.sav")});
    fails("flash, GBA", "flash DIR/rom --no-auto --system gba", "demo", romThere, ExitCode::Refused,
          "usedCartridge",
          {holds("The reader has no command that writes a GBA ROM."), lacks("Flash chip is")});
    fails("flash, GBA cartridge", "flash DIR/rom --backup DIR/backups", kCart,
          romThere + Files{{"cart", gbaImage("ALXP", 64 * kKibi)}}, ExitCode::Refused,
          "usedCartridge", {});
    fails("flash, file larger than the chip", "flash DIR/rom" + unseen, oneMebi,
          {{"rom", gbImage(0x19, 2048 * kKibi, 0)}}, ExitCode::Refused, "usedCartridge",
          {holds("The file has 2097152 bytes, the flash chip 1048576."), lacks("Start erase")});
    fails("flash, bad contacts", "flash DIR/rom --backup DIR/backups",
          kCart + ",flash=16,flash-size=1M,flaky=3", romThere + Files{{"cart", gbSample()}},
          ExitCode::DataMismatch, "usedCartridge", {});
    return rows;
}
