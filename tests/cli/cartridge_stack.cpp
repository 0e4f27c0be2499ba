#include "cartridge_stack.h"

#include "device/device_link.h"
#include "virtual/cartridge_factory.h"
#include "virtual/gb_header.h"

#include <QCoreApplication>
#include <QThread>

#include <csignal>

using namespace virtual_reader;

namespace
{

QByteArray bytesOf(const ByteVector &bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()));
}

std::unique_ptr<Cartridge> build(const StackedCartridge &cartridge)
{
    if (cartridge.image.isEmpty())
        return nullptr;
    std::string error;
    std::unique_ptr<Cartridge> built = makeCartridge(
        ByteVector(cartridge.image.begin(), cartridge.image.end()), cartridge.options, &error);
    if (built == nullptr)
        qFatal("no cartridge: %s", error.c_str());
    if (!cartridge.save.isEmpty() &&
        !built->loadSave(ByteVector(cartridge.save.begin(), cartridge.save.end())))
        qFatal("the cartridge has no save memory of %d bytes", cartridge.save.size());
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
    m_looksLeft = 0;
    m_isInterrupted = false;
}

QByteArray CartridgeStack::save()
{
    return bytesOf(drive->reader().cartridge().saveImage());
}

QByteArray CartridgeStack::rom()
{
    return bytesOf(drive->reader().cartridge().romImage());
}

std::uint32_t CartridgeStack::logicalDrives()
{
    if (QThread::currentThread() == QCoreApplication::instance()->thread())
        passLook();
    return FaultyDrive::logicalDrives();
}

DriveStatus CartridgeStack::openForWrite(const char *path, std::unique_ptr<DriveFile> *file)
{
    if (onWrite)
        onWrite(path);
    return FaultyDrive::openForWrite(path, file);
}

void CartridgeStack::passLook()
{
    if (m_looksLeft == 0 && !m_cartridges.isEmpty()) {
        insert(m_cartridges.takeFirst());
    } else if (m_looksLeft == 0 && !m_isInterrupted) {
        insert({QByteArray()});
        m_isInterrupted = true;
        std::raise(SIGINT);
    }
    m_looksLeft = qMax(0, m_looksLeft - 1);
}

void CartridgeStack::insert(const StackedCartridge &cartridge)
{
    drive->reader().insertCartridge(build(cartridge));
    m_looksLeft = cartridge.looks;
    clearFaults();
    for (const DriveFault &fault : cartridge.faults)
        addFault(fault);
}

QByteArray stackedImage(GbImageSpec spec, std::uint8_t colorFlag)
{
    ByteVector image;
    std::string error;
    if (!makeGbImage(spec, &image, &error))
        qFatal("no image: %s", error.c_str());
    image[kGbTitleOffset + kGbTitleSize] = colorFlag;
    image[kGbHeaderChecksumOffset] = gbHeaderChecksum(image);
    const std::uint16_t sum = gbGlobalChecksum(image);
    image[kGbGlobalChecksumOffset] = static_cast<std::uint8_t>(sum >> 8);
    image[kGbGlobalChecksumOffset + 1] = static_cast<std::uint8_t>(sum);
    return bytesOf(image);
}

QByteArray stackedImage(const GbaImageSpec &spec)
{
    ByteVector image;
    std::string error;
    if (!makeGbaImage(spec, &image, &error))
        qFatal("no image: %s", error.c_str());
    return bytesOf(image);
}
