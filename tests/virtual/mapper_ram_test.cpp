// What the mappers show at A000-BFFF: RAM banks and gates, cells of four bits, infrared, the
// camera's registers, the memory of a TAMA5.
#include "mapper_bench.h"
#include "test_class.h"
#include "virtual/mappers/camera_cartridge.h"
#include "virtual/mappers/huc1_cartridge.h"
#include "virtual/mappers/huc3_cartridge.h"
#include "virtual/mappers/mbc2_cartridge.h"
#include "virtual/mappers/mbc3_cartridge.h"
#include "virtual/mappers/tama5_cartridge.h"

#include <QtTest>

#include <memory>
#include <vector>

using namespace virtual_reader;

namespace
{

void setTama5(Cartridge &cartridge, unsigned number, unsigned nibble)
{
    busWrite(cartridge, 0xA001, number);
    busWrite(cartridge, 0xA000, nibble);
}

int tama5Output(Cartridge &cartridge, unsigned number)
{
    busWrite(cartridge, 0xA001, number);
    return busRead(cartridge, 0xA000);
}

} // namespace

class MapperRamTest : public QObject
{
    Q_OBJECT

private slots:
    void banksHoldTheirOwnBytes_data();
    void banksHoldTheirOwnBytes();
    void mbc2CellsHaveFourBits();
    void mbc2GateNeedsAddressBit8Clear();
    void mbc2SavesKeepTheLowerHalves();
    void mbc3GateTestsTheLowNibble();
    void huc1HasNoGate();
    void huc1InfraredHidesTheRam();
    void huc3ChoosesWhatShows();
    void huc3InfraredHidesTheRam();
    void cameraRamIsAlwaysReadable();
    void cameraRegisters();
    void cameraHidesTheRamWhileItTakesAPicture();
    void tama5StoresBytes();
    void tama5BankRegistersLeaveTheMemoryAlone();
};

void MapperRamTest::banksHoldTheirOwnBytes_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("banks");
    QTest::newRow("MBC3") << 0 << 4;
    QTest::newRow("MBC30") << 0 << 8;
    QTest::newRow("HuC1") << 1 << 4;
    QTest::newRow("HuC-3") << 2 << 16;
    QTest::newRow("camera") << 3 << 16;
}

void MapperRamTest::banksHoldTheirOwnBytes()
{
    QFETCH(int, kind);
    QFETCH(int, banks);
    const auto build = [&]() -> std::unique_ptr<Cartridge> {
        const ByteVector rom = bankedImage(64 * kKiB);
        const std::uint32_t size = static_cast<std::uint32_t>(banks) * 8 * kKiB;
        switch (kind) {
        case 0:
            return std::make_unique<Mbc3Cartridge>(rom, size);
        case 1:
            return std::make_unique<Huc1Cartridge>(rom, size);
        case 2:
            return std::make_unique<Huc3Cartridge>(rom, size);
        default:
            return std::make_unique<CameraCartridge>(rom, size);
        }
    };
    const auto cartridge = build();
    busWrite(*cartridge, 0x0000, 0x0A);
    for (int bank = 0; bank < banks; ++bank) {
        busWrite(*cartridge, 0x5FFF, static_cast<unsigned>(bank));
        busWrite(*cartridge, 0xA000, static_cast<unsigned>(0x80 + bank));
        busWrite(*cartridge, 0xBFFF, static_cast<unsigned>(0x40 + bank));
    }
    const ByteVector save = cartridge->saveImage();
    QCOMPARE(int(save.size()), banks * 0x2000);
    for (int bank = 0; bank < banks; ++bank) {
        busWrite(*cartridge, 0x4000, static_cast<unsigned>(bank));
        QCOMPARE(busRead(*cartridge, 0xA000), 0x80 + bank);
        QCOMPARE(busRead(*cartridge, 0xBFFF), 0x40 + bank);
        QCOMPARE(int(save[std::size_t(bank) * 0x2000]), 0x80 + bank);
    }
    cartridge->powerCycle();
    QVERIFY(cartridge->saveImage() == save);
}

void MapperRamTest::mbc2CellsHaveFourBits()
{
    Mbc2Cartridge cartridge(bankedImage(64 * kKiB));
    busWrite(cartridge, 0x0000, 0x0A);
    busWrite(cartridge, 0xA000, 0x5C);
    busWrite(cartridge, 0xA1FF, 0x03);
    QCOMPARE(busRead(cartridge, 0xA000), 0xFC);
    for (unsigned mirror = 0xA000; mirror < 0xC000; mirror += 0x200)
        QCOMPARE(busRead(cartridge, mirror + 0x1FF), 0xF3);
    QCOMPARE(cartridge.saveChanges(), quint64(2));
    busWrite(cartridge, 0xA200, 0xAC); // the same cell, the same lower half
    QCOMPARE(cartridge.saveChanges(), quint64(2));
}

