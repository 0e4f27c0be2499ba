// GBA save memories behind the reader's save commands, as blocks on the wire.
#include "command_blocks.h"

#include "test_class.h"
#include "virtual/cartridge_factory.h"
#include "virtual/gba_cartridge.h"
#include "virtual/gba_save_choice.h"
#include "virtual/image_generator.h"
#include "virtual/virtual_reader.h"

#include <QtTest>

#include <memory>
#include <string>
#include <utility>

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kKiB = 1024;

// Opcodes of one kind of chip, and how much a host asks for in one read.
struct Commands {
    const char *name;
    SaveKind kind;
    std::uint32_t size;
    std::uint8_t read;
    std::uint8_t write;
    std::uint32_t readPiece;
    bool writeHasLength;
};

const Commands kCommands[] = {
    {"SRAM 32K", SaveKind::Sram, 32 * kKiB, 17, 16, 4096, true},
    {"SRAM 64K", SaveKind::Sram, 64 * kKiB, 17, 16, 4096, true},
    {"FLASH 64K", SaveKind::Flash64k, 64 * kKiB, 8, 10, 4096, true},
    {"FLASH 128K", SaveKind::Flash128k, 128 * kKiB, 9, 11, 4096, true},
    {"EEPROM 512", SaveKind::Eeprom512, 512, 12, 14, 512, false},
    {"EEPROM 8K", SaveKind::Eeprom8k, 8 * kKiB, 13, 15, 8 * kKiB, false},
};

void addCommandRows()
{
    QTest::addColumn<int>("index");
    for (std::size_t i = 0; i < std::size(kCommands); ++i)
        QTest::newRow(kCommands[i].name) << int(i);
}

// A reader on the GBA bus with a cartridge of one kind.
struct SaveBench {
    VirtualReader reader;

    SaveBench(SaveKind kind, std::uint32_t size, unsigned erasePolls = 2)
        : reader(std::make_unique<GbaCartridge>(ByteVector(kKiB, 0),
                                                makeGbaSaveChip({kind, size}, {erasePolls})))
    {
        send(selectGba());
    }
    explicit SaveBench(const Commands &commands) : SaveBench(commands.kind, commands.size) {}

    Cartridge &cartridge() { return reader.cartridge(); }
    QString send(const ByteVector &run)
    {
        reader.commandFileWritten(run.data(), run.size());
        return QString::fromStdString(reader.operations().back().blocks.back().refusal);
    }
    ByteVector reply(std::uint32_t length)
    {
        ByteVector bytes(length);
        reader.readFile(ReaderFile::Driver, 0, bytes.data(), length, true);
        return bytes;
    }
    QString ask(std::uint8_t opcode, std::uint32_t address, std::uint32_t length)
    {
        return send(commandBlock(3, opcode,
                                 {0, address & 0xFF, address >> 8 & 0xFF, address >> 16, 0,
                                  length & 0xFF, length >> 8}));
    }
    ByteVector readAll(const Commands &commands)
    {
        ByteVector save;
        for (std::uint32_t at = 0; at < commands.size; at += commands.readPiece) {
            ask(commands.read, at, commands.readPiece);
            save = save + reply(commands.readPiece);
        }
        return save;
    }
    QString write(const Commands &commands, std::uint32_t address, const ByteVector &payload)
    {
        const auto length = static_cast<unsigned>(commands.writeHasLength ? payload.size() : 0);
        return send(commandBlock(
            3, commands.write,
            {0, address & 0xFF, address >> 8 & 0xFF, address >> 16, 0, length & 0xFF, length >> 8},
            payload, 12));
    }
    void writeAll(const Commands &commands, const ByteVector &save)
    {
        for (std::uint32_t at = 0; at < save.size(); at += 256)
            write(commands, at, ByteVector(save.begin() + at, save.begin() + at + 256));
    }
    // First byte as a host polls it while it waits for an erase.
    int poll()
    {
        ask(17, 0, 10);
        return reply(10)[0];
    }
};

} // namespace

class GbaSavesTest : public QObject
{
    Q_OBJECT

private slots:
    void savesAreRead_data() { addCommandRows(); }
    void savesAreRead();
    void savesAreWritten_data() { addCommandRows(); }
    void savesAreWritten();
    void otherCommandsHaveNoEffect_data() { addCommandRows(); }
    void otherCommandsHaveNoEffect();
    void cartridgeWithoutChipRefusesAll();
    void smallSramRepeatsInItsWindow();
    void flashTakesErasedCellsOnly();
    void eraseIsSeenByPolls_data();
    void eraseIsSeenByPolls();
    void readsDuringAnEraseShowTheStatus();
    void powerCutInterruptsAnErase();
    void plainReadShowsTheSelectedBank();
    void eepromTransfersBeginAtBlocks();
    void changesAreCounted();
    void optionsAndMarkDecide_data();
    void optionsAndMarkDecide();
    void factoryBuildsTheMarkedChip();
    void factoryRefusesSizesOfNoChip_data();
    void factoryRefusesSizesOfNoChip();
};

