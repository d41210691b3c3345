// For x86-64 with AVX2; compiled for it, so nothing inline may leave this file.

#include <cstdint>
#include <type_traits>

#if defined(__x86_64__) || defined(_M_X64)

#include <immintrin.h>

#include "base/text/character.h"
#include "base/text/scan.h"
#include "base/text/vector/bits.h"
#include "base/text/vector/kernels.h"
#include "base/text/vector/utf8_tables.h"

namespace Oxa_1_1::text
{

namespace
{

#include "base/text/vector/utf8_avx2.inl"

}  // namespace

constinit const TextKernels AVX2_KERNELS{
    "avx2",
    false,
    findUnit<Avx2>,
    findText<Avx2>,
    compareUnits<Avx2>,
    compareUnitsIgnoreCase<Avx2>,
    countAsciiBytes<Avx2>,
    countAsciiUnits<Avx2>,
    widenBytes<Avx2>,
    narrowAscii<Avx2>,
    markControls<Avx2>,
    countUnits<Avx2>,
    countBytes<Avx2>,
    decodeUtf8Avx2,
    encodeUtf8Avx2,
    escapedLength<Avx2>,
    escape<Avx2>,
};

}  // namespace Oxa_1_1::text

#endif
