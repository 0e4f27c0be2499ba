// Where the virtual cartridges and the emulator library differ, one short exchange each. These are
// the places that the comparison by random traffic leaves out; docs/virtual-cartridges.md says who
// is right, as far as that is known. A row that fails after an update of the library may be struck.
#include "mapper_bench.h"
#include "mgba_cartridge.h"
#include "samples.h"
#include "test_class.h"
#include "virtual/cartridge_factory.h"

#include <QtTest>

#include <memory>
#include <string>
#include <utility>
#include <vector>

using namespace virtual_reader;

namespace
{

using Writes = std::vector<std::pair<unsigned, unsigned>>;

ByteVector imageOf(int type, std::uint32_t romSize)
{
    const bool isBuiltIn = type == 0x06 || type == 0x22 || type == 0xFD;
    const std::uint32_t ramSize = isBuiltIn ? 0 : (type == 0x09 ? 8 : 32) * kKiB;
    return gbImage({static_cast<std::uint8_t>(type), romSize, ramSize, "SECOND", 7});
}

// Every step of `count` bits, the highest first, into an EEPROM.
void appendBits(Writes *writes, unsigned bits, unsigned count)
{
    while (count-- > 0) {
        const unsigned dataIn = ((bits >> count) & 1) * 0x02;
        writes->push_back({0xA080, 0x80 | dataIn});
        writes->push_back({0xA080, 0xC0 | dataIn});
    }
}

// Words 0 and 1 are made 0, then word 0 is read, and one bit more.
Writes readBeyondAWord()
{
    constexpr unsigned kAllow = 0x4C0;
    constexpr unsigned kWrite = 0x500;
    constexpr unsigned kRead = 0x600;
    Writes writes = {{0x0000, 0x0A}, {0x4000, 0x40}, {0xA080, 0x00}};
    for (const unsigned instruction : {kAllow, kWrite, kWrite + 1}) {
        appendBits(&writes, instruction, 11);
        appendBits(&writes, 0, instruction == kAllow ? 0 : 16);
        writes.push_back({0xA080, 0x00});
    }
    appendBits(&writes, kRead, 11);
    appendBits(&writes, 0, 17);
    return writes;
}

} // namespace

Q_DECLARE_METATYPE(Writes)

class MgbaDisagreementTest : public QObject
{
    Q_OBJECT

private slots:
    void exchangesEndDifferently_data();
    void exchangesEndDifferently();
    void clockStandsStillHereOnly();
    void ramNeedsATypeWithRamHereOnly();
    void mbc2SavesArePackedThere();
};

void MgbaDisagreementTest::exchangesEndDifferently_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<quint32>("romSize");
    QTest::addColumn<Writes>("writes");
    QTest::addColumn<unsigned>("address");
    QTest::addColumn<int>("own");
    QTest::addColumn<int>("library");
    const auto row = [](const char *name, int type, quint32 romSize, const Writes &writes,
                        unsigned address, int own, int library) {
        QTest::newRow(name) << type << romSize << writes << address << own << library;
    };
    const quint32 mib = 1024 * kKiB;
    const Writes halfClosed = {{0x0000, 0x0A}, {0xA000, 0x55}, {0x0000, 0x0B}};
    row("MBC1 gate, 0x0B", 0x03, mib, halfClosed, 0xA000, 0xFF, 0x55);
    row("MBC3 gate, 0x0B", 0x10, mib, halfClosed, 0xA000, 0xFF, 0x55);
    row("MBC5 gate, 0x0B", 0x1B, mib, halfClosed, 0xA000, 0xFF, 0x55);
    row("MBC2 gate, 0x0B", 0x06, 64 * kKiB, halfClosed, 0xA000, 0xFF, 0xF5);

    row("MBC3 bank 0x80", 0x10, 2 * mib, {{0x2000, 0x80}}, 0x4000, 0x20, 0x00);
    row("MBC3 clock, gate closed", 0x10, mib, {{0x4000, 0x0B}, {0xA000, 0x44}}, 0xA000, 0xFF, 0x44);
    row("MBC3 seconds, bits 6 and 7", 0x10, mib, {{0x0000, 0x0A}, {0x4000, 0x08}, {0xA000, 0xC5}},
        0xA000, 0x05, 0xC5);

    const Writes open = {{0x0000, 0x0A}, {0x4000, 0x40}};
    Writes cleared = open;
    cleared.push_back({0xA000, 0x55});
    row("MBC7 axis, cleared", 0x22, mib, cleared, 0xA020, 0x00, 0xD0);
    row("MBC7, B000", 0x22, mib, open, 0xB060, 0xFF, 0x00);
    row("MBC7 second gate", 0x22, mib,
        {{0x0000, 0x0A}, {0x4000, 0x40}, {0x0000, 0x00}, {0x0000, 0x0A}}, 0xA060, 0x00, 0xFF);
    row("MBC7 pins that are none", 0x22, mib, {{0x0000, 0x0A}, {0x4000, 0x40}, {0xA080, 0x3C}},
        0xA080, 0x01, 0x3D);
    row("MBC7 EEPROM, next word", 0x22, mib, readBeyondAWord(), 0xA080, 0xC0, 0xC1);

    row("HuC1 infrared", 0xFF, mib, {{0x0000, 0x0E}}, 0xA000, 0xC0, 0xFF);
    row("HuC-3 infrared", 0xFE, mib, {{0x0000, 0x0E}}, 0xA000, 0xC0, 0xFF);
    row("HuC-3 answer before it is asked for", 0xFE, mib,
        {{0x0000, 0x0B}, {0xA000, 0x47}, {0x0000, 0x0C}}, 0xA000, 0x80, 0xC7);

    row("MMM01, gate written without the map bit", 0x0D, mib, {{0x0000, 0x0A}}, 0x0000, 0xC0, 0x00);
    row("MMM01, mask", 0x0D, mib, {{0x2000, 4}, {0x6000, 0x38}, {0x0000, 0x40}, {0x2000, 5}},
        0x4000, 0xA0, 0x20);
    row("MMM01, multiplexed", 0x0D, mib, {{0x6000, 0x41}, {0x0000, 0x40}, {0x4000, 1}}, 0x0001,
        0x04, 0x00);
    row("MMM01, RAM bank in mode 0", 0x0D, mib,
        {{0x0000, 0x40}, {0x0000, 0x0A}, {0xA000, 0x11}, {0x4000, 1}, {0xA000, 0x22}, {0x4000, 0}},
        0xA000, 0x22, 0x11);

    row("MMM01 gate, opened with the map bit", 0x0D, mib,
        {{0x0000, 0x00}, {0x0000, 0x4A}, {0xA000, 0x55}}, 0xA000, 0x55, 0xFF);
    row("RAM without a mapper", 0x09, 32 * kKiB, {{0xA000, 0x55}}, 0xA000, 0x55, 0xFF);

    row("TAMA5, not yet awake", 0xFD, 512 * kKiB, {{0xA001, 0}, {0xA000, 5}}, 0x4000, 0x20, 0xA0);
    row("TAMA5, register without a value", 0xFD, 512 * kKiB, {{0xA001, 0x0A}, {0xA001, 4}}, 0xA000,
        0xFF, 0xF1);

    row("camera, register 0, bits 3 to 7", 0xFC, mib, {{0x4000, 0x10}, {0xA000, 0xFE}}, 0xA000,
        0x06, 0xFE);
    row("camera, a picture being taken", 0xFC, mib, {{0x4000, 0x10}, {0xA000, 0x03}}, 0xA000, 0x03,
        0x02);
}

