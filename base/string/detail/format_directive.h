#pragma once

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
    LONG_LONG,    // ll, I64
    INT32,        // I32
    INTMAX,       // j
    SIZE,         // z, t, I
    LONG_DOUBLE,  // L
};

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
