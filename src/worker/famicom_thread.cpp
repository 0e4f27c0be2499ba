#include "worker/famicom_thread.h"

#include "device/device_commands.h"
#include "device/device_link.h"
#include "device/device_ops.h"
#include "device/payload_cipher.h"
#include "script/script_host.h"
#include "worker/local_path.h"

#include <QFileInfo>

#include <limits>
#include <new>

namespace
{

// Bytes behind the transfer buffer that belong to the job as well: enciphering a short last chunk
// touches up to 7 of them, writing a short last EEPROM piece up to 511.
constexpr int kTransferSlack = 512;

// Size and first bytes of the reader's information block that are the cipher key.
constexpr std::uint32_t kDeviceInfoSize = 16;

bool isGba(int operate)
{
    return operate > GB_WRITE_RAM;
}

bool isWriteJob(int operate)
{
    return operate == GB_WRITE_FLASH || operate == GB_WRITE_RAM || operate == GBA_WRITE_FLASH ||
           operate == GBA_WRITE_RAM;
}

bool isFlashJob(int operate)
{
    return operate == GB_WRITE_FLASH || operate == GBA_WRITE_FLASH;
}

bool isDumpJob(int operate)
{
    return operate == GB_READ_ROM || operate == GB_READ_RAM || operate == GBA_READ_ROM ||
           operate == GBA_READ_RAM;
}

// GBA save memory by the settings' type and size; -1 binds nothing, so SRAM stays.
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

bool selectBus(FamicomThread &job)
{
    const std::uint32_t written = isGba(job.operate) ? selectGbaMode() : selectGbMode();
    if (written == 0) {
        emit job.log(FamicomThread::tr("Initialize device error."));
        return false;
    }
    if (isGba(job.operate))
        bindSaveType(job.save_type, job.ram_size);
    return true;
}

// Size of the file to be flashed; -1 if it is too large to be one.
int flashFileSize(const FamicomThread &job)
{
    const qint64 size = QFileInfo(job.file_name).size();
    return size <= std::numeric_limits<int>::max() - kTransferSlack ? static_cast<int>(size) : -1;
}

// The reader hands out a new key for every flash job. A failed query leaves a key of zeros.
void keyCipher()
{
    std::uint8_t info[kDeviceInfoSize] = {};
    queryDeviceInfo(info, kDeviceInfoSize);
    cipherSetKey8(info);
}

// Cleared, so that a script which fills too little leaves zeros and not bytes of an older job.
// Returns: false if there is not enough memory.
bool allocateBuffer(FamicomThread &job)
{
    if (isFlashJob(job.operate)) {
        job.rom_size = flashFileSize(job);
        keyCipher();
    }
    const int size = jobBufferSize(job);
    if (size < 0 || !(isDumpJob(job.operate) || isWriteJob(job.operate)))
        return true;
    job.data_buf =
        new (std::nothrow) unsigned char[static_cast<std::size_t>(size) + kTransferSlack]();
    if (job.data_buf == nullptr)
        emit job.log(FamicomThread::tr("Not enough memory."));
    return job.data_buf != nullptr;
}

bool readWholeFile(FamicomThread &job, DriveFile *file)
{
    const int size = jobBufferSize(job);
    const bool isRead =
        size >= 0 && readHandle(file, job.data_buf, static_cast<std::uint32_t>(size)) ==
                         static_cast<std::uint32_t>(size);
    emit job.log(isRead ? FamicomThread::tr("Read ") + QString::number(size) +
                              FamicomThread::tr(" Bytes")
                        : FamicomThread::tr("Read File error."));
    return isRead;
}

bool readInputFile(FamicomThread &job)
{
    DriveFile *file = openForRead(localPath(job.file_name).constData());
    emit job.log(FamicomThread::tr("Read file :") + job.file_name);
    if (file == nullptr) {
        emit job.log(FamicomThread::tr("Open File error."));
        return false;
    }
    const bool isRead = readWholeFile(job, file);
    closeHandle(file);
    return isRead;
}

bool saveDump(FamicomThread &job)
{
    // A negative size has no buffer, and as a count it would look like a failure that was expected.
    const auto size = static_cast<std::uint32_t>(jobBufferSize(job));
    if (job.data_buf != nullptr &&
        writeFileWhole(localPath(job.file_name).constData(), job.data_buf, size) == size)
        return true;
    emit job.log(FamicomThread::tr("Save file error."));
    return false;
}

bool runJob(FamicomThread &job)
{
    if (findDevice(0, nullptr) == 0) {
        emit job.log(FamicomThread::tr("Can not found device."));
        return false;
    }
    if (!selectBus(job))
        return false;
    if (!allocateBuffer(job))
        return false;
    if (isWriteJob(job.operate) && !readInputFile(job))
        return false;
    if (!runOperation(&job))
        return false;
    // The user's file is touched only now: a failed dump leaves the old one as it was.
    return !isDumpJob(job.operate) || saveDump(job);
}

} // namespace

int jobBufferSize(const FamicomThread &job)
{
    switch (job.operate) {
    case GB_READ_ROM:
    case GB_WRITE_FLASH:
    case GBA_READ_ROM:
    case GBA_WRITE_FLASH:
        return job.rom_size;
    case GB_READ_RAM:
    case GB_WRITE_RAM:
    case GBA_READ_RAM:
    case GBA_WRITE_RAM:
        return job.ram_size;
    default:
        return 0;
    }
}

FamicomThread::FamicomThread() : QThread(nullptr) {}

void FamicomThread::canceled()
{
    cancel_flag.store(1, std::memory_order_relaxed);
}

void FamicomThread::run()
{
    cancel_flag.store(0, std::memory_order_relaxed);
    data_pos = 0;
    data_buf = nullptr;
    bool succeeded = false;
    {
        // The drive is given up before the end is told, so that it can be unmounted at once.
        const ReaderSession session;
        succeeded = runJob(*this);
    }
    emit set_progress(1, 1);
    emit error(succeeded ? 1 : 0);
    delete[] data_buf;
    data_buf = nullptr;
}
