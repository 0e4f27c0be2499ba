#include "mapper_traffic.h"

std::uint16_t BusTraffic::place(unsigned first, unsigned last)
{
    return static_cast<std::uint16_t>(first + below(last - first + 1));
}

void BusTraffic::read(unsigned first, unsigned last)
{
    steps.push_back({BusStep::Kind::Read, place(first, last), 0});
}

void BusTraffic::write(unsigned first, unsigned last, unsigned value)
{
    steps.push_back({BusStep::Kind::Write, place(first, last), static_cast<std::uint8_t>(value)});
}

void BusTraffic::powerCycle()
{
    steps.push_back({BusStep::Kind::PowerCycle, 0, 0});
}

void BusTraffic::useRam()
{
    const unsigned cell = kUpper + below(64) * 0x81;
    if (below(2) == 0)
        write(cell, cell, byte());
    else
        read(cell, cell);
}
