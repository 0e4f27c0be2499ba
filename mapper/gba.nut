// Game Boy Advance: up to 32 MiB of ROM, and a save of any kind. The ROM space has 24 address lines
// that count halfwords. Save chips are unlocked, switched and waited for by the reader; a script
// passes byte addresses. The kind and size that the user chose decide which of the reader's
// commands are used, and the program erases FLASH before it calls save_write.
// Source: GBATEK, "GBA Cartridge ROM", "GBA Cart Backup IDs".

dofile(getstackinfos(1).src.slice(0, -"gba.nut".len()) + "common.nut");

MAPPER = "GBA";

const PIECE = 0x100000; // the longest read, and the smallest ROM
const LARGEST_ROM = 0x2000000;

// EEPROM: 512 bytes, 8 KiB; SRAM: 32, 64 KiB; FLASH: 64, 128 KiB.
SAVE_SIZES <- [0x200, 0x2000, 0x8000, 0x10000, 0x20000];

function cpu_dump(dev, size, _)
{
    if (size > LARGEST_ROM)
        refuse("read a ROM of " + size + " bytes", "the cartridge bus reaches 32 MiB; cartridges " +
            "with more switch banks by writes, and there are none while a GBA ROM is read");
    check_rom_size(size, LARGEST_ROM, PIECE);
    for (local position = 0; position < size; position += PIECE)
        cpu_read(dev, position >> 1, PIECE);
}

// One call for the whole save: a small EEPROM is written from its start, whatever the address.

function save_dump(dev, size, _)
{
    check_save_size(size, SAVE_SIZES);
    ram_read(dev, 0, size);
}

function save_write(dev, size, _)
{
    check_save_size(size, SAVE_SIZES);
    ram_write(dev, 0, size);
}
