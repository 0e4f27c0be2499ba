// What goes wrong on the way to the reader, for a FaultyDrive.
#pragma once

#include "virtual/faulty_drive.h"

#include <QVector>

// A way to fail.
struct NamedFault {
    const char *name;
    virtual_reader::DriveFault fault;
};

// All ways in which calls of this kind fail; the first call of the kind is hit. The first way is an
// error, the second one the end of the drive.
QVector<NamedFault> waysToFail(virtual_reader::DriveCall call);

// Command files of which, after `after` good ones, `times` cannot be made; or of which another call
// fails. A mode takes two command files.
virtual_reader::DriveFault
commandFault(unsigned after, unsigned times = 1,
             virtual_reader::DriveCall call = virtual_reader::DriveCall::OpenForWrite);

// No command file can be made any more.
virtual_reader::DriveFault everyCommandFault();

// A read of DUMP.ROM that fails once, after so many of them.
virtual_reader::DriveFault dumpReadFault(unsigned after);

// The first attempt to open DUMP.ROM fails.
virtual_reader::DriveFault dumpOpenFault();
