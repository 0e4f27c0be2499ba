#include "app/application.h"

int main(int argc, char **argv)
{
    return startApplication(argc, argv);
}
