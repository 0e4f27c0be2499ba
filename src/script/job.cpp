#include "script/job.h"

bool isGbaJob(int operate)
{
    return operate > GB_WRITE_RAM;
}

bool isReadJob(int operate)
{
    return operate == GB_READ_ROM || operate == GB_READ_RAM || operate == GBA_READ_ROM ||
           operate == GBA_READ_RAM;
}

bool isWriteJob(int operate)
{
    return isFlashJob(operate) || operate == GB_WRITE_RAM || operate == GBA_WRITE_RAM;
}

bool isFlashJob(int operate)
{
    return operate == GB_WRITE_FLASH || operate == GBA_WRITE_FLASH;
}

bool movesSave(int operate)
{
    return operate == GB_READ_RAM || operate == GB_WRITE_RAM || operate == GBA_READ_RAM ||
           operate == GBA_WRITE_RAM;
}

int bytesToMove(const CartridgeJob &job)
{
    if (movesSave(job.operate))
        return job.ramSize;
    return isReadJob(job.operate) || isFlashJob(job.operate) ? job.romSize : 0;
}
