// Two mappers whose ROMs one way of reading serves.
// TAMA5: up to 512 KiB of ROM. It knows 0xA001, which takes the number of a register, and 0xA000,
// which takes four bits for that one; writes below 0x8000 do nothing.
//   0, 1    ROM bank at 0x4000-0x7FFF, bits 0-3 and 4-7
//   6, 7    the save; writing them can change it, so they are never selected here
//   0x0A    selected first, it answers when the chip is ready for the others
// HuC1: up to 1 MiB of ROM, up to 32 KiB of RAM. Registers, by the address that is written:
//   0x0000  0x0E: an infrared light instead of the RAM at 0xA000-0xBFFF; else the RAM, always open
//   0x2000  ROM bank at 0x4000-0x7FFF, 6 bits
//   0x4000  RAM bank, 2 bits
// While it shows the light, what is meant for a TAMA5 misses the RAM and only switches the light,
// by bit 0.
// On any other board the value 0x0E closes the gate. It is written last before 0xA000 and 0xA001,
// because 0x2000 is a second place of an MBC2's gate. RAM without a gate loses its first two bytes.
// Source: Pan Docs, "HuC1"; research on TAMA5 in the gbdev forum.

dofile(getstackinfos(1).src.slice(0, -"gb_tama5.nut".len()) + "common.nut");

MAPPER = "TAMA5 or HuC1";
refuse_flash("no flash cartridge has one of these mappers");

const LARGEST_ROM = 0x100000;

SAVE_SIZES <- [0x2000, 0x8000];

// Both mappers' ROM bank; RAM out of reach, RAM bank 0, light off.
function select_rom(dev, bank)
{
    cpu_write(dev, 0x2000, bank, 0x4000, 0, 0x0000, 0x0E,
        0xA001, 0, 0xA000, bank & 15, 0xA001, 1, 0xA000, bank >> 4, 0xA001, 0);
}

function rest(dev)
{
    select_rom(dev, 1);
}

function show_rom(dev, bank)
{
    if (bank == 0) {
        cpu_write(dev, 0x0000, 0x0E, 0xA001, 0x0A);
        cpu_read(dev, 0x0000, 0); // moves nothing, but takes the time that a TAMA5 needs
        rest(dev);
        return 0x0000;
    }
    select_rom(dev, bank);
    return 0x4000;
}

function cpu_dump(dev, size, _)
{
    check_rom_size(size, LARGEST_ROM);
    read_rom(dev, size, rest, show_rom);
}

// A TAMA5 would take the bytes of a save for commands and lose its own. The size tells them apart.
function refuse_tama5(size)
{
    if (size < RAM_BANK)
        refuse("read or write a save of " + size + " bytes", "a TAMA5 keeps its 32 bytes behind " +
            "registers of four bits, and a script does not see the bits",
            "Choose 8 or 32 KiB for a HuC1.");
}

function open_ram(dev, bank)
{
    cpu_write(dev, 0x0000, 0x0A, 0x4000, bank);
}

function save_dump(dev, size, _)
{
    refuse_tama5(size);
    dump_save(dev, size, SAVE_SIZES, rest, open_ram);
}

function save_write(dev, size, _)
{
    refuse_tama5(size);
    write_save(dev, size, SAVE_SIZES, rest, open_ram);
}
