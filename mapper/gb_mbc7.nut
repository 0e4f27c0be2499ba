// MBC7: up to 2 MiB of ROM, an accelerometer, the save in a serial EEPROM. Registers, by the
// address that is written:
//   0x0000  first gate of the registers at 0xA000-0xAFFF: 0x0A opens
//   0x2000  ROM bank at 0x4000-0x7FFF, 7 bits
//   0x4000  second gate: 0x40 opens
// Bank 0 is read at 0x0000: whether it also shows up at 0x4000 is not known.
// Source: Pan Docs, "MBC7".

dofile(getstackinfos(1).src.slice(0, -"gb_mbc7.nut".len()) + "common.nut");

MAPPER = "MBC7";
refuse_flash("no flash cartridge has this mapper");

const LARGEST_ROM = 0x200000;

// Both gates closed, bank 1.
function rest(dev)
{
    cpu_write(dev, 0x0000, 0x00, 0x4000, 0x00, 0x2000, 1);
}

function cpu_dump(dev, size, _)
{
    dump_rom(dev, size, LARGEST_ROM, rest, @(dev, bank) cpu_write(dev, 0x2000, bank));
}

function save_dump(dev, size, _)
{
    refuse("read or write the save", "it lies in a serial EEPROM that moves one bit at a time, " +
        "and a script does not see the bits", "Only the ROM can be read.");
}

save_write <- save_dump;
