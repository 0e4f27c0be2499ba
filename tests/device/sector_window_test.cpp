// Widening reads to whole sectors: the arithmetic, and whole reads against a disk that refuses
// anything unaligned.
#include "device/sector_window.h"

#include "test_bytes.h"
#include "test_class.h"

#include <QtTest>

#include <algorithm>
#include <cstring>

namespace
{

// A disk of `content` that serves aligned requests only and records them.
struct StrictDisk {
    QByteArray content;
    std::uint64_t base = 0; // offset on the disk at which `content` begins
    QStringList requests = {};
    QList<void *> targets = {};
    bool failing = false;

    SectorTransfer transfer()
    {
        return [this](void *destination, std::uint64_t offset, std::uint32_t length,
                      std::uint32_t *count) { return serve(destination, offset, length, count); };
    }

    DriveStatus serve(void *destination, std::uint64_t offset, std::uint32_t length,
                      std::uint32_t *count)
    {
        *count = 0;
        requests.append(QString("%1+%2").arg(offset).arg(length));
        targets.append(destination);
        const auto address = reinterpret_cast<std::uintptr_t>(destination);
        if (offset % 512 != 0 || length % 512 != 0 || address % 512 != 0)
            return {DriveErrorCode::BadRequest, "unaligned"};
        if (failing)
            return {DriveErrorCode::InputOutput, "bad sector"};
        const std::uint64_t end = base + static_cast<std::uint64_t>(content.size());
        *count = offset < end
                     ? static_cast<std::uint32_t>(std::min<std::uint64_t>(length, end - offset))
                     : 0;
        std::memcpy(destination, content.constData() + (*count == 0 ? 0 : offset - base), *count);
        return {};
    }
};

// Memory in which every alignment can be had, with guard bytes around what is used.
struct Target {
    alignas(4096) std::uint8_t memory[4096 * 8];

    Target() { std::memset(memory, 0x5C, sizeof(memory)); }
    QByteArray bytes(int start, int length) const
    {
        return {reinterpret_cast<const char *>(memory) + start, length};
    }
    bool untouched(int start, int end) const
    {
        return bytes(start, end - start) == QByteArray(end - start, '\x5C');
    }
};

} // namespace

class SectorWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void alignmentLooksAtAllThree_data();
    void alignmentLooksAtAllThree();
    void windowIsTheSmallestRunOfSectors_data();
    void windowIsTheSmallestRunOfSectors();
    void alignedReadGoesThroughUnchanged();
    void unalignedReadIsWidened_data();
    void unalignedReadIsWidened();
    void countEndsWithTheFile_data();
    void countEndsWithTheFile();
    void failureIsPassedUp();
    void onlyUnbufferedReadsAreWidened();
    void positionMovesBehindWhatArrived();
};

void SectorWindowTest::alignmentLooksAtAllThree_data()
{
    QTest::addColumn<quint64>("address");
    QTest::addColumn<std::uint32_t>("length");
    QTest::addColumn<std::uint32_t>("offset");
    QTest::addColumn<bool>("aligned");
    QTest::newRow("all") << quint64{0x10000} << 512U << 1024U << true;
    QTest::newRow("sector, not page") << quint64{0x10200} << 1536U << 512U << true;
    QTest::newRow("nothing") << quint64{0x10000} << 0U << 0U << true;
    QTest::newRow("last sector of 4 GiB") << quint64{0x10000} << 512U << 0xFFFFFE00U << true;
    QTest::newRow("address") << quint64{0x10010} << 512U << 1024U << false;
    QTest::newRow("length") << quint64{0x10000} << 1000U << 1024U << false;
    QTest::newRow("offset") << quint64{0x10000} << 512U << 0x100U << false;
    QTest::newRow("odd by one") << quint64{0x10001} << 513U << 1U << false;
}

void SectorWindowTest::alignmentLooksAtAllThree()
{
    QFETCH(quint64, address);
    QFETCH(std::uint32_t, length);
    QFETCH(std::uint32_t, offset);
    QFETCH(bool, aligned);
    const auto *pointer = reinterpret_cast<const void *>(static_cast<std::uintptr_t>(address));
    QCOMPARE(isSectorAligned(pointer, length, offset), aligned);
}

