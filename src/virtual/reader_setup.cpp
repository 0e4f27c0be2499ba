#include "virtual/reader_setup.h"

#include "virtual/cartridge_factory.h"
#include "virtual/image_generator.h"

#include <chrono>
#include <thread>
#include <utility>

namespace virtual_reader
{

namespace
{

constexpr std::uint32_t kDemoRomSize = 1024 * 1024;
constexpr std::uint32_t kDemoRamSize = 32 * 1024;
constexpr std::uint8_t kDemoType = 0x1B; // MBC5+RAM+BATTERY
constexpr std::uint64_t kDemoSeed = 2024;

std::unique_ptr<Cartridge> loadCartridge(const std::string &path, const CartridgeOptions &options,
                                         std::string *error)
{
    ByteVector image;
    if (!readWholeFile(path, &image, error))
        return nullptr;
    std::unique_ptr<Cartridge> cartridge = makeCartridge(std::move(image), options, error);
    if (cartridge == nullptr)
        *error = path + ": " + *error;
    return cartridge;
}

std::unique_ptr<Cartridge> makeDemoCartridge(const CartridgeOptions &options, std::string *error)
{
    ByteVector image;
    if (!makeGbImage({kDemoType, kDemoRomSize, kDemoRamSize, "DEMO CARTRIDGE", kDemoSeed}, &image,
                     error))
        return nullptr;
    std::unique_ptr<Cartridge> cartridge = makeCartridge(std::move(image), options, error);
    if (cartridge != nullptr)
        cartridge->loadSave(makeNoise(kDemoRamSize, kDemoSeed));
    return cartridge;
}

void sleepFor(std::uint64_t microseconds)
{
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
}

} // namespace

std::unique_ptr<KeptReader> KeptReader::create(const ReaderSetup &setup, std::string *error)
{
    error->clear();
    if (setup.config.identity.size() > kReaderIdentitySize) {
        *error = "identity \"" + setup.config.identity + "\": must have 16 bytes at most";
        return nullptr;
    }
    VirtualReaderConfig config = setup.config;
    CartridgeOptions options = setup.cartridge;
    options.flashChip.takesTime = config.timing.isOn();
    if (!config.wait)
        config.wait = sleepFor;
    std::unique_ptr<Cartridge> cartridge;
    if (setup.demo)
        cartridge = makeDemoCartridge(options, error);
    else if (!setup.cartPath.empty())
        cartridge = loadCartridge(setup.cartPath, options, error);
    else
        cartridge = std::make_unique<NoCartridge>();
    SaveFile save(setup.savePath);
    if (cartridge == nullptr || !save.load(cartridge.get(), error))
        return nullptr;
    return std::make_unique<KeptReader>(std::move(cartridge), std::move(config), std::move(save));
}

KeptReader::KeptReader(std::unique_ptr<Cartridge> cartridge, VirtualReaderConfig config,
                       SaveFile save)
    : m_reader(std::move(cartridge), std::move(config)), m_save(std::move(save))
{
}

bool KeptReader::commandFileWritten(const std::uint8_t *bytes, std::size_t size, std::string *error)
{
    if (!m_reader.commandFileWritten(bytes, size)) {
        *error = m_reader.isGone() ? "the reader was pulled out" : "the command failed, as asked";
        return false;
    }
    return m_save.storeIfChanged(m_reader.cartridge(), error);
}

} // namespace virtual_reader
