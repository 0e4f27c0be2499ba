#include "device/drive_advice.h"

#include <QCoreApplication>

namespace
{

struct DriveAdvice {
    Q_DECLARE_TR_FUNCTIONS(DriveAdvice)
};

} // namespace

QStringList noReaderAdvice()
{
    return {
        DriveAdvice::tr("Is the reader plugged in, and does the Explorer show it as a removable "
                        "drive?"),
        DriveAdvice::tr("If it shows no drive letter, give it one in the Disk Management.")};
}

QStringList scanNotes()
{
    return {};
}
