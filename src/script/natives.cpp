#include "script/natives.h"

#include "device/device_commands.h"
#include "device/device_link.h"
#include "device/device_ops.h"
#include "script/script_limits.h"
#include "script/script_owner.h"

#include <QObject>

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace
{

constexpr SQInteger kDevIndex = 2;
constexpr SQInteger kFirstArgument = 3;

// Bus addresses of the GB are 16 bits wide; save memory begins at 0xA000 there.
constexpr std::uint32_t kGbMask = 0xFFFF;
constexpr std::uint32_t kGbSaveBase = 0xA000;
constexpr std::uint32_t kGbaLongestRead = 0x100000;
constexpr std::uint32_t kMostPairs = 8;
constexpr std::size_t kLongestMessage = 320; // in bytes of UTF-8, translated

// What is thrown, without anything to destroy: a machine that is given up leaves no other way.
struct Message {
    char text[kLongestMessage];
};

Message messageOf(const QString &text)
{
    Message message{};
    qstrncpy(message.text, text.toUtf8().constData(), sizeof(message.text));
    return message;
}

// The two integers of a transfer native, and the job.
struct Transfer {
    const char *native = "";
    RunningJob *job = nullptr;
    std::uint32_t address = 0;
    std::uint32_t length = 0;
};

SQRESULT getJob(HSQUIRRELVM v, RunningJob **job)
{
    SQUserPointer pointer = nullptr;
    if (sq_gettype(v, kDevIndex) != OT_USERPOINTER ||
        SQ_FAILED(sq_getuserpointer(v, kDevIndex, &pointer)) || pointer != &ownerOf(v))
        return sq_throwerror(v, "1st argument must be d (userpointer)");
    *job = static_cast<RunningJob *>(pointer);
    return SQ_OK;
}

// Reads the integer at `index`; its low 32 bits are what the reader works with.
SQRESULT getInteger(HSQUIRRELVM v, SQInteger index, std::uint32_t *value)
{
    if (sq_gettype(v, index) != OT_INTEGER)
        return sq_throwerror(v, "argument type error");
    SQInteger integer = 0;
    sq_getinteger(v, index, &integer);
    *value = static_cast<std::uint32_t>(integer);
    return SQ_OK;
}

SQRESULT getTransfer(HSQUIRRELVM v, const char *native, Transfer *transfer)
{
    if (sq_gettop(v) < kFirstArgument + 1)
        return sq_throwerror(v, "argument number error");
    transfer->native = native;
    if (SQ_FAILED(getInteger(v, kFirstArgument, &transfer->address)) ||
        SQ_FAILED(getInteger(v, kFirstArgument + 1, &transfer->length)))
        return SQ_ERROR;
    return getJob(v, &transfer->job);
}

// Ends the script with an error, and the job knows of it even if the script catches that.
SQInteger failOperation(HSQUIRRELVM v, const char *native, const Message &what)
{
    const Message message =
        messageOf(QLatin1String(native) + QStringLiteral(": ") + QString::fromUtf8(what.text));
    RunningJob &job = ownerOf(v);
    if (job.failedOperation.isEmpty())
        job.failedOperation = QString::fromUtf8(message.text);
    return sq_throwerror(v, message.text);
}

// What an operation may do to the cartridge.
enum class Kind { Reading, Writing };

// Whether the operation may be begun. The user may leave a job that reads: it reads no more, and
// its script may still bring the cartridge to rest.
SQRESULT checkStay(HSQUIRRELVM v, Kind kind)
{
    RunningJob &job = ownerOf(v);
    const bool mayBeLeft = isReadJob(job.job.operate) || job.job.isTrial;
    if (mayBeLeft && !job.hasLeft)
        job.hasLeft = job.listener.isLeaveWanted();
    if (!job.hasLeft)
        noteNativeCall();
    if (!job.hasLeft || (kind == Kind::Writing && !job.job.isTrial))
        return SQ_OK;
    const Message message = messageOf(QObject::tr("the job was left"));
    return sq_throwerror(v, message.text);
}

// A read as EEPROM sends a request, and one as FLASH may select a bank. Of SRAM nothing is written.
bool writesToRead(const CartridgeJob &job)
{
    return job.saveType != 0;
}

// What an operation answered, and whether the drive reported an error meanwhile: some operations
// consist of several commands and answer the whole length whatever became of these.
struct Answer {
    std::uint32_t count = 0;
    bool hasDriveError = false;
};

template <typename Operation> Answer perform(HSQUIRRELVM v, Operation operation)
{
    ownerOf(v).hasTouchedCartridge = true;
    const std::uint32_t errorsBefore = driveErrorCount();
    const std::uint32_t count = operation();
    return {count, driveErrorCount() != errorsBefore};
}

// Of a writing operation. Bytes that were never to be sent were not refused.
SQInteger checkTaken(HSQUIRRELVM v, const char *native, const Answer &answer, bool sendsSomething)
{
    const bool isTaken = answer.count != kFailed && (answer.count != 0 || !sendsSomething);
    if (isTaken && !answer.hasDriveError)
        return 0;
    const Message what = messageOf(QObject::tr("the reader did not take the command"));
    return failOperation(v, native, what);
}

// Of a reading operation. After a short read the next one would land at the wrong place.
SQInteger checkArrived(HSQUIRRELVM v, const char *native, const Answer &answer,
                       std::uint32_t length)
{
    if (answer.count == length && !answer.hasDriveError)
        return 0;
    const bool isPart = answer.count != 0 && answer.count < length;
    const Message what =
        messageOf(isPart ? QObject::tr("only %1 of %2 bytes arrived").arg(answer.count).arg(length)
                         : QObject::tr("the reader did not answer"));
    return failOperation(v, native, what);
}

// A transfer must stay inside the job's buffer.
SQRESULT checkBounds(HSQUIRRELVM v, const Transfer &transfer)
{
    const std::int64_t cursor = transfer.job->cursor;
    const std::int64_t size = bytesToMove(transfer.job->job);
    if (cursor + transfer.length <= size)
        return SQ_OK;
    char message[kLongestMessage];
    std::snprintf(message, sizeof(message),
                  "%s: cursor %lld, length %lu: outside the buffer of %lld bytes", transfer.native,
                  static_cast<long long>(cursor), static_cast<unsigned long>(transfer.length),
                  static_cast<long long>(size));
    return sq_throwerror(v, message);
}

void advance(RunningJob *job, std::uint32_t count, int maximum)
{
    job->cursor += static_cast<int>(count);
    job->listener.onProgress(job->cursor, maximum);
}

SQInteger readToBuffer(HSQUIRRELVM v, DeviceOperation read, const Transfer &transfer, int maximum)
{
    if (SQ_FAILED(checkBounds(v, transfer)) || SQ_FAILED(checkStay(v, Kind::Reading)))
        return SQ_ERROR;
    RunningJob *job = transfer.job;
    const Answer answer = perform(
        v, [&] { return read(transfer.address, job->data + job->cursor, transfer.length); });
    if (SQ_FAILED(checkArrived(v, transfer.native, answer, transfer.length)))
        return SQ_ERROR;
    advance(job, transfer.length, maximum);
    return 0;
}

SQInteger writeFromBuffer(HSQUIRRELVM v, DeviceOperation write, const Transfer &transfer,
                          int maximum)
{
    if (SQ_FAILED(checkBounds(v, transfer)) || SQ_FAILED(checkStay(v, Kind::Writing)))
        return SQ_ERROR;
    RunningJob *job = transfer.job;
    ownerOf(v).hasWrittenToBus = true;
    const Answer answer = perform(
        v, [&] { return write(transfer.address, job->data + job->cursor, transfer.length); });
    if (SQ_FAILED(checkTaken(v, transfer.native, answer, transfer.length != 0)))
        return SQ_ERROR;
    advance(job, transfer.length, maximum);
    return 0;
}

} // namespace

