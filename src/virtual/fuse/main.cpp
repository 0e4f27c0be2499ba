#include "virtual/fuse/reader_program.h"

int main(int argc, char **argv)
{
    return runReaderProgram(argc, argv);
}
