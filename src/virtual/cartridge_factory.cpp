#include "virtual/cartridge_factory.h"

#include "constants/boot_logos.h"
#include "virtual/gb_cartridge_factory.h"
#include "virtual/gba_cartridge.h"
#include "virtual/gba_header.h"
#include "virtual/gba_save_choice.h"
#include "virtual/gba_save_library.h"

#include <algorithm>
#include <utility>

namespace virtual_reader
{

namespace
{

std::unique_ptr<Cartridge> makeGbaCartridge(ByteVector image, const CartridgeOptions &options,
                                            std::string *error)
{
    if (!isGbaRomSize(image.size())) {
        *error = "image of " + std::to_string(image.size()) +
                 " bytes: must be an even number from 512 bytes to 32 MiB";
        return nullptr;
    }
    const auto save = chooseGbaSave(options, findGbaSaveMark(image), error);
    if (!save.has_value())
        return nullptr;
    return std::make_unique<GbaCartridge>(std::move(image),
                                          makeGbaSaveChip(*save, options.flashChip));
}

bool hasGbaLogo(const ByteVector &image)
{
    return image.size() >= kGbaLogoOffset + kGbaBootLogo.size() &&
           std::equal(kGbaBootLogo.begin(), kGbaBootLogo.end(), image.begin() + kGbaLogoOffset);
}

bool isGba(const ByteVector &image, const CartridgeOptions &options)
{
    if (options.system == CartridgeSystem::ByHeader)
        return hasGbaLogo(image);
    return options.system == CartridgeSystem::Gba;
}

} // namespace

std::unique_ptr<Cartridge> makeCartridge(ByteVector image, const CartridgeOptions &options,
                                         std::string *error)
{
    error->clear();
    if (isGba(image, options))
        return makeGbaCartridge(std::move(image), options, error);
    return makeGbCartridge(std::move(image), options, error);
}

std::unique_ptr<Cartridge> makeCartridge(ByteVector image, std::string *error)
{
    return makeCartridge(std::move(image), {}, error);
}

} // namespace virtual_reader