SQInteger nat_cpu_write(HSQUIRRELVM v)
{
    const SQInteger top = sq_gettop(v);
    if (top < kFirstArgument + 1)
        return sq_throwerror(v, "argument number error");
    std::uint32_t addresses[kMostPairs] = {};
    std::uint32_t values[kMostPairs] = {};
    std::uint32_t count = 0;
    for (SQInteger index = kFirstArgument; count < kMostPairs && index < top; index += 2) {
        if (SQ_FAILED(getInteger(v, index, &addresses[count])) ||
            SQ_FAILED(getInteger(v, index + 1, &values[count])))
            return SQ_ERROR;
        ++count;
    }
    if (SQ_FAILED(checkStay(v, Kind::Writing)))
        return SQ_ERROR;
    ownerOf(v).hasWrittenToBus = true;
    const Answer answer = perform(v, [&] { return deviceOps.gbWrite(addresses, values, count); });
    return checkTaken(v, "cpu_write", answer, true);
}

SQInteger nat_cpu_read_gb(HSQUIRRELVM v)
{
    Transfer transfer;
    if (SQ_FAILED(getTransfer(v, "cpu_read", &transfer)))
        return SQ_ERROR;
    transfer.address &= kGbMask;
    transfer.length &= kGbMask;
    return readToBuffer(v, deviceOps.gbRead, transfer, transfer.job->job.romSize);
}

