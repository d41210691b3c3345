#include "base/text/utf8.h"

#include <cstdint>
#include <cstring>
#include <iterator>
#include <type_traits>

#include "base/text/resize_and_fill.h"
#include "base/text/vector/kernels.h"

namespace Oxa_1_1::text
{

namespace
{

constexpr std::uint32_t REPLACEMENT = 0xFFFD;

/// The characters that are converted one by one where the vectors stopped, before they try again.
constexpr int LEFT_BY_VECTORS = 16;

/// A character, or the replacement of a maximal ill-formed part, and its length in the source.
struct Character
{
    std::uint32_t value;
    std::size_t length;
};

/// What may follow a lead byte: how many bytes, and the range of the first of them, which excludes overlong forms,
/// surrogates and values beyond Unicode.
struct Lead
{
    std::size_t following;
    unsigned char lowest;
    unsigned char highest;
};

constexpr Lead leadOf(unsigned char byte)
{
    if (byte >= 0xC2 && byte <= 0xDF) return {1, 0x80, 0xBF};
    if (byte == 0xE0) return {2, 0xA0, 0xBF};
    if (byte == 0xED) return {2, 0x80, 0x9F};
    if (byte >= 0xE1 && byte <= 0xEF) return {2, 0x80, 0xBF};
    if (byte == 0xF0) return {3, 0x90, 0xBF};
    if (byte >= 0xF1 && byte <= 0xF3) return {3, 0x80, 0xBF};
    if (byte == 0xF4) return {3, 0x80, 0x8F};
    return {0, 0, 0};
}

Character firstOf(std::string_view bytes)
{
    const auto at = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    if (at(0) < 0x80) return {at(0), 1};
    const Lead lead = leadOf(at(0));
    if (lead.following == 0) return {REPLACEMENT, 1};

    std::uint32_t value = at(0) & (0x3Fu >> lead.following);
    for (std::size_t i = 1; i <= lead.following; ++i)
    {
        const unsigned char lowest = i == 1 ? lead.lowest : 0x80;
        const unsigned char highest = i == 1 ? lead.highest : 0xBF;
        if (i == bytes.size() || at(i) < lowest || at(i) > highest) return {REPLACEMENT, i};
        value = value << 6 | (at(i) & 0x3Fu);
    }
    return {value, lead.following + 1};
}

Character firstOf(TextView units)
{
    const std::uint32_t unit = units[0];
    if ((unit & 0xF800) != 0xD800) return {unit, 1};
    const bool pair = unit < 0xDC00 && units.size() > 1 && (units[1] & 0xFC00) == 0xDC00;
    if (!pair) return {REPLACEMENT, 1};
    return {0x10000 + ((unit & 0x3FF) << 10) + (units[1] & 0x3FFu), 2};
}

constexpr std::size_t unitsOf(std::uint32_t c) { return c < 0x10000 ? 1 : 2; }

constexpr std::size_t bytesOf(std::uint32_t c) { return 1u + (c >= 0x80) + (c >= 0x800) + (c >= 0x10000); }

void put(std::uint32_t c, Char* units)
{
    if (c < 0x10000)
    {
        units[0] = static_cast<Char>(c);
        return;
    }
    units[0] = static_cast<Char>(0xD7C0 + (c >> 10));
    units[1] = static_cast<Char>(0xDC00 + (c & 0x3FF));
}

void put(std::uint32_t c, char* bytes)
{
    const std::size_t length = bytesOf(c);
    if (length == 1)
    {
        bytes[0] = static_cast<char>(c);
        return;
    }
    for (std::size_t i = length; i-- > 1; c >>= 6) bytes[i] = static_cast<char>(0x80 | (c & 0x3F));
    bytes[0] = static_cast<char>(0xF00u >> length | c);
}

/// How many units bytes of any kind become.
std::size_t measureExactly(std::string_view bytes)
{
    std::size_t count = 0;
    while (!bytes.empty())
    {
        const Character c = firstOf(bytes);
        count += unitsOf(c.value);
        bytes.remove_prefix(c.length);
    }
    return count;
}

/// The units written, and whether all of the source is read.
struct Filled
{
    std::size_t written;
    bool complete;
};

/// Decodes as much as `capacity` units hold; one for each byte suffices.
Filled decodeInto(std::string_view bytes, Char* units, std::size_t capacity)
{
    const TextKernels& kernels = textKernels();
    std::size_t written = 0;
    while (!bytes.empty())
    {
        const Progress progress = kernels.decodeUtf8(bytes.data(), bytes.size(), units + written, capacity - written);
        bytes.remove_prefix(progress.read);
        written += progress.written;

        for (int i = 0; i < LEFT_BY_VECTORS && !bytes.empty(); ++i)
        {
            const Character c = firstOf(bytes);
            if (capacity - written < unitsOf(c.value)) return {written, false};
            put(c.value, units + written);
            written += unitsOf(c.value);
            bytes.remove_prefix(c.length);
        }
    }
    return {written, true};
}

/// Encodes into `capacity` bytes, which suffice. Returns how many it wrote.
std::size_t encodeInto(TextView units, char* bytes, std::size_t capacity)
{
    const TextKernels& kernels = textKernels();
    std::size_t written = 0;
    while (!units.empty())
    {
        const Progress progress = kernels.encodeUtf8(units.data(), units.size(), bytes + written, capacity - written);
        units.remove_prefix(progress.read);
        written += progress.written;
        for (int i = 0; i < LEFT_BY_VECTORS && !units.empty(); ++i)
        {
            const Character c = firstOf(units);
            put(c.value, bytes + written);
            written += bytesOf(c.value);
            units.remove_prefix(c.length);
        }
    }
    return written;
}

/// A conversion in its two parts: ASCII, and what follows it.
template <class Source>
struct Plan
{
    std::basic_string_view<Source> ascii;
    std::basic_string_view<Source> rest;
    std::size_t restSize;

