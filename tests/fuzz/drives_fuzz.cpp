// Any text as the kernel's table of mounts and as GBDRIVER_DRIVES, for libFuzzer.
//
// Of the table every line stands for itself: what one line says does not depend on the others. A
// row that was read can be written down and is read again. Of the declaration every entry becomes a
// drive or a complaint, and the drives can be declared again.
#include "device/linux_drives.h"
#include "device/mount_table.h"
#include "rule.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace
{

bool isSame(const MountedVolume &a, const MountedVolume &b)
{
    return a.deviceNumber == b.deviceNumber && a.device == b.device && a.folder == b.folder;
}

bool isSame(const std::vector<MountedVolume> &a, const std::vector<MountedVolume> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const MountedVolume &x, const MountedVolume &y) { return isSame(x, y); });
}

// As the kernel does it.
std::string escaped(const std::string &name)
{
    std::string text;
    for (const char letter : name) {
        char octal[8];
        std::snprintf(octal, sizeof octal, "\\%03o", static_cast<unsigned char>(letter));
        text += std::strchr(" \t\n\\", letter) == nullptr ? std::string(1, letter) : octal;
    }
    return text;
}

std::string writtenDown(const std::vector<MountedVolume> &volumes)
{
    std::string table;
    for (const MountedVolume &volume : volumes)
        table += "40 21 " + volume.deviceNumber + " / " + escaped(volume.folder) + " rw - vfat " +
                 escaped(volume.device) + " rw\n";
    return table;
}

bool isDeviceNumber(const std::string &text)
{
    const std::size_t colon = text.find(':');
    return colon != std::string::npos && colon > 0 && colon + 1 < text.size() &&
           text.find_first_not_of("0123456789:") == std::string::npos &&
           text.find(':', colon + 1) == std::string::npos;
}

bool isHiddenByHand(const std::vector<MountedVolume> &volumes, std::size_t index)
{
    for (std::size_t later = index + 1; later < volumes.size(); ++later) {
        const std::string around = volumes[later].folder + "/";
        if (volumes[later].folder == "/" || (volumes[index].folder + "/").find(around) == 0)
            return true;
    }
    return false;
}

void checkMountTable(const std::string &table)
{
    if (table.empty())
        return;
    const std::vector<MountedVolume> volumes = parseMountTable(table);
    // Behind the line in the middle; other inputs have their middle elsewhere.
    const std::size_t cut = std::min(table.find('\n', table.size() / 2), table.size() - 1) + 1;
    std::vector<MountedVolume> inHalves = parseMountTable(table.substr(0, cut));
    for (const MountedVolume &volume : parseMountTable(table.substr(cut)))
        inHalves.push_back(volume);
    require(isSame(volumes, inHalves), "every line stands for itself");
    for (std::size_t row = 0; row < volumes.size(); ++row) {
        require(isDeviceNumber(volumes[row].deviceNumber), "every row has a device number");
        require(volumes[row].folder.compare(0, 1, "/") == 0, "every row has a mount point");
        require(isHiddenMount(volumes, row) == isHiddenByHand(volumes, row),
                "a later mount on it or around it hides a mount, and no other");
    }
    require(isSame(volumes, parseMountTable(writtenDown(volumes))),
            "rows can be written and read again");
}

std::size_t entriesIn(const std::string &declared)
{
    std::size_t entries = 0;
    for (std::size_t i = 0; i < declared.size(); ++i)
        entries += declared[i] != ';' && (i == 0 || declared[i - 1] == ';') ? 1 : 0;
    return entries;
}

void checkDeclaration(const std::string &declared)
{
    std::vector<std::string> complaints;
    const std::vector<LinuxDrive> drives = parseDeclaredDrives(declared, &complaints);
    require(drives.size() + complaints.size() == entriesIn(declared),
            "every entry is a drive or a complaint");
    std::string again;
    char last = 0;
    for (const LinuxDrive &drive : drives) {
        require(drive.letter >= 'A' && drive.letter <= 'Z' && drive.letter > last,
                "drives have letters in rising order");
        require(drive.folder.compare(0, 1, "/") == 0, "folders are absolute");
        require((drive.folder + "/").find("/../") == std::string::npos,
                "folders are in their normal form");
        require(!drive.isMounted && drive.deviceNumber.empty() && drive.device.empty(),
                "a declaration says nothing of devices");
        last = drive.letter;
        again += std::string(1, drive.letter) + "=" + drive.folder + ":" + drive.label + ";";
    }
    std::vector<std::string> none;
    const std::vector<LinuxDrive> same = parseDeclaredDrives(again, &none);
    require(none.empty() && std::equal(drives.begin(), drives.end(), same.begin(), same.end(),
                                       [](const LinuxDrive &a, const LinuxDrive &b) {
                                           return a.letter == b.letter && a.folder == b.folder &&
                                                  a.label == b.label;
                                       }),
            "drives can be declared again");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // Neither the kernel's table nor an environment holds a NUL.
    const auto *text = reinterpret_cast<const char *>(data);
    const std::string input(text, strnlen(text, size));
    checkMountTable(input);
    checkDeclaration(input);
    return 0;
}
