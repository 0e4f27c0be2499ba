#include "virtual/fuse/reader_program.h"

int main(int argc, char **argv)
{
    return virtual_reader::runReaderProgram(argc, argv);
}
