// Any text as a mapper script, for libFuzzer: whatever it says and asks of the natives, the host
// comes to an end, moves nothing outside of the job's buffer and leaves no memory behind. The
// reader is one in memory, whose operations fail now and then.
//
// What a text is run for follows from its length, so any script is an input as it stands. Scripts
// that load the common ones find them. No file can be opened by a script: it may be anybody's.
#include "device/device_link.h"
#include "device/device_ops.h"
#include "rule.h"
#include "script/erase_poll.h"
#include "script/script_host.h"
#include "script/script_limits.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <string>
#include <vector>

namespace
{

constexpr std::uint32_t kBusBytes = 0x10000;
constexpr int kJobBytes = 0x9000;
constexpr int kShortSilenceMs = 30;
constexpr unsigned kMostOperations = 2000; // then the user has enough
constexpr int kJobCodes = 8;

struct Reader {
    std::vector<std::uint8_t> memory = std::vector<std::uint8_t>(kBusBytes, 0xFF);
    unsigned operations = 0;
    unsigned failsEvery = 0; // 0: never
};

Reader reader;
bool isInScript = false;
std::string findPrefix; // of the fuzzer's own files

// What an operation answers that was to move `length` bytes.
std::uint32_t answer(std::uint32_t length)
{
    ++reader.operations;
    if (reader.failsEvery == 0 || reader.operations % reader.failsEvery != 0)
        return length;
    return reader.operations % 2 == 0 ? 0 : length / 2;
}

std::uint32_t readBytes(std::uint32_t address, void *buffer, std::uint32_t length)
{
    auto *bytes = static_cast<std::uint8_t *>(buffer);
    for (std::uint32_t i = 0; i < length; ++i)
        bytes[i] = reader.memory[(address + i) % kBusBytes];
    return answer(length);
}

std::uint32_t writeBytes(std::uint32_t address, void *buffer, std::uint32_t length)
{
    const auto *bytes = static_cast<const std::uint8_t *>(buffer);
    for (std::uint32_t i = 0; i < length; ++i)
        reader.memory[(address + i) % kBusBytes] = bytes[i];
    return answer(length);
}

std::uint32_t writePairs(const std::uint32_t *addresses, const std::uint32_t *values,
                         std::uint32_t count)
{
    for (std::uint32_t i = 0; i < count; ++i)
        reader.memory[addresses[i] % kBusBytes] = static_cast<std::uint8_t>(values[i]);
    return answer(count * 512);
}

// For what does not go through the table: an erase that the reader never takes.
class NoDrive : public DriveBackend
{
public:
    std::uint32_t logicalDrives() override { return 0; }
    DriveType driveType(const char * /*root*/) override { return DriveType::NoRoot; }
    DriveStatus volumeLabel(const char * /*root*/, char * /*label*/,
                            std::uint32_t /*capacity*/) override
    {
        return {DriveErrorCode::InputOutput, "no drive"};
    }
    DriveStatus openForRead(const char * /*path*/, Buffering /*buffering*/,
                            std::unique_ptr<DriveFile> * /*file*/) override
    {
        return {DriveErrorCode::InputOutput, "no drive"};
    }
    DriveStatus openForWrite(const char * /*path*/, std::unique_ptr<DriveFile> * /*file*/) override
    {
        return {DriveErrorCode::InputOutput, "no drive"};
    }
    DriveStatus mayWrite(const char * /*path*/) override
    {
        return {DriveErrorCode::InputOutput, "no drive"};
    }
    void releaseDrive() override {}
};

class : public JobListener
{
public:
    void onLine(const QString & /*line*/) override {}
    void onProgress(int doneBytes, int /*maximum*/) override
    {
        require(doneBytes >= 0 && doneBytes <= kJobBytes, "the cursor stays inside the buffer");
    }
    bool isStopWanted() override { return true; }
    bool isLeaveWanted() override { return reader.operations > kMostOperations; }
} listener;

// Beside the scripts that others load.
class ScriptFile
{
public:
    ScriptFile()
    {
        for (const char *name : {"common.nut", "flash.nut"})
            QFile::copy(QDir(QStringLiteral(SHIPPED_SCRIPTS)).filePath(QLatin1String(name)),
                        m_folder.filePath(QLatin1String(name)));
    }
    QString path() const { return m_folder.filePath(QStringLiteral("gb_mbc5.nut")); }
    void put(const std::uint8_t *data, std::size_t size)
    {
        QFile file(path());
        require(file.open(QIODevice::WriteOnly) &&
                    file.write(reinterpret_cast<const char *>(data), static_cast<qint64>(size)) ==
                        static_cast<qint64>(size),
                "the text can be written");
    }

private:
    QTemporaryDir m_folder;
};

} // namespace

extern "C" {
// The linker puts it in the place of fopen().
std::FILE *__real_fopen(const char *path, const char *mode);
std::FILE *__wrap_fopen(const char *path, const char *mode);
int LLVMFuzzerInitialize(int *argc, char ***argv);

std::FILE *__wrap_fopen(const char *path, const char *mode)
{
    const bool isFind = !findPrefix.empty() && std::string(path).find(findPrefix) == 0;
    return isInScript && !isFind ? nullptr : __real_fopen(path, mode);
}

// Where the fuzzer puts a script that has crashed: it does so while the script still runs.
int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    const std::string option = "-artifact_prefix=";
    for (int i = 1; i < *argc; ++i) {
        const std::string argument = (*argv)[i];
        if (argument.find(option) == 0)
            findPrefix = argument.substr(option.size());
    }
    return 0;
}
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static ScriptFile script;
    static NoDrive noDrive;
    setDriveBackend(&noDrive);
    script.put(data, size);
    setSilence(kShortSilenceMs);
    setPollWaiter([](unsigned long) {});
    reader = Reader();
    reader.failsEvery = static_cast<unsigned>(size / kJobCodes % 4);
    deviceOps = {readBytes,  writePairs, writeBytes, writeBytes, readBytes,
                 writePairs, readBytes,  writeBytes, nullptr};

    CartridgeJob job;
    job.operate = static_cast<int>(size % kJobCodes);
    job.scriptPath = script.path();
    job.romSize = job.ramSize = kJobBytes;
    job.isTrial = true; // it may be left
    RunningJob running(job, listener);
    std::vector<unsigned char> buffer(kJobBytes + kTransferSlack);
    running.data = buffer.data();
    isInScript = true;
    const JobEnd end = runOperation(&running);
    isInScript = false;
    require(end != JobEnd::Left || running.hasLeft, "nobody leaves a job unasked");
    require(end != JobEnd::ScriptError || !running.scriptError.isEmpty(),
            "an error says what it is");
    return 0;
}
