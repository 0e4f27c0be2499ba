#include "cli/script_trial.h"

#include "device/device_link.h"
#include "script/erase_poll.h"
#include "script/natives.h"
#include "script/script_host.h"
#include "virtual/cartridge_factory.h"
#include "virtual/image_generator.h"
#include "virtual/in_process_drive.h"
#include "worker/famicom_thread.h"
#include "worker/local_path.h"

#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>

#include <sqstdio.h>

#include <algorithm>

namespace
{

constexpr std::uint32_t kRamBank = 8 * 1024;

struct TrialRow {
    int operate;
    QList<const char *> entries;
};

const QList<TrialRow> kGbTrials = {{GB_READ_ROM, {"cpu_dump"}},
                                   {GB_WRITE_FLASH, {"cpu_erase", "cpu_flash"}},
                                   {GB_READ_RAM, {"save_dump"}},
                                   {GB_WRITE_RAM, {"save_write"}}};
const QList<TrialRow> kGbaTrials = {
    {GBA_READ_ROM, {"cpu_dump"}}, {GBA_READ_RAM, {"save_dump"}}, {GBA_WRITE_RAM, {"save_write"}}};

bool movesSave(int operate)
{
    return (operate & 2) != 0;
}

bool isWriteJob(int operate)
{
    return (operate & 1) != 0;
}

// What every job does beside its script: the mode's two commands and the identity's read; a flash
// job also asks for its key.
DeviceOperations overheadOf(int operate)
{
    return operate == GB_WRITE_FLASH ? DeviceOperations{3, 2} : DeviceOperations{2, 1};
}

ByteVector imageOf(const ScriptKind &kind)
{
    ByteVector image;
    std::string error;
    bool isMade = false;
    if (kind.isGba) {
        GbaImageSpec spec;
        spec.romSize = kind.romSize;
        isMade = makeGbaImage(spec, &image, &error);
    } else {
        GbImageSpec spec;
        spec.type = kind.headerType;
        spec.romSize = kind.romSize;
        // The header can not say what an MBC2 has built in.
        spec.ramSize = kind.ramSize < kRamBank ? 0 : kind.ramSize;
        isMade = makeGbImage(spec, &image, &error);
    }
    if (!isMade)
        qFatal("%s", error.c_str());
    return image;
}

std::unique_ptr<Cartridge> cartridgeOf(const ScriptKind &kind, int operate, const ByteVector &image)
{
    CartridgeOptions options;
    if (kind.isGba)
        options.saveType = GbaSaveType::Sram;
    if (operate == GB_WRITE_FLASH)
        options.flash = FlashWidth::Byte;
    std::string error;
    std::unique_ptr<Cartridge> cartridge = makeCartridge(image, options, &error);
    if (cartridge == nullptr)
        qFatal("%s", error.c_str());
    return cartridge;
}

QByteArray bytesOf(const ByteVector &bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()));
}

// Whether the script loads for the operation and defines its entry functions.
TrialOutcome lookAtEntries(const TrialRow &row, const QString &path, QStringList *log)
{
    FamicomThread job;
    QObject::connect(&job, &FamicomThread::log, &job, [&](const QString &line) { *log << line; });
    HSQUIRRELVM v = createVm(&job);
    const NativeSet natives = nativesOf(row.operate);
    for (int i = 0; i < natives.count; ++i)
        registerNative(v, natives.natives[i].name, natives.natives[i].function);
    TrialOutcome outcome = TrialOutcome::Right;
    if (SQ_FAILED(sqstd_dofile(v, localPath(path).constData(), SQFalse, SQTrue)))
        outcome = TrialOutcome::Refused;
    for (const char *entry : row.entries) {
        const SQInteger top = sq_gettop(v);
        sq_pushroottable(v);
        sq_pushstring(v, entry, -1);
        if (outcome == TrialOutcome::Right && SQ_FAILED(sq_get(v, -2)))
            outcome = TrialOutcome::NotDefined;
        sq_settop(v, top);
    }
    sq_pop(v, 1);
    sq_close(v);
    return outcome;
}

// The chip of a trial is blank after a few looks, which need no time in between. One that nobody
// erases would be looked at forever, so the trial gives up. A waiter gets no context.
constexpr int kMostLooks = 16;
FamicomThread *pollingJob = nullptr;
int looks = 0;

void countLook(unsigned long /*timeMs*/)
{
    if (++looks >= kMostLooks)
        pollingJob->canceled();
}

bool runJob(FamicomThread *job, QStringList *log)
{
    pollingJob = job;
    looks = 0;
    setPollWaiter(countLook);
    int result = 0;
    QEventLoop loop;
    QObject::connect(job, &FamicomThread::log, &loop, [&](const QString &line) { *log << line; });
    QObject::connect(job, &FamicomThread::error, &loop, [&](int flag) { result = flag; });
    QObject::connect(job, &QThread::finished, &loop, &QEventLoop::quit);
    job->start();
    loop.exec();
    setPollWaiter(nullptr);
    if (looks >= kMostLooks)
        *log << QStringLiteral("The chip never became blank.");
    return result == 1;
}

