#include "ending_bench.h"

#include "files.h"
#include "samples.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

#include <algorithm>

namespace
{

constexpr int kMoments = 15;
constexpr std::uint32_t kKibi = 1024;
constexpr std::uint8_t kMbc5RamBattery = 0x1B;
constexpr std::uint32_t kRomSize = 256 * kKibi;
constexpr std::uint32_t kSaveSize = 32 * kKibi;
const char kOldFile[] = "what stood here before";

// The bytes that a flash chip takes as the begin of an erase go to one of these, by its width.
constexpr int kEraseCode = 0x80;
constexpr std::array<int, 2> kEraseAddresses = {0x555, 0xAAA};

QByteArray romOf(std::uint64_t seed)
{
    return toByteArray(gbImage({kMbc5RamBattery, kRomSize, kSaveSize, "VIRTUAL", seed}));
}

QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden);
}

bool isPart(const QString &name)
{
    return name.endsWith(".part");
}

bool touchesFlash(const QJsonObject &block)
{
    const QString name = block["name"].toString();
    const int address = block["address"].toInt();
    const bool isEraseAddress = std::count(kEraseAddresses.begin(), kEraseAddresses.end(), address);
    return name.startsWith("gb-program") ||
           (name == "gb-write" && isEraseAddress && block["value"].toInt() == kEraseCode);
}

} // namespace

EndingBench::EndingBench(const EndedJob &job, const Ending &ending)
    : m_job(job), m_ending(ending), m_rom(romOf(1)), m_save(noise(static_cast<int>(kSaveSize), 1)),
      m_newSave(noise(static_cast<int>(kSaveSize), 2)),
      m_reader({SIGNALLING_READER_PROGRAM,
                (ending.isCounted ? "+" : "") + QString::number(ending.moment),
                QString::number(ending.signal), ending.isReaders ? "-" : path("pid")})
{
}

QString EndingBench::prepare()
{
    putFile(path("cart.gb"), m_rom);
    putFile(path("chip.sav"), m_save);
    putFile(path("new.sav"), m_newSave);
    putFile(path("new.gb"), romOf(2));
    QDir(path()).mkdir("made");
    if (!m_job.target.isEmpty())
        putFile(target(), kOldFile);
    QStringList options;
    if (m_job.isFlash)
        options = QStringList{"--flash", "16", "--erase-polls", "0"};
    return m_reader.start(path("cart.gb"), path("chip.sav"), options);
}

void EndingBench::aim(qint64 process)
{
    m_before = m_ending.isCounted ? m_reader.operations().size() : 0;
    putFile(path("pid"), QByteArray::number(process) + '\n');
}

QStringList EndingBench::problemsBehind(const EndedProgram &program)
{
    return readerProblems() + fileProblems() + cartridgeProblems(program);
}

// Of a killed reader the mount stands, and serves nobody.
QStringList EndingBench::readerProblems()
{
    QStringList problems;
    const bool isGone = m_ending.isReaders && m_ending.moment != 0;
    const bool isMounted = !isGone || isKilled();
    if (isGone && !m_reader.waitForEnd())
        problems << "the reader does not end";
    const QString refusal = isMounted ? unmountFolder(m_reader.folder()) : QString();
    if (!refusal.isEmpty())
        problems << "the drive is not free: " + refusal;
    if (!m_reader.waitForEnd())
        problems << "the reader does not end";
    return problems;
}

QStringList EndingBench::fileProblems() const
{
    QStringList problems;
    if (!m_job.target.isEmpty() && !QFileInfo::exists(target()))
        problems << m_job.target + " is gone";
    for (const QString &name : namesIn(path("made"))) {
        const QByteArray content = contentOf(path("made/" + name));
        if (isPart(name) && !isKilled())
            problems << name + " is left";
        else if (name.endsWith(".sav") && content != m_save && content != kOldFile)
            problems << name + " is no whole save";
        else if (name.endsWith(".gb") && content != m_rom && content != kOldFile)
            problems << name + " is no whole ROM";
        else if (name.endsWith(".unverified") && content != m_rom && content != m_save)
            problems << name + " is no whole read";
    }
    return problems;
}

bool EndingBench::hasBackup(const QString &folder) const
{
    const QStringList names = namesIn(folder);
    return std::any_of(names.begin(), names.end(), [&](const QString &name) {
        return !isPart(name) &&
               contentOf(QDir(folder).filePath(name)) == (m_job.isFlash ? m_rom : m_save);
    });
}

bool EndingBench::isFlashTouched() const
{
    for (const QJsonObject &operation : m_reader.operations()) {
        const QJsonArray blocks = operation["blocks"].toArray();
        if (std::any_of(blocks.begin(), blocks.end(),
                        [](const QJsonValue &block) { return touchesFlash(block.toObject()); }))
            return true;
    }
    return false;
}

QStringList EndingBench::cartridgeProblems(const EndedProgram &program) const
{
    QStringList problems;
    const QByteArray save = contentOf(path("chip.sav"));
    const bool isSaveWritten = m_job.target.isEmpty() && !m_job.isFlash;
    if (save.size() != m_save.size())
        problems << "the chip's file is not whole";
    if (save != m_save && !(isSaveWritten && hasBackup(program.backupFolder)))
        problems << "the save is LOST";
    if (m_job.isFlash && isFlashTouched() && !hasBackup(program.backupFolder))
        problems << "the ROM is LOST";
    if (isSaveWritten && program.claimsToHaveWritten && save != m_newSave)
        problems << "called done, but not written";
    const QStringList backups = namesIn(program.backupFolder);
    if (!isKilled() && std::any_of(backups.begin(), backups.end(), isPart))
        problems << "half a backup is left";
    return problems;
}

QVector<int> momentsOf(int operations)
{
    const int count = std::min(kMoments, operations);
    QVector<int> moments;
    for (int i = 0; i < count; ++i)
        moments << 1 + (operations - 1) * i / std::max(1, count - 1);
    return moments;
}

QVector<int> signalsAt(int moment, const QVector<int> &signalNumbers)
{
    if (qEnvironmentVariableIsSet("GBDRIVER_ALL_FAULTS"))
        return signalNumbers;
    return {signalNumbers[moment % signalNumbers.size()]};
}
