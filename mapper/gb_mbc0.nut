// Cartridges without a mapper: 32 KiB of ROM at 0x0000-0x7FFF, on some boards 8 KiB of RAM at
// 0xA000-0xBFFF. Nothing is written to read such a ROM: boards with a latch instead of a mapper
// would switch to another game.
//
// Larger ROMs and all saves are taken for those of an MMM01, whose header selects this script too;
// without a mapper the writes have no effect. An MMM01 starts with the last 32 KiB of its ROM on
// the bus and can be set up until it is mapped; then only a loss of power undoes that. Registers,
// by the address that is written:
//   0x0000  bits 0-3: RAM gate, 0x0A opens; bits 4-5: lock RAM bank bits; bit 6: map
//   0x2000  bits 0-4: ROM bank at 0x4000-0x7FFF, 0 selects 1; bits 5-6: its next bits
//   0x4000  bits 0-1: RAM bank; bits 2-3 and 4-5: upper bits of the RAM bank and of the ROM bank
//   0x6000  bit 0: mode as the MBC1's; bits 2-5: lock ROM bank bits; bit 6: multiplex
// Mapping locks all but the low bits of each. Multiplexing makes bits 0-1 of 0x4000 the next bits
// of the ROM bank: then 2 MiB are within reach instead of 512 KiB, and one RAM bank instead of
// four.
// Source: Pan Docs, "No MBC", "MMM01".

dofile(getstackinfos(1).src.slice(0, -"gb_mbc0.nut".len()) + "common.nut");
dofile(FOLDER + "flash.nut");

MAPPER = "No mapper or MMM01";

const PLAIN_ROM = 0x8000;
const LARGEST_PLAINLY_MAPPED_ROM = 0x80000;
const LARGEST_ROM = 0x200000;
const MAP = 0x40;
const MULTIPLEX_IN_MODE_1 = 0x41;

SAVE_SIZES <- [0x2000, 0x8000];

// RAM closed, mode 0, RAM bank 0, ROM bank 1; stays mapped.
function rest(dev)
{
    cpu_write(dev, 0x0000, 0x00, 0x6000, 0, 0x4000, 0, 0x2000, 1);
}

function warn()
{
    print("An MMM01 cartridge stays as this job maps it. Take it out and put it in again before " +
        "another job.");
}

function cpu_dump(dev, size, _)
{
    if (size > LARGEST_ROM)
        refuse("read a ROM of " + size + " bytes", "an MMM01 shows no more than 2 MiB until it " +
            "loses power, and without a mapper a ROM has 32 KiB");
    check_rom_size(size, LARGEST_ROM);
    if (size == PLAIN_ROM)
        return cpu_read(dev, 0x0000, PLAIN_ROM);
    local setup = size > LARGEST_PLAINLY_MAPPED_ROM ? MULTIPLEX_IN_MODE_1 : 0x00;
    read_rom(dev, size, rest, function(dev, bank) {
        local low = bank % 32;
        if (bank == 0)
            cpu_write(dev, 0x2000, 0, 0x6000, setup, 0x4000, 0, 0x0000, 0x00, 0x0000, MAP,
                0x2000, 1);
        else if (low == 0)
            cpu_write(dev, 0x4000, bank / 32, 0x2000, 1);
        else
            cpu_write(dev, 0x2000, low);
        return low == 0 ? 0x0000 : 0x4000;
    });
    warn();
}

// The gate is opened last, as the games open it once their menu has mapped them.
function open_ram(dev, bank)
{
    cpu_write(dev, 0x2000, 0, 0x6000, 0, 0x4000, 0, 0x0000, 0x00, 0x0000, MAP,
        0x6000, 1, 0x4000, bank, 0x0000, 0x0A);
}

function save_dump(dev, size, _)
{
    dump_save(dev, size, SAVE_SIZES, rest, open_ram);
    warn();
}

function save_write(dev, size, _)
{
    write_save(dev, size, SAVE_SIZES, rest, open_ram);
    warn();
}

// A flash chip without a mapper stands on the bus as a whole.

function cpu_erase(dev, size, width)
{
    erase_flash(dev, size, width, PLAIN_ROM, PLAIN_ROM);
}

function cpu_flash(dev, size, _)
{
    program_flash(dev, size, PLAIN_ROM, @(dev) cpu_write(dev, 0x0000, 0xF0), @(dev, bank) 0x0000,
        PLAIN_ROM);
}
