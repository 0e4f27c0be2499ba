// Does the Squirrel library agree with its headers on how wide an integer is?
//
// The width is a compile-time choice that the headers do not record. Where the two differ, every
// integer that crosses the API is cut or overwrites its neighbour. So a value that only the
// headers' width holds goes through the library's stack and back.
#include <squirrel.h>

#include <cstdio>

namespace
{

struct Guarded {
    SQInteger value = 0;
    SQInteger guard = 0; // a wider library writes into it
};

// 1 << 40 for 64-bit integers, 1 << 8 for 32-bit ones.
constexpr SQInteger kProbe = static_cast<SQInteger>(1ULL << (sizeof(SQInteger) * 8 - 24));

// The guard must not be all zero bits, or a zero written into it would go unnoticed.
constexpr SQInteger kGuard = 0x5A5A5A5A;

} // namespace

int main()
{
    const HSQUIRRELVM vm = sq_open(64);
    Guarded result;
    result.guard = kGuard;
    sq_pushinteger(vm, kProbe);
    const bool isInteger = SQ_SUCCEEDED(sq_getinteger(vm, -1, &result.value));
    sq_close(vm);

    if (!isInteger || result.value != kProbe || result.guard != kGuard) {
        std::printf("pushed %lld, read %lld, with integers of %u bytes in the headers\n",
                    static_cast<long long>(kProbe), static_cast<long long>(result.value),
                    static_cast<unsigned>(sizeof(SQInteger)));
        return 1;
    }
    return 0;
}
