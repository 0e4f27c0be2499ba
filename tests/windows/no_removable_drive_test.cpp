// A machine without a reader.
#include "device/device_link.h"

#include "test_class.h"

#include <QtTest>

#include <memory>

class NoRemovableDriveTest : public QObject
{
    Q_OBJECT

private slots:
    void scanFindsNothingAndKeepsTheLastLetter()
    {
        const auto backend = createPlatformBackend();
        setDriveBackend(backend.get());
        deviceLink = DeviceLink();
        QCOMPARE(findDevice(0, nullptr), 0);
        // Wine's drive for the root folder is the last one.
        QCOMPARE(static_cast<char>(deviceLink.driveLetter), 'Z');
        QCOMPARE(QByteArray(deviceLink.driverLabel), QByteArray());
        setDriveBackend(nullptr);
    }
};

GBDRIVER_TEST(NoRemovableDriveTest, none)
#include "no_removable_drive_test.moc"
