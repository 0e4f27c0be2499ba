#include "guarded_write_cases.h"

#include "drive_faults.h"

#include "cart/setting_tables.h"

using namespace virtual_reader;

ByteVector gbGame(int romSize, std::uint64_t seed, std::uint8_t type)
{
    const std::uint32_t ramSize = type == 0 ? 0 : 32 * kKiB;
    return gbImage({type, static_cast<std::uint32_t>(romSize), ramSize, "VIRTUAL", seed});
}

std::unique_ptr<Cartridge> gbFlashBoard(const ByteVector &image, FlashWidth width, bool isProtected)
{
    CartridgeOptions options;
    options.flash = width;
    options.flashChip.writeProtected = isProtected;
    return cartridgeOf(image, options);
}

std::unique_ptr<Cartridge> gbaBoard(GbaSaveType type, int size, const char *code)
{
    CartridgeOptions options;
    options.saveType = type;
    options.saveSize = static_cast<std::uint32_t>(size);
    auto cartridge = cartridgeOf(gbaGame(code), options);
    putSave(cartridge.get(), noise(size, 1));
    return cartridge;
}

std::unique_ptr<Cartridge> gbSaveBoard(const QByteArray &save)
{
    auto cartridge = makeMbc5Cartridge(64 * kKiB);
    putSave(cartridge.get(), save);
    return cartridge;
}

WriteCase gbSave(const QByteArray &file, const QByteArray &old)
{
    WriteCase row;
    row.cartridge = [old] { return gbSaveBoard(old); };
    row.select = [](JobWindow &window) { window.selectGb(kMapperMbc5Row, 64 * kKiB, 32 * kKiB); };
    row.file = file;
    return row;
}

WriteCase gbaSave(GbaSaveType type, int choice, int size, int chosenSize)
{
    WriteCase row;
    row.cartridge = [=] { return gbaBoard(type, size); };
    const int settingsSize = chosenSize == 0 ? size : chosenSize;
    row.select = [=](JobWindow &window) { window.selectGba(kMiB, choice, settingsSize); };
    row.file = noise(settingsSize, 2);
    return row;
}

WriteCase narrowFlash(const QByteArray &file, bool isProtected)
{
    WriteCase row;
    row.button = &MainTab::flashButton;
    row.cartridge = [=] {
        ByteVector image = gbGame(32 * kKiB, 1, 0);
        image[0] = isProtected ? 0xFF : image[0]; // looks erased to a poll
        return gbFlashBoard(image, FlashWidth::Byte, isProtected);
    };
    row.select = [](JobWindow &window) { window.selectGb(0, 32 * kKiB, 8 * kKiB); };
    row.file = file;
    return row;
}

WriteCase wideFlash(const QByteArray &file, int chipSize)
{
    WriteCase row;
    row.button = &MainTab::flashButton;
    row.cartridge = [=] { return gbFlashBoard(gbGame(chipSize, 1), FlashWidth::Word); };
    row.select = [](JobWindow &window) { window.selectGb(kMapperMbc5Row, 64 * kKiB, 32 * kKiB); };
    row.file = file;
    return row;
}

WriteCase behindMapper(int mapper, WriteCase row)
{
    row.select = [=](JobWindow &window) { window.selectGb(mapper, 64 * kKiB, 32 * kKiB); };
    return row;
}

WriteCase emptySlot(WriteCase row)
{
    row.cartridge = nullptr;
    return row;
}

WriteCase unticked(WriteCase row)
{
    row.isTicked = false;
    return row;
}

QByteArray withoutErased(QByteArray bytes)
{
    for (char &byte : bytes)
        byte = static_cast<char>(byte & 0x7F);
    return bytes;
}

QByteArray gbFile(int size, std::uint8_t type)
{
    return toByteArray(gbGame(size, 2, type));
}

std::unique_ptr<JobWindow> windowFor(const WriteCase &row)
{
    auto window = std::make_unique<JobWindow>(row.cartridge ? row.cartridge() : nullptr);
    row.select(*window);
    if (row.isTicked)
        window->tickVerify();
    return window;
}

QByteArray contentOf(JobWindow &window, const WriteCase &row)
{
    return row.button == &MainTab::flashButton ? window.bench().rom() : window.bench().save();
}

unsigned commandsOf(const WriteCase &row)
{
    const auto window = windowFor(unticked(row));
    const auto made = [&] {
        return window->bench().drive().callCount(DriveCall::OpenForWrite, "CMD.CMD");
    };
    const std::uint32_t before = made();
    window->run(row.button, window->bench().addFile("new", row.file));
    return made() - before;
}
