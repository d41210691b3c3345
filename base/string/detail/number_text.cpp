#include "base/string/detail/number_text.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace Oxa_1_1::detail
{

namespace
{

constexpr auto POWERS_OF_TEN = []
{
    std::array<std::uint64_t, 20> powers{};
    std::uint64_t power = 1;
    for (auto& entry : powers)
    {
        entry = power;
        power *= 10;
    }
    return powers;
}();

constexpr auto DIGIT_PAIRS = []
{
    std::array<Char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i)
    {
        pairs[2 * i] = static_cast<Char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<Char>('0' + i % 10);
    }
    return pairs;
}();

int countDigits(std::uint64_t value)
{
    // 1233 / 4096 is just above log10(2); the table mends the estimate, which is never too high by more than one.
    const int estimate = (static_cast<int>(std::bit_width(value | 1)) * 1233) >> 12;
    return estimate + (value >= POWERS_OF_TEN[static_cast<std::size_t>(estimate)] || estimate == 0);
}

constexpr std::uint32_t EIGHT = 100000000;

/// Writes the two digits of a value below 100.
void writePair(Char* out, std::uint32_t value) { std::memcpy(out, &DIGIT_PAIRS[2 * value], 2 * sizeof(Char)); }

/// Writes the eight digits of a value below their power of ten, the two halves side by side.
void writeEight(Char* out, std::uint32_t value)
{
    const std::uint32_t high = value / 10000;
    const std::uint32_t low = value % 10000;
    writePair(out, high / 100);
    writePair(out + 2, high % 100);
    writePair(out + 4, low / 100);
    writePair(out + 6, low % 100);
}

/// Writes exactly `count` digits, with leading zeros.
void writeDigits(Char* out, std::uint64_t value, int count)
{
    for (; count >= 8; value /= EIGHT) writeEight(out + (count -= 8), static_cast<std::uint32_t>(value % EIGHT));
    auto rest = static_cast<std::uint32_t>(value % EIGHT);
    for (; count >= 2; rest /= 100) writePair(out + (count -= 2), rest % 100);
    if (count != 0) *out = static_cast<Char>('0' + rest % 10);
}

/// The same for a number of digits that is known.
template <int COUNT>
void writeDigits(Char* out, std::uint64_t value)
{
    constexpr int REST = COUNT % 8;
    if constexpr (COUNT >= 8)
    {
        writeEight(out + REST, static_cast<std::uint32_t>(value % EIGHT));
        value /= EIGHT;
    }
    for (int i = REST; i >= 2; value /= 100) writePair(out + (i -= 2), static_cast<std::uint32_t>(value % 100));
    if constexpr (REST % 2 != 0) *out = static_cast<Char>('0' + value % 10);
}

#ifdef __SIZEOF_INT128__

/// Four digits side by side, the first in the lowest bits.
std::uint64_t fourDigits(std::uint32_t value)
{
    std::uint32_t pairs[2];
    std::memcpy(&pairs[0], &DIGIT_PAIRS[2 * (value / 100)], sizeof pairs[0]);
    std::memcpy(&pairs[1], &DIGIT_PAIRS[2 * (value % 100)], sizeof pairs[1]);
    return pairs[0] | static_cast<std::uint64_t>(pairs[1]) << 32;
}

/// Writes a value of at most eight digits, and units without meaning behind it: eight in all. The zeros in front are
/// shifted out, because how many digits there are is nothing that a branch could be foretold by.
Char* writeUpToEight(Char* out, std::uint32_t value)
{
    static_assert(std::endian::native == std::endian::little);
    __extension__ using Wide = unsigned __int128;
    constexpr int UNITS = 8;
    constexpr int BITS = 16;
    const int count = countDigits(value);
    Wide digits = fourDigits(value / 10000) | static_cast<Wide>(fourDigits(value % 10000)) << 64;
    digits >>= BITS * (UNITS - count);
    std::memcpy(out, &digits, sizeof digits);
    return out + count;
}

#endif

Char* writeInteger(Char* out, std::uint64_t value)
{
#ifdef __SIZEOF_INT128__
    if (value < EIGHT) return writeUpToEight(out, static_cast<std::uint32_t>(value));
#endif
    const int count = countDigits(value);
    writeDigits(out, value, count);
    return out + count;
}

Char* writeWord(Char* out, std::string_view word)
{
    for (const char c : word) *out++ = static_cast<Char>(c);
    return out;
}

/// Without the zeros at the end of digits, which are not all zeros.
Char* dropZeros(Char* end)
{
    while (end[-1] == '0') --end;
    return end;
}

Char* writeSignificant(Char* out, std::uint64_t digits, int count)
{
    writeDigits(out, digits, count);
    return dropZeros(out + count);
}

/// A positive finite double as mantissa * 2 ^ exponent.
struct Binary
{
    explicit Binary(double value)
    {
        constexpr int MANTISSA_BITS = 52;
        constexpr int BIAS = 1075;
        const auto bits = std::bit_cast<std::uint64_t>(value);
        const auto biased = static_cast<int>(bits >> MANTISSA_BITS) & 0x7FF;
        const std::uint64_t fraction = bits & ((std::uint64_t(1) << MANTISSA_BITS) - 1);
        mantissa = biased == 0 ? fraction : fraction | (std::uint64_t(1) << MANTISSA_BITS);
        exponent = (biased == 0 ? 1 : biased) - BIAS;
    }

    std::uint64_t mantissa;
    int exponent;
};

/// The exact product of two 64-bit numbers.
struct Product
{
    Product(std::uint64_t a, std::uint64_t b)
    {
#ifdef __SIZEOF_INT128__
        __extension__ using Wide = unsigned __int128;
        const Wide product = static_cast<Wide>(a) * b;
        high = static_cast<std::uint64_t>(product >> 64);
        low = static_cast<std::uint64_t>(product);
#else
        constexpr std::uint64_t LOW = 0xFFFFFFFF;
        const std::uint64_t lowLow = (a & LOW) * (b & LOW);
        const std::uint64_t highLow = (a >> 32) * (b & LOW) + (lowLow >> 32);
        const std::uint64_t lowHigh = (a & LOW) * (b >> 32) + (highLow & LOW);
        high = (a >> 32) * (b >> 32) + (highLow >> 32) + (lowHigh >> 32);
        low = (lowHigh << 32) | (lowLow & LOW);
#endif
    }

    std::uint64_t high;
    std::uint64_t low;
};

/// The integer part of a fixed-point number, rounded half to even: as printf does in the default rounding mode.
std::uint64_t roundHalfEven(std::uint64_t integer, std::uint64_t fraction, bool more)
{
    constexpr std::uint64_t HALF = std::uint64_t(1) << 63;
    if (fraction > HALF || (fraction == HALF && (more || (integer & 1) != 0))) return integer + 1;
    return integer;
}

/// product / 2 ^ shift, rounded. The quotient fits 64 bits; shift is above 0 and below 128.
std::uint64_t shiftRounded(const Product& product, int shift)
{
    if (shift == 64) return roundHalfEven(product.high, product.low, false);
    if (shift < 64)
        return roundHalfEven((product.high << (64 - shift)) | (product.low >> shift), product.low << (64 - shift),
                             false);
    const int rest = shift - 64;
    return roundHalfEven(product.high >> rest, (product.high << (64 - rest)) | (product.low >> rest),
                         (product.low << (64 - rest)) != 0);
}

Char* writeByRuntime(Char* out, double value, std::chars_format format, int precision)
{
    char buffer[FLOATING_CAPACITY];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, format, precision);
    return writeWord(out, {buffer, static_cast<std::size_t>(result.ptr - buffer)});
}

