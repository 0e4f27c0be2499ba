#include "device/standard_streams.h"
#include "virtual/fuse/reader_program.h"

int main(int argc, char **argv)
{
    fillStandardStreams();
    return virtual_reader::runReaderProgram(argc, argv);
}
