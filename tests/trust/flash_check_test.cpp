// What stands in the way of flashing a file, each with the words for it.
#include "trust/flash_check.h"

#include "cart/setting_tables.h"
#include "test_class.h"
#include "trust_bench.h"

#include <QtTest>

using namespace virtual_reader;

Q_DECLARE_METATYPE(FlashFault)

namespace
{

constexpr int kKibi = 1024;

CartridgeValues valuesOf(int system, int mapper)
{
    CartridgeValues values;
    values.system = system;
    values.mapper = mapper;
    return values;
}

} // namespace

class FlashCheckTest : public QObject
{
    Q_OBJECT

private slots:
    void fileIsCheckedAgainstTheMapper_data()
    {
        QTest::addColumn<int>("system");
        QTest::addColumn<int>("mapper");
        QTest::addColumn<int>("bytes");
        QTest::addColumn<FlashFault>("fault");
        const auto add = [](const char *name, int system, int mapper, int bytes, FlashFault fault) {
            QTest::newRow(name) << system << mapper << bytes << fault;
        };
        add("GBA", kSystemGba, 4, 32768, FlashFault::GbaRom);
        add("MBC2", kSystemGb, 2, 32768, FlashFault::NoFlashChip);
        add("MBC7", kSystemGb, 5, 32768, FlashFault::NoFlashChip);
        add("TAMA5", kSystemGb, 6, 32768, FlashFault::NoFlashChip);
        add("empty", kSystemGb, 4, 0, FlashFault::EmptyFile);
        const struct {
            int mapper;
            int largest;
        } limits[] = {{0, 32 * kKibi}, {1, 512 * kKibi}, {3, 4096 * kKibi}, {4, 8192 * kKibi}};
        for (const auto &limit : limits) {
            QTest::addRow("mapper %d, full", limit.mapper)
                << kSystemGb << limit.mapper << limit.largest << FlashFault::None;
            QTest::addRow("mapper %d, too large", limit.mapper)
                << kSystemGb << limit.mapper << limit.largest + 1 << FlashFault::BeyondMapper;
        }
        for (int tail = 1; tail < 8; ++tail)
            QTest::addRow("tail of %d", tail)
                << kSystemGb << 4 << 0x8000 + tail << FlashFault::ShortTail;
        add("tail of 8", kSystemGb, 4, 0x8008, FlashFault::None);
        add("whole banks", kSystemGb, 4, 0xC000, FlashFault::None);
        // Its one bank has 32 KiB.
        add("no mapper, 16 KiB and 4 bytes", kSystemGb, 0, 0x4004, FlashFault::None);
        add("no mapper, 4 bytes", kSystemGb, 0, 4, FlashFault::ShortTail);
    }
    void fileIsCheckedAgainstTheMapper()
    {
        QFETCH(int, system);
        QFETCH(int, mapper);
        QFETCH(int, bytes);
        QTEST(flashFileFault(bytes, valuesOf(system, mapper)), "fault");
    }

    void unknownMapperHasNoChip()
    {
        CartridgeValues values;
        values.system = kSystemGb;
        QCOMPARE(flashFileFault(3, values), FlashFault::NoFlashChip);
        QVERIFY(flashLimitOf(valuesOf(kSystemGba, 4)) == nullptr);
    }

    void sizesAreCheckedAgainstTheChip_data()
    {
        QTest::addColumn<int>("fileSize");
        QTest::addColumn<int>("chipSize"); // 0: not known
        QTest::addColumn<FlashFault>("fault");
        QTest::newRow("fits") << 65536 << 65536 << FlashFault::None;
        QTest::newRow("too large") << 65537 << 65536 << FlashFault::BeyondChip;
        QTest::newRow("chip not known") << 65537 << 0 << FlashFault::None;
    }
    void sizesAreCheckedAgainstTheChip()
    {
        QFETCH(int, fileSize);
        QFETCH(int, chipSize);
        QTEST(flashChipFault(fileSize, {true, std::uint32_t(chipSize)}), "fault");
    }

    void backupHoldsAllThatIsErased()
    {
        QCOMPARE(flashBackupFault(65536, 65536), FlashFault::None);
        QCOMPARE(flashBackupFault(65537, 65536), FlashFault::None);
        QCOMPARE(flashBackupFault(65535, 65536), FlashFault::BackupTooSmall);
    }

