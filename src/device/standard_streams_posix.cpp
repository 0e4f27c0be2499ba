#include "device/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

void fillStandardStreams()
{
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) != -1)
            continue;
        // The lowest free one is taken. Opened the wrong way round, so that whoever uses it gets an
        // error, and an answer that nobody can have is noticed.
        const int direction = descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        if (::open("/dev/null", direction) != descriptor)
            ::_exit(1);
    }
}
