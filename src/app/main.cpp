#include "app/application.h"
#include "device/standard_streams.h"

int main(int argc, char **argv)
{
    fillStandardStreams();
    return startApplication(argc, argv);
}
