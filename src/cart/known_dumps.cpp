#include "cart/known_dumps.h"

#include "cart/known_dump_table.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace
{

constexpr std::string_view kDoubt = "bad dump?";

bool isBefore(const KnownDumpRecord &record, const Sha1Digest &sha1)
{
    return std::memcmp(record.sha1, sha1.data(), sha1.size()) < 0;
}

// Title of `record` if it is an image with this SHA-1; nullptr if not, as at the end of the table.
const char *titleOf(const KnownDumpRecord *record, const Sha1Digest &sha1)
{
    const bool isThere = record != knownDumpRecords + knownDumpCount &&
                         std::equal(sha1.begin(), sha1.end(), record->sha1);
    return isThere ? knownDumpTitles + record->title : nullptr;
}

} // namespace

std::optional<KnownDump> findKnownDump(std::uint32_t size, const Sha1Digest &sha1)
{
    const KnownDumpRecord *record =
        std::lower_bound(knownDumpRecords, knownDumpRecords + knownDumpCount, sha1, isBefore);
    const char *title = titleOf(record, sha1);
    if (!title || record->size != size)
        return std::nullopt;
    KnownDump dump;
    dump.system = kKnownDumpSystems[record->system];
    dump.title = title;
    dump.otherTitle = titleOf(record + 1, sha1);
    dump.size = record->size;
    dump.crc32 = record->crc32;
    dump.sha1 = record->sha1;
    dump.isDoubted = std::string_view(title).find(kDoubt) != std::string_view::npos;
    return dump;
}