void GbaSavesTest::savesAreRead()
{
    QFETCH(int, index);
    const Commands &commands = kCommands[index];
    SaveBench bench(commands);
    const ByteVector save = makeNoise(commands.size, 5);
    QVERIFY(bench.cartridge().loadSave(save));
    QVERIFY(bench.readAll(commands) == save);
    QCOMPARE(bench.cartridge().saveChanges(), quint64(0));
    QVERIFY(!bench.cartridge().loadSave(ByteVector(commands.size + 1)));
}

void GbaSavesTest::savesAreWritten()
{
    QFETCH(int, index);
    const Commands &commands = kCommands[index];
    SaveBench bench(commands);
    const ByteVector save = makeNoise(commands.size, 6);
    bench.writeAll(commands, save);
    QCOMPARE(bench.reader.counters().refusedBlocks, quint64(0));
    QVERIFY(bench.cartridge().saveImage() == save);
    QVERIFY(bench.readAll(commands) == save);
}

void GbaSavesTest::otherCommandsHaveNoEffect()
{
    QFETCH(int, index);
    const Commands &own = kCommands[index];
    const bool isFlash = own.kind == SaveKind::Flash64k || own.kind == SaveKind::Flash128k;
    SaveBench bench(own);
    const ByteVector save = makeNoise(own.size, 7);
    QVERIFY(bench.cartridge().loadSave(save));
    const QString refusal = "the cartridge has no such save memory";
    for (const Commands &other : kCommands) {
        if (other.kind == own.kind)
            continue;
        QCOMPARE(bench.write(other, 0, ByteVector(256, 0x00)), refusal);
        if (isFlash && other.kind == SaveKind::Sram)
            continue; // a plain read shows FLASH too
        QCOMPARE(bench.ask(other.read, 0, 512), refusal);
        QVERIFY(bench.reply(512) == ByteVector(512, 0xFF));
    }
    QCOMPARE(bench.send(commandBlock(3, 7)), isFlash ? QString() : refusal);
    if (!isFlash)
        QVERIFY(bench.cartridge().saveImage() == save);
}

void GbaSavesTest::cartridgeWithoutChipRefusesAll()
{
    SaveBench bench(SaveKind::None, 0);
    for (const Commands &commands : kCommands) {
        QVERIFY(!bench.ask(commands.read, 0, 512).isEmpty());
        QVERIFY(bench.reply(512) == ByteVector(512, 0xFF));
        QVERIFY(!bench.write(commands, 0, ByteVector(256, 0x00)).isEmpty());
    }
    QVERIFY(!bench.send(commandBlock(3, 7)).isEmpty());
    QVERIFY(bench.cartridge().saveImage().empty());
}

void GbaSavesTest::smallSramRepeatsInItsWindow()
{
    SaveBench bench(kCommands[0]);
    bench.write(kCommands[0], 0x1234, ByteVector(1, 0x42));
    for (const std::uint32_t address : {0x1234U, 0x9234U}) {
        bench.ask(17, address, 1);
        QCOMPARE(int(bench.reply(1)[0]), 0x42);
    }
    bench.write(kCommands[0], 0x9234, ByteVector(1, 0x43));
    QCOMPARE(int(bench.cartridge().saveImage()[0x1234]), 0x43);
}

void GbaSavesTest::flashTakesErasedCellsOnly()
{
    SaveBench bench(kCommands[2]);
    QVERIFY(bench.cartridge().saveImage() == ByteVector(64 * kKiB, 0xFF));
    bench.write(kCommands[2], 0x100, ByteVector(2, 0x5A));
    bench.write(kCommands[2], 0x100, ByteVector(1, 0xA7));
    QCOMPARE(int(bench.cartridge().saveImage()[0x100]), 0x02);
    QCOMPARE(int(bench.cartridge().saveImage()[0x101]), 0x5A);
}

void GbaSavesTest::eraseIsSeenByPolls_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<quint32>("size");
    QTest::addColumn<unsigned>("polls");
    QTest::newRow("64K, at once") << int(SaveKind::Flash64k) << 64 * kKiB << 0U;
    QTest::newRow("64K") << int(SaveKind::Flash64k) << 64 * kKiB << 3U;
    QTest::newRow("128K") << int(SaveKind::Flash128k) << 128 * kKiB << 7U;
}

