#pragma once

namespace Oxa_1_1::text
{

/// The kinds of vectors for which there are kernels, each with all before it.
enum class VectorLevel
{
    /// Those that every processor of the kind has.
    BASIC,
    /// With the counts and searches of bits that came with it.
    AVX2,
    /// With its byte shuffles.
    AVX512
};

/// What both the processor and the system serve.
VectorLevel vectorLevel() noexcept;

}  // namespace Oxa_1_1::text
