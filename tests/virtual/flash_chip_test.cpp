// The flash chip's command sequences, its status while it works, and what interrupts it.
#include "virtual/flash_chip.h"

#include "test_class.h"

#include <QtTest>

#include <initializer_list>
#include <utility>

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kSize = 0x40000;
constexpr std::uint32_t kSector = 0x10000;

// A byte-wide chip, a 16-bit chip in byte mode, and one with banks.
constexpr FlashChipFacts kByteChip = {kSize, kSector, 0x555, 0x2AA, 0x7FF,
                                      0x55,  0,       0x01,  0xA4,  false};
constexpr FlashChipFacts kWordChip = {kSize, kSector, 0xAAA, 0x555, 0xFFF,
                                      0xAA,  1,       0x01,  0x49,  false};
constexpr FlashChipFacts kBankChip = {0x20000, 0x1000, 0x5555, 0x2AAA, 0x7FFF,
                                      0,       0,      0xC2,   0x09,   true};

const FlashChipFacts kChips[] = {kByteChip, kWordChip, kBankChip};

FlashChipBehaviour polls(unsigned erase)
{
    FlashChipBehaviour behaviour;
    behaviour.erasePolls = erase;
    return behaviour;
}

void send(FlashChip &chip, std::initializer_list<std::pair<std::uint32_t, std::uint8_t>> writes)
{
    for (const auto &[address, value] : writes)
        chip.write(address, value);
}

void command(FlashChip &chip, const FlashChipFacts &facts, std::uint8_t code)
{
    send(chip, {{facts.firstUnlock, 0xAA}, {facts.secondUnlock, 0x55}, {facts.firstUnlock, code}});
}

void startChipErase(FlashChip &chip, const FlashChipFacts &facts)
{
    command(chip, facts, 0x80);
    command(chip, facts, 0x10);
}

void startSectorErase(FlashChip &chip, const FlashChipFacts &facts, std::uint32_t address)
{
    command(chip, facts, 0x80);
    send(chip, {{facts.firstUnlock, 0xAA}, {facts.secondUnlock, 0x55}, {address, 0x30}});
}

void program(FlashChip &chip, const FlashChipFacts &facts, std::uint32_t address,
             std::uint8_t value)
{
    command(chip, facts, 0xA0);
    chip.write(address, value);
}

// Waits until it is done: one poll sees the chip at work.
void programWhole(FlashChip &chip, const FlashChipFacts &facts, std::uint32_t address,
                  std::uint8_t value)
{
    program(chip, facts, address, value);
    chip.read(address);
    chip.read(address);
}

// Number of cells with `value`.
std::size_t count(const FlashChip &chip, std::uint8_t value)
{
    return static_cast<std::size_t>(
        std::count(chip.contents().begin(), chip.contents().end(), value));
}

} // namespace

class FlashChipTest : public QObject
{
    Q_OBJECT

private slots:
    void contentsAreFilledUpWithOnes();
    void programmingClearsBitsOnly_data();
    void programmingClearsBitsOnly();
    void programmingShowsItsStatus();
    void busyChipIgnoresWrites();
    void chipEraseTakesItsPolls_data();
    void chipEraseTakesItsPolls();
    void eraseShowsItsStatus();
    void sectorEraseTakesTheNamedSectors();
    void sectorNamedTwiceIsErasedOnce();
    void resetInTheSectorWindowErasesNothing();
    void resetDoesNotStopAnErase();
    void wrongSequencesAreIgnored_data();
    void wrongSequencesAreIgnored();
    void unlockAddressesDecodeTheirLinesOnly();
    void idsAreShown_data();
    void idsAreShown();
    void queryTableIsShown_data();
    void queryTableIsShown();
    void queryNeedsItsAddress();
    void sizeCodeCanBeAnything();
    void protectedChipDropsEraseAndProgram();
    void neverEndingEraseNeedsAReset();
    void powerCutLeavesAPartErased_data();
    void powerCutLeavesAPartErased();
    void powerCycleEndsEveryMode();
    void banksShowHalves();
    void chipsWithoutBanksIgnoreTheCommand();
    void changesCountChangedBytes();
    void loadTakesTheChipsSizeOnly();
};

