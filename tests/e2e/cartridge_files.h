// Cartridge images and saves as files for the mounted reader, and the user's files.
#pragma once

#include "files.h"

#include <cstdint>

class CartridgeFiles : public UserFolder
{
public:
    // Writes a generated image and returns its path. `type`: header type code; sizes in bytes.
    QString addImage(std::uint8_t type, std::uint32_t romSize, std::uint32_t ramSize,
                     std::uint64_t seed = 1);
    QString addGbaImage(std::uint32_t romSize);
    // Writes `size` bytes of noise and returns the file's path.
    QString addNoise(const QString &name, std::uint32_t size, unsigned seed);

private:
    int m_images = 0;
};
