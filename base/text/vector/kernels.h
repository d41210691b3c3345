#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/char.h"

/// The inner loops of text, once for each kind of processor.
namespace Oxa_1_1::text
{

/// How far a conversion came: units or bytes read and written.
struct Progress
{
    std::size_t read;
    std::size_t written;
};

struct TextKernels
{
    const char* name;
    /// Whether the conversions take texts of any length up to their end.
    bool takesShort;

    // As scan.h describes them.
    std::size_t (*findUnit)(const Char* text, std::size_t length, Char c);
    std::size_t (*findText)(const Char* text, std::size_t length, const Char* pattern, std::size_t patternLength);
    int (*compareUnits)(const Char* a, const Char* b, std::size_t length);
    int (*compareUnitsIgnoreCase)(const Char* a, const Char* b, std::size_t length);

    // A number of ASCII characters at the front: all there are, or fewer by less than a step of the loop.
    std::size_t (*countAsciiBytes)(const char* bytes, std::size_t length);
    std::size_t (*countAsciiUnits)(const Char* units, std::size_t length);
    // Bytes to units of the same values, and ASCII back.
    void (*widenBytes)(const char* bytes, std::size_t length, Char* units);
    void (*narrowAscii)(const Char* units, std::size_t length, char* bytes);

    // For each block of 64 bytes, a bit for each that is from 0x80 to 0x9F: the controls of Latin-1.
    void (*markControls)(const char* bytes, std::size_t blocks, std::uint64_t* marks);

    // The units that well-formed UTF-8 becomes, and the bytes of UTF-8 that any units become.
    std::size_t (*countUnits)(const char* bytes, std::size_t length);
    std::size_t (*countBytes)(const Char* units, std::size_t length);
    // Convert the front part that lies well within both buffers and is plain enough, which may be none of it.
    Progress (*decodeUtf8)(const char* bytes, std::size_t length, Char* units, std::size_t capacity);
    Progress (*encodeUtf8)(const Char* units, std::size_t length, char* bytes, std::size_t capacity);

    // As escape.h describes them.
    std::size_t (*escapedLength)(const Char* text, std::size_t length, bool unicode);
    void (*escape)(const Char* text, std::size_t length, bool unicode, Char* out);
};

/// Usable before static objects are made, and the best ones afterwards.
extern const TextKernels* activeTextKernels;

/// Those for this processor.
inline const TextKernels& textKernels() noexcept { return *activeTextKernels; }

/// All that this processor can run, the plainest first.
std::span<const TextKernels* const> availableTextKernels() noexcept;

extern const TextKernels SCALAR_KERNELS;
#if defined(__x86_64__) || defined(_M_X64)
extern const TextKernels SSE2_KERNELS;
extern const TextKernels AVX2_KERNELS;
extern const TextKernels AVX512_KERNELS;
#endif

}  // namespace Oxa_1_1::text
