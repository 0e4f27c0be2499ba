// MBC1: up to 2 MiB of ROM, up to 32 KiB of RAM. Registers, by the address that is written:
//   0x0000  RAM gate: 0x0A opens, 0x00 closes
//   0x2000  BANK1, 5 bits: ROM bank at 0x4000-0x7FFF; 0 selects 1
//   0x4000  BANK2, 2 bits: bits 5-6 of the ROM bank, or the RAM bank
//   0x6000  mode: 1 lets BANK2 also choose the RAM bank and the ROM bank at 0x0000-0x3FFF
// Because BANK1 can not be 0, banks 0x20, 0x40 and 0x60 show up only at 0x0000, in mode 1.
// Source: Pan Docs, "MBC1"; Game Boy: Complete Technical Reference, "MBC1".

const ROM_BANK = 0x4000;
const GROUP_BANKS = 32;
const RAM_BASE = 0xA000;
const RAM_BANK = 0x2000;

function check_size(what, size, sizes)
{
    if (sizes.find(size) == null)
        throw "MBC1: there is no " + what + " of " + size + " bytes. Choose the size that the " +
            "cartridge has. Nothing was sent to the cartridge.";
}

// RAM closed, mode 0, bank 1: the state after power-on.
function rest(dev)
{
    cpu_write(dev, 0x0000, 0x00, 0x6000, 0, 0x4000, 0, 0x2000, 1);
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
    check_size("ROM", size, [0x8000, 0x10000, 0x20000, 0x40000, 0x80000, 0x100000, 0x200000]);
    local banks = size / ROM_BANK;
    guarded(dev, function() {
        rest(dev);
        cpu_read(dev, 0x0000, 2 * ROM_BANK); // banks 0 and 1
        if (banks == 2)
            return true;
        for (local bank = 2; bank < banks; bank++) {
            if (bank % GROUP_BANKS == 0) {
                // The group's first two banks lie side by side at 0x0000 and 0x4000.
                cpu_write(dev, 0x0000, 0x00, 0x6000, 1, 0x4000, bank / GROUP_BANKS, 0x2000, 1);
                cpu_read(dev, 0x0000, 2 * ROM_BANK);
                bank++;
            } else {
                cpu_write(dev, 0x2000, bank % GROUP_BANKS);
                cpu_read(dev, 0x4000, ROM_BANK);
            }
        }
    });
}

// Calls `move` for every RAM bank with the bank selected and the gate open.
function for_each_ram_bank(dev, size, move)
{
    check_size("save", size, [0x2000, 0x8000]);
    local banks = size / RAM_BANK;
    guarded(dev, function() {
        for (local bank = 0; bank < banks; bank++) {
            if (bank == 0)
                cpu_write(dev, 0x6000, 1, 0x4000, 0, 0x0000, 0x0A);
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
