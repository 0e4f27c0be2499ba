// MBC5: up to 8 MiB of ROM, up to 128 KiB of RAM. Registers, by the address that is written:
//   0x0000  RAM gate: 0x0A opens, 0x00 closes (all eight bits count)
//   0x2000  ROM bank at 0x4000-0x7FFF, bits 0-7; bank 0 is allowed
//   0x3000  ROM bank, bit 8
//   0x4000  RAM bank, 4 bits; on rumble cartridges bit 3 runs the motor instead
// 0x3000 is always written before 0x2000 and only when bit 8 changes: mappers with one register for
// the whole bank number (HuC-3, the camera) then work as well.
// Source: Pan Docs, "MBC5"; Game Boy: Complete Technical Reference, "MBC5".

const ROM_BANK = 0x4000;
const RAM_BASE = 0xA000;
const RAM_BANK = 0x2000;

function check_size(what, size, sizes)
{
    if (sizes.find(size) == null)
        throw "MBC5: there is no " + what + " of " + size + " bytes. Choose the size that the " +
            "cartridge has. Nothing was sent to the cartridge.";
}

// RAM closed, RAM bank 0, ROM bank 1: the state after power-on.
function rest(dev)
{
    cpu_write(dev, 0x0000, 0x00, 0x4000, 0, 0x3000, 0, 0x2000, 1);
}

// Leaves the cartridge at rest, also after an error. `work` returns true if it ended at rest itself.
function guarded(dev, work)
{
    local isAtRest = false;
    try {
        isAtRest = work();
    } catch (error) {
        try { rest(dev); } catch (ignored) {}
        throw error;
    }
    if (!isAtRest)
        rest(dev);
}

function cpu_dump(dev, size, _)
{
    check_size("ROM", size, [0x8000, 0x10000, 0x20000, 0x40000, 0x80000, 0x100000, 0x200000,
        0x400000, 0x800000]);
    local banks = size / ROM_BANK;
    guarded(dev, function() {
        rest(dev);
        cpu_read(dev, 0x0000, 2 * ROM_BANK); // banks 0 and 1
        if (banks == 2)
            return true;
        for (local bank = 2; bank < banks; bank++) {
            if (bank % 256 == 0)
                cpu_write(dev, 0x3000, bank / 256, 0x2000, 0);
            else
                cpu_write(dev, 0x2000, bank % 256);
            cpu_read(dev, 0x4000, ROM_BANK);
        }
    });
}

// Calls `move` for every RAM bank with the bank selected and the gate open. TAMA5 cartridges can be
// taken for this mapper; they have no 8 KiB bank, and the size check keeps writes away from them.
function for_each_ram_bank(dev, size, move)
{
    check_size("save", size, [0x2000, 0x8000, 0x10000, 0x20000]);
    local banks = size / RAM_BANK;
    guarded(dev, function() {
        for (local bank = 0; bank < banks; bank++) {
            if (bank == 0)
                cpu_write(dev, 0x4000, 0, 0x0000, 0x0A);
            else
                cpu_write(dev, 0x4000, bank);
            move();
        }
    });
}

function save_dump(dev, size, _)
{
    for_each_ram_bank(dev, size, @() cpu_read(dev, RAM_BASE, RAM_BANK));
}

function save_write(dev, size, _)
{
    for_each_ram_bank(dev, size, @() ram_write(dev, RAM_BASE, RAM_BANK));
}
