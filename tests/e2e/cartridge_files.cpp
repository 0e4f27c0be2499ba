#include "cartridge_files.h"

#include "virtual/image_generator.h"

#include <QFile>

using namespace virtual_reader;

namespace
{

QByteArray bytesOf(const ByteVector &bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()));
}

} // namespace

QString CartridgeFiles::addImage(std::uint8_t type, std::uint32_t romSize, std::uint32_t ramSize,
                                 std::uint64_t seed)
{
    GbImageSpec spec;
    spec.type = type;
    spec.romSize = romSize;
    spec.ramSize = ramSize;
    spec.seed = seed;
    ByteVector image;
    std::string error;
    if (!makeGbImage(spec, &image, &error))
        qFatal("%s", error.c_str());
    return write(QString("image%1.gb").arg(++m_images), bytesOf(image));
}

QString CartridgeFiles::addGbaImage(std::uint32_t romSize)
{
    GbaImageSpec spec;
    spec.romSize = romSize;
    ByteVector image;
    std::string error;
    if (!makeGbaImage(spec, &image, &error))
        qFatal("%s", error.c_str());
    return write(QString("image%1.gba").arg(++m_images), bytesOf(image));
}

QString CartridgeFiles::addNoise(const QString &name, std::uint32_t size, std::uint64_t seed)
{
    return write(name, bytesOf(makeNoise(size, seed)));
}

QString CartridgeFiles::write(const QString &name, const QByteArray &bytes)
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("can not write %s", qPrintable(file.fileName()));
    return file.fileName();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
