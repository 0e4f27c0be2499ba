#include "device/drive_advice.h"

QStringList noReaderAdvice()
{
    return {QStringLiteral("Is the reader plugged in, and does the Explorer show it as a removable "
                           "drive?"),
            QStringLiteral("If it shows no drive letter, give it one in the Disk Management.")};
}

QStringList scanNotes()
{
    return {};
}
