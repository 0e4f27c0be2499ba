// The virtual cartridges beside those of an independent emulator library, byte for byte.
//
// Both get the same random traffic. Where nothing drives the bus the hardware gives no certain
// value: there the virtual cartridge reads 0xFF and the library the last byte that was read; such a
// pair counts as agreement. What else is left out of the traffic, and why, stands at the sequences;
// docs/virtual-cartridges.md tells where the two disagree and who is right.
#include "mapper_sequences.h"
#include "mgba_cartridge.h"
#include "samples.h"
#include "test_class.h"
#include "virtual/cartridge_factory.h"
#include "virtual/image_generator.h"

#include <QtTest>

#include <memory>
#include <string>

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kKiB = 1024;
constexpr std::size_t kGameSize = 256 * kKiB; // of a compilation
constexpr std::size_t kSteps = 500000;
constexpr std::size_t kShownSteps = 20; // before a difference

struct Comparand {
    const char *name;
    int type;
    std::uint32_t romSize;
    std::uint32_t ramSize;
    BusSequence start; // may be null
    BusSequence sequence;
};

const Comparand kComparands[] = {
    {"MBC1, 2 MiB", 0x03, 2048 * kKiB, 32 * kKiB, nullptr, mbc1Sequence},
    {"MBC1, 128 KiB", 0x03, 128 * kKiB, 8 * kKiB, nullptr, mbc1Sequence},
    {"MBC1 multicart", 0x03, 1024 * kKiB, 8 * kKiB, nullptr, mbc1Sequence},
    {"MBC2", 0x06, 256 * kKiB, 0, nullptr, mbc2Sequence},
    {"MBC3", 0x10, 2048 * kKiB, 32 * kKiB, nullptr, mbc3Sequence},
    {"MBC30", 0x10, 4096 * kKiB, 64 * kKiB, nullptr, mbc30Sequence},
    {"MBC5", 0x1B, 8192 * kKiB, 128 * kKiB, nullptr, mbc5Sequence},
    {"MBC5, 256 KiB", 0x1B, 256 * kKiB, 8 * kKiB, nullptr, mbc5Sequence},
    {"MBC5 with motor", 0x1E, 1024 * kKiB, 32 * kKiB, nullptr, mbc5Sequence},
    {"MBC7", 0x22, 2048 * kKiB, 0, mbc7Start, mbc7Sequence},
    {"HuC1", 0xFF, 1024 * kKiB, 32 * kKiB, huc1Start, huc1Sequence},
    {"HuC-3", 0xFE, 2048 * kKiB, 32 * kKiB, nullptr, huc3Sequence},
    {"MMM01", 0x0D, 8192 * kKiB, 32 * kKiB, mmm01Start, mmm01Sequence},
    {"TAMA5", 0xFD, 512 * kKiB, 0, tama5Start, tama5Sequence},
    {"camera", 0xFC, 1024 * kKiB, 128 * kKiB, nullptr, cameraSequence},
};

// A compilation has its games, each with a header, at every 256 KiB; the library knows it by that.
bool isMultiCart(const Comparand &row)
{
    return QByteArray(row.name).endsWith("multicart");
}

void repeatHeader(ByteVector *image)
{
    for (std::size_t game = kGameSize; game < image->size(); game += kGameSize)
        std::copy_n(image->begin() + 0x100, 0x50,
                    image->begin() + static_cast<std::ptrdiff_t>(game + 0x100));
}

ByteVector imageOf(const Comparand &row)
{
    ByteVector image =
        gbImage({static_cast<std::uint8_t>(row.type), row.romSize, row.ramSize, "SECOND", 7});
    if (isMultiCart(row))
        repeatHeader(&image);
    return image;
}

QString hex(unsigned value, int digits)
{
    return QString("%1").arg(value, digits, 16, QChar('0'));
}

// Two cartridges with the same image, on the same bus.
class Pair
{
public:
    Pair(const ByteVector &image, bool multiCart)
    {
        CartridgeOptions options;
        options.multiCart = multiCart;
        std::string error;
        m_own = makeCartridge(image, options, &error);
        if (m_own == nullptr)
            qFatal("%s", error.c_str());
        m_library = MgbaCartridge::create(image, &error);
        if (m_library == nullptr)
            qFatal("%s", error.c_str());
        clearSaves();
    }

    // Returns: what differs; empty if nothing does.
    QString apply(const BusStep &step)
    {
        switch (step.kind) {
        case BusStep::Kind::Read:
            return read(step.address);
        case BusStep::Kind::Write:
            m_own->gbWrite(step.address, step.value);
            m_library->gbWrite(step.address, step.value);
            break;
        case BusStep::Kind::PowerCycle:
            m_own->powerCycle();
            m_library->powerCycle();
            break;
        }
        return {};
    }

private:
    // Fresh memory holds what it likes.
    void clearSaves()
    {
        const bool ownCleared = m_own->loadSave(ByteVector(m_own->saveImage().size()));
        const bool libraryCleared = m_library->loadSave(ByteVector(m_library->saveImage().size()));
        if (!ownCleared || !libraryCleared)
            qFatal("the saves cannot be cleared");
    }

    QString read(std::uint16_t address)
    {
        const std::uint8_t own = m_own->gbRead(address);
        const std::uint8_t library = m_library->gbRead(address);
        const bool open = own == 0xFF && library == m_lastRead;
        m_lastRead = library;
        if (own == library || open)
            return {};
        return QString("%1 reads %2, in the library %3")
            .arg(hex(address, 4), hex(own, 2), hex(library, 2));
    }

    std::uint8_t m_lastRead = 0xFF;
    std::unique_ptr<Cartridge> m_own;
    std::unique_ptr<MgbaCartridge> m_library;
};

// The last steps before number `end`, for a message.
QString history(const std::vector<BusStep> &steps, std::size_t end)
{
    QStringList lines;
    for (std::size_t i = end < kShownSteps ? 0 : end - kShownSteps; i <= end; ++i) {
        const BusStep &step = steps[i];
        const char *const kinds[] = {"read", "write", "power cycle"};
        lines << QString("%1 %2 %3")
                     .arg(kinds[static_cast<int>(step.kind)], hex(step.address, 4),
                          hex(step.value, 2));
    }
    return lines.join("; ");
}

} // namespace

class MgbaComparisonTest : public QObject
{
    Q_OBJECT

private slots:
    void sameTrafficGivesSameBytes_data();
    void sameTrafficGivesSameBytes();
};

void MgbaComparisonTest::sameTrafficGivesSameBytes_data()
{
    QTest::addColumn<int>("row");
    int index = 0;
    for (const Comparand &comparand : kComparands)
        QTest::newRow(comparand.name) << index++;
}

void MgbaComparisonTest::sameTrafficGivesSameBytes()
{
    QFETCH(int, row);
    const Comparand &comparand = kComparands[row];
    Pair pair(imageOf(comparand), isMultiCart(comparand));
    BusTraffic traffic(0x5EED + static_cast<std::uint64_t>(row));
    if (comparand.start != nullptr)
        comparand.start(&traffic);
    while (traffic.steps.size() < kSteps)
        comparand.sequence(&traffic);
    for (std::size_t i = 0; i < traffic.steps.size(); ++i) {
        const QString difference = pair.apply(traffic.steps[i]);
        if (!difference.isEmpty())
            QFAIL(qPrintable(
                QString("step %1: %2 (%3)").arg(i).arg(difference, history(traffic.steps, i))));
    }
}

GBDRIVER_TEST(MgbaComparisonTest, none)
#include "mgba_comparison_test.moc"