void MgbaDisagreementTest::exchangesEndDifferently()
{
    QFETCH(int, type);
    QFETCH(quint32, romSize);
    QFETCH(Writes, writes);
    QFETCH(unsigned, address);
    const ByteVector image = imageOf(type, romSize);
    std::string error;
    const auto own = makeCartridge(image, &error);
    QVERIFY2(own != nullptr, error.c_str());
    const auto library = MgbaCartridge::create(image, &error);
    QVERIFY2(library != nullptr, error.c_str());
    for (const auto &[place, value] : writes) {
        busWrite(*own, place, value);
        busWrite(*library, place, value);
    }
    QTEST(busRead(*own, address), "own");
    QTEST(busRead(*library, address), "library");
}

void MgbaDisagreementTest::clockStandsStillHereOnly()
{
    const ByteVector image = imageOf(0x10, 64 * kKiB);
    std::string error;
    const auto own = makeCartridge(image, &error);
    const auto library = MgbaCartridge::create(image, &error);
    QVERIFY2(own != nullptr && library != nullptr, error.c_str());
    library->setTime(9);
    for (Cartridge *cartridge : {own.get(), static_cast<Cartridge *>(library.get())}) {
        busWrite(*cartridge, 0x0000, 0x0A);
        busWrite(*cartridge, 0x6000, 0);
        busWrite(*cartridge, 0x6000, 1);
        busWrite(*cartridge, 0x4000, 0x08);
    }
    QCOMPARE(busRead(*own, 0xA000), 0);
    QCOMPARE(busRead(*library, 0xA000), 9);
}

void MgbaDisagreementTest::ramNeedsATypeWithRamHereOnly()
{
    const ByteVector image = imageOf(0x01, 64 * kKiB); // MBC1 without RAM, with a RAM size
    std::string error;
    const auto own = makeCartridge(image, &error);
    const auto library = MgbaCartridge::create(image, &error);
    QVERIFY2(own != nullptr && library != nullptr, error.c_str());
    QCOMPARE(own->saveImage().size(), std::size_t(0));
    QCOMPARE(library->saveImage().size(), std::size_t(32 * kKiB));
}

void MgbaDisagreementTest::mbc2SavesArePackedThere()
{
    const ByteVector image = imageOf(0x06, 64 * kKiB);
    std::string error;
    const auto own = makeCartridge(image, &error);
    const auto library = MgbaCartridge::create(image, &error);
    QVERIFY2(own != nullptr && library != nullptr, error.c_str());
    for (Cartridge *cartridge : {own.get(), static_cast<Cartridge *>(library.get())}) {
        busWrite(*cartridge, 0x0000, 0x0A);
        busWrite(*cartridge, 0xA002, 0x05);
        busWrite(*cartridge, 0xA003, 0x09);
    }
    QCOMPARE(own->saveImage().size(), std::size_t(512));
    QCOMPARE(library->saveImage().size(), std::size_t(256));
    QCOMPARE(int(own->saveImage()[2]), 0xF5);
    QCOMPARE(int(own->saveImage()[3]), 0xF9);
    QCOMPARE(int(library->saveImage()[1]), 0x95);
}

GBDRIVER_TEST(MgbaDisagreementTest, none)
#include "mgba_disagreement_test.moc"
