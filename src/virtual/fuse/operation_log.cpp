#include "virtual/fuse/operation_log.h"

#include <cerrno>
#include <cstring>

namespace virtual_reader
{

bool OperationLog::open(const std::string &path, std::string *error)
{
    m_stream.reset(std::fopen(path.c_str(), "we"));
    if (m_stream != nullptr)
        return true;
    *error = "cannot write " + path + ": " + std::strerror(errno);
    return false;
}

void OperationLog::write(const Operation &operation)
{
    const std::string line = operationJson(operation) + "\n";
    const bool written = std::fputs(line.c_str(), m_stream.get()) >= 0;
    if ((written && std::fflush(m_stream.get()) == 0) || m_failed)
        return;
    m_failed = true;
    std::fprintf(stderr, "gbdriver-virtual-reader: the log is incomplete: %s\n",
                 std::strerror(errno));
}

} // namespace virtual_reader
