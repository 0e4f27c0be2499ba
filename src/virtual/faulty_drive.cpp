#include "virtual/faulty_drive.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace virtual_reader
{

namespace
{

bool endsWith(const std::string &text, const std::string &end)
{
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// True if a call that moves no bytes fails because of `fault`.
bool hits(const std::optional<DriveFault> &fault)
{
    return fault && fault->code != DriveErrorCode::None;
}

void flipBits(const DriveFault &fault, std::uint8_t *bytes, std::uint32_t count)
{
    for (std::uint32_t i = 0; i < count; ++i) {
        if (fault.flippedByte == DriveFault::kAllBytes || fault.flippedByte == i)
            bytes[i] = static_cast<std::uint8_t>(bytes[i] ^ fault.flips);
    }
}

DriveStatus injected(DriveErrorCode code, const std::string &path)
{
    if (code == DriveErrorCode::None)
        return {};
    return {code, path + ": injected fault"};
}

} // namespace

struct FaultyDrive::State {
    struct Call {
        DriveCall call;
        std::string path;
        std::uint32_t count;
    };
    struct Armed {
        DriveFault fault;
        std::uint32_t seen;
    };

    char letter = 'E';
    bool gone = false;
    std::vector<Armed> faults;
    std::vector<Call> calls;

    bool onDrive(const std::string &path) const
    {
        return path.size() >= 2 && path[0] == letter && path[1] == ':';
    }

    // Counts the call. Returns: the fault that hits it, if any.
    std::optional<DriveFault> enter(DriveCall call, const std::string &path)
    {
        countCall(call, path);
        std::optional<DriveFault> hit;
        for (Armed &armed : faults) {
            const DriveFault &fault = armed.fault;
            if (fault.call != call || !endsWith(path, fault.pathEnd))
                continue;
            const std::uint32_t number = armed.seen++;
            const bool due = number >= fault.after;
            const bool spent =
                fault.times != DriveFault::kForever && number - fault.after >= fault.times;
            if (due && !spent && !hit)
                hit = fault;
        }
        if (hit && hit->driveVanishes)
            gone = true;
        if (hit && hit->happens)
            hit->happens();
        return hit;
    }

    void countCall(DriveCall call, const std::string &path)
    {
        const auto known = std::find_if(calls.begin(), calls.end(), [&](const Call &entry) {
            return entry.call == call && entry.path == path;
        });
        if (known == calls.end())
            calls.push_back({call, path, 1});
        else
            ++known->count;
    }
};

namespace
{

class FaultyFile : public DriveFile
{
public:
    FaultyFile(std::unique_ptr<DriveFile> inner, std::string path,
               std::shared_ptr<FaultyDrive::State> state)
        : m_inner(std::move(inner)), m_path(std::move(path)), m_state(std::move(state))
    {
    }

    void seek(std::uint32_t offset) override { m_inner->seek(offset); }

    DriveStatus read(void *destination, std::uint32_t length, std::uint32_t *count) override
    {
        *count = 0;
        const auto fault = m_state->enter(DriveCall::Read, m_path);
        if (isGone())
            return goneStatus();
        if (!fault)
            return m_inner->read(destination, length, count);
        std::uint32_t moved = 0;
        const std::uint32_t part = std::min(length, fault->bytes);
        const DriveStatus status =
            part == 0 ? DriveStatus{} : m_inner->read(destination, part, &moved);
        if (!status.ok())
            return status;
        flipBits(*fault, static_cast<std::uint8_t *>(destination), moved);
        if (fault->code == DriveErrorCode::None)
            *count = fault->claimsAll ? length : moved;
        return injected(fault->code, m_path);
    }

    DriveStatus write(const void *source, std::uint32_t length, std::uint32_t *count) override
    {
        *count = 0;
        const auto fault = m_state->enter(DriveCall::Write, m_path);
        if (isGone())
            return goneStatus();
        if (!fault)
            return m_inner->write(source, length, count);
        const auto *first = static_cast<const std::uint8_t *>(source);
        std::vector<std::uint8_t> part(first, first + std::min(length, fault->bytes));
        const auto size = static_cast<std::uint32_t>(part.size());
        flipBits(*fault, part.data(), size);
        const DriveStatus status =
            size == 0 ? DriveStatus{} : m_inner->write(part.data(), size, count);
        if (status.ok() && fault->code == DriveErrorCode::None && fault->claimsAll)
            *count = length;
        if (status.ok())
            m_failedWrite = injected(fault->code, m_path);
        return status.ok() ? m_failedWrite : status;
    }

    DriveStatus size(std::uint32_t *size) override
    {
        const auto fault = m_state->enter(DriveCall::Size, m_path);
        if (isGone())
            return goneStatus();
        return hits(fault) ? injected(fault->code, m_path) : m_inner->size(size);
    }

    bool isWhole() const override { return m_inner->isWhole(); }

    DriveStatus reserve(std::uint32_t length) override
    {
        const auto fault = m_state->enter(DriveCall::Reserve, m_path);
        if (isGone())
            return goneStatus();
        return hits(fault) ? injected(fault->code, m_path) : m_inner->reserve(length);
    }

    DriveStatus close() override
    {
        return closeWith([this] { return m_inner->close(); });
    }

    DriveStatus closeAsNew() override
    {
        return closeWith([this] { return m_inner->closeAsNew(); });
    }

private:
    // The inner file is closed either way: descriptors end with a failed close as well. A whole
    // file is given up.
    template <typename Close> DriveStatus closeWith(Close close)
    {
        const auto fault = m_state->enter(DriveCall::Close, m_path);
        DriveStatus failure = hits(fault) ? injected(fault->code, m_path) : m_failedWrite;
        if (m_inner->isWhole() && !failure.ok()) {
            m_inner.reset();
            return failure;
        }
        const DriveStatus status = close();
        if (isGone())
            return goneStatus();
        return hits(fault) ? failure : status;
    }

    bool isGone() const { return m_state->gone && m_state->onDrive(m_path); }
    DriveStatus goneStatus() const { return injected(DriveErrorCode::Gone, m_path); }

    std::unique_ptr<DriveFile> m_inner;
    std::string m_path;
    std::shared_ptr<FaultyDrive::State> m_state;
    DriveStatus m_failedWrite;
};

} // namespace

FaultyDrive::FaultyDrive(DriveBackend &inner, char letter)
    : m_inner(inner), m_state(std::make_shared<State>())
{
    m_state->letter = letter;
}

FaultyDrive::~FaultyDrive() = default;

void FaultyDrive::addFault(DriveFault fault)
{
    m_state->faults.push_back({std::move(fault), 0});
}

void FaultyDrive::clearFaults()
{
    m_state->faults.clear();
}

void FaultyDrive::setGone(bool gone)
{
    m_state->gone = gone;
}

bool FaultyDrive::gone() const
{
    return m_state->gone;
}

std::uint32_t FaultyDrive::callCount(DriveCall call, const std::string &pathEnd) const
{
    std::uint32_t count = 0;
    for (const State::Call &entry : m_state->calls) {
        if (entry.call == call && endsWith(entry.path, pathEnd))
            count += entry.count;
    }
    return count;
}

std::uint32_t FaultyDrive::logicalDrives()
{
    const auto fault = m_state->enter(DriveCall::LogicalDrives, {});
    if (hits(fault) && !fault->driveVanishes)
        return 0;
    const std::uint32_t drives = m_inner.logicalDrives();
    return m_state->gone ? drives & ~(1U << (m_state->letter - 'A')) : drives;
}

DriveType FaultyDrive::driveType(const char *root)
{
    const auto fault = m_state->enter(DriveCall::DriveType, root);
    const bool gone = m_state->gone && m_state->onDrive(root);
    return hits(fault) || gone ? DriveType::NoRoot : m_inner.driveType(root);
}

DriveStatus FaultyDrive::volumeLabel(const char *root, char *label, std::uint32_t capacity)
{
    const auto fault = m_state->enter(DriveCall::VolumeLabel, root);
    if (m_state->gone && m_state->onDrive(root))
        return injected(DriveErrorCode::NotFound, root);
    return hits(fault) ? injected(fault->code, root) : m_inner.volumeLabel(root, label, capacity);
}

std::string FaultyDrive::drivePlace(const char *root)
{
    return m_inner.drivePlace(root);
}

DriveStatus FaultyDrive::openForRead(const char *path, Buffering buffering,
                                     std::unique_ptr<DriveFile> *file)
{
    const auto fault = m_state->enter(DriveCall::OpenForRead, path);
    if (m_state->gone && m_state->onDrive(path))
        return injected(DriveErrorCode::NotFound, path);
    if (hits(fault))
        return injected(fault->code, path);
    std::unique_ptr<DriveFile> inner;
    const DriveStatus status = m_inner.openForRead(path, buffering, &inner);
    if (status.ok())
        *file = std::make_unique<FaultyFile>(std::move(inner), path, m_state);
    return status;
}

DriveStatus FaultyDrive::openForWrite(const char *path, std::unique_ptr<DriveFile> *file)
{
    const auto fault = m_state->enter(DriveCall::OpenForWrite, path);
    if (m_state->gone && m_state->onDrive(path))
        return injected(DriveErrorCode::NotFound, path);
    if (hits(fault))
        return injected(fault->code, path);
    std::unique_ptr<DriveFile> inner;
    const DriveStatus status = m_inner.openForWrite(path, &inner);
    if (status.ok())
        *file = std::make_unique<FaultyFile>(std::move(inner), path, m_state);
    return status;
}

DriveStatus FaultyDrive::mayWrite(const char *path)
{
    const auto fault = m_state->enter(DriveCall::MayWrite, path);
    if (m_state->gone && m_state->onDrive(path))
        return injected(DriveErrorCode::NotFound, path);
    return hits(fault) ? injected(fault->code, path) : m_inner.mayWrite(path);
}

void FaultyDrive::releaseDrive()
{
    m_inner.releaseDrive();
}

} // namespace virtual_reader
