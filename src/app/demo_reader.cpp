#include "app/demo_reader.h"

#include "device/device_link.h"

DemoReader::~DemoReader()
{
    use(false);
}

void DemoReader::use(bool isOn)
{
    if (isOn == (m_real != nullptr))
        return;
    releaseReader();
    if (!isOn) {
        setDriveBackend(m_real);
        m_real = nullptr;
        return;
    }
    if (m_demo.virtualDrive == nullptr)
        m_demo = virtual_reader::chooseDriveBackend("demo");
    if (m_demo.backend() == nullptr)
        return;
    m_real = &driveBackend();
    setDriveBackend(m_demo.backend());
}
