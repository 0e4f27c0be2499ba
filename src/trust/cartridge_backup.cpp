#include "trust/cartridge_backup.h"

#include "cart/setting_tables.h"
#include "trust/backup_store.h"
#include "trust/file_sha1.h"
#include "trust/pending_file.h"

#include <QCryptographicHash>
#include <QDir>

namespace
{

constexpr int kColorFlagOffset = 0x143;
constexpr int kTypeOffset = 0x147;
constexpr int kFirstMmm01Type = 0x0B;
constexpr int kLastMmm01Type = 0x0D;
constexpr int kPlainMmm01Rom = 512 * 1024;
constexpr char kColorFlag = '\x80';
const QString kSaveSuffix = QStringLiteral(".sav");

// Keeps the good name for a good read. A save that is suspicious may well be an empty one.
QString markOf(VerdictKind kind, bool isSave)
{
    if (kind == VerdictKind::Unstable)
        return QStringLiteral(".unstable");
    return kind == VerdictKind::Suspicious && !isSave ? QStringLiteral(".suspicious") : QString();
}

} // namespace

CartridgeBackup::CartridgeBackup(const CartridgeReport &report, const CartridgeBackupPlan &plan,
                                 TrustListener &listener)
    : m_report(report), m_plan(plan), m_listener(listener)
{
    m_record.program = plan.program;
    m_record.label = report.label;
    m_record.firmware = report.firmware;
    m_record.begin = QDateTime::currentDateTime();
    m_sinceBegin.start();
    m_record.title = titleOf(report);
    m_record.values = valuesFound(report);
}

bool CartridgeBackup::isNothingNew(const BackedUpMemory &save)
{
    return save.isThere || save.end == MemoryEnd::NoMemory;
}

bool CartridgeBackup::makeJob(CartridgeTask task, CartridgeJob *job, BackedUpMemory *memory)
{
    memory->missing = ::makeJob(task, m_record.values, job);
    if (memory->missing != MissingValue::None) {
        memory->end = MemoryEnd::NotKnown;
        return false;
    }
    m_record.scriptPath = job->scriptPath;
    return true;
}

// A folder or a disk that cannot take the file is told before anything is read.
bool CartridgeBackup::hasRoom(const CartridgeJob &job, BackedUpMemory *memory) const
{
    const QString path =
        pathFor(movesSave(job.operate), movesSave(job.operate) ? kSaveSuffix : romSuffix());
    memory->outcome.file = troubleOfWriting(path, bytesToMove(job));
    if (memory->outcome.file.isNone())
        return true;
    memory->outcome.trouble = Trouble::NoFile;
    memory->outcome.state = CartridgeState::NotRead;
    memory->end = MemoryEnd::NotWritten;
    return false;
}

bool CartridgeBackup::readFirst(const CartridgeJob &job, CheckedRead *made, BackedUpMemory *memory)
{
    if (!hasRoom(job, memory))
        return false;
    QElapsedTimer clock;
    clock.start();
    *made = readOnce(job, Phase::Read, m_listener);
    memory->milliseconds = clock.elapsed();
    memory->outcome = made->outcome;
    memory->bytes = made->bytes;
    memory->sha1 = made->sha1;
    memory->reads = made->reads;
    memory->end = made->outcome.isDone() ? MemoryEnd::Kept : MemoryEnd::NotRead;
    return made->outcome.isDone();
}

// `made` has what the first read brought in full, whatever is kept of it.
bool CartridgeBackup::readMore(const CartridgeJob &job, int times, CheckedRead *made,
                               BackedUpMemory *memory)
{
    readAgain(job, times, m_listener, made);
    memory->reads = made->reads;
    memory->outcome = made->outcome;
    if (made->outcome.isDone())
        return true;
    memory->end = MemoryEnd::NotReadTwice;
    const QString suffix = movesSave(job.operate) ? kSaveSuffix : romSuffix();
    // Where it cannot be kept, why there was no second read stays the reason.
    (void)writeNew(movesSave(job.operate), suffix + QStringLiteral(".unverified"), memory->bytes,
                   &memory->path);
    return false;
}

QString CartridgeBackup::romSuffix() const
{
    if (m_record.values.system == kSystemGba)
        return QStringLiteral(".gba");
    const bool hasColor = m_report.header.size() > kColorFlagOffset &&
                          (m_report.header[kColorFlagOffset] & kColorFlag) != 0;
    return hasColor ? QStringLiteral(".gbc") : QStringLiteral(".gb");
}

// The reads that the table does not make needless.
int CartridgeBackup::moreReads(bool isKnown) const
{
    if (m_plan.reads != 0)
        return m_plan.reads - 1;
    return isKnown ? 0 : 1;
}

// A GBA game that no table knows says nothing of its size; it ends where the ROM repeats or stops
// to answer.
void CartridgeBackup::cutToContent(RomEvidence *evidence, BackedUpMemory *rom) const
{
    if (!isUnknownGbaGame(m_report) || evidence->checks.tail == DumpTail::None)
        return;
    rom->bytes.truncate(static_cast<int>(evidence->checks.contentSize));
    rom->sha1 = QCryptographicHash::hash(rom->bytes, QCryptographicHash::Sha1);
    *evidence = evidenceOf(rom->bytes, rom->sha1, m_plan.tables);
}