void GbaSavesTest::eraseIsSeenByPolls()
{
    QFETCH(int, kind);
    QFETCH(quint32, size);
    QFETCH(unsigned, polls);
    SaveBench bench(static_cast<SaveKind>(kind), size, polls);
    bench.cartridge().loadSave(ByteVector(size, 0x00));
    QCOMPARE(bench.send(commandBlock(3, 7)), QString());
    for (unsigned i = 0; i < polls; ++i)
        QVERIFY(bench.poll() != 0xFF);
    QCOMPARE(bench.poll(), 0xFF);
    QVERIFY(bench.cartridge().saveImage() == ByteVector(size, 0xFF));
}

void GbaSavesTest::readsDuringAnEraseShowTheStatus()
{
    SaveBench bench(SaveKind::Flash64k, 64 * kKiB, 2);
    bench.cartridge().loadSave(ByteVector(64 * kKiB, 0x5A));
    bench.send(commandBlock(3, 7));
    bench.ask(8, 0, 4096);
    for (const std::uint8_t byte : bench.reply(4096))
        QVERIFY((byte & 0x80) == 0 && byte != 0x5A);
    QVERIFY(bench.write(kCommands[2], 0x10, ByteVector(1, 0x00)).isEmpty()); // but without effect
    bench.poll();
    QCOMPARE(bench.poll(), 0xFF);
    QVERIFY(bench.cartridge().saveImage() == ByteVector(64 * kKiB, 0xFF));
}

void GbaSavesTest::powerCutInterruptsAnErase()
{
    SaveBench bench(SaveKind::Flash64k, 64 * kKiB, 4);
    bench.cartridge().loadSave(ByteVector(64 * kKiB, 0x5A));
    bench.send(commandBlock(3, 7));
    bench.poll();
    bench.cartridge().powerCycle();
    const ByteVector save = bench.cartridge().saveImage();
    QCOMPARE(bench.poll(), 0xFF);
    QCOMPARE(int(save[16 * kKiB]), 0x00);
    QCOMPARE(int(save[64 * kKiB - 1]), 0x5A);
}

void GbaSavesTest::plainReadShowsTheSelectedBank()
{
    SaveBench bench(SaveKind::Flash128k, 128 * kKiB);
    ByteVector save(128 * kKiB, 0x11);
    std::fill(save.begin() + 64 * kKiB, save.end(), std::uint8_t{0x22});
    bench.cartridge().loadSave(save);
    QCOMPARE(bench.poll(), 0x11);
    bench.ask(9, 0xFF80, 256); // runs over into the second bank
    QVERIFY(bench.reply(256) == ByteVector(128, 0x11) + ByteVector(128, 0x22));
    QCOMPARE(bench.poll(), 0x22);
}

void GbaSavesTest::eepromTransfersBeginAtBlocks()
{
    const Commands &commands = kCommands[5];
    SaveBench bench(commands);
    const ByteVector save = makeNoise(commands.size, 8);
    bench.cartridge().loadSave(save);
    bench.ask(13, 0x1005, 12);
    QVERIFY(bench.reply(12) == ByteVector(save.begin() + 0x1000, save.begin() + 0x100C));
    bench.write(commands, 0x0107, ByteVector(256, 0x77));
    QVERIFY(bench.cartridge().saveImage()[0x100] == 0x77);
    QVERIFY(bench.cartridge().saveImage()[0x200] == save[0x200]);
}

void GbaSavesTest::changesAreCounted()
{
    for (const Commands &commands : kCommands) {
        SaveBench bench(commands);
        ByteVector payload(256, bench.cartridge().saveImage()[0]);
        bench.write(commands, 0, payload); // as it was
        QCOMPARE(bench.cartridge().saveChanges(), quint64(0));
        payload[3] = 0x55;
        payload[200] = 0x55;
        bench.write(commands, 0, payload);
        QCOMPARE(bench.cartridge().saveChanges(), quint64(2));
    }
}

