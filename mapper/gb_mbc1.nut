// MBC1: up to 2 MiB of ROM, up to 32 KiB of RAM. Registers, by the address that is written:
//   0x0000  RAM gate: 0x0A in the low bits opens
//   0x2000  BANK1, 5 bits: ROM bank at 0x4000-0x7FFF; 0 selects 1
//   0x4000  BANK2, 2 bits: bits 5-6 of the ROM bank, or the RAM bank
//   0x6000  mode: 1 lets BANK2 also choose the RAM bank and the ROM bank at 0x0000-0x3FFF
// Because BANK1 cannot be 0, banks 0x20, 0x40 and 0x60 show up only at 0x0000, in mode 1. Boards
// with several games leave bit 4 of BANK1 out, which a script cannot see. Such a ROM of 1 MiB is
// read as one of 2 MiB, in the layout of a single game: every bank is then in the file.
// Source: Pan Docs, "MBC1"; Game Boy: Complete Technical Reference, "MBC1".

dofile(getstackinfos(1).src.slice(0, -"gb_mbc1.nut".len()) + "common.nut");
dofile(FOLDER + "flash.nut");

MAPPER = "MBC1";

const LARGEST_ROM = 0x200000;

// The bytes programmed at 0x4000-0x7FFF reach BANK2 and the mode. Boards with chips up to this size
// do not use BANK2.
const LARGEST_FLASH = 0x80000;

SAVE_SIZES <- [0x2000, 0x8000];

// RAM closed, a flash chip in read mode, mode 0, RAM bank 0, ROM bank 1.
function rest(dev)
{
    cpu_write(dev, 0x0000, 0xF0, 0x6000, 0, 0x4000, 0, 0x2000, 1);
}

function show_rom(dev, bank)
{
    local low = bank % 32;
    if (bank == 0)
        rest(dev);
    else if (low == 0)
        cpu_write(dev, 0x6000, 1, 0x4000, bank / 32, 0x2000, 1);
    else
        cpu_write(dev, 0x2000, low);
    return low == 0 ? 0x0000 : 0x4000;
}

function cpu_dump(dev, size, _)
{
    check_rom_size(size, LARGEST_ROM);
    read_rom(dev, size, rest, show_rom);
}

function open_ram(dev, bank)
{
    cpu_write(dev, 0x6000, 1, 0x4000, bank, 0x0000, 0x0A);
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
    erase_flash(dev, size, width, LARGEST_FLASH);
}

function cpu_flash(dev, size, _)
{
    program_flash(dev, size, LARGEST_FLASH, rest, function(dev, bank) {
        cpu_write(dev, 0x6000, 0, 0x4000, 0, 0x2000, bank);
        return bank == 0 ? 0x0000 : 0x4000;
    });
}
