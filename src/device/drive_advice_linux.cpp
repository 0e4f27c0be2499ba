#include "device/drive_advice.h"

#include <QCoreApplication>

namespace
{

struct DriveAdvice {
    Q_DECLARE_TR_FUNCTIONS(DriveAdvice)
};

constexpr char kDrivesVariable[] = "GBDRIVER_DRIVES";

} // namespace

QStringList noReaderAdvice()
{
    if (!qEnvironmentVariableIsEmpty(kDrivesVariable))
        return {DriveAdvice::tr("Is the folder that GBDRIVER_DRIVES names there, and the reader "
                                "mounted on it?"),
                DriveAdvice::tr("Unset GBDRIVER_DRIVES to look at every mounted removable drive.")};
    // One text may be broken into lines that a terminal shows whole.
    return DriveAdvice::tr("Is the reader plugged in and mounted? Only mounted drives are seen: "
                           "\"lsblk\"\nshows both, and \"udisksctl mount -b /dev/sdX1\" mounts "
                           "one.")
               .split(QLatin1Char('\n')) +
           QStringList{
               DriveAdvice::tr("Does the system not call it removable, declare its folder:"),
               QStringLiteral("  GBDRIVER_DRIVES=\"E=/mnt/reader\" gbdriver-cli drives"),
               DriveAdvice::tr("May you write there? A mount made by root needs the option uid=.")};
}

QStringList scanNotes()
{
    if (qEnvironmentVariableIsEmpty(kDrivesVariable))
        return {};
    return {DriveAdvice::tr("GBDRIVER_DRIVES is set: only the drives that it declares are looked "
                            "at.")};
}
