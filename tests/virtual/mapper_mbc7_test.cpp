// MBC7: its gates, the accelerometer, and the serial EEPROM bit by bit.
#include "mapper_bench.h"
#include "test_class.h"
#include "virtual/mappers/mbc7_cartridge.h"

#include <QtTest>

#include <vector>

using namespace virtual_reader;

namespace
{

constexpr unsigned kPins = 0xA080;

void openGates(Cartridge &cartridge)
{
    busWrite(cartridge, 0x0000, 0x0A);
    busWrite(cartridge, 0x4000, 0x40);
}

int axis(Cartridge &cartridge, unsigned lowRegister)
{
    return busRead(cartridge, 0xA000 + lowRegister * 0x10) |
           busRead(cartridge, 0xA010 + lowRegister * 0x10) << 8;
}

// Clocks `count` bits in, the highest first. Returns: the bits that came out, likewise.
unsigned shift(Cartridge &cartridge, unsigned bits, unsigned count)
{
    unsigned out = 0;
    while (count-- > 0) {
        const unsigned dataIn = ((bits >> count) & 1) * 0x02;
        busWrite(cartridge, kPins, 0x80 | dataIn);
        busWrite(cartridge, kPins, 0xC0 | dataIn);
        out = out << 1 | static_cast<unsigned>(busRead(cartridge, kPins) & 1);
    }
    return out;
}

void deselect(Cartridge &cartridge)
{
    busWrite(cartridge, kPins, 0x00);
}

// An instruction of ten bits behind a start bit, with data behind it.
void instruct(Cartridge &cartridge, unsigned bits, unsigned data = 0, unsigned dataBits = 0)
{
    shift(cartridge, 1, 1);
    shift(cartridge, bits, 10);
    shift(cartridge, data, dataBits);
    deselect(cartridge);
}

constexpr unsigned kAllow = 0x0C0;
constexpr unsigned kForbid = 0x000;
constexpr unsigned kEraseAll = 0x080;
constexpr unsigned kWriteAll = 0x040;
constexpr unsigned kWrite = 0x100;
constexpr unsigned kRead = 0x200;
constexpr unsigned kErase = 0x300;

unsigned readWord(Cartridge &cartridge, unsigned address)
{
    shift(cartridge, 1, 1);
    shift(cartridge, kRead | address, 10);
    const unsigned word = shift(cartridge, 0, 16);
    deselect(cartridge);
    return word;
}

} // namespace

class MapperMbc7Test : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void bothGatesMustBeOpen();
    void registersShowByAddressBits4To7();
    void bothAxesAreMeasured();
    void measuringNeedsClearing();
    void wordsAreWrittenAndRead();
    void readingGoesOnToTheNextWord();
    void changesMustBeAllowed();
    void erasing();
    void changesAreMadeAtDeselection();
    void cutShortInstructionsDoNothing();
    void savesGoInAndOut();
    void powerCycleForbidsChanges();

private:
    std::unique_ptr<Mbc7Cartridge> m_cartridge;
};

void MapperMbc7Test::init()
{
    m_cartridge = std::make_unique<Mbc7Cartridge>(bankedImage(64 * kKiB));
    openGates(*m_cartridge);
}

void MapperMbc7Test::bothGatesMustBeOpen()
{
    QCOMPARE(busRead(*m_cartridge, 0xA060), 0x00);
    for (const unsigned gate : std::vector<unsigned>{0x00, 0x0B, 0x1A, 0xFF}) {
        busWrite(*m_cartridge, 0x0000, gate);
        QCOMPARE(busRead(*m_cartridge, 0xA060), 0xFF);
        openGates(*m_cartridge);
        busWrite(*m_cartridge, 0x4000, gate);
        QCOMPARE(busRead(*m_cartridge, 0xA060), 0xFF);
        openGates(*m_cartridge);
        QCOMPARE(busRead(*m_cartridge, 0xA060), 0x00);
    }
}

