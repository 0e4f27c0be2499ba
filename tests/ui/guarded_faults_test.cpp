// No single fault loses what a job of the window replaces: whatever call on the reader or on the
// user's files goes wrong, aloud or in silence, the old bytes are where they were or in the backup
// folder, and nothing is called right that is not.
#include "drive_faults.h"
#include "log_check.h"
#include "reader_fixture.h"
#include "test_class.h"

#include "cart/setting_tables.h"
#include "script/erase_poll.h"
#include "ui/guarded_job.h"
#include "ui/settings.h"
#include "worker/famicom_thread.h"

#include <QDirIterator>
#include <QEventLoop>
#include <QtTest>

#include <array>
#include <atomic>
#include <functional>

using namespace virtual_reader;

namespace
{

constexpr int kKiB = 1024;
constexpr int kJobTimeoutMs = 60000;
constexpr std::size_t kCallKinds = static_cast<std::size_t>(DriveCall::Reserve) + 1;

struct FaultCase {
    std::function<std::unique_ptr<Cartridge>()> cartridge;
    CartridgeJob job;
    int mapper = kMapperMbc5Row;
    QByteArray file; // what is written, or what a read replaces
    // Where a job makes many calls, one way to fail is tried for every `stride`th of them, all ways
    // by turns. 0: all ways for every call.
    std::uint32_t stride = 0;

    bool isWrite() const { return isWriteJob(job.operate); }
};

struct FaultRun {
    QByteArray old;                                // what was in the chip that the job is about
    QByteArray found;                              // what is in it now
    QByteArray file;                               // the user's, now
    QMap<QString, QByteArray> backups;             // by path
    QStringList leftovers;                         // temporary files
    QString judgement;                             // its first line
    QString judgements;                            // all of them
    std::array<std::uint32_t, kCallKinds> calls{}; // by DriveCall
};

CartridgeJob jobOf(int operate, const char *script)
{
    CartridgeJob job;
    job.operate = operate;
    job.scriptPath = ReaderFixture::scriptPath(script);
    return job;
}

FaultCase gbSave(int operate)
{
    FaultCase bench;
    bench.cartridge = [] { return makeGbCartridge(0x1B, 64 * kKiB, 8 * kKiB); };
    bench.job = jobOf(operate, "gb_mbc5.nut");
    bench.job.ramSize = 8 * kKiB;
    bench.file = noise(8 * kKiB, 8);
    return bench;
}

FaultCase gbaSave(int operate)
{
    FaultCase bench;
    bench.cartridge = [] {
        CartridgeOptions options;
        options.saveType = GbaSaveType::Flash;
        options.saveSize = 64 * kKiB;
        auto cartridge = cartridgeOf(gbaGame("ZVRE"), options);
        putSave(cartridge.get(), noise(64 * kKiB, 7));
        return cartridge;
    };
    bench.job = jobOf(operate, kGbaScript);
    bench.job.saveType = kSaveFlash;
    bench.job.ramSize = 64 * kKiB;
    bench.file = noise(64 * kKiB, 8);
    bench.stride = 1;
    return bench;
}

ByteVector gbGame(int size, std::uint64_t seed)
{
    const std::uint8_t type = size == 32 * kKiB ? 0x00 : 0x1B;
    return gbImage({type, static_cast<std::uint32_t>(size), 0, "VIRTUAL", seed});
}

// Several banks of the smallest chip that says how large it is, behind an MBC5; or, without a
// mapper, one pair of banks of a chip that does not.
FaultCase gbFlash(FlashWidth width, int size)
{
    constexpr std::uint8_t kSizeCodeOfMebibyte = 20;
    constexpr std::uint8_t kUnknownSizeCode = 15;
    const bool isSmall = size == 32 * kKiB;
    FaultCase bench;
    bench.cartridge = [=] {
        CartridgeOptions options;
        options.flash = width;
        options.flashSize = isSmall ? 0 : 1024 * kKiB;
        options.flashChip.sizeCode = isSmall ? kUnknownSizeCode : kSizeCodeOfMebibyte;
        return cartridgeOf(gbGame(size, 1), options);
    };
    bench.mapper = isSmall ? 0 : kMapperMbc5Row;
    bench.job = jobOf(GB_WRITE_FLASH, isSmall ? "gb_mbc0.nut" : "gb_mbc5.nut");
    bench.job.flashWidth = width == FlashWidth::Word ? 1 : 0;
    bench.file = toByteArray(gbGame(size, 2));
    return bench;
}

// What a chip holds is compared without its erased rest.
QByteArray withoutErasedEnd(const QByteArray &bytes, int least)
{
    const QByteArray rest = bytes.mid(least);
    return rest.count('\xFF') == rest.size() ? bytes.left(least) : bytes;
}

FaultCase every(std::uint32_t stride, FaultCase bench)
{
    bench.stride = stride;
    return bench;
}

// Looks at an erase before the user presses Cancel; virtual chips need three.
constexpr int kMostLooks = 50;
std::atomic<int> looksLeft{0};
FamicomThread *polling = nullptr;

void countLook(unsigned long /*timeMs*/)
{
    if (--looksLeft == 0)
        polling->canceled();
}

// One tab, as a user has it, and a new reader for each of its jobs.
class FaultTable
{
public:
    explicit FaultTable(const FaultCase &bench) : m_case(bench)
    {
        // Whoever compares is sure to notice.
        m_tab.settings->setCheck(Qt::Checked);
        m_tab.settings->selectItem1(bench.mapper);
        m_tab.guarded->readsUnknownTwice = true;
    }