void FlashChipTest::contentsAreFilledUpWithOnes()
{
    FlashChip chip(kByteChip, {}, {1, 2, 3});
    QCOMPARE(chip.contents().size(), std::size_t(kSize));
    QCOMPARE(int(chip.read(2)), 3);
    QCOMPARE(int(chip.read(3)), 0xFF);
    QCOMPARE(int(chip.read(kSize + 1)), 2); // lines that the chip does not have
    QCOMPARE(chip.changes(), quint64(0));
}

void FlashChipTest::programmingClearsBitsOnly_data()
{
    QTest::addColumn<int>("chip");
    QTest::newRow("8 bit") << 0;
    QTest::newRow("16 bit") << 1;
    QTest::newRow("banks") << 2;
}

void FlashChipTest::programmingClearsBitsOnly()
{
    QFETCH(int, chip);
    const FlashChipFacts &facts = kChips[chip];
    FlashChip flash(facts, polls(0));
    programWhole(flash, facts, 0x1234, 0xA5);
    QCOMPARE(int(flash.read(0x1234)), 0xA5);
    programWhole(flash, facts, 0x1234, 0x5F);
    QCOMPARE(int(flash.read(0x1234)), 0x05);
    programWhole(flash, facts, 0x1234, 0xFF);
    QCOMPARE(int(flash.read(0x1234)), 0x05);
    QCOMPARE(count(flash, 0xFF), std::size_t(facts.sizeBytes - 1));
    flash.write(0x1235, 0x00); // one byte a command
    QCOMPARE(int(flash.read(0x1235)), 0xFF);
}

void FlashChipTest::programmingShowsItsStatus()
{
    FlashChip chip(kByteChip, polls(0));
    // Bit 7 inverted, bit 6 toggling.
    const int toggled[] = {0x40, 0x00};
    for (quint32 address = 0x10; address < 0x18; ++address) {
        const int value = address % 3 == 0 ? 0x05 : 0x85;
        program(chip, kByteChip, address, static_cast<std::uint8_t>(value));
        QCOMPARE(int(chip.read(address)), (~value & 0x80) | toggled[address % 2]);
        QCOMPARE(int(chip.read(address)), value);
    }
}

void FlashChipTest::busyChipIgnoresWrites()
{
    FlashChip chip(kByteChip, polls(0));
    program(chip, kByteChip, 0x10, 0x00);
    program(chip, kByteChip, 0x11, 0x00);
    chip.read(0x10);
    QCOMPARE(int(chip.read(0x10)), 0x00);
    QCOMPARE(int(chip.read(0x11)), 0xFF);
}

void FlashChipTest::chipEraseTakesItsPolls_data()
{
    QTest::addColumn<int>("chip");
    QTest::addColumn<unsigned>("erasePolls");
    QTest::newRow("8 bit, at once") << 0 << 0U;
    QTest::newRow("8 bit") << 0 << 1U;
    QTest::newRow("16 bit") << 1 << 5U;
    QTest::newRow("banks") << 2 << 3U;
}

void FlashChipTest::chipEraseTakesItsPolls()
{
    QFETCH(int, chip);
    QFETCH(unsigned, erasePolls);
    const FlashChipFacts &facts = kChips[chip];
    FlashChip flash(facts, polls(erasePolls), ByteVector(facts.sizeBytes, 0x00));
    startChipErase(flash, facts);
    for (unsigned poll = 0; poll < erasePolls; ++poll) {
        for (quint32 address = 0; address < 1024; ++address) // one transfer of a host
            QVERIFY((flash.read(address) & 0x80) == 0);
        QCOMPARE(count(flash, 0x00), std::size_t(facts.sizeBytes));
    }
    QCOMPARE(int(flash.read(0)), 0xFF);
    QCOMPARE(count(flash, 0xFF), std::size_t(facts.sizeBytes));
}

void FlashChipTest::eraseShowsItsStatus()
{
    FlashChip chip(kByteChip, polls(2));
    startChipErase(chip, kByteChip);
    QCOMPARE(int(chip.read(0)), 0x48); // bit 7 clear, bit 6 toggling, bit 3 set
    QCOMPARE(int(chip.read(1)), 0x08);
    QCOMPARE(int(chip.read(0)), 0x48);
    QCOMPARE(int(chip.read(1)), 0x08);
    QCOMPARE(int(chip.read(0)), 0xFF);
}

