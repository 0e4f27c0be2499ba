// What is found before a job begins, in words; the others are in words.cpp.
#include "trust/words.h"

#include <QCoreApplication>

namespace
{

struct Words {
    Q_DECLARE_TR_FUNCTIONS(Words)
};

} // namespace

QString dangerText(Danger danger)
{
    switch (danger) {
    case Danger::None:
        break;
    case Danger::Mbc6Save:
        return Words::tr("The save of an MBC6 cannot be read or written: no script knows this "
                         "mapper.");
    case Danger::Mbc7Save:
        return Words::tr("The save of an MBC7 cannot be read or written: it lies in a serial "
                         "EEPROM that moves one bit at a time, and the reader has no command "
                         "for that.");
    case Danger::Tama5Save:
        return Words::tr("The save of a TAMA5 cannot be read or written: it lies behind "
                         "registers, and the bytes of another save would destroy it.");
    }
    return QString();
}

QString contradictionText(Contradiction contradiction)
{
    switch (contradiction) {
    case Contradiction::None:
        break;
    case Contradiction::Mapper:
        return Words::tr("The header names another mapper than was chosen; what is meant for one "
                         "mapper can destroy what another keeps.");
    case Contradiction::SaveType:
        return Words::tr("The game table names another kind of save memory than was chosen; the "
                         "wrong commands can destroy what a read with them does not show.");
    case Contradiction::SaveSize:
        return Words::tr("The cartridge names another size of its save memory than was chosen; the "
                         "write would leave out a part of it or go over another.");
    }
    return QString();
}

QString blankFileText(const QString &path)
{
    return Words::tr("Warning: all bytes of %1 are equal. So looks an empty save, but also one "
                     "that was read with bad contacts or the wrong settings.")
        .arg(path);
}

QString doubtText(Doubt doubt)
{
    switch (doubt) {
    case Doubt::Tama5AsMbc5:
        return QStringLiteral("The header names the mapper TAMA5, which shows one bank again and "
                              "again to a job for MBC5");
    case Doubt::Mbc6AsMbc5:
        return QStringLiteral("The header names the mapper MBC6, which no script can read");
    case Doubt::UnknownRomSize:
        return QStringLiteral("The header has no known ROM size, so only 32 KiB are read");
    }
    return QString();
}

QString flashFaultText(FlashFault fault, int bytes, int allowedBytes)
{
    switch (fault) {
    case FlashFault::None:
        break;
    case FlashFault::GbaRom:
        return Words::tr("The reader has no command that writes a GBA ROM.");
    case FlashFault::NoFlashChip:
        return Words::tr("Cartridges with this mapper have no flash chip that can be "
                         "written.");
    case FlashFault::EmptyFile:
        return Words::tr("The file is empty.");
    case FlashFault::BeyondMapper:
        return Words::tr("The file has %1 bytes; with this mapper a flash chip takes %2.")
            .arg(bytes)
            .arg(allowedBytes);
    case FlashFault::ShortTail:
        return Words::tr("The last bank of the file has %1 bytes; %2 are the fewest that the "
                         "reader can program. Pad the file.")
            .arg(bytes)
            .arg(allowedBytes);
    case FlashFault::BeyondChip:
        return Words::tr("The file has %1 bytes, the flash chip %2.").arg(bytes).arg(allowedBytes);
    case FlashFault::BackupTooSmall:
        return Words::tr("The chip is erased as a whole, and a backup of %1 bytes may be only "
                         "a part of it: up to %2 can be in it.")
            .arg(bytes)
            .arg(allowedBytes);
    case FlashFault::BackupRepeats:
        return Words::tr("The chip has %2 bytes, and what is read of it repeats its first %1: so "
                         "it reads behind another mapper than the one that was chosen, and a "
                         "backup would be a part of it.")
            .arg(bytes)
            .arg(allowedBytes);
    }
    return QString();
}
