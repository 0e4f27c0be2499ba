// MBC2: up to 256 KiB of ROM, 512 half bytes of RAM inside the mapper. Both registers lie below
// 0x4000; address bit 8 tells them apart:
//   0x0000  RAM gate: 0x0A in the low bits opens
//   0x2100  ROM bank at 0x4000-0x7FFF, 4 bits; 0 selects 1
// Only bits 0-3 of a byte of RAM exist. Bits 4-7 are read as whatever the bus shows, and have no
// effect when written.
// Source: Pan Docs, "MBC2"; Game Boy: Complete Technical Reference, "MBC2".

dofile(getstackinfos(1).src.slice(0, -"gb_mbc2.nut".len()) + "common.nut");

MAPPER = "MBC2";
refuse_flash("no flash cartridge has this mapper");

const LARGEST_ROM = 0x40000;

SAVE_SIZES <- [512];

// RAM closed, bank 1.
function rest(dev)
{
    cpu_write(dev, 0x0000, 0x00, 0x2100, 1);
}

function cpu_dump(dev, size, _)
{
    dump_rom(dev, size, LARGEST_ROM, rest, @(dev, bank) cpu_write(dev, 0x2100, bank));
}

function open_ram(dev, bank)
{
    cpu_write(dev, 0x0000, 0x0A);
}

function save_dump(dev, size, _)
{
    dump_save(dev, size, SAVE_SIZES, rest, open_ram);
}

function save_write(dev, size, _)
{
    write_save(dev, size, SAVE_SIZES, rest, open_ram);
}
