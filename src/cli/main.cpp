#include "cli/cli.h"
#include "device/standard_streams.h"

int main(int argc, char **argv)
{
    fillStandardStreams();
    return runCli(argc, argv);
}
