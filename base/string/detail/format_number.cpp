#include "base/string/detail/format_number.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace Oxa_1_1::detail
{

namespace
{

constexpr std::size_t NONE = std::string::npos;

bool isUpper(Char conversion) { return conversion >= 'A' && conversion <= 'Z'; }

void makeUpper(std::string& text)
{
    for (char& c : text)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 0x20);
}

std::string signText(const Directive& directive, bool negative)
{
    if (negative) return "-";
    if (directive.forceSign) return "+";
    return directive.blankSign ? " " : "";
}

/// The significant decimal digits that the fraction of the smallest value has; more are zeros.
template <class T>
constexpr int MOST_DIGITS = std::numeric_limits<T>::digits - std::numeric_limits<T>::min_exponent + 1;

/// Some run-time libraries write the decimal point of the locale into a long double, of one byte or more.
void restorePoint(std::string& digits)
{
    constexpr std::string_view PLAIN = "0123456789e+-";
    const std::size_t begin = digits.find_first_not_of(PLAIN);
    if (begin == NONE || digits[begin] == '.') return;
    const std::size_t end = std::min(digits.find_first_of(PLAIN, begin), digits.size());
    digits.erase(begin, end - begin);
    digits.insert(begin, 1, '.');
}

template <class T>
std::string toChars(T magnitude, std::chars_format format, int precision)
{
    // The digits before the point, those behind it, and an exponent.
    std::string text(static_cast<std::size_t>(std::numeric_limits<T>::max_exponent10 + precision + 16), '\0');
    const auto result = std::to_chars(text.data(), text.data() + text.size(), magnitude, format, precision);
    text.resize(static_cast<std::size_t>(result.ptr - text.data()));
    if (format != std::chars_format::hex) restorePoint(text);
    return text;
}

std::size_t exponentMark(const std::string& text, bool hexadecimal)
{
    return std::min(text.find(hexadecimal ? 'p' : 'e'), text.size());
}

/// f and e: all digits that there are, then zeros up to the precision.
template <class T>
void formatPlaces(NumberText& text, const Directive& directive, T magnitude, bool exponent)
{
    const int precision = directive.precision < 0 ? 6 : directive.precision;
    const int computed = std::min(precision, MOST_DIGITS<T>);
    text.digits = toChars(magnitude, exponent ? std::chars_format::scientific : std::chars_format::fixed, computed);
    text.split = exponent ? exponentMark(text.digits, false) : text.digits.size();
    text.trailingZeros = precision - computed;
    if (precision == 0 && directive.alternate) text.digits.insert(text.split++, 1, '.');
}

/// g: as e or f, whichever the exponent of the rounded value asks for, without trailing zeros.
template <class T>
void formatGeneral(NumberText& text, const Directive& directive, T magnitude)
{
    const int precision = std::max(directive.precision < 0 ? 6 : directive.precision, 1);
    const int computed = std::min(precision, MOST_DIGITS<T>);
    const std::string rounded = toChars(magnitude, std::chars_format::scientific, computed - 1);
    int exponent = 0;
    const std::size_t mark = exponentMark(rounded, false);
    std::from_chars(rounded.data() + mark + (rounded[mark + 1] == '+' ? 2 : 1), rounded.data() + rounded.size(),
                    exponent);

    Directive places = directive;
    const bool scientific = exponent < -4 || exponent >= precision;
    // A negative exponent asks for more places than the precision, which may be the largest there is.
    const std::int64_t decimals = std::int64_t{precision} - 1 - (scientific ? 0 : exponent);
    places.precision = static_cast<int>(std::min<std::int64_t>(decimals, std::numeric_limits<int>::max()));
    formatPlaces(text, places, magnitude, scientific);
    if (directive.alternate) return;

    text.trailingZeros = 0;
    const std::size_t point = text.digits.find('.');
    if (point == NONE || point > text.split) return;
    std::size_t end = text.digits.find_last_not_of('0', text.split - 1) + 1;
    if (end == point + 1) end = point;
    text.digits.erase(end, text.split - end);
    text.split = end;
}

/// a: the shortest exact form, or so many hexadecimal places.
template <class T>
void formatHexadecimal(NumberText& text, const Directive& directive, T magnitude)
{
    constexpr int MOST_PLACES = (std::numeric_limits<T>::digits + 6) / 4;
    text.prefix += "0x";
    const int computed = std::min(directive.precision, MOST_PLACES);
    if (directive.precision < 0)
    {
        text.digits.resize(64);
        const auto result = std::to_chars(text.digits.data(), text.digits.data() + text.digits.size(), magnitude,
                                          std::chars_format::hex);
        text.digits.resize(static_cast<std::size_t>(result.ptr - text.digits.data()));
    }
    else
    {
        text.digits = toChars(magnitude, std::chars_format::hex, computed);
        text.trailingZeros = directive.precision - computed;
    }
    text.split = exponentMark(text.digits, true);
    if (directive.alternate && text.digits.find('.') == NONE) text.digits.insert(text.split++, 1, '.');
}

}  // namespace

NumberText formatInteger(const Directive& directive, std::uint64_t magnitude, bool negative)
{
    const bool isSigned = directive.conversion == 'd' || directive.conversion == 'i';
    const bool hexadecimal = (directive.conversion | 0x20) == 'x';
    const int base = hexadecimal ? 16 : directive.conversion == 'o' ? 8 : 10;

    NumberText text;
    if (isSigned) text.prefix = signText(directive, negative);
    if (hexadecimal && directive.alternate && magnitude != 0) text.prefix = "0x";
    // A precision of 0 shows nothing of the value 0.
    if (magnitude != 0 || directive.precision != 0)
    {
        char buffer[std::numeric_limits<std::uint64_t>::digits];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, magnitude, base);
        text.digits.assign(buffer, result.ptr);
    }
    text.split = text.digits.size();
    text.leadingZeros = std::max<std::int64_t>(directive.precision - static_cast<std::int64_t>(text.digits.size()), 0);
    const bool wantsZero = base == 8 && directive.alternate && text.leadingZeros == 0;
    if (wantsZero && (text.digits.empty() || text.digits.front() != '0')) text.leadingZeros = 1;
    text.zeroPaddable = directive.precision < 0;
    if (directive.conversion == 'X')
    {
        makeUpper(text.prefix);
        makeUpper(text.digits);
    }
    return text;
}

template <class T>
NumberText formatFloating(const Directive& directive, T value)
{
    NumberText text;
    text.prefix = signText(directive, std::signbit(value));
    const T magnitude = std::fabs(value);
    if (!std::isfinite(value))
    {
        text.digits = std::isnan(value) ? "nan" : "inf";
        text.split = text.digits.size();
        text.zeroPaddable = false;
    }
    else
    {
        switch (directive.conversion | 0x20)
        {
            case 'f':
                formatPlaces(text, directive, magnitude, false);
                break;
            case 'e':
                formatPlaces(text, directive, magnitude, true);
                break;
            case 'g':
                formatGeneral(text, directive, magnitude);
                break;
            default:
                formatHexadecimal(text, directive, magnitude);
                break;
        }
    }
    if (isUpper(directive.conversion))
    {
        makeUpper(text.prefix);
        makeUpper(text.digits);
    }
    return text;
}

template NumberText formatFloating(const Directive& directive, double value);
template NumberText formatFloating(const Directive& directive, long double value);

}  // namespace Oxa_1_1::detail
