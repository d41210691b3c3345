#include "base/object/vector/normal_kernels.h"

#include <array>

#include "base/text/vector/vector_level.h"

namespace Oxa_1_1::detail
{

namespace
{

#include "base/object/vector/normal_loops.inl"

}  // namespace

constinit const NormalKernels PLAIN_NORMAL_KERNELS{encodeAll<double>, encodeAll<float>, decodeAll};

constinit const NormalKernels* activeNormalKernels = &PLAIN_NORMAL_KERNELS;

namespace
{

#if defined(__x86_64__) || defined(_M_X64)
constinit const std::array KERNELS{&PLAIN_NORMAL_KERNELS, &AVX2_NORMAL_KERNELS, &AVX512_NORMAL_KERNELS};
#else
constinit const std::array KERNELS{&PLAIN_NORMAL_KERNELS};
#endif

[[maybe_unused]] const bool upgraded = (activeNormalKernels = availableNormalKernels().back()) != nullptr;

}  // namespace

std::span<const NormalKernels* const> availableNormalKernels() noexcept
{
    return std::span(KERNELS).first(1 + static_cast<std::size_t>(text::vectorLevel()));
}

}  // namespace Oxa_1_1::detail
