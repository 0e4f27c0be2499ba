#include "samples.h"

#include "virtual/cartridge_factory.h"
#include "virtual/gb_cartridges.h"

#include <QString>

using namespace virtual_reader;

namespace
{

constexpr std::uint8_t kMbc5RamBattery = 0x1B;
constexpr std::uint32_t kGbTypeOffset = 0x147;
constexpr std::uint32_t kGbRomSizeOffset = 0x148;
constexpr std::uint32_t kGbRamSizeOffset = 0x149;

} // namespace

QByteArray toByteArray(const ByteVector &bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()));
}

ByteVector toByteVector(const QByteArray &bytes)
{
    return ByteVector(bytes.begin(), bytes.end());
}

QByteArray noise(int size, unsigned seed)
{
    return toByteArray(makeNoise(static_cast<std::uint32_t>(size), seed));
}

ByteVector gbImage(const GbImageSpec &spec)
{
    ByteVector image;
    std::string error;
    if (!makeGbImage(spec, &image, &error))
        qFatal("no image: %s", error.c_str());
    return image;
}

ByteVector gbaImage(const GbaImageSpec &spec)
{
    ByteVector image;
    std::string error;
    if (!makeGbaImage(spec, &image, &error))
        qFatal("no image: %s", error.c_str());
    return image;
}

std::unique_ptr<Cartridge> cartridgeOf(const ByteVector &image, const CartridgeOptions &options)
{
    std::string error;
    auto cartridge = makeCartridge(image, options, &error);
    if (cartridge == nullptr)
        qFatal("no cartridge: %s", error.c_str());
    return cartridge;
}

void putSave(Cartridge *cartridge, const QByteArray &save)
{
    if (!cartridge->loadSave(toByteVector(save)))
        qFatal("the cartridge takes no save of %d bytes", static_cast<int>(save.size()));
}

std::unique_ptr<Cartridge> makeGbCartridge(std::uint8_t type, std::uint32_t romSize,
                                           std::uint32_t ramSize)
{
    GbImageSpec spec;
    spec.type = type;
    spec.romSize = romSize;
    spec.ramSize = ramSize;
    auto cartridge = cartridgeOf(gbImage(spec));
    if (ramSize > 0)
        putSave(cartridge.get(), noise(static_cast<int>(ramSize), 7));
    return cartridge;
}

std::unique_ptr<Cartridge> makeMbc5Cartridge(std::uint32_t romSize)
{
    return makeGbCartridge(kMbc5RamBattery, romSize, 32 * 1024);
}

std::unique_ptr<Cartridge> makeGbHeaderCartridge(int type, int romCode, int ramCode)
{
    ByteVector image = gbImage();
    image[kGbTypeOffset] = static_cast<std::uint8_t>(type);
    image[kGbRomSizeOffset] = static_cast<std::uint8_t>(romCode);
    image[kGbRamSizeOffset] = static_cast<std::uint8_t>(ramCode);
    return std::make_unique<GbCartridge>(image, 0);
}

ByteVector gbaGame(const QString &code, std::uint32_t romSize)
{
    GbaImageSpec spec;
    spec.code = code.toStdString();
    spec.romSize = romSize;
    return gbaImage(spec);
}

std::unique_ptr<Cartridge> makeGbaGame(const QString &code, std::uint32_t romSize)
{
    return cartridgeOf(gbaGame(code, romSize));
}
