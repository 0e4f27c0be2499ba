// Brings a file that is open for writing from the system's cache to the disk.
#pragma once

#include <cstdio>

namespace virtual_reader
{

// `stream` must have been flushed. Returns: false if the system could not, errno says why.
bool syncToDisk(std::FILE *stream);

} // namespace virtual_reader
