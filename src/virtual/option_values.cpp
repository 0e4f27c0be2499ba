#include "virtual/option_values.h"

#include <cerrno>
#include <cstdlib>
#include <limits>

namespace virtual_reader
{

bool parseNumber(const std::string &text, std::uint64_t *value, std::string *rest)
{
    if (text.empty() || text[0] < '0' || text[0] > '9')
        return false;
    char *end = nullptr;
    errno = 0;
    *value = std::strtoull(text.c_str(), &end, 0);
    *rest = end;
    return errno == 0;
}

bool parseCount(const std::string &text, std::uint32_t *count)
{
    std::uint64_t value = 0;
    std::string rest;
    if (!parseNumber(text, &value, &rest) || !rest.empty() || value == 0 ||
        value > std::numeric_limits<std::uint32_t>::max())
        return false;
    *count = static_cast<std::uint32_t>(value);
    return true;
}

bool parseSize(const std::string &text, std::uint32_t *size)
{
    std::uint64_t value = 0;
    std::string suffix;
    if (!parseNumber(text, &value, &suffix) || value > std::numeric_limits<std::uint32_t>::max())
        return false;
    if (suffix == "K" || suffix == "k")
        value <<= 10;
    else if (suffix == "M" || suffix == "m")
        value <<= 20;
    else if (!suffix.empty())
        return false;
    *size = static_cast<std::uint32_t>(value);
    return value == *size;
}

} // namespace virtual_reader
