#include "device/user_file.h"

#include <algorithm>

namespace
{

// Not ".part" alone: other programs have files of that kind, and these are to be removed.
constexpr char kMark[] = ".gbdriver-";
constexpr char kEnd[] = ".part";

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// Cut between characters: half of one is no text in UTF-8.
std::string cut(const std::string &name, std::size_t longest)
{
    if (name.size() <= longest)
        return name;
    std::size_t length = longest;
    while (length > 0 && isContinuation(name[length]))
        --length;
    return name.substr(0, length);
}

} // namespace

std::string temporaryName(const std::string &name, int number, std::size_t longest)
{
    const std::string end = kMark + std::to_string(number) + kEnd;
    return cut(name, longest - std::min(longest, end.size())) + end;
}

bool isTemporaryName(const std::string &name)
{
    const std::size_t mark = name.rfind(kMark);
    if (mark == std::string::npos || mark == 0)
        return false;
    const std::size_t first = mark + sizeof(kMark) - 1;
    const std::size_t last = name.find_first_not_of("0123456789", first);
    return last != first && last != std::string::npos &&
           name.compare(last, std::string::npos, kEnd) == 0;
}