void SectorWindowTest::windowIsTheSmallestRunOfSectors_data()
{
    QTest::addColumn<std::uint32_t>("offset");
    QTest::addColumn<std::uint32_t>("length");
    QTest::addColumn<quint64>("start");
    QTest::addColumn<std::uint32_t>("windowLength");
    QTest::addColumn<std::uint32_t>("skip");
    QTest::newRow("aligned") << 512U << 1024U << quint64{512} << 1024U << 0U;
    QTest::newRow("one byte") << 0U << 1U << quint64{0} << 512U << 0U;
    QTest::newRow("last byte of a sector") << 511U << 1U << quint64{0} << 512U << 511U;
    QTest::newRow("across a border") << 511U << 2U << quint64{0} << 1024U << 511U;
    QTest::newRow("cartridge header") << 0x100U << 0x50U << quint64{0} << 512U << 0x100U;
    QTest::newRow("header transfer") << 0x100U << 1024U << quint64{0} << 1536U << 0x100U;
    QTest::newRow("odd length") << 0U << 10000U << quint64{0} << 10240U << 0U;
    QTest::newRow("ends on a border") << 100U << 412U << quint64{0} << 512U << 100U;
    QTest::newRow("one past a border") << 100U << 413U << quint64{0} << 1024U << 100U;
    QTest::newRow("last sector") << 0xFFFFFE01U << 511U << quint64{0xFFFFFE00} << 512U << 1U;
    QTest::newRow("past 4 GiB") << 0xFFFFFFFFU << 2U << quint64{0xFFFFFE00} << 1024U << 511U;
    QTest::newRow("long, past 4 GiB")
        << 0xFFFFFF00U << 0x10000U << quint64{0xFFFFFE00} << 0x10200U << 0x100U;
}

void SectorWindowTest::windowIsTheSmallestRunOfSectors()
{
    QFETCH(std::uint32_t, offset);
    QFETCH(std::uint32_t, length);
    QFETCH(quint64, start);
    QFETCH(std::uint32_t, windowLength);
    QFETCH(std::uint32_t, skip);
    const SectorWindow window = widenToSectors(offset, length);
    QCOMPARE(quint64{window.offset}, start);
    QCOMPARE(window.length, windowLength);
    QCOMPARE(window.skip, skip);
}

void SectorWindowTest::alignedReadGoesThroughUnchanged()
{
    StrictDisk disk{patternBytes(8192, 1)};
    Target target;
    std::uint32_t count = 0;
    QVERIFY(readSectors(disk.transfer(), target.memory + 512, 1024, 1536, &count).ok());
    QCOMPARE(count, 1024U);
    QCOMPARE(disk.requests, QStringList({"1536+1024"}));
    QCOMPARE(disk.targets[0], static_cast<void *>(target.memory + 512));
    QCOMPARE(target.bytes(512, 1024), disk.content.mid(1536, 1024));
    QVERIFY(target.untouched(0, 512) && target.untouched(1536, 4096 * 8));
}

void SectorWindowTest::unalignedReadIsWidened_data()
{
    QTest::addColumn<int>("shift"); // of the memory address
    QTest::addColumn<int>("length");
    QTest::addColumn<std::uint32_t>("offset");
    QTest::addColumn<quint64>("base");
    QTest::addColumn<QString>("request");
    QTest::newRow("address") << 16 << 1024 << 512U << quint64{0} << "512+1024";
    QTest::newRow("odd address") << 1 << 512 << 0U << quint64{0} << "0+512";
    QTest::newRow("length") << 0 << 1000 << 512U << quint64{0} << "512+1024";
    QTest::newRow("offset") << 0 << 1024 << 0x100U << quint64{0} << "0+1536";
    QTest::newRow("one byte") << 0 << 1 << 1023U << quint64{0} << "512+512";
    QTest::newRow("all three") << 3 << 5000 << 1025U << quint64{0} << "1024+5120";
    QTest::newRow("near 4 GiB") << 0 << 100 << 0xFFFFFF9CU << quint64{0xFFFFF000}
                                << "4294966784+512";
    QTest::newRow("past 4 GiB") << 0 << 1024 << 0xFFFFFFF0U << quint64{0xFFFFF000}
                                << "4294966784+1536";
}

void SectorWindowTest::unalignedReadIsWidened()
{
    QFETCH(int, shift);
    QFETCH(int, length);
    QFETCH(std::uint32_t, offset);
    QFETCH(quint64, base);
    QFETCH(QString, request);
    StrictDisk disk{patternBytes(16384, 2), base};
    Target target;
    std::uint32_t count = 0;
    const int start = 4096 + shift;
    QVERIFY(readSectors(disk.transfer(), target.memory + start, static_cast<std::uint32_t>(length),
                        offset, &count)
                .ok());
    QCOMPARE(count, static_cast<std::uint32_t>(length));
    QCOMPARE(disk.requests, QStringList({request}));
    QCOMPARE(target.bytes(start, length),
             disk.content.mid(static_cast<int>(offset - base), length));
    QVERIFY(target.untouched(0, start) && target.untouched(start + length, 4096 * 8));
}