/// A value of 1 or more. Whatever its size, the precision covers the integer part, so there is never an exponent; and
/// it reaches DECIMALS places behind the point but for powers of ten, which have none to show.
template <int DECIMALS>
Char* writeFromOne(Char* out, double value)
{
    constexpr double TWO_POW_64 = 18446744073709551616.0;
    if (value >= TWO_POW_64) return writeByRuntime(out, value, std::chars_format::fixed, 0);

    const Binary binary(value);
    if (binary.exponent >= 0) return writeInteger(out, binary.mantissa << binary.exponent);

    constexpr std::uint64_t UNIT = POWERS_OF_TEN[DECIMALS];
    std::uint64_t integer = binary.mantissa >> -binary.exponent;
    const Product scaled(binary.mantissa << (64 + binary.exponent), UNIT);
    const std::uint64_t fraction = roundHalfEven(scaled.high, scaled.low, false);
    if (fraction == UNIT) ++integer;
    out = writeInteger(out, integer);
    if (fraction == 0 || fraction == UNIT) return out;

    *out++ = '.';
    writeDigits<DECIMALS>(out, fraction);
    return dropZeros(out + DECIMALS);
}

/// A value below 1, in fixed notation down to a decimal exponent of -4.
Char* writeBelowOne(Char* out, double value, int digits)
{
    // The powers whose product with a mantissa is exact.
    constexpr std::array<double, 11> LIMITS{1e-1, 1e-2, 1e-3, 1e-4, 1e-5, 1e-6, 1e-7, 1e-8, 1e-9, 1e-10, 1e-11};
    std::size_t place = 0;
    while (place < LIMITS.size() && value < LIMITS[place]) ++place;
    if (place == LIMITS.size()) return writeByRuntime(out, value, std::chars_format::general, digits);

    const Binary binary(value);
    const auto width = static_cast<std::size_t>(digits);
    std::uint64_t scaled = shiftRounded(Product(binary.mantissa, POWERS_OF_TEN[place + width]), -binary.exponent);
    int exponent = -1 - static_cast<int>(place);
    if (scaled == POWERS_OF_TEN[width])
    {
        scaled /= 10;
        ++exponent;
    }
    if (exponent == 0) return writeWord(out, "1");
    if (exponent >= -4)
    {
        out = writeWord(out, "0.");
        for (int i = exponent + 1; i < 0; ++i) *out++ = '0';
        return writeSignificant(out, scaled, digits);
    }

    const std::uint64_t leading = POWERS_OF_TEN[width - 1];
    *out++ = static_cast<Char>('0' + scaled / leading);
    if (scaled % leading != 0)
    {
        *out++ = '.';
        out = writeSignificant(out, scaled % leading, digits - 1);
    }
    out = writeWord(out, "e-");
    writeDigits(out, static_cast<std::uint64_t>(-exponent), 2);
    return out + 2;
}

}  // namespace

