#include "script/script_limits.h"

#include "script/script_source.h"

#include <QElapsedTimer>
#include <QThread>

#include <csetjmp>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace
{

// Whatever follows nested data to their end takes less stack than these take memory: 8 MiB were
// enough for all kinds. Four times as much, for other compilers.
constexpr std::size_t kStackBytes = 4 * kScriptMemoryBytes;
// Left for what is called without a look at the depth.
constexpr std::size_t kStackReserve = 1024 * 1024;
constexpr std::size_t kBlockCost = 32; // what the C library and the list of blocks take
constexpr unsigned kEventsPerLook = 16;

// Before every block; 16 bytes keep what follows aligned.
struct Block {
    Block *previous;
    Block *next;
};
static_assert(sizeof(Block) % alignof(std::max_align_t) == 0 || sizeof(Block) == 16);

struct ScriptRun {
    explicit ScriptRun(RunningJob &whatJob) : job(whatJob) { sinceNative.start(); }

    RunningJob &job;
    Block blocks = {&blocks, &blocks};
    std::size_t used = 0;
    const char *stackEnd = nullptr;
    std::jmp_buf escape;
    bool canEscape = false;
    ScriptStop stop = ScriptStop::None;
    QElapsedTimer sinceNative;
    unsigned events = 0;
    const SQChar *source = nullptr; // compared only; the machine may have freed it
    SQInteger line = 0;
    char sourceName[64] = {}; // its end
};

thread_local ScriptRun *currentRun = nullptr;
int silenceMs = kSilenceMs;

class ScriptThread : public QThread
{
public:
    explicit ScriptThread(std::function<void()> work) : m_work(std::move(work))
    {
        setStackSize(kStackBytes);
    }
    bool hasRun = false;

private:
    void run() override
    {
        hasRun = true;
        m_work();
    }

    std::function<void()> m_work;
};

// Goes back to stepWithinLimits(), past everything that the machine is in. The library leaves its
// compiler in the same way.
[[noreturn]] void giveUp(ScriptRun &run, ScriptStop stop)
{
    run.stop = stop;
    run.canEscape = false;
    std::longjmp(run.escape, 1);
}

void takeMemory(std::size_t more)
{
    ScriptRun *run = currentRun;
    if (run == nullptr)
        return;
    checkScriptDepth();
    if (run->canEscape &&
        (more > kScriptMemoryBytes || run->used + more + kBlockCost > kScriptMemoryBytes))
        giveUp(*run, ScriptStop::Memory);
    run->used += more + kBlockCost;
}

void giveBackMemory(std::size_t less)
{
    if (currentRun != nullptr)
        currentRun->used -= less + kBlockCost;
}

void link(Block *block)
{
    if (currentRun == nullptr) {
        *block = {block, block};
        return;
    }
    Block &first = currentRun->blocks;
    *block = {&first, first.next};
    first.next->previous = block;
    first.next = block;
}

void unlink(Block *block)
{
    block->previous->next = block->next;
    block->next->previous = block->previous;
}

// The library does not look at what it gets, so there is nothing that could be returned instead.
void *linked(void *memory)
{
    if (memory == nullptr && currentRun != nullptr && currentRun->canEscape)
        giveUp(*currentRun, ScriptStop::Memory);
    if (memory == nullptr)
        std::abort();
    auto *block = static_cast<Block *>(memory);
    link(block);
    return block + 1;
}

// A name of source texts stays at its place as long as its machine needs it.
void notePlace(ScriptRun &run, const SQChar *source, SQInteger line)
{
    run.line = line;
    if (source == run.source || source == nullptr)
        return;
    run.source = source;
    const std::size_t length = std::strlen(source);
    const std::size_t room = sizeof(run.sourceName) - 1;
    std::strcpy(run.sourceName, length > room ? source + (length - room) : source);
}

void onMachineEvent(HSQUIRRELVM /*v*/, SQInteger /*type*/, const SQChar *source, SQInteger line,
                    const SQChar * /*function*/)
{
    ScriptRun *run = currentRun;
    if (run == nullptr)
        return;
    notePlace(*run, source, line);
    checkScriptDepth();
    if (++run->events % kEventsPerLook != 0 || run->sinceNative.elapsed() < silenceMs)
        return;
    if (run->canEscape && run->job.listener.endsSilentScript())
        giveUp(*run, ScriptStop::Silence);
}

} // namespace

