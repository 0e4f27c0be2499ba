// A mounted virtual reader that sends a signal when it has done its operation number N, before the
// caller learns of that: a signal at an exact moment of a job.
//
// usage: signalling_reader N SIGNAL PID-FILE [options of the virtual reader]
// N 0 is never; +N is counted from the moment that PID-FILE is there. PID-FILE names who gets the
// signal, as soon as it is there; "-" is the reader.
#include "virtual/fuse/operation_log.h"
#include "virtual/fuse/program_options.h"
#include "virtual/fuse/reader_mount.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

using namespace virtual_reader;

namespace
{

// Waits for a number with a line's end behind it.
pid_t readProcessId(const std::string &path)
{
    constexpr useconds_t kPollUs = 1000;
    for (;; ::usleep(kPollUs)) {
        std::ifstream file(path);
        long id = 0;
        if (file >> id && file.get() == '\n')
            return static_cast<pid_t>(id);
    }
}

int fail(const std::string &error)
{
    std::fprintf(stderr, "signalling_reader: %s\n", error.c_str());
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    constexpr int kOwnArguments = 3;
    if (argc <= kOwnArguments)
        return fail("usage: signalling_reader N SIGNAL PID-FILE OPTIONS");
    const long moment = std::atol(argv[1]);
    const int signal = std::atoi(argv[2]);
    const std::string target = argv[kOwnArguments];
    bool isCounting = *argv[1] != '+';
    std::vector<const char *> arguments = {argv[0]};
    arguments.insert(arguments.end(), argv + 1 + kOwnArguments, argv + argc);

    ProgramOptions options;
    std::string error;
    if (!parseProgramOptions(static_cast<int>(arguments.size()), arguments.data(), &options,
                             &error))
        return fail(error);
    const std::unique_ptr<KeptReader> reader = KeptReader::create(options.setup, &error);
    OperationLog log;
    if (reader == nullptr || !log.open(options.logPath, &error))
        return fail(error);
    long done = 0;
    reader->reader().setListener([&](const Operation &operation) {
        log.write(operation);
        isCounting = isCounting || std::ifstream(target).good();
        if (isCounting && ++done == moment)
            ::kill(target == "-" ? ::getpid() : readProcessId(target), signal);
    });
    return serveMount(*reader, options.mount, &error) ? 0 : fail(error);
}
