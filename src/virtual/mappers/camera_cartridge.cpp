#include "virtual/mappers/camera_cartridge.h"

namespace virtual_reader
{

namespace
{

constexpr std::uint8_t kRamWritable = 0x0A;
constexpr std::uint8_t kShowSensor = 0x10;
constexpr std::uint32_t kRegisterPeriod = 0x80; // bytes
constexpr std::uint8_t kCapture = 0x01;         // of register 0
constexpr std::uint8_t kFirstRegisterBits = 0x07;

} // namespace

void CameraCartridge::powerCycle()
{
    GbCartridge::powerCycle();
    m_registers = {};
}

void CameraCartridge::writeRegister(std::uint16_t address, std::uint8_t value)
{
    if (address < 0x2000) {
        m_registers.ramWritable = value == kRamWritable;
    } else if (address < 0x4000) {
        m_registers.romBank = value & 0x3F;
    } else if (address < 0x6000) {
        m_registers.sensorShows = (value & kShowSensor) != 0;
        m_registers.ramBank = value & 0x0F;
    }
}

std::uint8_t CameraCartridge::readUpper(std::uint16_t address)
{
    if (m_registers.sensorShows)
        return readSensor(address % kRegisterPeriod);
    return capturing() ? std::uint8_t{0} : GbCartridge::readUpper(address);
}

void CameraCartridge::writeUpper(std::uint16_t address, std::uint8_t value)
{
    if (m_registers.sensorShows)
        writeSensor(address % kRegisterPeriod, value);
    else if (m_registers.ramWritable && !capturing())
        GbCartridge::writeUpper(address, value);
}

std::uint8_t CameraCartridge::readSensor(std::uint32_t number)
{
    if (number != 0)
        return 0;
    const std::uint8_t value = m_registers.sensor[0];
    if (capturing() && m_registers.capturePolls-- == 1)
        m_registers.sensor[0] &= static_cast<std::uint8_t>(~kCapture);
    return value;
}

void CameraCartridge::writeSensor(std::uint32_t number, std::uint8_t value)
{
    if (number >= kRegisters)
        return;
    m_registers.sensor[number] = number == 0 ? value & kFirstRegisterBits : value;
    if (number == 0)
        m_registers.capturePolls = kCapturePolls;
}

} // namespace virtual_reader
