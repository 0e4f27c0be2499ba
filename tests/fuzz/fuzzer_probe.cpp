// Links only where the compiler has libFuzzer.
#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *, std::size_t)
{
    return 0;
}
