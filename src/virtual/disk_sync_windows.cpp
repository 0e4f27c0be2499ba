#include "virtual/disk_sync.h"

#include <io.h>

namespace virtual_reader
{

bool syncToDisk(std::FILE *stream)
{
    return _commit(_fileno(stream)) == 0;
}

} // namespace virtual_reader
