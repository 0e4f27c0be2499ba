// The program gbdriver-virtual-reader with a cartridge, mounted in a folder of its own, for tests
// that use it through plain system calls.
#pragma once

#include "command_blocks.h"

#include <QFile>
#include <QJsonObject>
#include <QList>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <memory>

constexpr int kDeadlineMs = 20000;
constexpr std::size_t kMiB = 1024 * 1024;

// Page-aligned memory, as unbuffered reads want it.
class AlignedBuffer
{
public:
    explicit AlignedBuffer(std::size_t size)
        : m_bytes(
              static_cast<std::uint8_t *>(std::aligned_alloc(4096, (size + 4095) / 4096 * 4096)))
    {
        std::fill_n(m_bytes.get(), size, std::uint8_t{0});
    }
    std::uint8_t *data() { return m_bytes.get(); }

private:
    struct Free {
        void operator()(std::uint8_t *bytes) const { std::free(bytes); }
    };
    std::unique_ptr<std::uint8_t, Free> m_bytes;
};

// A descriptor that closes itself.
class Descriptor
{
public:
    Descriptor(const QString &path, int flags)
        : m_descriptor(::open(QFile::encodeName(path).constData(), flags, 0644)), m_errno(errno)
    {
    }
    ~Descriptor() { close(); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    operator int() const { return m_descriptor; }
    int openError() const { return m_errno; }
    int close()
    {
        const int result = m_descriptor >= 0 ? ::close(m_descriptor) : 0;
        m_descriptor = -1;
        return result;
    }

private:
    int m_descriptor;
    int m_errno;
};

// Whether anything is mounted on `folder`.
bool isMounted(const QString &folder);

class MountBench
{
protected:
    // A fresh folder with an image and a mount point. Returns: what is missing; empty on success.
    QString prepare();
    // Ends the program, if one runs, and removes the folder. Returns: as unmount().
    bool isDone();

    // In the mounted folder, and beside it.
    QString file(const char *name) const { return m_mountPoint + "/" + name; }
    QString path(const char *name) const { return m_folder->filePath(name); }

    // Starts the program with more options, and waits for the mount. Returns: false if there is
    // none.
    bool mountReader(QStringList arguments = {});
    // Ends the program by a signal. Returns: whether it ended well, and the mount is gone.
    bool unmount(int signal = SIGTERM);
    // Writes a command file, and closes it. Returns: false if either fails.
    bool send(const virtual_reader::ByteVector &run);
    // Reads DUMP.ROM unbuffered; empty on failure.
    virtual_reader::ByteVector readDump(off_t offset, std::size_t length);
    // The operations of one kind in the log so far; a line that is no JSON object ends the test.
    QList<QJsonObject> logLines(const QString &operation) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QProcess> m_program; // null: none was started, or it has been seen to end
    QString m_mountPoint;
    virtual_reader::ByteVector m_image; // MBC5, 1 MiB, 32 KiB of RAM
};
