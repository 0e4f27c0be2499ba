#include "cartridge_files.h"

#include "samples.h"

using namespace virtual_reader;

QString CartridgeFiles::addImage(std::uint8_t type, std::uint32_t romSize, std::uint32_t ramSize,
                                 std::uint64_t seed)
{
    return addFile(QString("image%1.gb").arg(++m_images),
                   toByteArray(gbImage({type, romSize, ramSize, "VIRTUAL", seed})));
}

QString CartridgeFiles::addGbaImage(std::uint32_t romSize)
{
    GbaImageSpec spec;
    spec.romSize = romSize;
    return addFile(QString("image%1.gba").arg(++m_images), toByteArray(gbaImage(spec)));
}

QString CartridgeFiles::addNoise(const QString &name, std::uint32_t size, unsigned seed)
{
    return addFile(name, noise(static_cast<int>(size), seed));
}