    // Behind another mapper than the board's a part of the chip comes again and again.
    void repeatedBackupIsNotTheChip()
    {
        const QByteArray part = noise(32 * kKibi, 1);
        const FlashChipAnswer chip{true, 64 * kKibi};
        QCOMPARE(flashContentFault(part + part, chip), FlashFault::BackupRepeats);
        QCOMPARE(flashContentFault(part + noise(32 * kKibi, 2), chip), FlashFault::None);
        const QByteArray whole = part + noise(32 * kKibi, 2);
        QCOMPARE(flashContentFault(whole + whole, chip), FlashFault::None); // read beyond its end
        QCOMPARE(flashContentFault(QByteArray(64 * kKibi, '\xFF'), chip), FlashFault::None);
        // A chip that does not say its size is read as far as the mapper reaches.
        QCOMPARE(flashContentFault(part + part, {false, 0}), FlashFault::None);
    }

    void everyFaultHasItsWords()
    {
        const struct {
            FlashFault fault;
            const char *text;
        } rows[] = {{FlashFault::None, ""},
                    {FlashFault::GbaRom, "The reader has no command that writes a GBA ROM."},
                    {FlashFault::NoFlashChip,
                     "Cartridges with this mapper have no flash chip that can be written."},
                    {FlashFault::EmptyFile, "The file is empty."},
                    {FlashFault::BeyondMapper,
                     "The file has 111 bytes; with this mapper a flash chip takes 222."},
                    {FlashFault::ShortTail,
                     "The last bank of the file has 111 bytes; 222 are the fewest "
                     "that the reader can program. Pad the file."},
                    {FlashFault::BeyondChip, "The file has 111 bytes, the flash chip 222."},
                    {FlashFault::BackupTooSmall, "The chip is erased as a whole, and a backup of "
                                                 "111 bytes may be only a part of it: up "
                                                 "to 222 can be in it."},
                    {FlashFault::BackupRepeats,
                     "The chip has 222 bytes, and what is read of it repeats its first 111: so it "
                     "reads behind another mapper than the one that was chosen, and a backup would "
                     "be a part of it."}};
        int next = 0;
        for (const auto &row : rows) {
            QCOMPARE(int(row.fault), next++);
            QCOMPARE(flashFaultText(row.fault, 111, 222), QString(row.text));
        }
    }

    void wholeChipIsKept()
    {
        const FlashLimit &mbc5 = *flashLimitOf(valuesOf(kSystemGb, 4));
        const FlashLimit &mbc1 = *flashLimitOf(valuesOf(kSystemGb, 1));
        QCOMPARE(flashBytesToKeep({true, 2048 * kKibi}, mbc5), 2048 * kKibi);
        QCOMPARE(flashBytesToKeep({false, 0}, mbc5), 8192 * kKibi);
        // The erase does not care how much of it the mapper reaches.
        QCOMPARE(flashBytesToKeep({true, 8192 * kKibi}, mbc1), 8192 * kKibi);
        // All that the mapper reads, whatever it can write.
        QCOMPARE(flashBytesToKeep({false, 0}, mbc1), 2048 * kKibi);
    }

    void romSizeIsTheNextPowerOfTwo()
    {
        QCOMPARE(romSizeOf(1), 32768);
        QCOMPARE(romSizeOf(32768), 32768);
        QCOMPARE(romSizeOf(32769), 65536);
        QCOMPARE(romSizeOf(8192 * kKibi), 8192 * kKibi);
    }

    void probedChipIsThatOfTheCartridge()
    {
        TrialCartridge cartridge = benchCartridge();
        cartridge.options.flash = FlashWidth::Word;
        TrialBench bench(cartridge);
        const ProbedChip probed = probeFlashChipTwice();
        QCOMPARE(int(probed.end), int(ProbeEnd::Asked));
        QVERIFY(probed.chip.isWide);
    }

    void chipWithoutAReaderIsNotAsked()
    {
        TrialBench bench(benchCartridge());
        bench.drive().setGone(true);
        QCOMPARE(int(probeFlashChipTwice().end), int(ProbeEnd::NotAsked));
    }

    // The second answer is another one.
    void chipThatChangesItsMindIsUnclear()
    {
        TrialCartridge cartridge = benchCartridge();
        cartridge.options.flash = FlashWidth::Word;
        for (const std::uint32_t answer : {0U, 1U}) {
            TrialBench bench(cartridge);
            addReadFault(bench, answer, 0xFF);
            QCOMPARE(int(probeFlashChipTwice().end), int(ProbeEnd::Unclear));
        }
    }
};

GBDRIVER_TEST(FlashCheckTest, none)
#include "flash_check_test.moc"
