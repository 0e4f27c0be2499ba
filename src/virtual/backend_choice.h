// Which drive backend serves this process: the platform's, or the virtual reader in this process.
#pragma once

#include "device/drive_backend.h"
#include "virtual/in_process_drive.h"

#include <memory>
#include <string>

namespace virtual_reader
{

// Name of the environment variable that asks for the virtual reader.
constexpr char kVirtualReaderVariable[] = "GBDRIVER_VIRTUAL_READER";

struct ChosenBackend {
    // The platform's backend: real drives, and the user's files in either case.
    std::unique_ptr<DriveBackend> platform;
    // The virtual reader's drive; null unless asked for. Declared behind `platform`, which it uses.
    std::unique_ptr<InProcessDrive> virtualDrive;
    // Why there is no backend; empty if there is one.
    std::string error;

    // The backend to use, owned by this record; null after an error.
    DriveBackend *backend() const
    {
        if (!error.empty())
            return nullptr;
        return virtualDrive != nullptr ? virtualDrive.get() : platform.get();
    }
};

// What a value of the variable asks for.
struct VirtualReaderRequest {
    bool emptySlot = false;
    ReaderSetup setup;
    InProcessDriveOptions drive;
};

// Reads "cart=FILE[,save=FILE][,label=TEXT][,drive=LETTER][,identity=TEXT][,strict=1]" and the
// names of setCartridgeOption(); "demo" stands for "cart=FILE" with a generated cartridge,
// "cart=none" for an empty slot. A comma always ends a part, so no file name may have one. Returns:
// false with the reason in `*error`.
bool parseVirtualReaderRequest(const std::string &value, VirtualReaderRequest *request,
                               std::string *error);

// `value`: of the variable; null or empty: the platform's backend. The virtual reader of a choice
// counts its operations but keeps none.
ChosenBackend chooseDriveBackend(const char *value);

} // namespace virtual_reader
