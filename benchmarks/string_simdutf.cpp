// Only where bench.sh is told where it lies.

#include <simdutf.h>

#include "benchmarks/shared_work.h"

namespace Oxa_1_1::bench
{

namespace
{

const std::string SIMDUTF = "simdutf";

/// Measured, allocated once and converted, as the library does it.
std::u16string fromUtf8(const std::string& bytes)
{
    std::u16string text(simdutf::utf16_length_from_utf8(bytes.data(), bytes.size()), u'\0');
    text.resize(simdutf::convert_utf8_to_utf16le(bytes.data(), bytes.size(), text.data()));
    return text;
}

std::string toUtf8(const std::u16string& text)
{
    std::string bytes(simdutf::utf8_length_from_utf16le(text.data(), text.size()), '\0');
    bytes.resize(simdutf::convert_utf16le_to_utf8(text.data(), text.size(), bytes.data()));
    return bytes;
}

[[maybe_unused]] const bool registered = []
{
    add(work::FROM_UTF8_TOLD, SIMDUTF, [bytes = asciiSample(32)] { keep(fromUtf8(bytes)); });
    addUtf8(SIMDUTF, fromUtf8, toUtf8);
    return true;
}();

}  // namespace

}  // namespace Oxa_1_1::bench
