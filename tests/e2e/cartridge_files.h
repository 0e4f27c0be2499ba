// Cartridge images and saves as files for the mounted reader, and the user's files.
#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <cstdint>

class CartridgeFiles
{
public:
    // Writes a generated image and returns its path. `type`: header type code; sizes in bytes.
    QString addImage(std::uint8_t type, std::uint32_t romSize, std::uint32_t ramSize,
                     std::uint64_t seed = 1);
    QString addGbaImage(std::uint32_t romSize);
    // Writes `size` bytes of noise and returns the file's path.
    QString addNoise(const QString &name, std::uint32_t size, std::uint64_t seed);

    QString path(const QString &name) const { return m_folder.filePath(name); }

private:
    QString write(const QString &name, const QByteArray &bytes);

    QTemporaryDir m_folder;
    int m_images = 0;
};

// Content of a file; empty if it can not be read.
QByteArray contentOf(const QString &path);
