#include "virtual/disk_sync.h"

#include <io.h>

bool syncToDisk(std::FILE *stream)
{
    return _commit(_fileno(stream)) == 0;
}
