// What the reader says about itself: the lines that open the cartridge information.
#pragma once

#include <QStringList>

// Looks for the reader on all drives and appends the lines to show to `lines`: its volume label and
// firmware name, or the one line that says that there is no reader. Texts have the context
// "MainTab".
// Returns: true if a reader was found; the device link then knows its drive.
// Thread:  any, but no job may run meanwhile. The caller holds a ReaderSession.
bool reportDevice(QStringList *lines);