// The library's own, which it leaves out of a program that has others: a static library is searched
// only for what is still missing, and a shared one asks the program first.
void *sq_vm_malloc(SQUnsignedInteger size);
void *sq_vm_realloc(void *memory, SQUnsignedInteger oldSize, SQUnsignedInteger size);
void sq_vm_free(void *memory, SQUnsignedInteger size);

void *sq_vm_malloc(SQUnsignedInteger size)
{
    takeMemory(size);
    return linked(std::malloc(sizeof(Block) + size));
}

void *sq_vm_realloc(void *memory, SQUnsignedInteger oldSize, SQUnsignedInteger size)
{
    if (memory == nullptr)
        return sq_vm_malloc(size);
    takeMemory(size);
    giveBackMemory(oldSize);
    Block *block = static_cast<Block *>(memory) - 1;
    unlink(block);
    return linked(std::realloc(block, sizeof(Block) + size));
}

void sq_vm_free(void *memory, SQUnsignedInteger size)
{
    if (memory == nullptr)
        return;
    giveBackMemory(size);
    Block *block = static_cast<Block *>(memory) - 1;
    unlink(block);
    std::free(block);
}

bool runWithinLimits(RunningJob &job, const std::function<void()> &work)
{
    ScriptThread thread([&] {
        ScriptRun run(job);
        run.stackEnd =
            static_cast<const char *>(__builtin_frame_address(0)) - (kStackBytes - kStackReserve);
        currentRun = &run;
        work();
        currentRun = nullptr;
    });
    thread.start();
    thread.wait();
    return thread.hasRun;
}

bool stepWithinLimits(const std::function<void()> &step)
{
    if (currentRun == nullptr) {
        step();
        return true;
    }
    if (currentRun->stop != ScriptStop::None)
        return false;
    currentRun->canEscape = true;
    if (setjmp(currentRun->escape) == 0)
        step();
    currentRun->canEscape = false;
    return currentRun->stop == ScriptStop::None;
}

ScriptStop scriptStop()
{
    return currentRun == nullptr ? ScriptStop::None : currentRun->stop;
}

QString scriptStopPlace()
{
    if (currentRun == nullptr || currentRun->source == nullptr)
        return QString();
    const ScriptRun &run = *currentRun;
    const int line = run.job.sources.lineOf(run.sourceName, static_cast<int>(run.line));
    return placeText(QString::fromLocal8Bit(run.sourceName), line);
}

QString scriptStopText(ScriptStop stop)
{
    switch (stop) {
    case ScriptStop::None:
        break;
    case ScriptStop::Memory:
        return QObject::tr("the script needs more than %1 MiB of memory")
            .arg(kScriptMemoryBytes / (1024 * 1024));
    case ScriptStop::Depth:
        return QObject::tr("the script is nested too deeply");
    case ScriptStop::Silence:
        return QObject::tr("the script did nothing with the cartridge for %1 seconds")
            .arg(kSilenceMs / 1000);
    }
    return QString();
}

void dropMachineMemory()
{
    Block &first = currentRun->blocks;
    while (first.next != &first) {
        Block *block = first.next;
        unlink(block);
        std::free(block);
    }
    currentRun->used = 0;
}

std::size_t machineMemoryUsed()
{
    return currentRun == nullptr ? 0 : currentRun->used;
}

void checkScriptDepth()
{
    ScriptRun *run = currentRun;
    if (run != nullptr && run->canEscape &&
        static_cast<const char *>(__builtin_frame_address(0)) < run->stackEnd)
        giveUp(*run, ScriptStop::Depth);
}

void noteNativeCall()
{
    if (currentRun != nullptr)
        currentRun->sinceNative.start();
}

void setSilence(int timeMs)
{
    silenceMs = timeMs;
}

void watchMachine(HSQUIRRELVM v)
{
    sq_enabledebuginfo(v, SQTrue);
    sq_setnativedebughook(v, onMachineEvent);
}
