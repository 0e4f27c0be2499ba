#include "app/demo_reader.h"

#include "device/device_link.h"

DemoReader::~DemoReader()
{
    use(false);
}

bool DemoReader::use(bool isOn)
{
    const bool isInPlace = m_real != nullptr;
    if (isOn == isInPlace)
        return isInPlace;
    releaseReader();
    if (!isOn) {
        setDriveBackend(m_real);
        m_real = nullptr;
        return false;
    }
    if (m_demo.virtualDrive == nullptr)
        m_demo = virtual_reader::chooseDriveBackend("demo");
    if (m_demo.backend() == nullptr)
        return false;
    m_real = &driveBackend();
    setDriveBackend(m_demo.backend());
    return true;
}
