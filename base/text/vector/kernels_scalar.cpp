// For any processor.

#include <cstdint>
#include <type_traits>

#include "base/text/character.h"
#include "base/text/scan.h"
#include "base/text/vector/bits.h"
#include "base/text/vector/kernels.h"

namespace Oxa_1_1::text
{

namespace
{

#include "base/text/vector/escape.inl"

Progress none(const char*, std::size_t, Char*, std::size_t) { return {0, 0}; }

Progress none(const Char*, std::size_t, char*, std::size_t) { return {0, 0}; }

}  // namespace

constinit const TextKernels SCALAR_KERNELS{
    "scalar",
    false,
    findUnit<Scalar>,
    findText<Scalar>,
    compareUnits<Scalar>,
    compareUnitsIgnoreCase<Scalar>,
    countAsciiBytes<Scalar>,
    countAsciiUnits<Scalar>,
    widenBytes<Scalar>,
    narrowAscii<Scalar>,
    markControls<Scalar>,
    countUnits<Scalar>,
    countBytes<Scalar>,
    none,
    none,
    escapedLength<Scalar>,
    escape<Scalar>,
};

}  // namespace Oxa_1_1::text
