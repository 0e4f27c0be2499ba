// The file operations of an 8 MiB MBC5 dump and nothing else: what the mount alone costs. The
// commands are made before the clock starts; no script, no progress, no output file.
//
// usage: bare_client FOLDER      prints milliseconds
#include "device/checksums.h"
#include "device/command_block.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace
{

constexpr std::uint32_t kRomBank = 0x4000;
constexpr std::uint32_t kBanks = 512;

struct BusWrite {
    std::uint16_t address;
    std::uint8_t value;
};

void addBlock(std::vector<std::uint8_t> *run, std::vector<std::uint8_t> body)
{
    body.insert(body.begin(), kSyncByte);
    body.resize(kBlockSize);
    const std::uint16_t crc = crc16Frame(body.data(), kBlockSize);
    body[kCrcHighOffset] = static_cast<std::uint8_t>(crc >> 8);
    body[kCrcLowOffset] = static_cast<std::uint8_t>(crc & 0xFF);
    run->insert(run->end(), body.begin(), body.end());
}

std::vector<std::uint8_t> busWrites(const std::vector<BusWrite> &writes)
{
    std::vector<std::uint8_t> run;
    for (const BusWrite &write : writes)
        addBlock(&run, {2, 13, static_cast<std::uint8_t>(write.address & 0xFF),
                        static_cast<std::uint8_t>(write.address >> 8), write.value});
    return run;
}

std::vector<std::uint8_t> emptyCommand(std::uint8_t commandClass, std::uint8_t opcode)
{
    std::vector<std::uint8_t> run;
    addBlock(&run, {commandClass, opcode});
    return run;
}

void check(bool done, const char *what)
{
    if (done)
        return;
    std::perror(what);
    std::exit(1);
}

void send(int command, const std::vector<std::uint8_t> &run)
{
    check(ftruncate(command, static_cast<off_t>(run.size())) == 0, "cut");
    check(pwrite(command, run.data(), run.size(), 0) == static_cast<ssize_t>(run.size()), "write");
    check(fdatasync(command) == 0, "sync");
}

void readDump(const std::string &path, void *buffer, std::uint32_t length, std::uint32_t offset)
{
    const int file = open(path.c_str(), O_RDONLY | O_DIRECT | O_CLOEXEC);
    check(file >= 0, "open");
    check(pread(file, buffer, length, offset) == static_cast<ssize_t>(length), "read");
    close(file);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: bare_client FOLDER\n");
        return 2;
    }
    const std::string folder = argv[1];
    std::vector<std::vector<std::uint8_t>> commands = {emptyCommand(0xF0, 2), emptyCommand(2, 1)};
    commands.push_back(busWrites({{0x0000, 0}, {0x4000, 0}, {0x3000, 0}, {0x2000, 1}}));
    for (std::uint32_t bank = 2; bank < kBanks; ++bank) {
        const auto low = static_cast<std::uint8_t>(bank & 0xFF);
        commands.push_back(bank == 256 ? busWrites({{0x3000, 1}, {0x2000, 0}})
                                       : busWrites({{0x2000, low}}));
    }
    void *buffer = nullptr;
    check(posix_memalign(&buffer, 4096, 2 * kRomBank) == 0, "memory");

    const auto start = std::chrono::steady_clock::now();
    const int command = open((folder + "/CMD.CMD").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    check(command >= 0, "open CMD.CMD");
    const std::string dump = folder + "/DUMP.ROM";
    send(command, commands[0]);
    send(command, commands[1]);
    send(command, commands[2]);
    readDump(dump, buffer, 2 * kRomBank, 0);
    for (std::size_t i = 3; i < commands.size(); ++i) {
        send(command, commands[i]);
        readDump(dump, buffer, kRomBank, kRomBank);
    }
    close(command);
    const auto end = std::chrono::steady_clock::now();
    std::printf("%.1f\n", std::chrono::duration<double, std::milli>(end - start).count());
    std::free(buffer);
    return 0;
}
