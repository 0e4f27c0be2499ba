// MBC3: up to 2 MiB of ROM, up to 32 KiB of RAM, a clock; MBC30: 4 MiB, 64 KiB. Registers, by the
// address that is written:
//   0x0000  gate of RAM and clock: 0x0A in the low bits opens
//   0x2000  ROM bank at 0x4000-0x7FFF, 7 bits, on the MBC30 8; 0 selects 1
//   0x4000  RAM bank, 0-3, on the MBC30 0-7; from 8 on a register of the clock
//   0x6000  0, then 1: latches the clock
// The clock is no part of a save: its registers are not memory.
// Source: Pan Docs, "MBC3".

dofile(getstackinfos(1).src.slice(0, -"gb_mbc3.nut".len()) + "common.nut");
dofile(FOLDER + "flash.nut");

MAPPER = "MBC3";

const LARGEST_ROM = 0x400000;

SAVE_SIZES <- [0x2000, 0x8000, 0x10000];

// RAM closed, a flash chip in read mode, RAM bank 0, ROM bank 1.
function rest(dev)
{
    cpu_write(dev, 0x0000, 0xF0, 0x4000, 0, 0x2000, 1);
}

function cpu_dump(dev, size, _)
{
    dump_rom(dev, size, LARGEST_ROM, rest, @(dev, bank) cpu_write(dev, 0x2000, bank));
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

// The bytes programmed at 0x0000-0x3FFF reach the ROM bank register, which does not move bank 0.
// Those at 0x4000-0x7FFF reach the RAM bank and the clock's latch, behind the closed gate.
function cpu_flash(dev, size, _)
{
    program_flash(dev, size, LARGEST_ROM, rest, function(dev, bank) {
        if (bank == 0)
            return 0x0000;
        cpu_write(dev, 0x2000, bank);
        return 0x4000;
    });
}
