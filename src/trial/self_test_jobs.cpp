#include "trial/self_test_jobs.h"

#include "cart/setting_tables.h"
#include "trial/plain_text.h"
#include "trial/trial_bench.h"
#include "worker/job_words.h"

#include <QDir>
#include <QElapsedTimer>

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kKibi = 1024;
constexpr std::uint32_t kMebi = 1024 * kKibi;
constexpr char kAllBits = '\xFF';
constexpr char kLowNibble = 0x0F;

// Three quarters of a size that ROMs have: no cartridge has it.
constexpr int kRefusedSize = 3 * 16 * 1024;
// Reads of a dump that still go through before the drive is pulled out.
constexpr std::uint32_t kReadsBeforeLeaving = 3;

bool isGba(const SelfTestRow &row)
{
    return QLatin1String(row.script) == QLatin1String(kGbaScript);
}

TrialCartridge cartridgeOf(const SelfTestRow &row)
{
    constexpr GbaSaveType kSaveTypes[] = {GbaSaveType::Sram, GbaSaveType::Flash,
                                          GbaSaveType::Eeprom};
    TrialCartridge cartridge;
    cartridge.isGba = isGba(row);
    cartridge.headerType = row.headerType;
    cartridge.romSize = row.romSize;
    cartridge.ramSize = row.ramSize;
    if (cartridge.isGba && row.ramSize != 0) {
        cartridge.options.saveType = kSaveTypes[row.choice];
        cartridge.options.saveSize = row.ramSize;
    }
    if (row.kind == SelfTestKind::Flash)
        cartridge.options.flash = row.choice == 0 ? FlashWidth::Byte : FlashWidth::Word;
    return cartridge;
}

// Why the job failed; of an end that has no line of its own in the log as well.
QString causeOf(const JobResult &result)
{
    switch (result.end) {
    case JobEnd::NoScript:
        return QStringLiteral("dump core script error");
    case JobEnd::Cancelled:
        return QStringLiteral("The erase does not end.");
    default:
        return reasonOf(result);
    }
}

// Why a job that should have succeeded has not; empty if it has.
QString failureOf(const JobResult &result)
{
    if (result.end != JobEnd::Done)
        return QStringLiteral("failed: ") + causeOf(result);
    if (result.movedBytes != result.wantedBytes)
        return QStringLiteral("only %1 of %2 bytes were moved")
            .arg(result.movedBytes)
            .arg(result.wantedBytes);
    return result.driveError.isEmpty() ? QString() : QStringLiteral("drive: ") + result.driveError;
}

// Where two images differ in `bits`; empty if they do not. `what` begins the text.
QString difference(const QString &what, const QByteArray &found, const QByteArray &expected,
                   char bits = kAllBits)
{
    if (found.size() != expected.size())
        return QStringLiteral("%1 has %2 bytes instead of %3")
            .arg(what)
            .arg(found.size())
            .arg(expected.size());
    int count = 0;
    int first = 0;
    for (int i = found.size() - 1; i >= 0; --i) {
        if (((found[i] ^ expected[i]) & bits) == 0)
            continue;
        ++count;
        first = i;
    }
    return count == 0 ? QString()
                      : QStringLiteral("%1 is wrong in %2 bytes, the first at 0x%3")
                            .arg(what)
                            .arg(count)
                            .arg(first, 0, 16);
}

// One row at work.
class RowRun
{
public:
    RowRun(const SelfTestRow &row, const QString &scriptFolder)
        : m_row(row), m_scriptPath(QDir(scriptFolder).filePath(QLatin1String(row.script))),
          m_bench(cartridgeOf(row))
    {
    }

    QString problem()
    {
        switch (m_row.kind) {
        case SelfTestKind::Dump:
            return dumpProblem(m_bench.image());
        case SelfTestKind::SaveRoundTrip:
            return saveProblem();
        case SelfTestKind::Flash:
            return flashProblem();
        case SelfTestKind::RefusedSize:
            return refusalProblem();
        case SelfTestKind::NoReader:
            m_bench.drive().setGone(true);
            return failProblem(romSize(), JobEnd::NoReader);
        case SelfTestKind::ReaderLeaves:
            leaveDuringDump();
            return failProblem(romSize(), JobEnd::ScriptFailed);
        }
        return QString();
    }

