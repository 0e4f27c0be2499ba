// A drive that fails on demand: wraps any backend and lets a test say which call goes wrong.
//
// Faults are counted, never random, so that every run of a test fails in the same place. They are
// loud (an error is reported) or silent (a transfer reports success and has moved other bytes).
#pragma once

#include "device/drive_backend.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace virtual_reader
{

enum class DriveCall {
    LogicalDrives,
    DriveType,
    VolumeLabel,
    OpenForRead,
    OpenForWrite,
    MayWrite,
    Read,
    Write,
    Size,
    Close,
    Reserve
};

struct DriveFault {
    static constexpr std::uint32_t kForever = 0;
    static constexpr std::uint32_t kAllBytes = 0xFFFFFFFFU;

    DriveCall call = DriveCall::Read;
    // Only paths (roots) that end with this; empty: all of them.
    std::string pathEnd;
    // Matching calls that still go through before the fault.
    std::uint32_t after = 0;
    // Matching calls that fail then.
    std::uint32_t times = 1;
    // What a failing call reports. With None a read or write succeeds but moves only `bytes`, and
    // any other call goes through.
    DriveErrorCode code = DriveErrorCode::InputOutput;
    // Bytes that a failing read or write still moves. A whole file is given up by a write that
    // reports an error, as it is by the drive itself. A read with an error reports none of them.
    std::uint32_t bytes = 0;
    // Reported as moved although only `bytes` were: a read leaves the rest of its buffer as it was,
    // a write loses the rest. Only with None.
    bool claimsAll = false;
    // Bits that are flipped in the bytes that a read or write moves: in all of them, or in the one
    // at `flippedByte`, an offset into the transfer.
    std::uint8_t flips = 0;
    std::uint32_t flippedByte = kAllBytes;
    // The drive vanishes with the failing call, as if pulled out.
    bool driveVanishes = false;
    // What else happens, before the call has any effect and on its thread; may be empty.
    std::function<void()> happens = nullptr;
};

class FaultyDrive : public DriveBackend
{
public:
    // Wraps `inner`, which is not owned. `letter` is the drive that can vanish.
    explicit FaultyDrive(DriveBackend &inner, char letter = 'E');
    ~FaultyDrive() override;

    void addFault(DriveFault fault);
    void clearFaults();

    // While the drive is gone it is in no scan, its files cannot be opened, and files that are open
    // fail with Gone.
    void setGone(bool gone);
    bool gone() const;

    // Calls so far on paths that end with `pathEnd`, failed ones included.
    std::uint32_t callCount(DriveCall call, const std::string &pathEnd = {}) const;

    std::uint32_t logicalDrives() override;
    DriveType driveType(const char *root) override;
    DriveStatus volumeLabel(const char *root, char *label, std::uint32_t capacity) override;
    std::string drivePlace(const char *root) override;
    DriveStatus openForRead(const char *path, Buffering buffering,
                            std::unique_ptr<DriveFile> *file) override;
    DriveStatus openForWrite(const char *path, std::unique_ptr<DriveFile> *file) override;
    DriveStatus mayWrite(const char *path) override;
    void releaseDrive() override;

    // Faults and counts; shared with the open files.
    struct State;

private:
    DriveBackend &m_inner;
    std::shared_ptr<State> m_state;
};

} // namespace virtual_reader
