#include "base/string/detail/format_directive.h"

#include <limits>

#include "base/text/character.h"

namespace Oxa_1_1::detail
{

namespace
{

void readFlags(const Char*& format, Directive& directive)
{
    for (;; ++format)
    {
        switch (*format)
        {
            case '-':
                directive.leftAligned = true;
                break;
            case '+':
                directive.forceSign = true;
                break;
            case ' ':
                directive.blankSign = true;
                break;
            case '#':
                directive.alternate = true;
                break;
            case '0':
                directive.zeroPadded = true;
                break;
            // Digits are grouped by locale, and there is none.
            case '\'':
                break;
            default:
                return;
        }
    }
}

/// A '*' or a number, 0 without digits. False when the number is too large.
bool readNumber(const Char*& format, int& number, bool& fromArgument)
{
    fromArgument = *format == '*';
    if (fromArgument)
    {
        ++format;
        return true;
    }
    constexpr int LIMIT = std::numeric_limits<int>::max();
    number = 0;
    for (; text::isDigit(*format); ++format)
    {
        const int digit = *format - '0';
        if (number > (LIMIT - digit) / 10) return false;
        number = number * 10 + digit;
    }
    return true;
}

bool skip(const Char*& format, TextView modifier)
{
    for (std::size_t i = 0; i < modifier.size(); ++i)
        if (format[i] != modifier[i]) return false;
    format += modifier.size();
    return true;
}

ArgumentSize readSize(const Char*& format)
{
    // Longer ones first.
    constexpr struct
    {
        TextView modifier;
        ArgumentSize size;
    } SIZES[] = {
        {OXA_TEXT("hh"), ArgumentSize::CHAR},    {OXA_TEXT("h"), ArgumentSize::SHORT},
        {OXA_TEXT("ll"), ArgumentSize::BITS64},  {OXA_TEXT("l"), ArgumentSize::LONG},
        {OXA_TEXT("w"), ArgumentSize::LONG},     {OXA_TEXT("I64"), ArgumentSize::BITS64},
        {OXA_TEXT("I32"), ArgumentSize::BITS32}, {OXA_TEXT("I"), ArgumentSize::BITS64},
        {OXA_TEXT("j"), ArgumentSize::BITS64},   {OXA_TEXT("z"), ArgumentSize::BITS64},
        {OXA_TEXT("t"), ArgumentSize::BITS64},   {OXA_TEXT("L"), ArgumentSize::LONG_DOUBLE},
    };
    for (const auto& [modifier, size] : SIZES)
        if (skip(format, modifier)) return size;
    return ArgumentSize::NONE;
}

}  // namespace

std::optional<Directive> readDirective(const Char*& format)
{
    Directive directive;
    readFlags(format, directive);
    if (!readNumber(format, directive.width, directive.widthFromArgument)) return std::nullopt;
    if (*format == '.')
    {
        ++format;
        if (!readNumber(format, directive.precision, directive.precisionFromArgument)) return std::nullopt;
    }
    directive.size = readSize(format);
    // %n would write through an argument, so it is not among them.
    constexpr TextView CONVERSIONS = OXA_TEXT("diouxXcCsSpfFeEgGaA%");
    directive.conversion = *format;
    if (directive.conversion == 0 || CONVERSIONS.find(directive.conversion) == TextView::npos) return std::nullopt;
    ++format;
    return directive;
}

}  // namespace Oxa_1_1::detail