    qint64 bytes() const { return m_bytes; }

private:
    int romSize() const { return static_cast<int>(m_row.romSize); }

    JobResult runJob(JobCode gb, JobCode gba, int size, const QByteArray &input = QByteArray())
    {
        CartridgeJob job;
        job.operate = isGba(m_row) ? gba : gb;
        job.scriptPath = m_scriptPath;
        job.romSize = size;
        job.ramSize = size;
        job.saveType = m_row.choice;
        job.flashWidth = m_row.choice;
        const JobResult result = m_bench.run(job, input).result;
        m_bytes += result.movedBytes;
        return result;
    }

    QString dumpProblem(const QByteArray &game)
    {
        const JobResult run = runJob(GB_READ_ROM, GBA_READ_ROM, game.size());
        const QString failure = failureOf(run);
        return failure.isEmpty() ? difference(QStringLiteral("the dump"), run.bytes, game)
                                 : failure;
    }

    QString saveProblem()
    {
        const QByteArray save = trialNoise(static_cast<int>(m_row.ramSize));
        const JobResult written = runJob(GB_WRITE_RAM, GBA_WRITE_RAM, save.size(), save);
        QString problem = failureOf(written);
        if (problem.isEmpty())
            problem = difference(QStringLiteral("the save in the cartridge"), m_bench.save(), save,
                                 m_row.saveBits);
        if (!problem.isEmpty())
            return QStringLiteral("write: ") + problem;
        const JobResult read = runJob(GB_READ_RAM, GBA_READ_RAM, save.size());
        problem = failureOf(read);
        if (problem.isEmpty())
            problem = difference(QStringLiteral("the save file"), read.bytes, save, m_row.saveBits);
        return problem.isEmpty() ? QString() : QStringLiteral("read: ") + problem;
    }

    QString flashProblem()
    {
        const QByteArray game = trialImage(cartridgeOf(m_row), 2);
        QString problem = failureOf(runJob(GB_WRITE_FLASH, GBA_WRITE_FLASH, game.size(), game));
        if (problem.isEmpty())
            problem = difference(QStringLiteral("the flash chip"), m_bench.rom(), game);
        return problem.isEmpty() ? dumpProblem(game) : problem;
    }

    void leaveDuringDump()
    {
        DriveFault fault;
        fault.call = DriveCall::Read;
        fault.pathEnd = "DUMP.ROM";
        fault.after = kReadsBeforeLeaving;
        fault.driveVanishes = true;
        m_bench.drive().addFault(fault);
    }

    // A script that fails whatever it is asked for has refused nothing: the right size must do.
    QString refusalProblem()
    {
        const QString problem = failProblem(kRefusedSize, JobEnd::Refused);
        return problem.isEmpty() ? dumpProblem(m_bench.image()) : problem;
    }

    // A dump that must fail in this way.
    QString failProblem(int size, JobEnd end)
    {
        const JobResult result = runJob(GB_READ_ROM, GBA_READ_ROM, size);
        if (result.end == JobEnd::Done)
            return QStringLiteral("reported success");
        return result.end == end ? QString()
                                 : QStringLiteral("failed for another reason: ") + causeOf(result);
    }

    const SelfTestRow &m_row;
    QString m_scriptPath;
    TrialBench m_bench;
    qint64 m_bytes = 0;
};

} // namespace

