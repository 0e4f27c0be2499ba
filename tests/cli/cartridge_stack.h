// A reader whose slot changes between two looks at it, as when a person swaps cartridges.
//
// Only looks of the main thread count: a job, which looks for the reader on its own thread, finds
// the cartridge that it was started for. One stack at a time: the device link is process-wide.
#pragma once

#include "virtual/cartridge_options.h"
#include "virtual/faulty_drive.h"
#include "virtual/image_generator.h"
#include "virtual/in_process_drive.h"

#include <QByteArray>
#include <QVector>

#include <functional>
#include <memory>

struct StackedCartridge {
    QByteArray image;     // empty: nothing is in the slot
    QByteArray save = {}; // empty: as the chip comes
    int looks = 3;        // while this is in the slot; two are needed to recognise it
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

    // Called with the path of every file that is opened for writing, on the thread that does it.
    std::function<void(const QByteArray &)> onWrite;

    std::uint32_t logicalDrives() override;
    DriveStatus openForWrite(const char *path, std::unique_ptr<DriveFile> *file) override;

private:
    void passLook();
    void insert(const StackedCartridge &cartridge);

    QVector<StackedCartridge> m_cartridges;
    int m_looksLeft = 0;
    bool m_isInterrupted = false;
};

// A generated image. `colorFlag` is header byte 0x143.
QByteArray stackedImage(virtual_reader::GbImageSpec spec, std::uint8_t colorFlag = 0);
QByteArray stackedImage(const virtual_reader::GbaImageSpec &spec);
