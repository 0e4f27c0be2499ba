// A virtual reader with a generated cartridge in the place of the system's drives, for who wants to
// try the program without hardware.
#pragma once

#include "virtual/backend_choice.h"

class DemoReader
{
public:
    // Takes the demo reader away again.
    ~DemoReader();

    // Puts the demo reader in the place of the process's drive backend, or brings that
    // back. Its cartridge stays the same, and keeps what was written.
    // Returns: whether the demo reader is in place now.
    // Thread: any, while nothing uses a drive.
    bool use(bool isOn);

private:
    virtual_reader::ChosenBackend m_demo;
    DriveBackend *m_real = nullptr; // null: the demo is off
};
