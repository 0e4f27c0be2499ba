#include "cli/verdict.h"

#include <QJsonArray>

#include <array>

namespace
{

struct KindRow {
    VerdictKind kind;
    const char *word;
    ExitCode code;
    const char *color; // of a terminal: green, yellow, red
};

constexpr std::array<KindRow, 5> kKinds = {{
    {VerdictKind::Verified, "verified", ExitCode::Done, "\033[32m"},
    {VerdictKind::Consistent, "consistent", ExitCode::Done, "\033[32m"},
    {VerdictKind::Unverified, "unverified", ExitCode::Unverified, "\033[33m"},
    {VerdictKind::Unstable, "unstable", ExitCode::DataMismatch, "\033[31m"},
    {VerdictKind::Suspicious, "suspicious", ExitCode::DataMismatch, "\033[31m"},
}};
constexpr char kPlain[] = "\033[0m";

const KindRow &rowOf(VerdictKind kind)
{
    return kKinds[static_cast<std::size_t>(kind)];
}

QStringList faultsOf(const DumpChecks &checks, std::uint32_t size)
{
    QStringList faults;
    if (size == 0)
        return {QStringLiteral("there are no bytes")};
    if (checks.allBytesEqual)
        return {QStringLiteral("all bytes are equal: an empty slot or no contact")};
    if (!checks.logoIsRight)
        faults << QStringLiteral("there is no boot logo in the header");
    else if (!checks.headerChecksumIsRight)
        faults << QStringLiteral("the header's checksum is wrong");
    if (checks.logoIsRight && checks.globalChecksumIsRight == false)
        faults << QStringLiteral("the checksum over the whole ROM is wrong");
    if (checks.tail == DumpTail::Mirrored)
        faults << QStringLiteral("everything from byte %1 repeats what is before")
                      .arg(checks.contentSize);
    if (checks.tail == DumpTail::OpenBus)
        faults << QStringLiteral("from byte %1 no memory answers").arg(checks.contentSize);
    if (checks.logoIsRight && checks.headerSize && *checks.headerSize != size)
        faults << QStringLiteral("the header speaks of %1 bytes, these are %2")
                      .arg(*checks.headerSize)
                      .arg(size);
    return faults;
}

// What speaks against "consistent" without speaking against the bytes.
QStringList gapsOf(const RomEvidence &evidence)
{
    QStringList gaps{QStringLiteral("not a known dump")};
    if (!evidence.checks.globalChecksumIsRight)
        gaps << QStringLiteral("such a ROM has no checksum over all of its bytes");
    if (evidence.reads == 0)
        gaps << QStringLiteral("nobody saw it read twice");
    if (evidence.reads == 1)
        gaps << QStringLiteral("read only once");
    return gaps;
}

QString equalReads(int reads)
{
    return QStringLiteral("%1 equal reads").arg(reads);
}

Verdict unstable(const QString &differences)
{
    return {VerdictKind::Unstable, {}, {}, {QStringLiteral("reads differ in ") + differences}};
}

} // namespace

const char *wordOf(VerdictKind kind)
{
    return rowOf(kind).word;
}

ExitCode exitCodeOf(VerdictKind kind)
{
    return rowOf(kind).code;
}

Verdict judgeRom(const RomEvidence &evidence)
{
    // Two different reads can not both be right, and nobody knows which one was kept.
    if (!evidence.differences.isEmpty())
        return unstable(evidence.differences);
    if (evidence.known)
        return {VerdictKind::Verified, evidence.known->title, evidence.known->source, {}};
    const QStringList faults = faultsOf(evidence.checks, evidence.size);
    if (!faults.isEmpty())
        return {VerdictKind::Suspicious, {}, {}, faults};
    if (evidence.reads < 2 || !evidence.checks.globalChecksumIsRight)
        return {VerdictKind::Unverified, {}, {}, gapsOf(evidence)};
    return {VerdictKind::Consistent,
            {},
            {},
            {QStringLiteral("logo, header checksum and checksum over the whole ROM are right"),
             equalReads(evidence.reads), QStringLiteral("not a known dump")}};
}

Verdict judgeSave(const SaveEvidence &evidence)
{
    if (!evidence.differences.isEmpty())
        return unstable(evidence.differences);
    if (evidence.allBytesEqual)
        return {VerdictKind::Suspicious,
                {},
                {},
                {QStringLiteral("all bytes are equal: an empty save, no contact, or the wrong kind "
                                "of save memory")}};
    QStringList notes;
    // Some games keep two copies. But so reads a memory whose bank switch does not work.
    if (evidence.contentSize < evidence.size)
        notes << QStringLiteral("everything from byte %1 repeats what is before: two copies, or a "
                                "smaller save memory")
                     .arg(evidence.contentSize);
    if (evidence.reads < 2)
        notes.prepend(QStringLiteral("read only once"));
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

QString summaryOf(const Verdict &verdict)
{
    const QString reasons = verdict.kind == VerdictKind::Verified
                                ? QStringLiteral("%1 (%2)").arg(verdict.title, verdict.source)
                                : verdict.reasons.join(QStringLiteral("; "));
    return QLatin1String(wordOf(verdict.kind)) + QStringLiteral(": ") + reasons;
}

void tellVerdict(const Verdict &verdict, const QJsonObject &facts, Reporter &reporter)
{
    const KindRow &row = rowOf(verdict.kind);
    QJsonObject object = facts;
    object.insert(QStringLiteral("verdict"), QLatin1String(row.word));
    object.insert(QStringLiteral("reasons"), QJsonArray::fromStringList(verdict.reasons));
    if (verdict.kind == VerdictKind::Verified) {
        object.insert(QStringLiteral("title"), verdict.title);
        object.insert(QStringLiteral("source"), verdict.source);
    }
    reporter.event("verdict", object);

    const QString summary = summaryOf(verdict);
    reporter.answer(reporter.hasColor() ? QLatin1String(row.color) + summary + QLatin1String(kPlain)
                                        : summary);
    reporter.answer(QStringLiteral("%1: %2 bytes, SHA-1 %3")
                        .arg(facts.value(QStringLiteral("file")).toString())
                        .arg(facts.value(QStringLiteral("size")).toInt())
                        .arg(facts.value(QStringLiteral("sha1")).toString()));
}
