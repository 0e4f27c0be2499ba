#include "trust/known_titles.h"

#include "cart/known_dumps.h"

#include <QCoreApplication>

#include <algorithm>

namespace
{

Sha1Digest digestOf(const QByteArray &sha1)
{
    Sha1Digest digest{};
    std::copy_n(sha1.begin(), qMin<std::size_t>(digest.size(), std::size_t(sha1.size())),
                digest.begin());
    return digest;
}

} // namespace

std::optional<KnownTitle> findKnown(std::uint32_t size, const QByteArray &sha1,
                                    const QVector<DatFile> &tables)
{
    const Sha1Digest digest = digestOf(sha1);
    const std::optional<KnownDump> row = findKnownDump(size, digest);
    // What the catalogue itself doubts proves nothing.
    if (row && !row->isDoubted)
        return KnownTitle{QString::fromUtf8(row->title),
                          QCoreApplication::translate("Words", "known dumps")};
    for (const DatFile &table : tables) {
        if (const DatEntry *entry = findInDat(table, size, digest))
            return KnownTitle{entry->title, table.name};
    }
    return std::nullopt;
}

RomEvidence evidenceOf(const QByteArray &rom, const QByteArray &sha1,
                       const QVector<DatFile> &tables)
{
    const auto size = static_cast<std::uint32_t>(rom.size());
    RomEvidence evidence;
    evidence.size = size;
    evidence.checks = checkDump(reinterpret_cast<const std::uint8_t *>(rom.constData()), size);
    evidence.known = findKnown(size, sha1, tables);
    return evidence;
}
