// For x86-64 of any kind.

#include <cstdint>
#include <type_traits>

#if defined(__x86_64__) || defined(_M_X64)

#include <immintrin.h>

#include "base/text/character.h"
#include "base/text/scan.h"
#include "base/text/vector/bits.h"
#include "base/text/vector/kernels.h"

namespace Oxa_1_1::text
{

namespace
{

#include "base/text/vector/sse2.inl"

Progress none(const char*, std::size_t, Char*, std::size_t) { return {0, 0}; }

Progress none(const Char*, std::size_t, char*, std::size_t) { return {0, 0}; }

}  // namespace

constinit const TextKernels SSE2_KERNELS{
    "sse2",
    false,
    findUnit<Sse2>,
    findText<Sse2>,
    compareUnits<Sse2>,
    compareUnitsIgnoreCase<Sse2>,
    countAsciiBytes<Sse2>,
    countAsciiUnits<Sse2>,
    widenBytes<Sse2>,
    narrowAscii<Sse2>,
    markControls<Sse2>,
    countUnits<Sse2>,
    countBytes<Sse2>,
    none,
    none,
    escapedLength<Sse2>,
    escape<Sse2>,
};

}  // namespace Oxa_1_1::text

#endif
