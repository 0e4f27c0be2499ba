// Flash chips with AMD's commands, behind any mapper. Loaded after common.nut.
//
// A chip takes commands at addresses below 0x2000, where mappers have the RAM gate: they disturb no
// bank. 0xF0 takes it back to read mode wherever it is written; at 0x0000 it closes the gate too.
// Every write to the ROM area reaches chip and mapper alike. So the mapper is set before a bank is
// programmed, and whatever the bank's own bytes do to its registers must not matter.
// Source: data sheets Am29F040B (8 bit) and S29AL004D (16 bit, in byte mode).

const CHUNK = 480;        // bytes that the reader takes in a block
const SHORTEST_CHUNK = 8; // fewer it cannot decipher

flash_width <- 0; // kept from cpu_erase for cpu_flash

function check_flash_size(size, largest, bank, advice)
{
    local what = "write a ROM file of " + size + " bytes";
    if (size > largest)
        refuse(what, "with this mapper a flash chip takes " + largest / 1024 + " KiB at most",
            advice);
    local tail = size % bank;
    if (size == 0 || (tail > 0 && tail < SHORTEST_CHUNK))
        refuse(what, "its last bank has " + tail + " bytes, and " + SHORTEST_CHUNK +
            " are the fewest that the reader can program", advice);
}

// Starts the erase; `width` is 0 for an 8-bit chip, 1 for a 16-bit chip in byte mode. Afterwards
// the program looks at address 0 until the byte there is 0xFF or the user cancels, even if this
// throws.
function erase_flash(dev, size, width, largest, bank = ROM_BANK)
{
    check_flash_size(size, largest, bank, "Press Cancel and choose another file.");
    flash_width = width;
    local first = width == 0 ? 0x555 : 0xAAA;
    local second = width == 0 ? 0x2AA : 0x555;
    cpu_write(dev, 0x0000, 0xF0, first, 0xAA, second, 0x55, first, 0x80,
        first, 0xAA, second, 0x55, first, 0x10);
}

// Programs `length` bytes, in two pieces if one would end with a block too short for the reader.
function program_bank(dev, address, length)
{
    local tail = length % CHUNK;
    local last = tail > 0 && tail < SHORTEST_CHUNK ? SHORTEST_CHUNK : 0;
    rom_write(dev, address, length - last);
    if (last > 0)
        rom_write(dev, address + length - last, last);
}

// Programs the file, bank by bank. `rest` takes the chip back to read mode as well.
function program_flash(dev, size, largest, rest, show, bank = ROM_BANK)
{
    check_flash_size(size, largest, bank, "Choose another file.");
    rom_flash_cfg(dev, flash_width);
    guarded(dev, rest, function() {
        for (local position = 0; position < size; position += bank) {
            local address = show(dev, position / bank);
            program_bank(dev, address, size - position < bank ? size - position : bank);
        }
    });
}