void GbaSavesTest::optionsAndMarkDecide_data()
{
    QTest::addColumn<int>("mark");
    QTest::addColumn<int>("type");
    QTest::addColumn<quint32>("asked"); // size
    QTest::addColumn<int>("kind");
    QTest::addColumn<quint32>("size");
    const auto row = [](const char *name, SaveKind mark, GbaSaveType type, quint32 asked,
                        SaveKind kind, quint32 size) {
        QTest::newRow(name) << int(mark) << int(type) << asked << int(kind) << size;
    };
    using K = SaveKind;
    using T = GbaSaveType;
    row("no mark", K::None, T::ByMark, 0, K::None, 0);
    row("SRAM mark", K::Sram, T::ByMark, 0, K::Sram, 32 * kKiB);
    row("SRAM mark, 64K", K::Sram, T::ByMark, 64 * kKiB, K::Sram, 64 * kKiB);
    row("FLASH mark", K::Flash64k, T::ByMark, 0, K::Flash64k, 64 * kKiB);
    row("FLASH mark, 128K", K::Flash64k, T::ByMark, 128 * kKiB, K::Flash128k, 128 * kKiB);
    row("FLASH1M mark", K::Flash128k, T::ByMark, 0, K::Flash128k, 128 * kKiB);
    row("EEPROM mark", K::Eeprom512, T::ByMark, 0, K::Eeprom512, 512);
    row("EEPROM mark, 8K", K::Eeprom512, T::ByMark, 8 * kKiB, K::Eeprom8k, 8 * kKiB);
    row("none in spite of a mark", K::Sram, T::None, 0, K::None, 0);
    row("SRAM asked", K::Eeprom512, T::Sram, 0, K::Sram, 32 * kKiB);
    row("FLASH asked", K::None, T::Flash, 0, K::Flash64k, 64 * kKiB);
    row("FLASH 128K asked", K::None, T::Flash, 128 * kKiB, K::Flash128k, 128 * kKiB);
    row("EEPROM asked", K::None, T::Eeprom, 0, K::Eeprom512, 512);
    row("EEPROM 8K asked", K::Flash128k, T::Eeprom, 8 * kKiB, K::Eeprom8k, 8 * kKiB);
}

void GbaSavesTest::optionsAndMarkDecide()
{
    QFETCH(int, mark);
    QFETCH(int, type);
    QFETCH(quint32, asked);
    QFETCH(int, kind);
    QFETCH(quint32, size);
    CartridgeOptions options;
    options.saveType = static_cast<GbaSaveType>(type);
    options.saveSize = asked;
    std::string error;
    const auto choice = chooseGbaSave(options, static_cast<SaveKind>(mark), &error);
    QVERIFY2(choice.has_value(), error.c_str());
    QCOMPARE(int(choice->kind), kind);
    QCOMPARE(choice->sizeBytes, size);
    const auto chip = makeGbaSaveChip(*choice, {});
    QCOMPARE(chip == nullptr ? 0U : quint32(chip->contents().size()), size);
}

void GbaSavesTest::factoryBuildsTheMarkedChip()
{
    GbaImageSpec spec;
    spec.romSize = 64 * kKiB;
    spec.saveKind = SaveKind::Flash128k;
    CartridgeOptions options;
    options.flashChip.erasePolls = 1;
    SaveBench bench(SaveKind::None, 0);
    bench.reader.insertCartridge(cartridgeOf(gbaImage(spec), options));
    QCOMPARE(bench.cartridge().saveImage().size(), std::size_t(128 * kKiB));
    bench.send(commandBlock(3, 7));
    QVERIFY(bench.poll() != 0xFF);
    QCOMPARE(bench.poll(), 0xFF);
}

void GbaSavesTest::factoryRefusesSizesOfNoChip_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<quint32>("size");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, GbaSaveType type, quint32 size, const char *reason) {
        QTest::newRow(name) << int(type) << size << reason;
    };
    row("8 KiB SRAM", GbaSaveType::Sram, 8192, "save size 8192: there is no such chip");
    row("32 KiB FLASH", GbaSaveType::Flash, 32768, "save size 32768");
    row("64 KiB EEPROM", GbaSaveType::Eeprom, 65536, "save size 65536");
    row("size without a chip", GbaSaveType::None, 512, "the cartridge has no save chip");
    row("size without a mark", GbaSaveType::ByMark, 512, "the cartridge has no save chip");
}

void GbaSavesTest::factoryRefusesSizesOfNoChip()
{
    QFETCH(int, type);
    QFETCH(quint32, size);
    QFETCH(QString, reason);
    CartridgeOptions options;
    options.system = CartridgeSystem::Gba;
    options.saveType = static_cast<GbaSaveType>(type);
    options.saveSize = size;
    std::string error;
    QVERIFY(makeCartridge(ByteVector(1024, 0), options, &error) == nullptr);
    QVERIFY2(QString::fromStdString(error).contains(reason), error.c_str());
}

GBDRIVER_TEST(GbaSavesTest, none)
#include "gba_saves_test.moc"
