#include "virtual/mappers/camera_cartridge.h"

namespace virtual_reader
{

namespace
{

constexpr std::uint8_t kRamWritable = 0x0A;
constexpr std::uint8_t kShowSensor = 0x10;
constexpr std::uint32_t kRegisterPeriod = 0x80; // bytes
constexpr std::uint8_t kCapture = 0x01;         // of register 0
constexpr std::uint8_t kSensorBits = 0x07;
constexpr unsigned kCapturePolls = 2; // that see a picture being taken

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
        return address % kRegisterPeriod == 0 ? pollSensor() : std::uint8_t{0};
    return capturing() ? std::uint8_t{0} : GbCartridge::readUpper(address);
}

void CameraCartridge::writeUpper(std::uint16_t address, std::uint8_t value)
{
    if (m_registers.sensorShows && address % kRegisterPeriod == 0) {
        m_registers.sensor = value & kSensorBits;
        m_registers.capturePolls = kCapturePolls;
    } else if (!m_registers.sensorShows && m_registers.ramWritable && !capturing()) {
        GbCartridge::writeUpper(address, value);
    }
}

std::uint8_t CameraCartridge::pollSensor()
{
    const std::uint8_t value = m_registers.sensor;
    if (capturing() && m_registers.capturePolls-- == 1)
        m_registers.sensor &= static_cast<std::uint8_t>(~kCapture);
    return value;
}

} // namespace virtual_reader