void SectorWindowTest::countEndsWithTheFile_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("length");
    QTest::addColumn<std::uint32_t>("offset");
    QTest::addColumn<std::uint32_t>("expected");
    QTest::newRow("aligned, all there") << 4096 << 4096 << 0U << 4096U;
    QTest::newRow("aligned, cut") << 1000 << 4096 << 0U << 1000U;
    QTest::newRow("aligned, at the end") << 1024 << 512 << 1024U << 0U;
    QTest::newRow("unaligned, cut") << 1000 << 1000 << 100U << 900U;
    QTest::newRow("unaligned, just fits") << 1000 << 900 << 100U << 900U;
    QTest::newRow("end inside the skipped bytes") << 600 << 100 << 700U << 0U;
    QTest::newRow("end right behind the skipped bytes") << 700 << 100 << 700U << 0U;
    QTest::newRow("one byte behind the skipped bytes") << 701 << 100 << 700U << 1U;
    QTest::newRow("far behind the end") << 600 << 100 << 70000U << 0U;
    QTest::newRow("nothing asked") << 4096 << 0 << 100U << 0U;
}

void SectorWindowTest::countEndsWithTheFile()
{
    QFETCH(int, size);
    QFETCH(int, length);
    QFETCH(std::uint32_t, offset);
    QFETCH(std::uint32_t, expected);
    StrictDisk disk{patternBytes(size, 3)};
    Target target;
    std::uint32_t count = 99;
    QVERIFY(readSectors(disk.transfer(), target.memory, static_cast<std::uint32_t>(length), offset,
                        &count)
                .ok());
    QCOMPARE(count, expected);
    const int arrived = static_cast<int>(expected);
    QCOMPARE(target.bytes(0, arrived), disk.content.mid(static_cast<int>(offset), arrived));
    QVERIFY(target.untouched(arrived, 4096 * 8));
}

void SectorWindowTest::failureIsPassedUp()
{
    StrictDisk disk{patternBytes(4096, 4)};
    disk.failing = true;
    Target target;
    for (const std::uint32_t length : {512U, 100U}) {
        std::uint32_t count = 99;
        const DriveStatus status = readSectors(disk.transfer(), target.memory, length, 0, &count);
        QVERIFY(status.code == DriveErrorCode::InputOutput);
        QCOMPARE(status.message, std::string("bad sector"));
        QCOMPARE(count, 0U);
    }
    QVERIFY(target.untouched(0, 4096 * 8));
}

void SectorWindowTest::onlyUnbufferedReadsAreWidened()
{
    StrictDisk disk{patternBytes(4096, 5)};
    Target target;
    std::uint32_t count = 99;
    std::uint32_t position = 100;
    QCOMPARE(
        readAtPosition(disk.transfer(), Buffering::Buffered, target.memory, 50, &position, &count)
            .message,
        std::string("unaligned"));
    QCOMPARE(count, 0U);
    QCOMPARE(position, 100U);
    QVERIFY(
        readAtPosition(disk.transfer(), Buffering::Unbuffered, target.memory, 50, &position, &count)
            .ok());
    QCOMPARE(count, 50U);
    QCOMPARE(disk.requests, QStringList({"100+50", "0+512"}));
}

void SectorWindowTest::positionMovesBehindWhatArrived()
{
    StrictDisk disk{patternBytes(1200, 6)};
    Target target;
    std::uint32_t count = 0;
    std::uint32_t position = 0;
    for (const std::uint32_t expected : {500U, 1000U, 1200U, 1200U}) {
        const std::uint32_t before = position;
        QVERIFY(readAtPosition(disk.transfer(), Buffering::Unbuffered, target.memory, 500,
                               &position, &count)
                    .ok());
        QCOMPARE(position, expected);
        QCOMPARE(count, expected - before);
        QCOMPARE(target.bytes(0, static_cast<int>(count)),
                 disk.content.mid(static_cast<int>(before), static_cast<int>(count)));
    }
}

GBDRIVER_TEST(SectorWindowTest, none)
#include "sector_window_test.moc"