SQInteger nat_cpu_read_gba(HSQUIRRELVM v)
{
    Transfer transfer;
    if (SQ_FAILED(getTransfer(v, "cpu_read", &transfer)))
        return SQ_ERROR;
    transfer.length = std::min(transfer.length, kGbaLongestRead);
    return readToBuffer(v, deviceOps.gbaRead, transfer, transfer.job->job.romSize);
}

SQInteger nat_ram_read(HSQUIRRELVM v)
{
    Transfer transfer;
    if (SQ_FAILED(getTransfer(v, "ram_read", &transfer)))
        return SQ_ERROR;
    RunningJob &job = ownerOf(v);
    job.hasWrittenToBus = job.hasWrittenToBus || writesToRead(job.job);
    return readToBuffer(v, deviceOps.saveRead, transfer, transfer.job->job.ramSize);
}

SQInteger nat_ram_write_gb(HSQUIRRELVM v)
{
    Transfer transfer;
    if (SQ_FAILED(getTransfer(v, "ram_write", &transfer)))
        return SQ_ERROR;
    transfer.address = (transfer.address & kGbMask) | kGbSaveBase;
    transfer.length &= kGbMask;
    return writeFromBuffer(v, deviceOps.gbSaveWrite, transfer, transfer.job->job.ramSize);
}

SQInteger nat_ram_write_gba(HSQUIRRELVM v)
{
    Transfer transfer;
    if (SQ_FAILED(getTransfer(v, "ram_write", &transfer)))
        return SQ_ERROR;
    return writeFromBuffer(v, deviceOps.saveWrite, transfer, transfer.job->job.ramSize);
}

SQInteger nat_ram_erase(HSQUIRRELVM v)
{
    if (sq_gettop(v) < 1)
        return sq_throwerror(v, "argument number error");
    if (SQ_FAILED(checkStay(v, Kind::Writing)))
        return SQ_ERROR;
    ownerOf(v).hasWrittenToBus = true;
    return checkTaken(v, "ram_erase", perform(v, gbaSaveErase), true);
}

SQInteger nat_rom_write(HSQUIRRELVM v)
{
    Transfer transfer;
    if (SQ_FAILED(getTransfer(v, "rom_write", &transfer)))
        return SQ_ERROR;
    transfer.address &= kGbMask;
    transfer.length &= kGbMask;
    return writeFromBuffer(v, deviceOps.gbRomWrite, transfer, transfer.job->job.romSize);
}

SQInteger nat_rom_flash_cfg(HSQUIRRELVM v)
{
    if (sq_gettop(v) < kFirstArgument)
        return sq_throwerror(v, "argument number error");
    std::uint32_t config = 0;
    RunningJob *job = nullptr;
    if (SQ_FAILED(getInteger(v, kFirstArgument, &config)) || SQ_FAILED(getJob(v, &job)))
        return SQ_ERROR;
    selectGbFlashOpcode(config & 1U); // sends nothing, so it cannot fail
    return 0;
}