void MapperMbc7Test::registersShowByAddressBits4To7()
{
    const int values[] = {0xFF, 0xFF, 0x00, 0x80, 0x00, 0x80, 0x00, 0xFF,
                          0x01, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
    for (unsigned i = 0; i < 16; ++i) {
        QCOMPARE(busRead(*m_cartridge, 0xA000 + i * 0x10), values[i]);
        QCOMPARE(busRead(*m_cartridge, 0xA00F + i * 0x10), values[i]);
        QCOMPARE(busRead(*m_cartridge, 0xAF00 + i * 0x10), values[i]);
        QCOMPARE(busRead(*m_cartridge, 0xB000 + i * 0x10), 0xFF);
    }
}

void MapperMbc7Test::bothAxesAreMeasured()
{
    busWrite(*m_cartridge, 0xA000, 0x55);
    QCOMPARE(axis(*m_cartridge, 2), 0x8000);
    QCOMPARE(axis(*m_cartridge, 4), 0x8000);
    busWrite(*m_cartridge, 0xA010, 0xAA);
    QCOMPARE(axis(*m_cartridge, 2), 0x81D0);
    QCOMPARE(axis(*m_cartridge, 4), 0x81D0);
}

void MapperMbc7Test::measuringNeedsClearing()
{
    busWrite(*m_cartridge, 0xA010, 0xAA);
    QCOMPARE(axis(*m_cartridge, 2), 0x8000);
    busWrite(*m_cartridge, 0xA000, 0x54); // another key
    busWrite(*m_cartridge, 0xA010, 0xAA);
    QCOMPARE(axis(*m_cartridge, 2), 0x8000);
    busWrite(*m_cartridge, 0xA000, 0x55);
    busWrite(*m_cartridge, 0xA010, 0xAB); // another key
    QCOMPARE(axis(*m_cartridge, 2), 0x8000);
    busWrite(*m_cartridge, 0xA010, 0xAA);
    QCOMPARE(axis(*m_cartridge, 2), 0x81D0);
    busWrite(*m_cartridge, 0xA000, 0x55); // clears what was measured
    QCOMPARE(axis(*m_cartridge, 2), 0x8000);
}

void MapperMbc7Test::wordsAreWrittenAndRead()
{
    instruct(*m_cartridge, kAllow);
    for (unsigned address = 0; address < 128; ++address)
        instruct(*m_cartridge, kWrite | address, 0x8001 + address * 0x123, 16);
    for (unsigned address = 0; address < 128; ++address)
        QCOMPARE(readWord(*m_cartridge, address), (0x8001 + address * 0x123) & 0xFFFF);
    QCOMPARE(readWord(*m_cartridge, 0x80 | 5), readWord(*m_cartridge, 5)); // bit 7 is not wired
}

void MapperMbc7Test::readingGoesOnToTheNextWord()
{
    instruct(*m_cartridge, kAllow);
    instruct(*m_cartridge, kWrite | 127, 0x1234, 16);
    instruct(*m_cartridge, kWrite | 0, 0xABCD, 16);
    shift(*m_cartridge, 1, 1);
    QCOMPARE(shift(*m_cartridge, kRead | 127, 10), 0x3FEU); // ready, then the 0 before the word
    QCOMPARE(shift(*m_cartridge, 0, 32), 0x1234ABCDU);
    deselect(*m_cartridge);
    QCOMPARE(busRead(*m_cartridge, kPins), 0x01);
}

void MapperMbc7Test::changesMustBeAllowed()
{
    instruct(*m_cartridge, kWrite | 3, 0x1111, 16);
    QCOMPARE(readWord(*m_cartridge, 3), 0xFFFFU);
    instruct(*m_cartridge, kAllow | 0x2A); // the low bits do not count
    instruct(*m_cartridge, kWrite | 3, 0x2222, 16);
    instruct(*m_cartridge, kForbid | 0x15);
    instruct(*m_cartridge, kWrite | 3, 0x3333, 16);
    instruct(*m_cartridge, kErase | 3);
    instruct(*m_cartridge, kEraseAll);
    instruct(*m_cartridge, kWriteAll, 0x4444, 16);
    QCOMPARE(readWord(*m_cartridge, 3), 0x2222U);
}

void MapperMbc7Test::erasing()
{
    instruct(*m_cartridge, kAllow);
    instruct(*m_cartridge, kWriteAll, 0x5AA5, 16);
    QCOMPARE(readWord(*m_cartridge, 0), 0x5AA5U);
    QCOMPARE(readWord(*m_cartridge, 127), 0x5AA5U);
    instruct(*m_cartridge, kErase | 64);
    QCOMPARE(readWord(*m_cartridge, 63), 0x5AA5U);
    QCOMPARE(readWord(*m_cartridge, 64), 0xFFFFU);
    QCOMPARE(readWord(*m_cartridge, 65), 0x5AA5U);
    instruct(*m_cartridge, kEraseAll);
    QVERIFY(m_cartridge->saveImage() == ByteVector(256, 0xFF));
}

void MapperMbc7Test::changesAreMadeAtDeselection()
{
    instruct(*m_cartridge, kAllow);
    shift(*m_cartridge, 1, 1);
    shift(*m_cartridge, kWrite | 9, 10);
    shift(*m_cartridge, 0x0F0F, 16);
    QCOMPARE(int(m_cartridge->saveImage()[18]), 0xFF);
    deselect(*m_cartridge);
    QCOMPARE(int(m_cartridge->saveImage()[18]), 0x0F);
}

void MapperMbc7Test::cutShortInstructionsDoNothing()
{
    instruct(*m_cartridge, kAllow);
    instruct(*m_cartridge, kWrite | 9, 0x0F0F, 15);
    shift(*m_cartridge, 1, 1);
    shift(*m_cartridge, kErase >> 1, 9);
    deselect(*m_cartridge);
    shift(*m_cartridge, 0, 27); // no start bit
    deselect(*m_cartridge);
    QVERIFY(m_cartridge->saveImage() == ByteVector(256, 0xFF));
    QCOMPARE(m_cartridge->saveChanges(), quint64(0));
}

void MapperMbc7Test::savesGoInAndOut()
{
    const ByteVector save = makeNoise(256, 6);
    QVERIFY(!m_cartridge->loadSave(ByteVector(512)));
    QVERIFY(m_cartridge->loadSave(save));
    QCOMPARE(m_cartridge->saveChanges(), quint64(0));
    for (unsigned address = 0; address < 128; ++address)
        QCOMPARE(readWord(*m_cartridge, address), save[address * 2] * 256U + save[address * 2 + 1]);
    instruct(*m_cartridge, kAllow);
    instruct(*m_cartridge, kWrite | 1, 0x0000, 16);
    QCOMPARE(int(m_cartridge->saveImage()[2]), 0);
    QVERIFY(m_cartridge->saveChanges() > 0);
}

void MapperMbc7Test::powerCycleForbidsChanges()
{
    instruct(*m_cartridge, kAllow);
    m_cartridge->powerCycle();
    QCOMPARE(busRead(*m_cartridge, 0xA060), 0xFF);
    openGates(*m_cartridge);
    instruct(*m_cartridge, kWrite | 1, 0x0000, 16);
    QCOMPARE(readWord(*m_cartridge, 1), 0xFFFFU);
}

GBDRIVER_TEST(MapperMbc7Test, none)
#include "mapper_mbc7_test.moc"
