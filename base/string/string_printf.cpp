// printf-style formatting.

#include <cstdarg>

#include "base/string/detail/foreign_text.h"
#include "base/string/detail/format_engine.h"
#include "base/string/oxa_string.h"
#include "base/text/resize_and_fill.h"

namespace Oxa_1_1
{

namespace
{

/// Measures, then formats. The text is a new one, because the arguments may lie in the old.
template <class Format>
bool formatInto(Text& result, Format format, const Char* pattern, std::va_list arguments)
{
    std::va_list measured;
    va_copy(measured, arguments);
    const int length = format(nullptr, 0, pattern, measured);
    va_end(measured);
    if (length < 0) return false;

    const auto size = static_cast<std::size_t>(length);
    text::resizeAndFill(result, size, [&](Char* buffer) { format(buffer, size, pattern, arguments); });
    return true;
}

}  // namespace

void String::printf_apply(const Char* format, ...)
{
    if (format == nullptr) return;
    Text result;
    std::va_list arguments;
    va_start(arguments, format);
    if (formatInto(result, detail::formatText, format, arguments)) *this = String(std::move(result));
    va_end(arguments);
}

void String::printf_apply(const ForeignChar* format, ...)
{
    if (format == nullptr) return;
    Text result;
    std::va_list arguments;
    va_start(arguments, format);
    const Text pattern = detail::fromForeign(format);
    if (formatInto(result, detail::formatTextForeign, pattern.c_str(), arguments)) *this = String(std::move(result));
    va_end(arguments);
}

}  // namespace Oxa_1_1
