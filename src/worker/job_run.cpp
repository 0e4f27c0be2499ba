#include "worker/job_run.h"

#include "device/device_commands.h"
#include "device/device_link.h"
#include "device/device_ops.h"
#include "device/payload_cipher.h"
#include "script/script_host.h"

#include <QFileInfo>

#include <algorithm>
#include <limits>
#include <new>

namespace
{

// Size and first bytes of the reader's information block that are the cipher key.
constexpr std::uint32_t kDeviceInfoSize = 16;

// GBA save memory by the settings' type and size; any other pair binds nothing, so SRAM stays.
struct SaveTypeRow {
    int saveType;
    int ramSize; // 0: any
    int selection;
};

constexpr SaveTypeRow kSaveTypes[] = {
    {0, 0, 0}, {1, 65536, 1}, {1, 131072, 2}, {2, 512, 3}, {2, 8192, 4}};

void bindSaveType(int saveType, int ramSize)
{
    for (const SaveTypeRow &row : kSaveTypes) {
        if (row.saveType == saveType && (row.ramSize == 0 || row.ramSize == ramSize))
            selectGbaSaveType(static_cast<std::uint32_t>(row.selection));
    }
}

// The transfer buffer: the input, or zeros, so that a script which fills too little leaves zeros.
// Returns: false if there is not enough memory.
bool fillBuffer(const QByteArray &input, int size, QByteArray *buffer)
{
    if (size > std::numeric_limits<int>::max() - kTransferSlack)
        return false;
    try {
        *buffer = QByteArray(size + kTransferSlack, '\0');
    } catch (const std::bad_alloc &) {
        return false;
    }
    std::copy_n(input.begin(), std::min(static_cast<int>(input.size()), size), buffer->begin());
    return true;
}

JobEnd runSteps(RunningJob *running, const QByteArray &input, QByteArray *buffer)
{
    const CartridgeJob &job = running->job;
    if (!QFileInfo::exists(job.scriptPath))
        return JobEnd::NoScript;
    if (isWriteJob(job.operate) && input.size() < bytesToMove(job))
        return JobEnd::InputNotRead;
    const JobEnd selected = selectReader(job);
    if (selected != JobEnd::Done)
        return selected;
    if (!fillBuffer(isWriteJob(job.operate) ? input : QByteArray(), bytesToMove(job), buffer))
        return JobEnd::NoMemory;
    if (isFlashJob(job.operate))
        keyCipher();
    running->data = reinterpret_cast<unsigned char *>(buffer->data());
    return runOperation(running);
}

} // namespace

JobEnd selectReader(const CartridgeJob &job)
{
    if (findDevice(0, nullptr) == 0)
        return JobEnd::NoReader;
    const bool isGba = isGbaJob(job.operate);
    if ((isGba ? selectGbaMode() : selectGbMode()) == 0)
        return modeFault();
    if (isGba)
        bindSaveType(job.saveType, job.ramSize);
    return JobEnd::Done;
}

JobEnd modeFault()
{
    switch (lastDriveErrorCode()) {
    case DriveErrorCode::InUse:
        return JobEnd::ReaderInUse;
    case DriveErrorCode::NotTheReader:
        return JobEnd::NotTheReader;
    default:
        return JobEnd::NoMode;
    }
}

void keyCipher()
{
    std::uint8_t info[kDeviceInfoSize] = {};
    queryDeviceInfo(info, kDeviceInfoSize);
    cipherSetKey8(info);
}

JobResult resultOf(const RunningJob &running, JobEnd end)
{
    JobResult result;
    result.end = end;
    result.wantedBytes = bytesToMove(running.job);
    result.movedBytes = running.cursor;
    result.scriptError = running.scriptError;
    result.scriptPlace = running.scriptPlace;
    result.failedOperation = running.failedOperation;
    result.hasTouchedCartridge = running.hasTouchedCartridge;
    result.hasWrittenToBus = running.hasWrittenToBus;
    result.hasWantedFiles = running.hasWantedFiles;
    result.driveError = QString::fromLocal8Bit(lastDriveError().c_str());
    return result;
}

JobResult runJob(const CartridgeJob &job, const QByteArray &input, JobListener &listener)
{
    const ReaderSession session;
    RunningJob running(job, listener);
    if (isFlashJob(job.operate))
        running.job.romSize = input.size();
    clearLastDriveError();
    QByteArray buffer;
    const JobEnd end = runSteps(&running, input, &buffer);
    JobResult result = resultOf(running, end);
    if (isReadJob(job.operate) && !buffer.isEmpty()) {
        buffer.truncate(result.wantedBytes);
        result.bytes = buffer;
    }
    return result;
}