void MapperRamTest::mbc2GateNeedsAddressBit8Clear()
{
    Mbc2Cartridge cartridge(bankedImage(64 * kKiB));
    busWrite(cartridge, 0x0100, 0x0A); // a bank number
    QCOMPARE(busRead(cartridge, 0xA000), 0xFF);
    busWrite(cartridge, 0x3EFF, 0xFA);
    QCOMPARE(busRead(cartridge, 0xA000), 0xF0);
    busWrite(cartridge, 0x0000, 0x0B);
    busWrite(cartridge, 0xA000, 0x05);
    QCOMPARE(busRead(cartridge, 0xA000), 0xFF);
    QCOMPARE(int(cartridge.saveImage()[0]), 0xF0);
}

void MapperRamTest::mbc2SavesKeepTheLowerHalves()
{
    Mbc2Cartridge cartridge(bankedImage(64 * kKiB));
    ByteVector save(512);
    for (std::size_t i = 0; i < save.size(); ++i)
        save[i] = static_cast<std::uint8_t>(i);
    QVERIFY(cartridge.loadSave(save));
    QVERIFY(!cartridge.loadSave(ByteVector(256)));
    QCOMPARE(int(cartridge.saveImage()[0x1A5]), 0xF5);
    QCOMPARE(cartridge.saveChanges(), quint64(0));
}

void MapperRamTest::mbc3GateTestsTheLowNibble()
{
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 8 * kKiB);
    QCOMPARE(busRead(cartridge, 0xA000), 0xFF);
    for (unsigned gate = 0; gate < 256; ++gate) {
        busWrite(cartridge, 0x1FFF, gate);
        QCOMPARE(busRead(cartridge, 0xA000), gate % 16 == 0x0A ? 0x00 : 0xFF);
    }
    busWrite(cartridge, 0x0000, 0x0A);
    busWrite(cartridge, 0x4000, 0x0D); // neither RAM nor clock
    QCOMPARE(busRead(cartridge, 0xA000), 0xFF);
}

void MapperRamTest::huc1HasNoGate()
{
    Huc1Cartridge cartridge(bankedImage(64 * kKiB), 8 * kKiB);
    for (const unsigned gate : std::vector<unsigned>{0x00, 0x0A, 0x0F, 0x1E, 0xFF}) {
        busWrite(cartridge, 0x1FFF, gate);
        busWrite(cartridge, 0xA123, gate);
        QCOMPARE(busRead(cartridge, 0xA123), int(gate));
    }
}

void MapperRamTest::huc1InfraredHidesTheRam()
{
    Huc1Cartridge cartridge(bankedImage(64 * kKiB), 8 * kKiB);
    busWrite(cartridge, 0x0000, 0x0E);
    QCOMPARE(busRead(cartridge, 0xA000), 0xC0);
    busWrite(cartridge, 0xA001, 0x01); // its own light does not reach it
    QCOMPARE(busRead(cartridge, 0xBFFF), 0xC0);
    QVERIFY(cartridge.saveImage() == ByteVector(8 * kKiB));
    busWrite(cartridge, 0x0000, 0x00);
    QCOMPARE(busRead(cartridge, 0xA001), 0x00);
}

void MapperRamTest::huc3ChoosesWhatShows()
{
    Huc3Cartridge cartridge(bankedImage(64 * kKiB), 8 * kKiB);
    const ByteVector save = makeNoise(8 * kKiB, 1);
    QVERIFY(cartridge.loadSave(save));
    QCOMPARE(busRead(cartridge, 0xA000), int(save[0])); // RAM that cannot be written
    for (unsigned choice = 0; choice < 16; ++choice) {
        busWrite(cartridge, 0x0000, 0xF0 | choice);
        if (choice != 0x0A)
            busWrite(cartridge, 0xA000, 0x01);
        const bool ram = choice == 0x00 || choice == 0x0A;
        const bool open = choice < 0x0A || choice == 0x0F;
        if (ram || open)
            QCOMPARE(busRead(cartridge, 0xA000), ram ? int(save[0]) : 0xFF);
    }
    QVERIFY(cartridge.saveImage() == save);
    busWrite(cartridge, 0x0000, 0x0A);
    busWrite(cartridge, 0xA000, static_cast<unsigned>(~save[0] & 0xFF));
    QCOMPARE(cartridge.saveChanges(), quint64(1));
}

void MapperRamTest::huc3InfraredHidesTheRam()
{
    Huc3Cartridge cartridge(bankedImage(64 * kKiB), 8 * kKiB);
    busWrite(cartridge, 0x0000, 0x0E);
    busWrite(cartridge, 0xA000, 0x01); // its own light does not reach it
    QCOMPARE(busRead(cartridge, 0xA000), 0xC0);
    QVERIFY(cartridge.saveImage() == ByteVector(8 * kKiB));
}

