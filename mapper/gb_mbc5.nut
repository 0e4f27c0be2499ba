// MBC5: up to 8 MiB of ROM, up to 128 KiB of RAM. Registers, by the address that is written:
//   0x0000  RAM gate: 0x0A opens; all eight bits count
//   0x2000  ROM bank at 0x4000-0x7FFF, bits 0-7; bank 0 is allowed
//   0x3000  ROM bank, bit 8
//   0x4000  RAM bank, 4 bits; on rumble cartridges bit 3 runs the motor instead
// The camera, HuC-3 and unknown mappers select this script too. They have one register for the
// whole bank number, which works because 0x3000 is written before 0x2000 and only where bit 8
// changes. The camera takes RAM writes only with a clock signal that the reader may not give it.
// Source: Pan Docs, "MBC5", "HuC-3", "Pocket Camera"; Game Boy: Complete Technical Reference,
// "MBC5".

dofile(getstackinfos(1).src.slice(0, -"gb_mbc5.nut".len()) + "common.nut");
dofile(FOLDER + "flash.nut");

MAPPER = "MBC5";

const LARGEST_ROM = 0x800000;

// A TAMA5 can be taken for this mapper, and RAM writes would destroy its save. That is smaller.
SAVE_SIZES <- [0x2000, 0x8000, 0x10000, 0x20000];

// RAM closed, a flash chip in read mode, RAM bank 0, ROM bank 1.
function rest(dev)
{
    cpu_write(dev, 0x0000, 0xF0, 0x4000, 0, 0x3000, 0, 0x2000, 1);
}

function select_rom(dev, bank)
{
    if (bank % 256 == 0)
        cpu_write(dev, 0x3000, bank / 256, 0x2000, 0);
    else
        cpu_write(dev, 0x2000, bank % 256);
}

function cpu_dump(dev, size, _)
{
    dump_rom(dev, size, LARGEST_ROM, rest, select_rom);
}

function open_ram(dev, bank)
{
    cpu_write(dev, 0x4000, bank, 0x0000, 0x0A);
}

function save_dump(dev, size, _)
{
    dump_save(dev, size, SAVE_SIZES, rest, open_ram);
}

function save_write(dev, size, _)
{
    write_save(dev, size, SAVE_SIZES, rest, open_ram);
}

function cpu_erase(dev, size, width)
{
    erase_flash(dev, size, width, LARGEST_ROM);
}

// The bytes programmed at 0x4000-0x7FFF reach the RAM bank alone, behind the closed gate.
function cpu_flash(dev, size, _)
{
    program_flash(dev, size, LARGEST_ROM, rest, function(dev, bank) {
        cpu_write(dev, 0x3000, bank / 256, 0x2000, bank % 256);
        return 0x4000;
    });
}
