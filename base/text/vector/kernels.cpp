#include "base/text/vector/kernels.h"

#include <array>

#include "base/text/vector/vector_level.h"

namespace Oxa_1_1::text
{

namespace
{

#if defined(__x86_64__) || defined(_M_X64)

constinit const std::array KERNELS{&SCALAR_KERNELS, &SSE2_KERNELS, &AVX2_KERNELS, &AVX512_KERNELS};

/// The scalar ones are no vectors.
std::size_t countAvailable() { return std::size_t{2} + static_cast<std::size_t>(vectorLevel()); }

constexpr const TextKernels& PLAIN_KERNELS = SSE2_KERNELS;

#else

constinit const std::array KERNELS{&SCALAR_KERNELS};

std::size_t countAvailable() { return 1; }

constexpr const TextKernels& PLAIN_KERNELS = SCALAR_KERNELS;

#endif

}  // namespace

constinit const TextKernels* activeTextKernels = &PLAIN_KERNELS;

namespace
{

[[maybe_unused]] const bool upgraded = (activeTextKernels = KERNELS[countAvailable() - 1]) != nullptr;

}  // namespace

std::span<const TextKernels* const> availableTextKernels() noexcept
{
    return std::span(KERNELS).first(countAvailable());
}

}  // namespace Oxa_1_1::text
