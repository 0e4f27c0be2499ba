#include "mapper_sequences.h"

namespace
{

constexpr unsigned kMinutesOfDay = 1440;
constexpr unsigned kHuc3Days = 4096;
constexpr unsigned kMmm01Banks = 512; // of 16 KiB

// The request is read before it is executed and the answer after: the library keeps both in one
// place.
void askHuc3(BusTraffic *t, unsigned command, unsigned nibble)
{
    t->writeGateRegister(0x0B);
    t->write(kUpper, kUpperEnd, command << 4 | nibble);
    t->read(kUpper, kUpperEnd);
    t->writeGateRegister(0x0D);
    t->read(kUpper, kUpperEnd);
    t->write(kUpper, kUpperEnd, 0xFE);
    t->writeGateRegister(0x0C);
    t->read(kUpper, kUpperEnd);
}

void setHuc3Address(BusTraffic *t, unsigned address)
{
    askHuc3(t, 4, address & 0x0F);
    askHuc3(t, 5, address >> 4);
}

// The clock is looked at through its copy, as programs do.
void readHuc3Clock(BusTraffic *t)
{
    askHuc3(t, 6, 0);
    setHuc3Address(t, 0x00);
    for (int i = 0; i < 7; ++i)
        askHuc3(t, 1, 0);
}

void setHuc3Clock(BusTraffic *t)
{
    const unsigned minutes = t->below(kMinutesOfDay);
    const unsigned number = t->below(kHuc3Days) << 12 | minutes;
    setHuc3Address(t, 0x00);
    for (unsigned i = 0; i < 6; ++i)
        askHuc3(t, 3, (number >> (4 * i)) & 0x0F);
    askHuc3(t, 6, 1);
}

// Memory beyond the clock and its copy.
void useHuc3Memory(BusTraffic *t)
{
    setHuc3Address(t, 0x20 + t->below(0xC0));
    for (unsigned i = t->below(16); i > 0; --i) {
        const unsigned command = t->below(2) == 0 ? 1 : 3;
        askHuc3(t, command, t->below(16));
    }
}

// A game in its own banks; the first cannot be asked for.
void playMmm01Game(BusTraffic *t, unsigned banks)
{
    switch (t->below(10)) {
    case 0:
        return t->writeRomBank(1 + t->below(banks - 1));
    case 1:
        return t->writeRamBank(t->below(4));
    case 2:
        return t->useGate();
    case 3:
    case 4:
    case 5:
        return t->readRom();
    default:
        return t->useRam();
    }
}

void pickTama5(BusTraffic *t, unsigned number)
{
    t->write(0xA001, 0xA001, number);
}

void setTama5(BusTraffic *t, unsigned number, unsigned nibble)
{
    pickTama5(t, number);
    t->write(0xA000, 0xA000, nibble);
}

void writeTama5Memory(BusTraffic *t)
{
    setTama5(t, 4, t->byte());
    setTama5(t, 5, t->byte());
    setTama5(t, 6, t->below(2));
    setTama5(t, 7, t->byte());
}

void readTama5Memory(BusTraffic *t)
{
    setTama5(t, 6, 2 + t->below(2));
    setTama5(t, 7, t->byte());
    for (const unsigned output : {0x0CU, 0x0DU}) {
        pickTama5(t, output);
        t->read(0xA000, 0xA000);
        t->read(0xA001, 0xA001);
    }
}

// No picture is taken: the library draws one at once, ours takes a while and leaves the RAM alone.
void useCameraRegisters(BusTraffic *t)
{
    t->writeRamBank(0x10);
    for (unsigned i = t->below(8); i > 0; --i) {
        t->write(kUpper, kUpper, t->byte() & 0x06); // the library keeps bits that are not there
        t->write(kUpper + 1, kUpper + 0x35, t->byte());
        t->read(kUpper, kUpperEnd);
        t->read(kUpper, kUpper);
    }
    t->writeRamBank(t->below(16));
}

} // namespace

// Whether RAM shows after power-on is not known.
void huc1Start(BusTraffic *t)
{
    t->writeGateRegister(0x00);
}

// The library has no infrared light: it only takes the RAM away.
void huc1Sequence(BusTraffic *t)
{
    const unsigned value = t->byte();
    switch (t->below(12)) {
    case 0:
        return t->writeGateRegister(value == 0x0E ? 0x00 : value);
    case 1:
        return t->writeRomBank(value);
    case 2:
        return t->writeRamBank(value);
    case 3:
        return t->writeMode(value);
    case 4:
    case 5:
        return t->readRom();
    default:
        return t->useRam();
    }
}

// Infrared is left out, as with the HuC1.
void huc3Sequence(BusTraffic *t)
{
    switch (t->below(24)) {
    case 0:
        return t->writeGateRegister(t->below(4) == 0 ? 0x00 : 0x0A);
    case 1:
        return t->writeRomBank(t->byte());
    case 2:
        return t->writeRamBank(t->byte());
    case 3:
        return t->writeMode(t->byte());
    case 4:
        readHuc3Clock(t);
        return t->writeGateRegister(0x0A);
    case 5:
        setHuc3Clock(t);
        return t->writeGateRegister(0x0A);
    case 6:
        useHuc3Memory(t);
        return t->writeGateRegister(0x0A);
    case 7:
    case 8:
    case 9:
    case 10:
        return t->readRom();
    default:
        return t->useRam();
    }
}

void mmm01Start(BusTraffic *t)
{
    for (int i = 0; i < 100; ++i)
        t->readRom();
}

// A game of 2 to 32 banks is mapped as its menu does it, and plays for a while. The library knows
// the start of the game, but no masks, no modes and no multiplexing: the game keeps to its own
// banks, and all RAM banks are its own.
void mmm01Sequence(BusTraffic *t)
{
    const unsigned banks = 2U << t->below(5);
    const unsigned start = t->below(kMmm01Banks / banks) * banks;
    const unsigned romMask = (0x1F & ~(banks - 1)) >> 1;
    t->powerCycle();
    for (int i = 0; i < 8; ++i)
        t->readRom();
    t->writeMode(romMask << 2 | 1);
    t->writeRomBank(start & 0x7F);
    t->writeRamBank((start >> 7) << 4);
    t->writeGateRegister(0x40);
    t->writeRomBank(1); // until then the library goes on showing the menu
    for (int i = 0; i < 64; ++i)
        playMmm01Game(t, banks);
}

// Both halves of the bank number: it is not known what they hold after power-on.
void tama5Start(BusTraffic *t)
{
    pickTama5(t, 0x0A);
    setTama5(t, 0, 1);
    setTama5(t, 1, 0);
}

// Values are read where the mapper has some: status and output. The clock is left out.
void tama5Sequence(BusTraffic *t)
{
    switch (t->below(10)) {
    case 0:
        pickTama5(t, 0x0A);
        return t->read(0xA000, 0xA000);
    case 1:
        return setTama5(t, 0, t->byte());
    case 2:
        return setTama5(t, 1, t->byte());
    case 3:
        return t->write(0x0000, 0x7FFF, t->byte());
    case 4:
        return writeTama5Memory(t);
    case 5:
        return readTama5Memory(t);
    default:
        return t->readRom();
    }
}

void cameraSequence(BusTraffic *t)
{
    switch (t->below(12)) {
    case 0:
        return t->useGate();
    case 1:
        return t->writeRomBank(t->byte());
    case 2:
        return t->writeRamBank(t->below(16));
    case 3:
        return useCameraRegisters(t);
    case 4:
    case 5:
        return t->readRom();
    default:
        return t->useRam();
    }
}
