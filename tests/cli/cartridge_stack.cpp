#include "cartridge_stack.h"

#include "device/device_link.h"
#include "virtual/gb_header.h"

#include <csignal>

using namespace virtual_reader;

namespace
{

std::unique_ptr<Cartridge> build(const StackedCartridge &cartridge)
{
    if (cartridge.image.isEmpty())
        return nullptr;
    auto built = cartridgeOf(toByteVector(cartridge.image), cartridge.options);
    if (!cartridge.save.isEmpty())
        putSave(built.get(), cartridge.save);
    return built;
}

} // namespace

StackedReader::StackedReader()
    : drive(std::make_unique<InProcessDrive>(
          std::make_unique<KeptReader>(nullptr, VirtualReaderConfig(), SaveFile()), *platform))
{
}

CartridgeStack::CartridgeStack() : FaultyDrive(*drive)
{
    setDriveBackend(this);
}

CartridgeStack::~CartridgeStack()
{
    setDriveBackend(nullptr);
}

void CartridgeStack::put(const QVector<StackedCartridge> &cartridges)
{
    m_cartridges = cartridges;
    m_searchesLeft = 0;
    m_isInterrupted = false;
}

QByteArray CartridgeStack::save()
{
    return toByteArray(drive->reader().cartridge().saveImage());
}

QByteArray CartridgeStack::rom()
{
    return toByteArray(drive->reader().cartridge().romImage());
}

std::uint32_t CartridgeStack::logicalDrives()
{
    passSearch();
    if (onSearch)
        onSearch();
    return FaultyDrive::logicalDrives();
}

DriveStatus CartridgeStack::openForWrite(const char *path, std::unique_ptr<DriveFile> *file)
{
    if (onWrite)
        onWrite(path);
    return FaultyDrive::openForWrite(path, file);
}

void CartridgeStack::passSearch()
{
    if (m_searchesLeft == 0 && !m_cartridges.isEmpty()) {
        insert(m_cartridges.takeFirst());
    } else if (m_searchesLeft == 0 && !m_isInterrupted) {
        insert({QByteArray()});
        m_isInterrupted = true;
        std::raise(SIGINT);
    }
    m_searchesLeft = qMax(0, m_searchesLeft - 1);
}

void CartridgeStack::insert(const StackedCartridge &cartridge)
{
    drive->reader().insertCartridge(build(cartridge));
    m_searchesLeft = cartridge.searches;
    clearFaults();
    for (const DriveFault &fault : cartridge.faults)
        addFault(fault);
}

QByteArray stackedImage(const GbImageSpec &spec, std::uint8_t colorFlag)
{
    ByteVector image = gbImage(spec);
    image[kGbTitleOffset + kGbTitleSize] = colorFlag;
    image[kGbHeaderChecksumOffset] = gbHeaderChecksum(image);
    const std::uint16_t sum = gbGlobalChecksum(image);
    image[kGbGlobalChecksumOffset] = static_cast<std::uint8_t>(sum >> 8);
    image[kGbGlobalChecksumOffset + 1] = static_cast<std::uint8_t>(sum);
    return toByteArray(image);
}

QByteArray stackedImage(const GbaImageSpec &spec)
{
    return toByteArray(gbaImage(spec));
}
