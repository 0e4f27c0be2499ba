#include "virtual/fuse/reader_mount.h"

#include "virtual/fuse/file_callbacks.h"

#include <fuse_opt.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace virtual_reader
{

namespace
{

bool failed(const std::string &reason, std::string *error)
{
    *error = reason;
    return false;
}

// What libfuse would report less clearly.
bool canMount(const std::string &mountPoint, std::string *error)
{
    if (access("/dev/fuse", R_OK | W_OK) != 0) {
        const std::string hint = errno == ENOENT ? "; is the kernel module fuse loaded?" : "";
        return failed("cannot use /dev/fuse: " + (std::strerror(errno) + hint), error);
    }
    struct stat status = {};
    if (stat(mountPoint.c_str(), &status) != 0)
        return failed("cannot mount on " + mountPoint + ": " + std::strerror(errno), error);
    if (!S_ISDIR(status.st_mode))
        return failed("cannot mount on " + mountPoint + ": it is not a folder", error);
    return true;
}

// Owns what libfuse hands out, and takes it down in the right order.
class Session
{
public:
    ~Session()
    {
        if (m_mounted)
            fuse_session_unmount(m_session);
        if (m_handlesSignals)
            fuse_remove_signal_handlers(m_session);
        if (m_session != nullptr)
            fuse_session_destroy(m_session);
        fuse_opt_free_args(&m_arguments);
    }

    bool mount(MountedReader &state, const MountRequest &request, std::string *error)
    {
        if (!addArguments(request.label))
            return failed("out of memory", error);
        const fuse_lowlevel_ops operations = fileCallbacks();
        m_session = fuse_session_new(&m_arguments, &operations, sizeof operations, &state);
        m_handlesSignals = m_session != nullptr && fuse_set_signal_handlers(m_session) == 0;
        if (!m_handlesSignals)
            return failed("libfuse cannot start a session", error);
        m_mounted = fuse_session_mount(m_session, request.mountPoint.c_str()) == 0;
        return m_mounted || failed("libfuse cannot mount on " + request.mountPoint, error);
    }

    bool serve(std::string *error)
    {
        // Positive: the signal that ended it.
        const int result = fuse_session_loop(m_session);
        return result >= 0 || failed(std::string("libfuse: ") + std::strerror(-result), error);
    }

private:
    bool addArguments(const std::string &label)
    {
        char *options = nullptr;
        const bool added = fuse_opt_add_opt_escaped(&options, ("fsname=" + label).c_str()) == 0 &&
                           fuse_opt_add_opt(&options, "subtype=gbdriver") == 0 &&
                           fuse_opt_add_arg(&m_arguments, "gbdriver-virtual-reader") == 0 &&
                           fuse_opt_add_arg(&m_arguments, "-o") == 0 &&
                           fuse_opt_add_arg(&m_arguments, options) == 0;
        std::free(options);
        return added;
    }

    fuse_args m_arguments = {0, nullptr, 0};
    fuse_session *m_session = nullptr;
    bool m_handlesSignals = false;
    bool m_mounted = false;
};

} // namespace

bool serveMount(KeptReader &reader, const MountRequest &request, std::string *error)
{
    if (!canMount(request.mountPoint, error))
        return false;
    MountedReader state(reader);
    Session session;
    if (!session.mount(state, request, error))
        return false;
    std::printf("mounted %s\n", request.mountPoint.c_str());
    std::fflush(stdout);
    // The parent ends within fuse_daemonize(), without running destructors.
    if (request.background && fuse_daemonize(0) != 0)
        return failed("cannot go to the background", error);
    return session.serve(error);
}

} // namespace virtual_reader
