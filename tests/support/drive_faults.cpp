#include "drive_faults.h"

using namespace virtual_reader;

namespace
{

DriveFault faultOf(DriveCall call, DriveErrorCode code, std::uint32_t bytes)
{
    DriveFault fault;
    fault.call = call;
    fault.code = code;
    fault.bytes = bytes;
    return fault;
}

DriveFault flipped(DriveCall call, std::uint8_t bits, std::uint32_t byte)
{
    DriveFault fault = faultOf(call, DriveErrorCode::None, DriveFault::kAllBytes);
    fault.flips = bits;
    fault.flippedByte = byte;
    return fault;
}

DriveFault claimed(DriveCall call, std::uint32_t bytes)
{
    DriveFault fault = faultOf(call, DriveErrorCode::None, bytes);
    fault.claimsAll = true;
    return fault;
}

} // namespace

QVector<NamedFault> waysToFail(DriveCall call)
{
    constexpr auto kNone = DriveErrorCode::None;
    constexpr auto kAll = DriveFault::kAllBytes;
    DriveFault vanishing = faultOf(call, kNone, kAll);
    vanishing.driveVanishes = true;
    QVector<NamedFault> ways = {{"error", faultOf(call, DriveErrorCode::InputOutput, 0)},
                                {"drive vanishes", vanishing}};
    if (call == DriveCall::Read)
        ways << QVector<NamedFault>{{"nothing read", faultOf(call, kNone, 0)},
                                    {"512 bytes read", faultOf(call, kNone, 512)},
                                    {"old bytes in the buffer", claimed(call, 0)},
                                    {"a bit flips in every byte", flipped(call, 0x01, kAll)},
                                    {"all bits flip in byte 5", flipped(call, 0xFF, 5)}};
    if (call == DriveCall::Write)
        ways << QVector<NamedFault>{
            {"nothing written", faultOf(call, kNone, 0)},
            {"512 bytes written", faultOf(call, kNone, 512)},
            {"disk full after 512 bytes", faultOf(call, DriveErrorCode::Full, 512)},
            {"write lost", claimed(call, 0)},
            {"write lost after 512 bytes", claimed(call, 512)},
            {"bit flips in byte 300", flipped(call, 0x10, 300)}};
    return ways;
}

DriveFault commandFault(unsigned after, unsigned times, DriveCall call)
{
    return {call, "CMD.CMD", after, times};
}

DriveFault everyCommandFault()
{
    return commandFault(0, DriveFault::kForever);
}

DriveFault dumpReadFault(unsigned after)
{
    return {DriveCall::Read, "DUMP.ROM", after};
}

DriveFault dumpOpenFault()
{
    return {DriveCall::OpenForRead, "DUMP.ROM"};
}
