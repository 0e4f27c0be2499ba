// Cartridges without a mapper: 32 KiB of ROM at 0x0000-0x7FFF, and on some boards 8 KiB of RAM at
// 0xA000-0xBFFF that is always enabled. There is no register, so nothing is ever written to the
// ROM area: boards with a latch instead of a mapper would switch to another game.
// Source: Pan Docs, "No MBC".

const ROM_SIZE = 0x8000;
const RAM_BASE = 0xA000;
const RAM_SIZE = 0x2000;

function check_size(what, size, expected)
{
    if (size != expected)
        throw "A cartridge without a mapper has a " + what + " of " + expected / 1024 +
            " KiB, not of " + size + " bytes. Choose that size, or the mapper that the cartridge " +
            "has. Nothing was sent to the cartridge.";
}

function cpu_dump(dev, size, _)
{
    check_size("ROM", size, ROM_SIZE);
    cpu_read(dev, 0x0000, ROM_SIZE);
}

function save_dump(dev, size, _)
{
    check_size("save", size, RAM_SIZE);
    cpu_read(dev, RAM_BASE, RAM_SIZE);
}

function save_write(dev, size, _)
{
    check_size("save", size, RAM_SIZE);
    ram_write(dev, RAM_BASE, RAM_SIZE);
}
