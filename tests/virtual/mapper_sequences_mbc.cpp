#include "mapper_sequences.h"

namespace
{

constexpr unsigned kFirstClockRegister = 0x08;
// Of the clock's registers: first value that they do not reach, and the bits that are set.
constexpr unsigned kClockRanges[] = {60, 60, 24, 256, 256};
constexpr unsigned kClockBits[] = {0x3F, 0x3F, 0x1F, 0xFF, 0xC1};

// Values stay in their ranges: the library carries what is beyond them, and keeps bits that the
// registers do not have. The gate is open: the library shows the clock without it. RAM is selected
// in the end, so that the gate can close.
void useMbc3Clock(BusTraffic *t)
{
    const unsigned index = t->below(5);
    t->writeGateRegister(0x0A);
    t->writeMode(0);
    t->writeMode(1);
    t->writeRamBank(kFirstClockRegister + index);
    t->read(kUpper, kUpperEnd);
    if (t->below(3) == 0) {
        t->write(kUpper, kUpperEnd, t->below(kClockRanges[index]) & kClockBits[index]);
        t->read(kUpper, kUpperEnd);
    }
    t->writeRamBank(t->below(4));
}

// Everything but the ROM bank.
void useMbc3(BusTraffic *t)
{
    switch (t->below(11)) {
    case 0:
        return t->useGate(t->byte() & 0xF0);
    case 1:
        return t->writeRamBank(t->below(8));
    case 2:
        return useMbc3Clock(t);
    case 3:
    case 4:
    case 5:
        return t->readRom();
    default:
        return t->useRam();
    }
}

void openMbc7(BusTraffic *t)
{
    t->writeGateRegister(0x0A);
    t->writeRamBank(0x40);
}

// The second gate alone, or both: the library closes the second with the first.
void closeMbc7(BusTraffic *t)
{
    if (t->below(2) == 0)
        t->writeGateRegister(0x00);
    t->writeRamBank(0x00);
}

// Clears and measures at once: the library has no cleared state and shows what it would measure.
void measureAxes(BusTraffic *t)
{
    openMbc7(t);
    t->write(kUpper, kUpper + 0x0F, 0x55);
    t->write(kUpper + 0x10, kUpper + 0x1F, 0xAA);
}

// Only bits that are pins: the library gives the others back as well.
void setEepromPins(BusTraffic *t, unsigned pins)
{
    t->write(kUpper + 0x80, kUpper + 0x8F, pins);
    t->read(kUpper + 0x80, kUpper + 0x8F);
}

void clockEepromBits(BusTraffic *t, unsigned bits, unsigned count)
{
    while (count-- > 0) {
        const unsigned dataIn = ((bits >> count) & 1) * 0x02;
        setEepromPins(t, 0x80 | dataIn);
        setEepromPins(t, 0xC0 | dataIn);
    }
}

// A whole instruction with all its bits. Words are read one at a time: the library does not go on
// to the next.
void useEeprom(BusTraffic *t)
{
    const unsigned operation = t->below(4);
    const unsigned other = t->below(8) == 0 ? t->below(4) : 3; // mostly allows changes
    const unsigned address = operation == 0 ? other * 64 + t->below(64) : t->below(16);
    const bool hasData = operation == 1 || operation == 2 || (operation == 0 && other == 1);
    openMbc7(t);
    setEepromPins(t, 0x00);
    clockEepromBits(t, 1, 1);
    clockEepromBits(t, operation << 8 | address, 10);
    clockEepromBits(t, t->below(0x10000), hasData ? 16 : 0);
    setEepromPins(t, 0x00);
    setEepromPins(t, 0x80);
    setEepromPins(t, 0x00);
}

} // namespace

void mbc1Sequence(BusTraffic *t)
{
    switch (t->below(12)) {
    case 0:
        return t->useGate(t->byte() & 0xF0);
    case 1:
        return t->writeRomBank(t->byte());
    case 2:
        return t->writeRamBank(t->byte());
    case 3:
        return t->writeMode(t->byte());
    case 4:
    case 5:
    case 6:
        return t->readRom();
    default:
        return t->useRam();
    }
}

void mbc2Sequence(BusTraffic *t)
{
    switch (t->below(10)) {
    case 0:
        return t->write(0x0000, 0x3FFF, t->below(4) == 0 ? t->byte() & 0xF0 : 0x5A);
    case 1:
        return t->write(0x2100, 0x21FF, t->byte());
    case 2:
        return t->write(0x4000, 0x7FFF, t->byte());
    case 3:
    case 4:
        return t->readRom();
    default:
        return t->useRam();
    }
}

// Seven bits: the library takes eight of every MBC3, and 0x80 for a bank other than 0.
void mbc3Sequence(BusTraffic *t)
{
    if (t->below(12) == 0)
        t->writeRomBank(t->below(0x80));
    else
        useMbc3(t);
}

void mbc30Sequence(BusTraffic *t)
{
    if (t->below(12) == 0)
        t->writeRomBank(t->byte());
    else
        useMbc3(t);
}

void mbc5Sequence(BusTraffic *t)
{
    switch (t->below(12)) {
    case 0:
        return t->useGate();
    case 1:
        return t->write(0x2000, 0x2FFF, t->byte());
    case 2:
        return t->write(0x3000, 0x3FFF, t->byte());
    case 3:
        return t->writeRamBank(t->byte());
    case 4:
        return t->writeMode(t->byte());
    case 5:
    case 6:
        return t->readRom();
    default:
        return t->useRam();
    }
}

void mbc7Start(BusTraffic *t)
{
    measureAxes(t);
    setEepromPins(t, 0x00);
}

void mbc7Sequence(BusTraffic *t)
{
    switch (t->below(12)) {
    case 0:
        return closeMbc7(t);
    case 1:
        return openMbc7(t);
    case 2:
        return t->writeRomBank(t->byte());
    case 3:
        return measureAxes(t);
    case 4:
    case 5:
        return t->readRom();
    case 6:
    case 7:
        return useEeprom(t);
    default:
        return t->read(kUpper, kUpper + 0xFFF); // behind it the library repeats the registers
    }
}
