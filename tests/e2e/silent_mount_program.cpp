// Mounts a file system that never answers, as a dead server's or a hung program's looks. It stands
// until standard input ends, so that it cannot outlive the test that started it.
//
// usage: silent_mount FOLDER SOURCE
#define FUSE_USE_VERSION 35
#include <fuse_lowlevel.h>

#include <cstdio>
#include <string>

#include <unistd.h>

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fputs("usage: silent_mount FOLDER SOURCE\n", stderr);
        return 2;
    }
    std::string source = std::string("-ofsname=") + argv[2];
    char *arguments[] = {argv[0], source.data(), nullptr};
    fuse_args args = FUSE_ARGS_INIT(2, arguments);
    const fuse_lowlevel_ops none = {};
    fuse_session *session = fuse_session_new(&args, &none, sizeof(none), nullptr);
    if (session == nullptr || fuse_session_mount(session, argv[1]) != 0) {
        std::fputs("silent_mount: cannot mount\n", stderr);
        return 1;
    }
    std::puts("mounted");
    std::fflush(stdout);
    // No request is ever read, so whoever looks into the folder waits.
    char byte = 0;
    while (::read(STDIN_FILENO, &byte, 1) > 0) {
    }
    fuse_session_unmount(session);
    fuse_session_destroy(session);
    return 0;
}
