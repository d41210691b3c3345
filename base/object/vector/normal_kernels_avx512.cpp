// For x86-64 with AVX-512; compiled for it, so nothing inline may leave this file.

#include "base/object/vector/normal_kernels.h"

#if defined(__x86_64__) || defined(_M_X64)

namespace Oxa_1_1::detail
{

namespace
{

#include "base/object/vector/normal_loops.inl"

}  // namespace

constinit const NormalKernels AVX512_NORMAL_KERNELS{encodeAll<double>, encodeAll<float>, decodeAll};

}  // namespace Oxa_1_1::detail

#endif
