#include "mgba_cartridge.h"

// First: says how the library was built, which the layout of its records depends on.
#include <mgba/flags.h>

#include <mgba-util/vfs.h>
#include <mgba/core/core.h>
#include <mgba/core/interface.h>
#include <mgba/core/log.h>
#include <mgba/gb/core.h>

#include <cstdlib>
#include <utility>

using namespace virtual_reader;

namespace
{

constexpr std::int64_t kMillisecondsPerSecond = 1000;

bool isOfCartridge(std::uint16_t address)
{
    return address < 0x8000 || (address >= 0xA000 && address < 0xC000);
}

// The library reports what programs do wrong; random writes do little else.
void discardMessage(mLogger *, int, mLogLevel, const char *, va_list) {}

mLogger s_silentLogger = {discardMessage, nullptr};

// A cartridge that lies level. The library calls its sensors through this table.
std::int32_t readTilt(mRotationSource *)
{
    return 0;
}

mRotationSource s_level = {nullptr, readTilt, readTilt, nullptr};

} // namespace

struct MgbaCartridge::Core {
    ByteVector image;
    mCore *core = nullptr;
    bool initialised = false;

    ~Core()
    {
        if (!initialised)
            return;
        mCoreConfigDeinit(&core->config);
        core->deinit(core); // frees the core as well
    }

    std::string start();
};

// Returns: the reason if it fails.
std::string MgbaCartridge::Core::start()
{
    mLogSetDefaultLogger(&s_silentLogger);
    core = GBCoreCreate();
    if (core == nullptr || !core->init(core))
        return "the library does not start";
    initialised = true;
    mCoreInitConfig(core, nullptr);
    VFile *file = VFileMemChunk(image.data(), image.size());
    if (file == nullptr || !core->loadROM(core, file))
        return "the library does not take the image";
    VFile *save = VFileMemChunk(nullptr, 0);
    if (save == nullptr || !core->loadSave(core, save))
        return "the library does not make save memory";
    core->setPeripheral(core, mPERIPH_ROTATION, &s_level);
    core->rtc.override = RTC_FIXED;
    core->rtc.value = 0;
    core->reset(core);
    return {};
}

std::unique_ptr<MgbaCartridge> MgbaCartridge::create(ByteVector image, std::string *error)
{
    auto core = std::make_unique<Core>();
    core->image = std::move(image);
    *error = core->start();
    if (!error->empty())
        return nullptr;
    return std::unique_ptr<MgbaCartridge>(new MgbaCartridge(std::move(core)));
}

MgbaCartridge::MgbaCartridge(std::unique_ptr<Core> core) : m_core(std::move(core)) {}

MgbaCartridge::~MgbaCartridge() = default;

std::uint8_t MgbaCartridge::gbRead(std::uint16_t address)
{
    if (!isOfCartridge(address))
        return 0xFF;
    return static_cast<std::uint8_t>(m_core->core->busRead8(m_core->core, address));
}

void MgbaCartridge::gbWrite(std::uint16_t address, std::uint8_t value)
{
    if (!isOfCartridge(address))
        return;
    m_core->core->busWrite8(m_core->core, address, value);
    m_upperWrites += address >= 0xA000 ? 1 : 0;
}

void MgbaCartridge::powerCycle()
{
    m_core->core->reset(m_core->core);
}

ByteVector MgbaCartridge::romImage() const
{
    return m_core->image;
}

ByteVector MgbaCartridge::saveImage() const
{
    void *bytes = nullptr;
    const std::size_t size = m_core->core->savedataClone(m_core->core, &bytes);
    const auto *first = static_cast<const std::uint8_t *>(bytes);
    const ByteVector save(first, first + size);
    std::free(bytes);
    return save;
}

bool MgbaCartridge::loadSave(const ByteVector &image)
{
    return m_core->core->savedataRestore(m_core->core, image.data(), image.size(), true);
}

void MgbaCartridge::setTime(std::int64_t seconds)
{
    m_core->core->rtc.value = seconds * kMillisecondsPerSecond;
}
