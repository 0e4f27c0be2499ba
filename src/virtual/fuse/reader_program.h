// The program gbdriver-virtual-reader: mounts a virtual reader as a drive, or makes a cartridge
// image.
#pragma once

namespace virtual_reader
{

// Returns: the process's exit code, 0 after a clean end, 1 after an error (told on standard error),
// 2 for a command line that cannot be understood.
int runReaderProgram(int argc, char **argv);

} // namespace virtual_reader
