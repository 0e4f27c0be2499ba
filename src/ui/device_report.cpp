#include "ui/device_report.h"

#include "device/device_link.h"

#include <QCoreApplication>

namespace
{
// Text up to its first NUL, or all `capacity` bytes when there is none.
QString boundedText(const void *bytes, std::uint32_t capacity)
{
    const auto *text = static_cast<const char *>(bytes);
    return QString::fromUtf8(text, static_cast<int>(qstrnlen(text, capacity)));
}
} // namespace

bool reportDevice(QStringList *lines)
{
    if (findDevice(0, nullptr) == 0) {
        *lines << QCoreApplication::translate("MainTab", "Can not found dump device.");
        return false;
    }
    *lines << QCoreApplication::translate("MainTab", "--Device information--")
           << QCoreApplication::translate("MainTab", "Driver label: ") +
                  boundedText(deviceLink.driverLabel, kLabelSize)
           << QCoreApplication::translate("MainTab", "Device firmware: ") +
                  boundedText(deviceLink.identityBytes, kIdentitySize)
           << QCoreApplication::translate("MainTab", "\r\n");
    return true;
}
