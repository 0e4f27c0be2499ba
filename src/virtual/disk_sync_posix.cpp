#include "virtual/disk_sync.h"

#include <unistd.h>

namespace virtual_reader
{

bool syncToDisk(std::FILE *stream)
{
    return fsync(fileno(stream)) == 0;
}

} // namespace virtual_reader
