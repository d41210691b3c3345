#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/object/vec3d.h"

/// The loops over many packed normals, once for each kind of processor.
namespace Oxa_1_1::detail
{

struct NormalKernels
{
    void (*encodeDoubles)(const Vec3d<double>* directions, std::size_t count, std::uint16_t* codes) noexcept;
    void (*encodeFloats)(const Vec3d<float>* directions, std::size_t count, std::uint16_t* codes) noexcept;
    void (*decode)(const std::uint16_t* codes, std::size_t count, const double* scales,
                   Vec3d<double>* normals) noexcept;
};

/// Those for this processor; the plain ones before static objects are made.
extern const NormalKernels* activeNormalKernels;

/// All that this processor can run, the plainest first.
std::span<const NormalKernels* const> availableNormalKernels() noexcept;

extern const NormalKernels PLAIN_NORMAL_KERNELS;
#if defined(__x86_64__) || defined(_M_X64)
extern const NormalKernels AVX2_NORMAL_KERNELS;
extern const NormalKernels AVX512_NORMAL_KERNELS;
#endif

}  // namespace Oxa_1_1::detail
