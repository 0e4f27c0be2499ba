#include "device/mount_table.h"

#include <algorithm>
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

// A folder is inside of itself.
bool isInside(const std::string &folder, const std::string &around)
{
    if (folder.compare(0, around.size(), around) != 0)
        return false;
    return folder.size() == around.size() || around == "/" || folder[around.size()] == '/';
}

} // namespace

std::vector<MountedVolume> readMountTable(const char *path)
{
    // Parsing touches no mount point; the library's own look at them needs a cache, and none is
    // set.
    const std::unique_ptr<libmnt_table, decltype(&mnt_unref_table)> table(
        mnt_new_table_from_file(path), &mnt_unref_table);
    const std::unique_ptr<libmnt_iter, decltype(&mnt_free_iter)> place(
        mnt_new_iter(MNT_ITER_FORWARD), &mnt_free_iter);
    std::vector<MountedVolume> volumes;
    libmnt_fs *entry = nullptr;
    while (table && place && mnt_table_next_fs(table.get(), place.get(), &entry) == 0)
        volumes.push_back({numberOf(mnt_fs_get_devno(entry)), textOf(mnt_fs_get_source(entry)),
                           textOf(mnt_fs_get_target(entry))});
    return volumes;
}

bool isHiddenMount(const std::vector<MountedVolume> &volumes, std::size_t index)
{
    const auto volume = volumes.begin() + static_cast<std::ptrdiff_t>(index);
    return std::any_of(volume + 1, volumes.end(), [&](const MountedVolume &later) {
        return isInside(volume->folder, later.folder);
    });
}
