// The log of a mounted reader: one JSON object a line, on the disk's side of the buffer at once.
#pragma once

#include "virtual/operation_record.h"

#include <cstdio>
#include <memory>
#include <string>

namespace virtual_reader
{

class OperationLog
{
public:
    // Starts the file anew. Returns: false with the reason in `*error`.
    bool open(const std::string &path, std::string *error);

    // A line that cannot be written is told once on standard error; the reader goes on.
    void write(const Operation &operation);

private:
    struct Closer {
        void operator()(std::FILE *stream) const { std::fclose(stream); }
    };

    std::unique_ptr<std::FILE, Closer> m_stream;
    bool m_failed = false;
};

} // namespace virtual_reader
