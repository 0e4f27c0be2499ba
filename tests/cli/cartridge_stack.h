// A reader whose slot changes between two searches for it, as when a person swaps cartridges. A
// look at the cartridge is one search, and so is every job.
//
// One stack at a time: the device link is process-wide.
#pragma once

#include "samples.h"

#include "virtual/faulty_drive.h"
#include "virtual/in_process_drive.h"

#include <QVector>

#include <functional>
#include <memory>

struct StackedCartridge {
    QByteArray image;     // empty: nothing is in the slot
    QByteArray save = {}; // empty: as the chip comes
    // For the reader while this is in the slot. Two looks recognise it; two reads of the ROM, a
    // look at the save's cartridge and two reads of the save back it up. More are looks at one that
    // stays.
    int searches = 7;
    std::vector<virtual_reader::DriveFault> faults = {}; // of the drive meanwhile
    virtual_reader::CartridgeOptions options = {};
};

// Base of CartridgeStack, which needs them before it is built itself.
struct StackedReader {
    StackedReader();

    std::unique_ptr<DriveBackend> platform = createPlatformBackend();
    std::unique_ptr<virtual_reader::InProcessDrive> drive;
};

class CartridgeStack : private StackedReader, public virtual_reader::FaultyDrive
{
public:
    // Becomes the drive backend of the process.
    CartridgeStack();
    ~CartridgeStack() override;

    // What is put into the slot, one after the other; afterwards it stays empty and Ctrl-C is
    // pressed.
    void put(const QVector<StackedCartridge> &cartridges);

    // Save memory and ROM of the cartridge in the slot.
    QByteArray save();
    QByteArray rom();

    // Called at every search for the reader.
    std::function<void()> onSearch;
    // Called with the path of every file that is opened for writing.
    std::function<void(const QByteArray &)> onWrite;

    std::uint32_t logicalDrives() override;
    DriveStatus openForWrite(const char *path, std::unique_ptr<DriveFile> *file) override;

private:
    void passSearch();
    void insert(const StackedCartridge &cartridge);

    QVector<StackedCartridge> m_cartridges;
    int m_searchesLeft = 0;
    bool m_isInterrupted = false;
};

// A generated image. `colorFlag` is header byte 0x143.
QByteArray stackedImage(const virtual_reader::GbImageSpec &spec, std::uint8_t colorFlag = 0);
QByteArray stackedImage(const virtual_reader::GbaImageSpec &spec);