void FlashChipTest::sectorEraseTakesTheNamedSectors()
{
    FlashChip chip(kByteChip, polls(1), ByteVector(kSize, 0x00));
    startSectorErase(chip, kByteChip, kSector + 0x123);
    chip.write(3 * kSector, 0x30);
    chip.read(0);
    chip.write(0, 0x30); // too late
    QCOMPARE(int(chip.read(0)), 0x00);
    QCOMPARE(count(chip, 0xFF), std::size_t(2 * kSector));
    for (const quint32 sector : {1U, 3U}) {
        QCOMPARE(int(chip.read(sector * kSector)), 0xFF);
        QCOMPARE(int(chip.read(sector * kSector + kSector - 1)), 0xFF);
    }
}

// Else each more name would cost the work of a sector: a few command files were minutes.
void FlashChipTest::sectorNamedTwiceIsErasedOnce()
{
    FlashChip chip(kByteChip, polls(2), ByteVector(kSize, 0x3C));
    startSectorErase(chip, kByteChip, kSector);
    send(chip, {{kSector + 1, 0x30}, {3 * kSector, 0x30}});
    chip.read(0);
    chip.powerCycle(); // half way
    QCOMPARE(int(chip.read(kSector)), 0xFF);
    QCOMPARE(int(chip.read(3 * kSector)), 0x00);
    QCOMPARE(count(chip, 0xFF), std::size_t(kSector));
}

void FlashChipTest::resetInTheSectorWindowErasesNothing()
{
    for (const std::uint8_t value : {std::uint8_t(0xF0), std::uint8_t(0x00)}) {
        FlashChip chip(kByteChip, polls(1), ByteVector(kSize, 0x12));
        startSectorErase(chip, kByteChip, 0);
        chip.write(0, value);
        QCOMPARE(int(chip.read(0)), 0x12);
        QCOMPARE(count(chip, 0x12), std::size_t(kSize));
        // Nothing is left over for the next one.
        startSectorErase(chip, kByteChip, kSector);
        chip.read(0);
        QCOMPARE(int(chip.read(0)), 0x12);
        QCOMPARE(count(chip, 0xFF), std::size_t(kSector));
    }
}

void FlashChipTest::resetDoesNotStopAnErase()
{
    FlashChip chip(kByteChip, polls(2), ByteVector(kSize, 0x12));
    startChipErase(chip, kByteChip);
    chip.write(0, 0xF0);
    QCOMPARE(int(chip.read(0)) & 0x80, 0);
    chip.write(0, 0xF0);
    QCOMPARE(int(chip.read(0)) & 0x80, 0);
    QCOMPARE(int(chip.read(0)), 0xFF);
    QCOMPARE(count(chip, 0xFF), std::size_t(kSize));
}

void FlashChipTest::wrongSequencesAreIgnored_data()
{
    using Writes = QVector<QPair<quint32, int>>;
    QTest::addColumn<int>("chip");
    QTest::addColumn<Writes>("writes");
    const Writes byteErase = {{0x555, 0xAA}, {0x2AA, 0x55}, {0x555, 0x80},
                              {0x555, 0xAA}, {0x2AA, 0x55}, {0x555, 0x10}};
    const Writes wordErase = {{0xAAA, 0xAA}, {0x555, 0x55}, {0xAAA, 0x80},
                              {0xAAA, 0xAA}, {0x555, 0x55}, {0xAAA, 0x10}};
    QTest::newRow("8 bit: addresses of the wide chip") << 0 << wordErase;
    QTest::newRow("16 bit: addresses of the narrow chip") << 1 << byteErase;
    QTest::newRow("banks: short addresses") << 2 << byteErase;
    for (int i = 0; i < byteErase.size(); ++i) {
        Writes wrongValue = byteErase;
        wrongValue[i].second ^= 0x01;
        QTest::newRow(qPrintable(QString("value %1").arg(i))) << 0 << wrongValue;
        Writes wrongAddress = byteErase;
        wrongAddress[i].first ^= 0x01;
        QTest::newRow(qPrintable(QString("address %1").arg(i))) << 0 << wrongAddress;
        Writes stray = byteErase;
        stray.insert(i + 1, {0x2000, 0x05});
        if (i + 1 < byteErase.size())
            QTest::newRow(qPrintable(QString("stray write after %1").arg(i))) << 0 << stray;
    }
    QTest::newRow("no second unlock") << 0 << (byteErase.mid(0, 3) + byteErase.mid(5));
    QTest::newRow("program without unlock") << 0 << Writes{{0x555, 0xA0}, {0x100, 0x00}};
}

