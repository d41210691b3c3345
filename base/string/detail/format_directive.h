#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "base/char.h"

namespace Oxa_1_1::detail
{

/// The length modifier of a conversion.
enum class ArgumentSize
{
    NONE,
    CHAR,         // hh
    SHORT,        // h, and narrow text
    LONG,         // l, and wide text
    BITS32,       // I32
    BITS64,       // ll, I64, and j, z, t, I, which are as large on every system that we build for
    LONG_DOUBLE,  // L
};

static_assert(sizeof(std::size_t) == 8 && sizeof(std::ptrdiff_t) == 8 && sizeof(std::intmax_t) == 8);

/// Between '%' and the conversion letter. A width or precision of '*' is taken from the arguments.
struct Directive
{
    bool leftAligned = false;
    bool forceSign = false;
    bool blankSign = false;
    bool alternate = false;
    bool zeroPadded = false;
    bool widthFromArgument = false;
    bool precisionFromArgument = false;
    int width = 0;
    /// Negative when none is given.
    int precision = -1;
    ArgumentSize size = ArgumentSize::NONE;
    Char conversion = 0;
};

/// Reads a directive behind its '%' and moves `format` behind it. Nothing when it is malformed.
std::optional<Directive> readDirective(const Char*& format);

}  // namespace Oxa_1_1::detail
