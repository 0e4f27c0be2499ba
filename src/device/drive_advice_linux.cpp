#include "device/drive_advice.h"

#include <QtGlobal>

namespace
{

constexpr char kDrivesVariable[] = "GBDRIVER_DRIVES";

} // namespace

QStringList noReaderAdvice()
{
    if (!qEnvironmentVariableIsEmpty(kDrivesVariable))
        return {QStringLiteral("Is the folder that GBDRIVER_DRIVES names there, and the reader "
                               "mounted on it?"),
                QStringLiteral("Unset GBDRIVER_DRIVES to look at every mounted removable drive.")};
    return {QStringLiteral("Is the reader plugged in and mounted? Only mounted drives are seen: "
                           "\"lsblk\""),
            QStringLiteral("shows both, and \"udisksctl mount -b /dev/sdX1\" mounts one."),
            QStringLiteral("Does the system not call it removable, declare its folder:"),
            QStringLiteral("  GBDRIVER_DRIVES=\"E=/mnt/reader\" gbdriver-cli drives"),
            QStringLiteral("May you write there? A mount made by root needs the option uid=.")};
}

QStringList scanNotes()
{
    if (qEnvironmentVariableIsEmpty(kDrivesVariable))
        return {};
    return {QStringLiteral("GBDRIVER_DRIVES is set: only the drives that it declares are looked "
                           "at.")};
}