const std::array<SelfTestRow, 22> kSelfTestRows = {{
    {"dump, no mapper", SelfTestKind::Dump, "gb_mbc0.nut", 0x00, 32 * kKibi, 0, 0, kAllBits},
    {"dump, MMM01", SelfTestKind::Dump, "gb_mbc0.nut", 0x0D, 512 * kKibi, 0, 0, kAllBits},
    {"dump, MBC1", SelfTestKind::Dump, "gb_mbc1.nut", 0x03, 2 * kMebi, 8 * kKibi, 0, kAllBits},
    {"dump, MBC2", SelfTestKind::Dump, "gb_mbc2.nut", 0x06, 256 * kKibi, 0, 0, kAllBits},
    {"dump, MBC3", SelfTestKind::Dump, "gb_mbc3.nut", 0x13, 2 * kMebi, 32 * kKibi, 0, kAllBits},
    {"dump, MBC5", SelfTestKind::Dump, "gb_mbc5.nut", 0x1B, 8 * kMebi, 8 * kKibi, 0, kAllBits},
    {"dump, MBC7", SelfTestKind::Dump, "gb_mbc7.nut", 0x22, 1 * kMebi, 0, 0, kAllBits},
    {"dump, TAMA5", SelfTestKind::Dump, "gb_tama5.nut", 0xFD, 512 * kKibi, 0, 0, kAllBits},
    {"dump, GBA", SelfTestKind::Dump, "gba.nut", 0, 8 * kMebi, 0, 0, kAllBits},
    {"save, MBC1", SelfTestKind::SaveRoundTrip, "gb_mbc1.nut", 0x03, 512 * kKibi, 32 * kKibi, 0,
     kAllBits},
    {"save, MBC2", SelfTestKind::SaveRoundTrip, "gb_mbc2.nut", 0x06, 256 * kKibi, 512, 0,
     kLowNibble},
    {"save, MBC3", SelfTestKind::SaveRoundTrip, "gb_mbc3.nut", 0x13, 512 * kKibi, 64 * kKibi, 0,
     kAllBits},
    {"save, MBC5", SelfTestKind::SaveRoundTrip, "gb_mbc5.nut", 0x1B, 512 * kKibi, 128 * kKibi, 0,
     kAllBits},
    {"save, HuC1", SelfTestKind::SaveRoundTrip, "gb_tama5.nut", 0xFF, 512 * kKibi, 32 * kKibi, 0,
     kAllBits},
    {"save, GBA SRAM", SelfTestKind::SaveRoundTrip, "gba.nut", 0, 4 * kMebi, 32 * kKibi, kSaveSram,
     kAllBits},
    {"save, GBA FLASH", SelfTestKind::SaveRoundTrip, "gba.nut", 0, 4 * kMebi, 128 * kKibi,
     kSaveFlash, kAllBits},
    {"save, GBA EEPROM", SelfTestKind::SaveRoundTrip, "gba.nut", 0, 4 * kMebi, 8 * kKibi,
     kSaveEeprom, kAllBits},
    {"flash, 8-bit chip", SelfTestKind::Flash, "gb_mbc5.nut", 0x1B, 512 * kKibi, 8 * kKibi, 0,
     kAllBits},
    {"flash, 16-bit chip", SelfTestKind::Flash, "gb_mbc5.nut", 0x1B, 512 * kKibi, 8 * kKibi, 1,
     kAllBits},
    {"must fail: impossible size", SelfTestKind::RefusedSize, "gb_mbc5.nut", 0x1B, 64 * kKibi,
     8 * kKibi, 0, kAllBits},
    {"must fail: no reader", SelfTestKind::NoReader, "gb_mbc5.nut", 0x1B, 64 * kKibi, 8 * kKibi, 0,
     kAllBits},
    {"must fail: reader pulled out", SelfTestKind::ReaderLeaves, "gb_mbc5.nut", 0x1B, 512 * kKibi,
     8 * kKibi, 0, kAllBits},
}};

SelfTestResult runSelfTestRow(const SelfTestRow &row, const QString &scriptFolder)
{
    QElapsedTimer timer;
    timer.start();
    RowRun run(row, scriptFolder);
    SelfTestResult result;
    result.problem = withoutPaths(run.problem(), scriptFolder);
    result.bytes = run.bytes();
    result.timeMs = timer.elapsed();
    return result;
}
