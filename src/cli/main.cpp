#include "cli/cli.h"
#include "device/standard_streams.h"
#include "device/system_encoding.h"

int main(int argc, char **argv)
{
    fillStandardStreams();
    useSystemEncoding();
    return runCli(argc, argv);
}
