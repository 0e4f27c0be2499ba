#include "virtual/fuse/file_callbacks.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <optional>

namespace virtual_reader
{

namespace
{

// The file system never changes by itself, so the kernel may keep what it knows.
constexpr double kKeepForever = 1e6;
constexpr fuse_ino_t kFirstFileInode = FUSE_ROOT_ID + 1; // files follow in the order of ReaderFile

MountedReader &mounted(fuse_req_t request)
{
    return *static_cast<MountedReader *>(fuse_req_userdata(request));
}

std::optional<ReaderFile> fileOf(fuse_ino_t inode)
{
    if (inode < kFirstFileInode || inode >= kFirstFileInode + kReaderFileCount)
        return std::nullopt;
    return static_cast<ReaderFile>(inode - kFirstFileInode);
}

bool isCommandFile(fuse_ino_t inode)
{
    return fileOf(inode) == ReaderFile::Command;
}

bool mayWrite(const fuse_file_info *info)
{
    return (info->flags & O_ACCMODE) != O_RDONLY;
}

struct stat attributes(MountedReader &state, fuse_ino_t inode)
{
    struct stat result = {};
    result.st_ino = inode;
    result.st_uid = getuid();
    result.st_gid = getgid();
    result.st_blksize = kReaderSectorSize;
    const auto file = fileOf(inode);
    if (!file) {
        result.st_mode = S_IFDIR | 0755;
        result.st_nlink = 2;
        return result;
    }
    result.st_mode = S_IFREG | (isCommandFile(inode) ? 0644U : 0444U);
    result.st_nlink = 1;
    result.st_size = static_cast<off_t>(
        isCommandFile(inode) ? state.commandFile.size() : state.reader.reader().fileSize(*file));
    result.st_blocks = (result.st_size + kReaderSectorSize - 1) / kReaderSectorSize;
    return result;
}

void resizeCommandFile(MountedReader &state, std::size_t size)
{
    state.commandFile.resize(size);
    state.commandFileChanged = true;
}

// Executes the command file if it changed. Returns: an error number, 0 for none.
int takeEffect(MountedReader &state)
{
    if (!state.commandFileChanged)
        return 0;
    state.commandFileChanged = false;
    std::string error;
    const ByteVector &bytes = state.commandFile;
    if (state.reader.commandFileWritten(bytes.data(), bytes.size(), &error))
        return 0;
    std::fprintf(stderr, "gbdriver-virtual-reader: %s\n", error.c_str());
    return EIO;
}

void onInit(void *, fuse_conn_info *connection)
{
    // Pieces of a split read must arrive in order.
    connection->want &= ~static_cast<unsigned>(FUSE_CAP_ASYNC_DIO);
}

void onLookup(fuse_req_t request, fuse_ino_t, const char *name)
{
    const auto *end = std::end(kReaderFileNames);
    const auto *found = std::find_if(std::begin(kReaderFileNames), end, [name](const char *known) {
        return std::strcmp(known, name) == 0;
    });
    if (found == end) {
        fuse_reply_err(request, ENOENT);
        return;
    }
    fuse_entry_param entry = {};
    entry.ino = kFirstFileInode + static_cast<fuse_ino_t>(found - std::begin(kReaderFileNames));
    entry.attr = attributes(mounted(request), entry.ino);
    entry.attr_timeout = kKeepForever;
    entry.entry_timeout = kKeepForever;
    fuse_reply_entry(request, &entry);
}

void replyAttributes(fuse_req_t request, fuse_ino_t inode)
{
    const struct stat result = attributes(mounted(request), inode);
    fuse_reply_attr(request, &result, kKeepForever);
}

void onGetAttributes(fuse_req_t request, fuse_ino_t inode, fuse_file_info *)
{
    replyAttributes(request, inode);
}

// Only the size of the command file can be set; times and modes are accepted and forgotten, as on
// a FAT volume.
void onSetAttributes(fuse_req_t request, fuse_ino_t inode, struct stat *wanted, int which,
                     fuse_file_info *)
{
    if ((which & FUSE_SET_ATTR_SIZE) != 0) {
        if (!isCommandFile(inode)) {
            fuse_reply_err(request, EACCES);
            return;
        }
        if (wanted->st_size > static_cast<off_t>(kCommandFileLimit)) {
            fuse_reply_err(request, ENOSPC);
            return;
        }
        resizeCommandFile(mounted(request), static_cast<std::size_t>(wanted->st_size));
    }
    replyAttributes(request, inode);
}

void onOpen(fuse_req_t request, fuse_ino_t inode, fuse_file_info *info)
{
    if (mayWrite(info) && !isCommandFile(inode)) {
        fuse_reply_err(request, EACCES);
        return;
    }
    if (mounted(request).reader.reader().isGone()) {
        fuse_reply_err(request, EIO); // as of a drive that was pulled out while it was mounted
        return;
    }
    if (mayWrite(info) && (info->flags & O_TRUNC) != 0)
        resizeCommandFile(mounted(request), 0);
    info->direct_io = 1;
    info->fh = mayWrite(info) ? 1 : 0; // flush does not get the flags
    fuse_reply_open(request, info);
}

void replyCommandBytes(fuse_req_t request, std::size_t length, std::size_t offset)
{
    const ByteVector &bytes = mounted(request).commandFile;
    const std::size_t start = std::min(offset, bytes.size());
    const std::size_t count = std::min(length, bytes.size() - start);
    fuse_reply_buf(request, reinterpret_cast<const char *>(bytes.data()) + start, count);
}

void onRead(fuse_req_t request, fuse_ino_t inode, std::size_t length, off_t offset,
            fuse_file_info *info)
{
    const auto file = fileOf(inode);
    if (!file) {
        fuse_reply_err(request, EISDIR);
        return;
    }
    if (isCommandFile(inode)) {
        replyCommandBytes(request, length, static_cast<std::size_t>(offset));
        return;
    }
    MountedReader &state = mounted(request);
    state.readBuffer.resize(std::max(state.readBuffer.size(), length));
    // Offsets that do not fit are as far beyond the end as the largest one that does.
    constexpr off_t kLargestOffset = UINT32_MAX - UINT32_MAX % kReaderSectorSize;
    const auto count = state.reader.reader().readFile(
        *file, static_cast<std::uint32_t>(std::min(offset, kLargestOffset)),
        state.readBuffer.data(), static_cast<std::uint32_t>(length), (info->flags & O_DIRECT) != 0);
    if (count)
        fuse_reply_buf(request, reinterpret_cast<const char *>(state.readBuffer.data()), *count);
    else
        fuse_reply_err(request, state.reader.reader().isGone() ? EIO : EINVAL);
}

// Reached only through a descriptor that onOpen() let write.
void onWrite(fuse_req_t request, fuse_ino_t, const char *bytes, std::size_t length, off_t offset,
             fuse_file_info *)
{
    MountedReader &state = mounted(request);
    const std::size_t start = static_cast<std::size_t>(offset);
    if (start > kCommandFileLimit || length > kCommandFileLimit - start) {
        fuse_reply_err(request, ENOSPC);
        return;
    }
    resizeCommandFile(state, std::max(state.commandFile.size(), start + length));
    std::copy_n(bytes, length, state.commandFile.begin() + offset);
    // A device fails while data go to it, and not everybody asks whether a file was closed well.
    if (state.reader.reader().failsNextRun())
        fuse_reply_err(request, takeEffect(state));
    else
        fuse_reply_write(request, length);
}

void onFlush(fuse_req_t request, fuse_ino_t, fuse_file_info *info)
{
    fuse_reply_err(request, info->fh != 0 ? takeEffect(mounted(request)) : 0);
}

void onSync(fuse_req_t request, fuse_ino_t inode, int, fuse_file_info *)
{
    fuse_reply_err(request, isCommandFile(inode) ? takeEffect(mounted(request)) : 0);
}

void onReadFolder(fuse_req_t request, fuse_ino_t inode, std::size_t size, off_t offset,
                  fuse_file_info *)
{
    if (inode != FUSE_ROOT_ID) {
        fuse_reply_err(request, ENOTDIR);
        return;
    }
    const char *const names[] = {".", "..", kReaderFileNames[0], kReaderFileNames[1],
                                 kReaderFileNames[2]};
    std::vector<char> list(size);
    std::size_t used = 0;
    for (std::size_t i = static_cast<std::size_t>(offset); i < std::size(names); ++i) {
        const fuse_ino_t entryInode = i < 2 ? FUSE_ROOT_ID : kFirstFileInode + i - 2;
        const struct stat entry = attributes(mounted(request), entryInode);
        const std::size_t needed = fuse_add_direntry(request, list.data() + used, size - used,
                                                     names[i], &entry, static_cast<off_t>(i + 1));
        if (needed > size - used)
            break;
        used += needed;
    }
    fuse_reply_buf(request, list.data(), used);
}

void onFileSystemStatus(fuse_req_t request, fuse_ino_t)
{
    struct statvfs status = {};
    status.f_bsize = kReaderSectorSize;
    status.f_frsize = kReaderSectorSize;
    status.f_blocks = (kCommandFileLimit + kDriverFileSize + kDumpFileSize) / kReaderSectorSize;
    status.f_files = kReaderFileCount;
    status.f_namemax = 255;
    fuse_reply_statfs(request, &status);
}

// The reader has its three files and no others: nothing can be made, removed or renamed.
void onMakeNode(fuse_req_t request, fuse_ino_t, const char *, mode_t, dev_t)
{
    fuse_reply_err(request, EACCES);
}

void onMakeFolder(fuse_req_t request, fuse_ino_t, const char *, mode_t)
{
    fuse_reply_err(request, EACCES);
}

void onCreate(fuse_req_t request, fuse_ino_t, const char *, mode_t, fuse_file_info *)
{
    fuse_reply_err(request, EACCES);
}

void onUnlink(fuse_req_t request, fuse_ino_t, const char *)
{
    fuse_reply_err(request, EACCES);
}

void onRename(fuse_req_t request, fuse_ino_t, const char *, fuse_ino_t, const char *, unsigned)
{
    fuse_reply_err(request, EACCES);
}

void onLink(fuse_req_t request, fuse_ino_t, fuse_ino_t, const char *)
{
    fuse_reply_err(request, EACCES);
}

void onSymbolicLink(fuse_req_t request, const char *, fuse_ino_t, const char *)
{
    fuse_reply_err(request, EACCES);
}

} // namespace

fuse_lowlevel_ops fileCallbacks()
{
    fuse_lowlevel_ops operations = {};
    operations.init = onInit;
    operations.lookup = onLookup;
    operations.getattr = onGetAttributes;
    operations.setattr = onSetAttributes;
    operations.open = onOpen;
    operations.read = onRead;
    operations.write = onWrite;
    operations.flush = onFlush;
    operations.fsync = onSync;
    operations.readdir = onReadFolder;
    operations.statfs = onFileSystemStatus;
    operations.mknod = onMakeNode;
    operations.mkdir = onMakeFolder;
    operations.create = onCreate;
    operations.unlink = onUnlink;
    operations.rmdir = onUnlink;
    operations.rename = onRename;
    operations.link = onLink;
    operations.symlink = onSymbolicLink;
    return operations;
}

} // namespace virtual_reader