std::size_t writeUnsigned(Char* out, unsigned long long value) noexcept
{
    return static_cast<std::size_t>(writeInteger(out, value) - out);
}

std::size_t writeSigned(Char* out, long long value) noexcept
{
    if (value >= 0) return writeUnsigned(out, static_cast<unsigned long long>(value));
    *out = '-';
    return 1 + writeUnsigned(out + 1, 0 - static_cast<unsigned long long>(value));
}

std::size_t writeFloating(Char* out, double value, const FloatingRule& rule) noexcept
{
    Char* end = out;
    if (std::isnan(value)) return static_cast<std::size_t>(writeWord(out, "nan") - out);
    if (std::signbit(value)) *end++ = '-';

    const double magnitude = std::fabs(value);
    if (magnitude > std::numeric_limits<double>::max())
        end = writeWord(end, "inf");
    else if (magnitude >= 1)
        end = rule.decimals == DOUBLE_RULE.decimals ? writeFromOne<DOUBLE_RULE.decimals>(end, magnitude)
                                                    : writeFromOne<FLOAT_RULE.decimals>(end, magnitude);
    else if (magnitude > 0)
        end = writeBelowOne(end, magnitude, rule.digitsBelowOne);
    else
        end = writeWord(end, "0");
    return static_cast<std::size_t>(end - out);
}

}  // namespace Oxa_1_1::detail