    std::size_t size() const { return ascii.size() + restSize; }
};

using DecodePlan = Plan<char>;
using EncodePlan = Plan<Char>;

/// False when the measure was wrong, as it is for ill-formed bytes.
bool carryOut(const DecodePlan& plan, Char* units)
{
    textKernels().widenBytes(plan.ascii.data(), plan.ascii.size(), units);
    if (plan.rest.empty()) return true;
    const Filled filled = decodeInto(plan.rest, units + plan.ascii.size(), plan.restSize);
    return filled.complete && filled.written == plan.restSize;
}

void carryOut(const EncodePlan& plan, char* bytes)
{
    textKernels().narrowAscii(plan.ascii.data(), plan.ascii.size(), bytes);
    if (!plan.rest.empty()) encodeInto(plan.rest, bytes + plan.ascii.size(), plan.restSize);
}

/// False when the measure was wrong.
bool decodeTo(Text& text, const DecodePlan& plan)
{
    bool complete = false;
    resizeAndFill(text, plan.size(), [&](Char* units) { complete = carryOut(plan, units); });
    return complete;
}

/// Up to this length the calls of kernels take longer than the work.
constexpr std::size_t SHORT = 64;

/// Whether all of a short text is ASCII, by words of eight bytes. The last one overlaps the one before it.
template <class Source>
bool isAsciiOfWords(std::basic_string_view<Source> text)
{
    constexpr std::uint64_t BEYOND = sizeof(Source) == 1 ? 0x8080808080808080 : 0xFF80FF80FF80FF80;
    constexpr std::size_t STEP = sizeof(std::uint64_t) / sizeof(Source);
    std::uint64_t all = 0;
    const auto add = [&all](const Source* from)
    {
        std::uint64_t word = 0;
        std::memcpy(&word, from, sizeof word);
        all |= word;
    };
    if (text.size() < STEP)
    {
        for (const Source c : text) all |= static_cast<std::make_unsigned_t<Source>>(c);
        return all < 0x80;
    }
    const Source* const last = text.data() + text.size() - STEP;
    for (const Source* from = text.data(); from < last; from += STEP) add(from);
    add(last);
    return (all & BEYOND) == 0;
}

Text decodeByKernels(std::string_view bytes)
{
    const TextKernels& kernels = textKernels();
    const std::size_t ascii = kernels.countAsciiBytes(bytes.data(), bytes.size());
    DecodePlan plan{bytes.substr(0, ascii), bytes.substr(ascii), 0};
    if (!plan.rest.empty()) plan.restSize = kernels.countUnits(plan.rest.data(), plan.rest.size());

    Text text;
    if (decodeTo(text, plan)) return text;
    plan.restSize = measureExactly(plan.rest);
    decodeTo(text, plan);
    return text;
}

std::string encodeByKernels(TextView text)
{
    const TextKernels& kernels = textKernels();
    const std::size_t ascii = kernels.countAsciiUnits(text.data(), text.size());
    EncodePlan plan{text.substr(0, ascii), text.substr(ascii), 0};
    if (!plan.rest.empty()) plan.restSize = kernels.countBytes(plan.rest.data(), plan.rest.size());

    std::string result;
    resizeAndFill(result, plan.size(), [&plan](char* bytes) { carryOut(plan, bytes); });
    return result;
}

/// What is short is not measured: it has at most as many units as bytes, and at most three bytes for each unit.
/// @{
Text decodeShort(std::string_view bytes)
{
    // Room for whole vectors: what is stored by a mask is not there at once for the copy.
    Char units[2 * SHORT];
    return {units, decodeInto(bytes, units, std::size(units)).written};
}

std::string encodeShort(TextView text)
{
    char bytes[3 * SHORT];
    return {bytes, encodeInto(text, bytes, sizeof bytes)};
}
/// @}

}  // namespace

Text decodeUtf8(std::string_view bytes)
{
    if (bytes.size() > SHORT) return decodeByKernels(bytes);
    if (isAsciiOfWords(bytes)) return Text(bytes.begin(), bytes.end());
    return decodeShort(bytes);
}

std::string encodeUtf8(TextView text)
{
    if (text.size() > SHORT) return encodeByKernels(text);
    if (isAsciiOfWords(text)) return std::string(text.begin(), text.end());
    return encodeShort(text);
}

}  // namespace Oxa_1_1::text
