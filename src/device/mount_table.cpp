#include "device/mount_table.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>

#include <libmount.h>
#include <sys/sysmacros.h>

namespace
{

std::string textOf(const char *text)
{
    return text == nullptr ? std::string() : std::string(text);
}

std::string numberOf(dev_t device)
{
    return std::to_string(major(device)) + ':' + std::to_string(minor(device));
}

// The lines that begin as rows do. The library takes the first line for an example of all others.
std::string rowsOf(const std::string &text)
{
    std::string rows;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        const std::string line = text.substr(start, end - start);
        start = end + 1;
        unsigned id = 0;
        unsigned parent = 0;
        if (std::sscanf(line.c_str(), "%u %u", &id, &parent) == 2)
            rows += line + '\n';
    }
    return rows;
}

// A folder is inside of itself.
bool isInside(const std::string &folder, const std::string &around)
{
    if (folder.compare(0, around.size(), around) != 0)
        return false;
    return folder.size() == around.size() || around == "/" || folder[around.size()] == '/';
}

// Of a type of its own: a pointer to the library's function loses that function's attributes, and
// newer headers have compilers complain.
struct StreamCloser {
    void operator()(std::FILE *stream) const { std::fclose(stream); }
};

} // namespace

std::vector<MountedVolume> parseMountTable(const std::string &text)
{
    std::vector<MountedVolume> volumes;
    std::string rows = rowsOf(text);
    if (rows.empty()) // no stream has no bytes
        return volumes;
    const std::unique_ptr<std::FILE, StreamCloser> stream(
        ::fmemopen(rows.data(), rows.size(), "r"));
    // Parsing touches no mount point; the library's own look at them needs a cache, and none is
    // set.
    const std::unique_ptr<libmnt_table, decltype(&mnt_unref_table)> table(mnt_new_table(),
                                                                          &mnt_unref_table);
    const std::unique_ptr<libmnt_iter, decltype(&mnt_free_iter)> place(
        mnt_new_iter(MNT_ITER_FORWARD), &mnt_free_iter);
    if (!stream || !table || !place ||
        mnt_table_parse_stream(table.get(), stream.get(), "mountinfo") != 0)
        return volumes;
    libmnt_fs *entry = nullptr;
    while (mnt_table_next_fs(table.get(), place.get(), &entry) == 0) {
        MountedVolume volume = {numberOf(mnt_fs_get_devno(entry)), textOf(mnt_fs_get_source(entry)),
                                textOf(mnt_fs_get_target(entry))};
        if (volume.folder.compare(0, 1, "/") == 0)
            volumes.push_back(std::move(volume));
    }
    return volumes;
}

std::vector<MountedVolume> readMountTable(const char *path)
{
    std::ifstream file(path);
    return parseMountTable({std::istreambuf_iterator<char>(file), {}});
}

bool isHiddenMount(const std::vector<MountedVolume> &volumes, std::size_t index)
{
    const auto volume = volumes.begin() + static_cast<std::ptrdiff_t>(index);
    return std::any_of(volume + 1, volumes.end(), [&](const MountedVolume &later) {
        return isInside(volume->folder, later.folder);
    });
}
