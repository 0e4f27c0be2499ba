#include "virtual/disk_sync.h"

#include <unistd.h>

bool syncToDisk(std::FILE *stream)
{
    return fsync(fileno(stream)) == 0;
}