void FlashChipTest::wrongSequencesAreIgnored()
{
    using Writes = QVector<QPair<quint32, int>>;
    QFETCH(int, chip);
    QFETCH(Writes, writes);
    const FlashChipFacts &facts = kChips[chip];
    FlashChip flash(facts, polls(2), ByteVector(facts.sizeBytes, 0xC3));
    for (const auto &[address, value] : writes)
        flash.write(address, static_cast<std::uint8_t>(value));
    for (quint32 address = 0; address < 0x1000; ++address)
        QCOMPARE(int(flash.read(address)), 0xC3);
    QCOMPARE(flash.changes(), quint64(0));
    // And the chip still listens.
    program(flash, facts, 0x777, 0x40);
    flash.read(0x777);
    QCOMPARE(int(flash.read(0x777)), 0x40);
}

void FlashChipTest::unlockAddressesDecodeTheirLinesOnly()
{
    FlashChip chip(kByteChip, polls(0));
    send(chip, {{0x5555, 0xAA}, {0x3AAAA, 0x55}, {0x3FD55, 0xA0}, {9, 0x12}});
    chip.read(9);
    QCOMPARE(int(chip.read(9)), 0x12);
}

void FlashChipTest::idsAreShown_data()
{
    QTest::addColumn<int>("chip");
    QTest::addColumn<bool>("writeProtected");
    QTest::addColumn<QByteArray>("bytes"); // from address 0
    QTest::newRow("8 bit") << 0 << false << QByteArray::fromHex("01A40000");
    QTest::newRow("16 bit") << 1 << false << QByteArray::fromHex("0101494900000000");
    QTest::newRow("banks") << 2 << false << QByteArray::fromHex("C20900");
    QTest::newRow("8 bit, protected") << 0 << true << QByteArray::fromHex("01A40100");
    QTest::newRow("16 bit, protected") << 1 << true << QByteArray::fromHex("0101494901010000");
}

void FlashChipTest::idsAreShown()
{
    QFETCH(int, chip);
    QFETCH(bool, writeProtected);
    QFETCH(QByteArray, bytes);
    FlashChipBehaviour behaviour;
    behaviour.writeProtected = writeProtected;
    FlashChip flash(kChips[chip], behaviour, ByteVector(16, 0x77));
    command(flash, kChips[chip], 0x90);
    for (int i = 0; i < bytes.size(); ++i)
        QCOMPARE(int(flash.read(quint32(i))), int(quint8(bytes[i])));
    flash.write(0x1234, 0x00);
    QCOMPARE(int(flash.read(0)), int(quint8(bytes[0]))); // a write of no meaning changes nothing
    flash.write(0x1234, 0xF0);
    QCOMPARE(int(flash.read(0)), 0x77);
}

void FlashChipTest::queryTableIsShown_data()
{
    QTest::addColumn<int>("chip");
    QTest::addColumn<quint32>("spacing");
    QTest::addColumn<int>("width");
    QTest::newRow("8 bit") << 0 << 1U << 0;
    QTest::newRow("16 bit in byte mode") << 1 << 2U << 2;
}

void FlashChipTest::queryTableIsShown()
{
    QFETCH(int, chip);
    QFETCH(quint32, spacing);
    QFETCH(int, width);
    FlashChip flash(kChips[chip], {}, ByteVector(512, 0x77));
    flash.write(kChips[chip].queryAddress, 0x98);
    const QVector<QPair<quint32, int>> entries = {
        {0x0F, 0},  {0x10, 'Q'}, {0x11, 'R'},   {0x12, 'Y'}, {0x13, 2},   {0x14, 0},
        {0x15, 64}, {0x27, 18},  {0x28, width}, {0x2A, 0},   {0x2C, 1},   {0x2D, 3},
        {0x2E, 0},  {0x2F, 0},   {0x30, 1},     {0x40, 'P'}, {0x41, 'R'}, {0x42, 'I'}};
    for (const auto &[index, value] : entries) {
        QCOMPARE(int(flash.read(index * spacing)), value);
        QCOMPARE(int(flash.read(index * spacing + spacing - 1)), value);
    }
    flash.write(0, 0xF0);
    QCOMPARE(int(flash.read(0x10)), 0x77);
}