void MapperRamTest::cameraRamIsAlwaysReadable()
{
    CameraCartridge cartridge(bankedImage(64 * kKiB), 128 * kKiB);
    const ByteVector save = makeNoise(128 * kKiB, 2);
    QVERIFY(cartridge.loadSave(save));
    busWrite(cartridge, 0xA005, static_cast<unsigned>(~save[5] & 0xFF)); // the gate is closed
    QCOMPARE(busRead(cartridge, 0xA005), int(save[5]));
    busWrite(cartridge, 0x0000, 0x0A);
    busWrite(cartridge, 0xA005, 0x12);
    busWrite(cartridge, 0x0000, 0x00);
    QCOMPARE(busRead(cartridge, 0xA005), 0x12);
}

void MapperRamTest::cameraRegisters()
{
    CameraCartridge cartridge(bankedImage(64 * kKiB), 128 * kKiB);
    busWrite(cartridge, 0x4000, 0x13); // bit 4 alone counts; the gate is closed
    busWrite(cartridge, 0xA000, 0xFE);
    QCOMPARE(busRead(cartridge, 0xA000), 0x06);
    QCOMPARE(busRead(cartridge, 0xA080), 0x06); // repeats every 128 bytes
    busWrite(cartridge, 0xBF81, 0x99);
    busWrite(cartridge, 0xA035, 0x35);
    busWrite(cartridge, 0xA036, 0x36);          // none
    QCOMPARE(busRead(cartridge, 0xA001), 0x00); // cannot be read
    QCOMPARE(busRead(cartridge, 0xBFB5), 0x00);
    QCOMPARE(busRead(cartridge, 0xA000), 0x06);
    busWrite(cartridge, 0xBF80, 0x04);
    QCOMPARE(busRead(cartridge, 0xA000), 0x04);
    QVERIFY(cartridge.saveImage() == ByteVector(128 * kKiB));
    cartridge.powerCycle();
    busWrite(cartridge, 0x4000, 0x10);
    QCOMPARE(busRead(cartridge, 0xA000), 0x00);
}

void MapperRamTest::cameraHidesTheRamWhileItTakesAPicture()
{
    CameraCartridge cartridge(bankedImage(64 * kKiB), 128 * kKiB);
    const ByteVector save(128 * kKiB, 0x77);
    QVERIFY(cartridge.loadSave(save));
    busWrite(cartridge, 0x0000, 0x0A);
    busWrite(cartridge, 0x4000, 0x10);
    busWrite(cartridge, 0xA000, 0x03);
    busWrite(cartridge, 0x4000, 0x00);
    busWrite(cartridge, 0xA000, 0x11);
    QCOMPARE(busRead(cartridge, 0xA000), 0x00);
    busWrite(cartridge, 0x4000, 0x10);
    for (int poll = 0; poll < 2; ++poll)
        QCOMPARE(busRead(cartridge, 0xA000), 0x03);
    QCOMPARE(busRead(cartridge, 0xA000), 0x02);
    busWrite(cartridge, 0x4000, 0x00);
    QCOMPARE(busRead(cartridge, 0xA000), 0x77);
    QVERIFY(cartridge.saveImage() == save);
}

void MapperRamTest::tama5StoresBytes()
{
    Tama5Cartridge cartridge(bankedImage(64 * kKiB));
    QCOMPARE(int(cartridge.saveImage().size()), 32);
    QCOMPARE(tama5Output(cartridge, 0x0A), 0xF1);
    for (unsigned cell = 0; cell < 32; ++cell) {
        setTama5(cartridge, 4, cell);      // data, low
        setTama5(cartridge, 5, cell ^ 15); // data, high
        setTama5(cartridge, 6, cell / 16); // write
        setTama5(cartridge, 7, cell);
    }
    for (unsigned cell = 0; cell < 32; ++cell) {
        setTama5(cartridge, 6, 2 + cell / 16); // read
        setTama5(cartridge, 7, cell);
        QCOMPARE(tama5Output(cartridge, 0x0C), int(0xF0 | (cell & 15)));
        QCOMPARE(tama5Output(cartridge, 0x0D), int(0xF0 | ((cell ^ 15) & 15)));
        QCOMPARE(busRead(cartridge, 0xA001), 0xFF);
    }
    QCOMPARE(int(cartridge.saveImage()[0x13]), 0xC3);
}

void MapperRamTest::tama5BankRegistersLeaveTheMemoryAlone()
{
    Tama5Cartridge cartridge(bankedImage(64 * kKiB));
    const ByteVector save = makeNoise(32, 5);
    QVERIFY(cartridge.loadSave(save));
    busWrite(cartridge, 0xA001, 0x0A);
    for (unsigned bank = 0; bank < 32; ++bank) {
        setTama5(cartridge, 0, bank & 15);
        setTama5(cartridge, 1, bank >> 4);
    }
    QVERIFY(cartridge.saveImage() == save);
    QCOMPARE(cartridge.saveChanges(), quint64(0));
    setTama5(cartridge, 6, 0); // whoever runs through the registers overwrites a byte
    setTama5(cartridge, 7, 1);
    QCOMPARE(cartridge.saveChanges(), quint64(1));
}

GBDRIVER_TEST(MapperRamTest, none)
#include "mapper_ram_test.moc"