    FaultRun run(const std::vector<DriveFault> &faults = {})
    {
        ReaderFixture fixture(m_case.cartridge());
        ReaderFixture::addShippedScripts();
        setPollWaiter(countLook);
        FaultRun run;
        run.old = content(&fixture);
        const auto before = callsOf(&fixture);
        for (const DriveFault &fault : faults)
            fixture.drive().addFault(fault);
        give(fixture.addFile("file", m_case.file), fixture.path("backups"));
        run.found = content(&fixture);
        run.calls = callsOf(&fixture);
        for (std::size_t kind = 0; kind < kCallKinds; ++kind)
            run.calls[kind] -= before[kind];
        lookAround(fixture.path(), &run);
        return run;
    }

private:
    QByteArray content(ReaderFixture *fixture) const
    {
        return movesSave(m_case.job.operate) ? fixture->save()
                                             : withoutErasedEnd(fixture->rom(), m_case.file.size());
    }

    static std::array<std::uint32_t, kCallKinds> callsOf(ReaderFixture *fixture)
    {
        std::array<std::uint32_t, kCallKinds> calls{};
        for (std::size_t kind = 0; kind < kCallKinds; ++kind)
            calls[kind] = fixture->drive().callCount(static_cast<DriveCall>(kind));
        return calls;
    }

    // What an action does behind its dialog.
    void give(const QString &path, const QString &backupFolder)
    {
        m_tab.guarded->backupFolder = backupFolder;
        m_tab.console->clear();
        m_tab.worker->operate = m_case.job.operate;
        m_tab.worker->script_name = m_case.job.scriptPath;
        m_tab.worker->file_name = path;
        m_tab.worker->ram_size = m_case.job.ramSize;
        m_tab.worker->save_type = m_case.job.saveType;
        m_tab.worker->flash_width = m_case.job.flashWidth;
        m_tab.worker->verify = true;
        polling = m_tab.worker;
        looksLeft = kMostLooks;
        m_tab.setEnabledButtons(false);
        m_tab.guarded->start();
        waitForEnd();
    }

    void waitForEnd()
    {
        QEventLoop loop;
        QObject::connect(m_tab.guarded, &GuardedJob::changed, &loop, [&] {
            if (!m_tab.guarded->isBusy())
                loop.quit();
        });
        QTimer::singleShot(kJobTimeoutMs, &loop, [] { qFatal("the job does not end"); });
        if (m_tab.guarded->isBusy())
            loop.exec();
    }