void FlashChipTest::queryNeedsItsAddress()
{
    FlashChip byteChip(kByteChip, {});
    byteChip.write(0xAA, 0x98); // where the wide chip has it
    QCOMPARE(int(byteChip.read(0x10)), 0xFF);
    FlashChip wordChip(kWordChip, {});
    wordChip.write(0x55, 0x98);
    QCOMPARE(int(wordChip.read(0x20)), 0xFF);
    FlashChip without(kBankChip, {});
    for (const quint32 address : {0x00U, 0x55U, 0xAAU}) {
        without.write(address, 0x98);
        QCOMPARE(int(without.read(0x10)), 0xFF);
    }
}

void FlashChipTest::sizeCodeCanBeAnything()
{
    for (const int code : {0, 19, 20, 27, 28, 255}) {
        FlashChipBehaviour behaviour;
        behaviour.sizeCode = static_cast<std::uint8_t>(code);
        FlashChip chip(kWordChip, behaviour);
        chip.write(0xAA, 0x98);
        QCOMPARE(int(chip.read(0x4E)), code);
    }
}

void FlashChipTest::protectedChipDropsEraseAndProgram()
{
    FlashChipBehaviour behaviour = polls(5);
    behaviour.writeProtected = true;
    FlashChip chip(kByteChip, behaviour, ByteVector(kSize, 0x3C));
    startChipErase(chip, kByteChip);
    const int first = chip.read(0);
    QVERIFY(first != 0x3C && first != 0xFF); // it looks busy for a moment
    QCOMPARE(int(chip.read(0)), 0x3C);
    startSectorErase(chip, kByteChip, 0);
    QVERIFY(chip.read(0) != 0x3C);
    QCOMPARE(int(chip.read(0)), 0x3C);
    program(chip, kByteChip, 5, 0x00);
    chip.read(5);
    QCOMPARE(int(chip.read(5)), 0x3C);
    QCOMPARE(chip.changes(), quint64(0));
}

void FlashChipTest::neverEndingEraseNeedsAReset()
{
    FlashChipBehaviour behaviour = polls(2);
    behaviour.eraseNeverEnds = true;
    FlashChip chip(kByteChip, behaviour, ByteVector(kSize, 0x3C));
    startChipErase(chip, kByteChip);
    QCOMPARE(int(chip.read(0)) & 0xA0, 0x00);
    QCOMPARE(int(chip.read(0)) & 0xA0, 0x00);
    for (int poll = 0; poll < 100; ++poll)
        QCOMPARE(int(chip.read(0)) & 0xA0, 0x20); // the time limit is over
    program(chip, kByteChip, 5, 0x00);            // ignored
    QCOMPARE(int(chip.read(0)) & 0xA0, 0x20);
    chip.write(0, 0xF0);
    QCOMPARE(int(chip.read(0)), 0x00); // stuck in its first sector
    QCOMPARE(int(chip.read(kSector)), 0x3C);
    QCOMPARE(count(chip, 0x3C), std::size_t(kSize - kSector));
    // Programming works all the same.
    programWhole(chip, kByteChip, kSector, 0x10);
    QCOMPARE(int(chip.read(kSector)), 0x10);
}

void FlashChipTest::powerCutLeavesAPartErased_data()
{
    QTest::addColumn<int>("pollsDone"); // of 4, for 4 sectors
    QTest::addColumn<int>("erased");
    QTest::newRow("at once") << 0 << 0;
    QTest::newRow("half way") << 2 << 2;
    QTest::newRow("near the end") << 3 << 3;
}

