#pragma once

#include <cstdarg>
#include <cstddef>

#include "base/char.h"

/// The wide printf family, one engine for every system.
namespace Oxa_1_1::detail
{

/// Formats into `buffer`, at most `capacity` units and no terminating zero, and returns the whole number of units that
/// the result has, as snprintf counts: a null buffer of capacity 0 measures. Negative, with nothing promised about the
/// buffer, for a malformed format, for %n and for a result of more than INT_MAX units.
int formatText(Char* buffer, std::size_t capacity, const Char* format, std::va_list arguments);

/// The same, with wide arguments (%s, %ls, %c) of the other wide character type.
int formatTextForeign(Char* buffer, std::size_t capacity, const Char* format, std::va_list arguments);

}  // namespace Oxa_1_1::detail