    void lookAround(const QString &folder, FaultRun *run)
    {
        run->judgement = judgementsOf(m_tab).value(0);
        run->judgements = judgementsOf(m_tab).join('\n');
        run->file = contentOf(folder + "/file");
        QDirIterator all(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (all.hasNext()) {
            const QString path = all.next();
            if (path.endsWith(".part"))
                run->leftovers << path;
            else if (path.contains("/backups/"))
                run->backups[path] = contentOf(path);
        }
    }

    const FaultCase &m_case;
    MainTab m_tab;
};

bool isBackupOf(const QByteArray &backup, const QByteArray &bytes)
{
    return !bytes.isEmpty() && withoutErasedEnd(backup, bytes.size()) == bytes;
}

// The bytes are in the one file of the backup folder, and the judgement names it.
bool areKept(const FaultRun &run, const QByteArray &bytes)
{
    return run.backups.size() == 1 && isBackupOf(run.backups.first(), bytes) &&
           run.judgements.contains(run.backups.firstKey());
}

QStringList problemsOfWrite(const FaultCase &bench, const FaultRun &run)
{
    QStringList problems;
    const bool isTouched = run.found != run.old;
    if (isTouched && !areKept(run, run.old))
        problems << "what the chip held is LOST";
    if (run.judgement.startsWith("written: ") && run.found != bench.file)
        problems << "called written, but the chip holds something else";
    if (run.backups.size() > 1 ||
        (!run.backups.isEmpty() && !isBackupOf(run.backups.first(), run.old)))
        problems << "a backup that is none";
    const bool saysUnwritten = run.judgements.contains("the cartridge is as it was") ||
                               run.judgements.contains("The write was not begun");
    if (isTouched && saysUnwritten)
        problems << "it says that the cartridge is as it was";
    if (run.file != bench.file)
        problems << "the user's file has changed";
    return problems;
}

QStringList problemsOfRead(const FaultCase &bench, const FaultRun &run)
{
    QStringList problems;
    const bool isGood = run.judgement.startsWith("consistent: ");
    if (run.found != run.old)
        problems << "a read has changed the cartridge";
    if (isGood && run.file != run.old)
        problems << "called consistent, but the file is something else";
    if (!isGood && run.file != bench.file && !areKept(run, bench.file))
        problems << "what the file held is LOST";
    return problems;
}

QStringList problemsOf(const FaultCase &bench, const FaultRun &run)
{
    QStringList problems =
        bench.isWrite() ? problemsOfWrite(bench, run) : problemsOfRead(bench, run);
    if (!run.leftovers.isEmpty())
        problems << "temporary files are left: " + run.leftovers.join(", ");
    if (run.judgement.isEmpty())
        problems << "it says nothing";
    return problems;
}

// The ways of call number `number`, each with its fault set to that call.
QVector<NamedFault> waysFor(const FaultCase &bench, DriveCall call, std::uint32_t number)
{
    QVector<NamedFault> all = waysToFail(call);
    for (NamedFault &way : all)
        way.fault.after = number;
    if (bench.stride == 0 || qEnvironmentVariableIsSet("GBDRIVER_ALL_FAULTS"))
        return all;
    if (number % bench.stride != 0)
        return {};
    return {all[static_cast<int>(number / bench.stride) % all.size()]};
}

} // namespace

Q_DECLARE_METATYPE(FaultCase)

class GuardedFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanRunIsCalledRight_data() { addCases(); }
    void cleanRunIsCalledRight();
    void noSingleFaultLosesAByte_data() { addCases(); }
    void noSingleFaultLosesAByte();

private:
    static void addCases();
};

void GuardedFaultsTest::addCases()
{
    QTest::addColumn<FaultCase>("bench");
    QTest::newRow("GB save written") << gbSave(GB_WRITE_RAM);
    QTest::newRow("GBA FLASH save written") << gbaSave(GBA_WRITE_RAM);
    QTest::newRow("flash, 8 bit") << gbFlash(FlashWidth::Byte, 32 * kKiB);
    QTest::newRow("flash, 16 bit") << gbFlash(FlashWidth::Word, 32 * kKiB);
    QTest::newRow("flash, 4 banks") << every(8, gbFlash(FlashWidth::Word, 64 * kKiB));
    QTest::newRow("GB save read over an old file") << gbSave(GB_READ_RAM);
    QTest::newRow("GBA FLASH save read over an old file") << gbaSave(GBA_READ_RAM);
}

void GuardedFaultsTest::cleanRunIsCalledRight()
{
    QFETCH(FaultCase, bench);
    const FaultRun run = FaultTable(bench).run();
    QVERIFY(run.old != bench.file);
    if (bench.isWrite()) {
        QCOMPARE(run.judgement,
                 QString("written: %1 bytes, read back and equal").arg(bench.file.size()));
        QVERIFY(run.found == bench.file);
        QVERIFY(areKept(run, run.old));
    } else {
        QCOMPARE(run.judgement, QString("consistent: 2 equal reads"));
        QVERIFY(run.file == run.old);
    }
    QCOMPARE(problemsOf(bench, run), QStringList());
}

void GuardedFaultsTest::noSingleFaultLosesAByte()
{
    QFETCH(FaultCase, bench);
    FaultTable table(bench);
    const FaultRun clean = table.run();
    int injected = 0;
    int problems = 0;
    for (std::size_t kind = 0; kind < kCallKinds; ++kind) {
        for (std::uint32_t number = 0; number < clean.calls[kind]; ++number) {
            for (const NamedFault &way : waysFor(bench, static_cast<DriveCall>(kind), number)) {
                ++injected;
                const FaultRun run = table.run({way.fault});
                for (const QString &problem : problemsOf(bench, run)) {
                    ++problems;
                    qWarning("call kind %d, number %u, %s: %s\n%s", int(kind), number, way.name,
                             qPrintable(problem), qPrintable(run.judgements));
                }
            }
        }
    }
    qInfo("%d faults injected, %d problems", injected, problems);
    QVERIFY(injected > 0);
    QCOMPARE(problems, 0);
}

GBDRIVER_TEST(GuardedFaultsTest, gui)
#include "guarded_faults_test.moc"
