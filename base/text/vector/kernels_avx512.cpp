// For x86-64 with AVX-512 and its byte shuffles; compiled for it, so nothing inline may leave this file.

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

#include "base/text/vector/utf8_avx512.inl"

}  // namespace

// Searches and escapes gain nothing from wider vectors: they wait for memory, or for the next hit. Comparisons gain
// from masks: most texts are short, and what is left of them behind the last whole vector takes no loop of its own.
constinit const TextKernels AVX512_KERNELS{
    "avx512",
    true,
    findUnit<Avx2>,
    findText<Avx2>,
    compareAvx512<false>,
    compareAvx512<true>,
    countAsciiBytesAvx512,
    countAsciiUnitsAvx512,
    widenBytesAvx512,
    narrowAsciiAvx512,
    markControlsAvx512,
    countUnitsAvx512,
    countBytesAvx512,
    decodeUtf8Avx512,
    encodeUtf8Avx512,
    escapedLength<Avx2>,
    escape<Avx2>,
};

}  // namespace Oxa_1_1::text

#endif
