// What the mapper scripts share: refusals, and the way through the banks of a ROM and of a save. A
// script loads this file, sets MAPPER to the name that its messages begin with, and hands over what
// is its mapper's own:
//   rest(dev)          the state after power-on: RAM closed, ROM bank 1, RAM bank 0
//   select(dev, bank)  brings a ROM bank to 0x4000
//   show(dev, bank)    brings a ROM bank to the bus; returns the address where it stands
//   open(dev, bank)    opens the RAM with this bank at RAM_BASE
// Sizes and lengths are in bytes.

ROM_BANK <- 0x4000;
RAM_BASE <- 0xA000;
RAM_BANK <- 0x2000;
MAPPER <- "";

// The folder of the scripts, for those that load more; ends with the separator.
FOLDER <- getstackinfos(1).src.slice(0, -"common.nut".len());

// --- Refusals ---

function refuse(what, why, advice = "Choose the size that the cartridge has.")
{
    throw MAPPER + ": cannot " + what + ", because " + why + ". " + advice +
        " Nothing was sent to the cartridge.";
}

// ROMs have the smallest size or a doubling of it.
function check_rom_size(size, largest, smallest = 2 * ROM_BANK)
{
    if (size < smallest || size > largest || (size & (size - 1)) != 0)
        refuse("read a ROM of " + size + " bytes", "such a cartridge has " + smallest / 1024 +
            " KiB or a doubling of that, up to " + largest / 1024 + " KiB");
}

function check_save_size(size, sizes)
{
    if (sizes.find(size) == null)
        refuse("read or write a save of " + size + " bytes", "such a cartridge has " +
            sizes.reduce(@(list, other) list + " or " + other) + " bytes");
}

// For the top level of a script whose cartridges have no flash chip. A job that is to write one
// ends right there; from cpu_erase the program would go on to wait for a chip that nobody erases.
function refuse_flash(why)
{
    local root = getroottable();
    root.cpu_flash <- @(dev, size, _) refuse("write a ROM", why, "Choose another mapper.");
    root.cpu_erase <- root.cpu_flash;
    if ("rom_write" in root && !("cpu_read" in root))
        root.cpu_flash(null, 0, 0);
}

// --- Banks ---

// Runs `work` and leaves the cartridge at rest, also after an error. `work` returns true if it
// ended at rest itself.
function guarded(dev, rest, work)
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

// Reads a ROM in file order. A bank at address 0 has the next one behind it, and one read takes
// both. `show` brings banks 0 and 1 to the bus by leaving the mapper at rest.
function read_rom(dev, size, rest, show)
{
    guarded(dev, rest, function() {
        for (local position = 0; position < size;) {
            local address = show(dev, position / ROM_BANK);
            local length = address == 0 ? 2 * ROM_BANK : ROM_BANK;
            cpu_read(dev, address, length);
            position += length;
        }
        return size == 2 * ROM_BANK;
    });
}

// The same for mappers that show bank 0 at 0x0000 and, once `select` was called, any other one at
// 0x4000.
function dump_rom(dev, size, largest, rest, select)
{
    check_rom_size(size, largest);
    read_rom(dev, size, rest, function(dev, bank) {
        if (bank == 0) {
            rest(dev);
            return 0x0000;
        }
        select(dev, bank);
        return 0x4000;
    });
}

// Moves a save in file order; `move` is cpu_read or ram_write.
function move_save(dev, size, rest, open, move)
{
    guarded(dev, rest, function() {
        for (local position = 0; position < size; position += RAM_BANK) {
            open(dev, position / RAM_BANK);
            move(dev, RAM_BASE, size < RAM_BANK ? size : RAM_BANK);
        }
    });
}

function dump_save(dev, size, sizes, rest, open)
{
    check_save_size(size, sizes);
    move_save(dev, size, rest, open, cpu_read);
}

function write_save(dev, size, sizes, rest, open)
{
    check_save_size(size, sizes);
    move_save(dev, size, rest, open, ram_write);
}