// One job on one cartridge.
class Trial
{
public:
    Trial(const TrialRow &row, const QString &scriptPath, const ScriptKind &kind)
        : m_row(row), m_kind(kind), m_image(imageOf(kind)), m_platform(createPlatformBackend()),
          m_drive(std::make_unique<KeptReader>(cartridgeOf(kind, row.operate, m_image),
                                               VirtualReaderConfig{}, SaveFile()),
                  *m_platform)
    {
        m_job.operate = row.operate;
        m_job.script_name = scriptPath;
        m_job.file_name = m_folder.filePath(QStringLiteral("file"));
        m_job.rom_size = static_cast<int>(kind.romSize);
        m_job.ram_size = static_cast<int>(kind.ramSize);
    }

    void run(ScriptTrial *trial)
    {
        const QByteArray moved = prepare();
        setDriveBackend(&m_drive);
        const bool succeeded = runJob(&m_job, &trial->log);
        setDriveBackend(nullptr);
        trial->movedBytes = qMax(0, m_job.data_pos);
        trial->expectedBytes = jobBufferSize(m_job);
        measure(trial);
        if (succeeded)
            trial->outcome = contentIsRight(moved) ? TrialOutcome::Right : TrialOutcome::Wrong;
        else
            trial->outcome =
                nothingWasSent(trial->used) ? TrialOutcome::Refused : TrialOutcome::Failed;
    }

private:
    // Puts into file or save what the job is to move. Returns: those bytes.
    QByteArray prepare()
    {
        const QByteArray noise = bytesOf(makeNoise(m_kind.ramSize, 7));
        const QByteArray rom = bytesOf(m_image);
        const QByteArray moved = movesSave(m_row.operate) ? noise : rom;
        if (isWriteJob(m_row.operate)) {
            QFile file(m_job.file_name);
            if (!file.open(QIODevice::WriteOnly) || file.write(moved) != moved.size())
                qFatal("can not write %s", qPrintable(file.fileName()));
        } else if (movesSave(m_row.operate)) {
            return bytesOf(m_drive.reader().cartridge().saveImage());
        }
        return moved;
    }

    // What arrived, in the cartridge or in the file.
    QByteArray arrived()
    {
        const Cartridge &cartridge = m_drive.reader().cartridge();
        if (isWriteJob(m_row.operate))
            return bytesOf(movesSave(m_row.operate) ? cartridge.saveImage() : cartridge.romImage());
        QFile file(m_job.file_name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    bool contentIsRight(const QByteArray &moved)
    {
        const char bits = movesSave(m_row.operate) ? m_kind.saveBits : '\xFF';
        const QByteArray found = arrived();
        return found.size() == moved.size() &&
               std::equal(found.begin(), found.end(), moved.begin(),
                          [&](char left, char right) { return ((left ^ right) & bits) == 0; });
    }

    void measure(ScriptTrial *trial)
    {
        const OperationCounters &counters = m_drive.reader().counters();
        const DeviceOperations overhead = overheadOf(m_row.operate);
        trial->used.commandFiles =
            static_cast<qint64>(counters.commandRuns) - overhead.commandFiles;
        trial->used.reads = static_cast<qint64>(counters.reads) - overhead.reads;
        // How often an erase is looked at depends on the chip.
        trial->hasLeast = m_row.operate != GB_WRITE_FLASH;
        trial->least = leastOperations(m_row.operate, m_kind);
    }

    // The looks at a chip that is being erased are reads of the program's own.
    bool nothingWasSent(const DeviceOperations &used) const
    {
        return used.commandFiles == 0 && (used.reads == 0 || m_row.operate == GB_WRITE_FLASH);
    }

    const TrialRow &m_row;
    const ScriptKind &m_kind;
    ByteVector m_image;
    std::unique_ptr<DriveBackend> m_platform;
    InProcessDrive m_drive;
    QTemporaryDir m_folder;
    FamicomThread m_job;
};

QString nameOf(const TrialRow &row)
{
    QStringList names;
    for (const char *entry : row.entries)
        names << QLatin1String(entry);
    return names.join(QStringLiteral(" and "));
}

} // namespace

QList<ScriptTrial> tryScript(const QString &scriptPath, const ScriptKind &kind)
{
    QList<ScriptTrial> trials;
    for (const TrialRow &row : kind.isGba ? kGbaTrials : kGbTrials) {
        ScriptTrial trial;
        trial.operation = nameOf(row);
        trial.outcome = lookAtEntries(row, scriptPath, &trial.log);
        if (trial.outcome == TrialOutcome::Right) {
            Trial job(row, scriptPath, kind);
            job.run(&trial);
        }
        trials << trial;
    }
    return trials;
}