void FlashChipTest::powerCutLeavesAPartErased()
{
    QFETCH(int, pollsDone);
    QFETCH(int, erased);
    FlashChip chip(kByteChip, polls(4), ByteVector(kSize, 0x3C));
    startChipErase(chip, kByteChip);
    for (int poll = 0; poll < pollsDone; ++poll)
        chip.read(0);
    chip.powerCycle();
    QCOMPARE(count(chip, 0xFF), std::size_t(erased) * kSector);
    QCOMPARE(count(chip, 0x00), std::size_t(kSector));
    QCOMPARE(count(chip, 0x3C), std::size_t(3 - erased) * kSector);
    QCOMPARE(int(chip.read(kSector * quint32(erased))), 0x00);
    startChipErase(chip, kByteChip);
    for (int poll = 0; poll < 5; ++poll)
        chip.read(0);
    QCOMPARE(count(chip, 0xFF), std::size_t(kSize));
}

void FlashChipTest::powerCycleEndsEveryMode()
{
    FlashChip chip(kByteChip, polls(2), ByteVector(kSize, 0x3C));
    const auto readsArray = [&chip] {
        chip.powerCycle();
        return chip.read(0) == 0x3C && chip.read(0x10) == 0x3C;
    };
    command(chip, kByteChip, 0x90);
    QVERIFY(readsArray());
    chip.write(0x55, 0x98);
    QVERIFY(readsArray());
    program(chip, kByteChip, 9, 0x00); // cut off before the byte is done
    QVERIFY(readsArray());
    startSectorErase(chip, kByteChip, 0);
    QVERIFY(readsArray());
    command(chip, kByteChip, 0xA0);
    QVERIFY(readsArray());
    chip.write(9, 0x00); // no byte is awaited any more
    QCOMPARE(chip.changes(), quint64(0));
}

void FlashChipTest::banksShowHalves()
{
    FlashChip chip(kBankChip, polls(0));
    const auto select = [&chip](std::uint8_t bank) {
        command(chip, kBankChip, 0xB0);
        chip.write(0, bank);
    };
    programWhole(chip, kBankChip, 0x1234, 0x11);
    select(1);
    QCOMPARE(int(chip.read(0x1234)), 0xFF);
    programWhole(chip, kBankChip, 0x1234, 0x22);
    QCOMPARE(int(chip.contents()[0x11234]), 0x22);
    startSectorErase(chip, kBankChip, 0x1000); // in the bank on show
    QCOMPARE(int(chip.read(0x1234)), 0xFF);
    select(0);
    QCOMPARE(int(chip.read(0x1234)), 0x11);
    command(chip, kBankChip, 0xB0);
    chip.write(1, 1); // not the bank's address
    QCOMPARE(int(chip.read(0x1234)), 0x11);
    select(1);
    chip.powerCycle();
    QCOMPARE(int(chip.read(0x1234)), 0x11);
}

void FlashChipTest::chipsWithoutBanksIgnoreTheCommand()
{
    FlashChip chip(kByteChip, {}, {0x11});
    command(chip, kByteChip, 0xB0);
    chip.write(0, 1);
    QCOMPARE(int(chip.read(0)), 0x11);
    command(chip, kByteChip, 0xB0);
    program(chip, kByteChip, 0, 0x01); // no bank is awaited
    chip.read(0);
    QCOMPARE(int(chip.read(0)), 0x01);
}

void FlashChipTest::changesCountChangedBytes()
{
    FlashChip chip(kByteChip, polls(0));
    startChipErase(chip, kByteChip);
    QCOMPARE(chip.changes(), quint64(0));
    programWhole(chip, kByteChip, 1, 0x0F);
    programWhole(chip, kByteChip, 1, 0xFF);
    QCOMPARE(chip.changes(), quint64(1));
    startChipErase(chip, kByteChip);
    QCOMPARE(chip.changes(), quint64(2));
}

void FlashChipTest::loadTakesTheChipsSizeOnly()
{
    FlashChip chip(kByteChip, {});
    QVERIFY(!chip.load(ByteVector(kSize - 1)));
    QVERIFY(chip.load(ByteVector(kSize, 0x42)));
    QVERIFY(chip.contents() == ByteVector(kSize, 0x42));
}

GBDRIVER_TEST(FlashChipTest, none)
#include "flash_chip_test.moc"
