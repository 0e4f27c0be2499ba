#include "trust/verdict.h"

namespace
{

QVector<Reason> faultsOf(const DumpChecks &checks, std::uint32_t size)
{
    QVector<Reason> faults;
    if (size == 0)
        return {{ReasonKind::NoBytes, 0, 0, {}}};
    if (checks.allBytesEqual)
        return {{ReasonKind::AllBytesEqual, 0, 0, {}}};
    if (!checks.logoIsRight)
        faults << Reason{ReasonKind::NoLogo, 0, 0, {}};
    else if (!checks.headerChecksumIsRight)
        faults << Reason{ReasonKind::HeaderChecksumWrong, 0, 0, {}};
    if (checks.logoIsRight && checks.globalChecksumIsRight == false)
        faults << Reason{ReasonKind::GlobalChecksumWrong, 0, 0, {}};
    if (checks.tail == DumpTail::Mirrored)
        faults << Reason{ReasonKind::Mirrored, checks.contentSize, 0, {}};
    if (checks.tail == DumpTail::OpenBus)
        faults << Reason{ReasonKind::OpenBus, checks.contentSize, 0, {}};
    if (checks.logoIsRight && checks.headerSize && *checks.headerSize != size)
        faults << Reason{ReasonKind::OtherSize, *checks.headerSize, size, {}};
    return faults;
}

// What speaks against "consistent" without speaking against the bytes.
QVector<Reason> gapsOf(const RomEvidence &evidence)
{
    QVector<Reason> gaps{{ReasonKind::NotKnown, 0, 0, {}}};
    if (!evidence.checks.globalChecksumIsRight)
        gaps << Reason{ReasonKind::NoChecksum, 0, 0, {}};
    if (evidence.reads == 0)
        gaps << Reason{ReasonKind::NeverSeenRead, 0, 0, {}};
    if (evidence.reads == 1)
        gaps << Reason{ReasonKind::ReadOnce, 0, 0, {}};
    return gaps;
}

Reason equalReads(int reads)
{
    return {ReasonKind::EqualReads, static_cast<std::uint32_t>(reads), 0, {}};
}

Verdict unstable(const QString &differences)
{
    return {VerdictKind::Unstable, {}, {}, {{ReasonKind::ReadsDiffer, 0, 0, differences}}};
}

} // namespace

Verdict judgeRom(const RomEvidence &evidence)
{
    // Two different reads cannot both be right, and nobody knows which one was kept.
    if (!evidence.differences.isEmpty())
        return unstable(evidence.differences);
    if (evidence.known)
        return {VerdictKind::Verified, evidence.known->title, evidence.known->source, {}};
    const QVector<Reason> faults = faultsOf(evidence.checks, evidence.size);
    if (!faults.isEmpty())
        return {VerdictKind::Suspicious, {}, {}, faults};
    if (evidence.reads < 2 || !evidence.checks.globalChecksumIsRight)
        return {VerdictKind::Unverified, {}, {}, gapsOf(evidence)};
    return {VerdictKind::Consistent,
            {},
            {},
            {{ReasonKind::ChecksumsRight, 0, 0, {}},
             equalReads(evidence.reads),
             {ReasonKind::NotKnown, 0, 0, {}},
             {ReasonKind::OrderNotSeen, 0, 0, {}}}};
}

Verdict judgeSave(const SaveEvidence &evidence)
{
    if (!evidence.differences.isEmpty())
        return unstable(evidence.differences);
    if (evidence.allBytesEqual)
        return {VerdictKind::Suspicious, {}, {}, {{ReasonKind::SaveIsBlank, 0, 0, {}}}};
    QVector<Reason> notes;
    if (evidence.reads < 2)
        notes << Reason{ReasonKind::ReadOnce, 0, 0, {}};
    // Some games keep two copies. But so reads a memory whose bank switch does not work.
    if (evidence.contentSize < evidence.size)
        notes << Reason{
            ReasonKind::SaveRepeats, static_cast<std::uint32_t>(evidence.contentSize), 0, {}};
    if (!notes.isEmpty())
        return {VerdictKind::Unverified, {}, {}, notes};
    return {VerdictKind::Consistent, {}, {}, {equalReads(evidence.reads)}};
}

void describeSave(const QByteArray &save, SaveEvidence *evidence)
{
    const auto *bytes = reinterpret_cast<const std::uint8_t *>(save.constData());
    const auto size = static_cast<std::uint32_t>(save.size());
    evidence->size = save.size();
    evidence->allBytesEqual = allBytesEqual(bytes, size);
    evidence->contentSize = static_cast<int>(repeatedContentSize(bytes, size));
}
