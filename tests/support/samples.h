// Cartridges, images and saves to order. What cannot be made is an error of the test itself and
// ends its program.
#pragma once

#include "virtual/cartridge.h"
#include "virtual/cartridge_options.h"
#include "virtual/image_generator.h"

#include <QByteArray>

#include <memory>

QByteArray toByteArray(const virtual_reader::ByteVector &bytes);
virtual_reader::ByteVector toByteVector(const QByteArray &bytes);

// `size` bytes that differ from one place to the next and between seeds.
QByteArray noise(int size, unsigned seed);

virtual_reader::ByteVector gbImage(const virtual_reader::GbImageSpec &spec = {});
virtual_reader::ByteVector gbaImage(const virtual_reader::GbaImageSpec &spec = {});

std::unique_ptr<virtual_reader::Cartridge>
cartridgeOf(const virtual_reader::ByteVector &image,
            const virtual_reader::CartridgeOptions &options = {});

void putSave(virtual_reader::Cartridge *cartridge, const QByteArray &save);

// A cartridge with a generated ROM for header type `type`; its save memory is filled with noise.
std::unique_ptr<virtual_reader::Cartridge> makeGbCartridge(std::uint8_t type, std::uint32_t romSize,
                                                           std::uint32_t ramSize);
// An MBC5 cartridge with 32 KiB of save memory that is filled with noise.
std::unique_ptr<virtual_reader::Cartridge> makeMbc5Cartridge(std::uint32_t romSize);

// 32 KiB behind no mapper, with the header codes of any other cartridge, for what reads no further
// than the header. The title is "VIRTUAL".
std::unique_ptr<virtual_reader::Cartridge> makeGbHeaderCartridge(int type, int romCode,
                                                                 int ramCode);

// The image of a GBA game with the code `code`, and a cartridge with it.
virtual_reader::ByteVector gbaGame(const QString &code, std::uint32_t romSize = 64 * 1024);
std::unique_ptr<virtual_reader::Cartridge> makeGbaGame(const QString &code,
                                                       std::uint32_t romSize = 64 * 1024);