void CartridgeBackup::readRom(const CartridgeJob &job)
{
    BackedUpMemory &rom = m_record.rom;
    CheckedRead made;
    if (!readFirst(job, &made, &rom))
        return;
    RomEvidence evidence = evidenceOf(rom.bytes, rom.sha1, m_plan.tables);
    cutToContent(&evidence, &rom);
    if (!readMore(job, moreReads(evidence.known.has_value()), &made, &rom))
        return;
    evidence.reads = made.reads;
    evidence.differences = made.differences;
    const Verdict verdict = judgeRom(evidence);
    if (verdict.kind == VerdictKind::Verified)
        m_record.title = verdict.title;
    keep(verdict, romSuffix(), false, &rom);
}

const BackedUpMemory &CartridgeBackup::backUpRom()
{
    // It may have less, which shows in what is read.
    if (isUnknownGbaGame(m_report))
        m_record.values.romSize = kLargestGbaRom;
    CartridgeJob job;
    if (makeJob(CartridgeTask::Dump, &job, &m_record.rom))
        readRom(job);
    return m_record.rom;
}

// An MMM01 is multiplexed for more than 512 KiB of ROM, and keeps that until power-off.
bool CartridgeBackup::isLockedByRomJob() const
{
    const auto type = static_cast<std::uint8_t>(m_report.header[kTypeOffset]);
    return m_record.values.system == kSystemGb && type >= kFirstMmm01Type &&
           type <= kLastMmm01Type && m_record.values.romSize.value_or(0) > kPlainMmm01Rom;
}

// A ROM takes its time, and who is in a hurry swaps before its end.
bool CartridgeBackup::isSameCartridge() const
{
    return detectCartridge([](const QString &) {}).header == m_report.header;
}

// Returns: false with the reason in the save's end.
bool CartridgeBackup::hasReadableSave()
{
    BackedUpMemory &save = m_record.save;
    save.danger = dangerOf(m_report, CartridgeTask::ReadSave);
    const bool hasSave = m_record.values.ramSize.has_value();
    if (save.danger != Danger::None)
        save.end = MemoryEnd::Dangerous;
    else if (hasSave && isLockedByRomJob())
        save.end = MemoryEnd::Locked;
    else if (!hasSave)
        save.end = isUnknownGbaGame(m_report) ? MemoryEnd::UnknownGame : MemoryEnd::NoMemory;
    else if (!isSameCartridge())
        save.end = MemoryEnd::Swapped;
    else
        return true;
    return false;
}

void CartridgeBackup::readSave(const CartridgeJob &job)
{
    BackedUpMemory &save = m_record.save;
    CheckedRead made;
    if (!readFirst(job, &made, &save) ||
        !readMore(job, std::max(1, m_plan.reads - 1), &made, &save))
        return;
    SaveEvidence evidence;
    describeSave(save.bytes, &evidence);
    evidence.reads = made.reads;
    evidence.differences = made.differences;
    keep(judgeSave(evidence), kSaveSuffix, true, &save);
}

const BackedUpMemory &CartridgeBackup::backUpSave()
{
    CartridgeJob job;
    if (hasReadableSave() && makeJob(CartridgeTask::ReadSave, &job, &m_record.save))
        readSave(job);
    return m_record.save;
}

// A file of the folder that holds these bytes; empty if there is none.
QString CartridgeBackup::sameFile(const BackedUpMemory &memory, const QString &suffix) const
{
    const QString name = safeFileName(m_record.title);
    const QFileInfoList files =
        QDir(m_plan.folder)
            .entryInfoList({QLatin1Char('*') + suffix}, QDir::Files | QDir::Readable, QDir::Name);
    for (const QFileInfo &file : files) {
        if (file.fileName().startsWith(name) && file.size() == memory.bytes.size() &&
            fileSha1(file.filePath()) == QLatin1String(memory.sha1.toHex()))
            return file.filePath();
    }
    return {};
}

void CartridgeBackup::keep(const Verdict &verdict, const QString &suffix, bool isDated,
                           BackedUpMemory *memory)
{
    memory->verdict = verdict;
    memory->path = sameFile(*memory, suffix);
    memory->isThere = !memory->path.isEmpty();
    if (memory->isThere)
        return;
    const CartridgeState state = memory->outcome.state;
    memory->outcome =
        writeNew(isDated, suffix + markOf(verdict.kind, isDated), memory->bytes, &memory->path);
    memory->outcome.state = state;
    if (!memory->outcome.isDone())
        memory->end = MemoryEnd::NotWritten;
}

QString CartridgeBackup::pathFor(bool isDated, const QString &suffix) const
{
    const QString title = safeFileName(m_record.title);
    return isDated ? datedPath(m_plan.folder, title, m_record.begin, suffix)
                   : freePath(m_plan.folder, title, suffix);
}

Outcome CartridgeBackup::writeNew(bool isDated, const QString &suffix, const QByteArray &bytes,
                                  QString *path)
{
    const QString newPath = pathFor(isDated, suffix);
    PendingFile file(newPath, ExistingFile::Keep);
    Outcome outcome;
    if (file.trouble().isNone() && file.write(bytes) && file.commit()) {
        *path = newPath;
    } else {
        outcome.trouble = Trouble::NoFile;
        outcome.state = afterBoth(m_record.rom.outcome.state, m_record.save.outcome.state);
        outcome.file = file.trouble();
    }
    return outcome;
}

Outcome CartridgeBackup::writeReport(const QString &romAdvice, const QString &saveAdvice)
{
    if (!isNew())
        return {};
    m_record.rom.advice = romAdvice;
    m_record.save.advice = saveAdvice;
    // The clock of the wall may have been set meanwhile.
    m_record.end = m_record.begin.addMSecs(m_sinceBegin.elapsed());
    QString path;
    return writeNew(true, QStringLiteral(".txt"), reportText(m_record).toUtf8(), &path);
}
