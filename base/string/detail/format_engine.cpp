#include "base/string/detail/format_engine.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <type_traits>

#include "base/platform/system/code_page.h"
#include "base/string/detail/foreign_text.h"
#include "base/string/detail/format_directive.h"
#include "base/string/detail/format_number.h"

namespace Oxa_1_1::detail
{

namespace
{

/// Counts all that is written and keeps what fits.
class Output
{
   public:
    Output(Char* buffer, std::size_t capacity) : m_buffer(buffer), m_capacity(capacity) {}

    std::uint64_t count() const { return m_count; }

    template <class C>
    void write(std::basic_string_view<C> text)
    {
        const std::size_t kept = std::min(text.size(), room());
        for (std::size_t i = 0; i < kept; ++i) m_buffer[m_count + i] = static_cast<Char>(text[i]);
        m_count += text.size();
    }

    void fill(std::int64_t count, Char c)
    {
        if (count <= 0) return;
        const auto wanted = static_cast<std::uint64_t>(count);
        std::fill_n(m_buffer + std::min<std::uint64_t>(m_count, m_capacity), std::min<std::uint64_t>(wanted, room()),
                    c);
        m_count += wanted;
    }

   private:
    std::size_t room() const { return m_count < m_capacity ? m_capacity - static_cast<std::size_t>(m_count) : 0; }

    Char* m_buffer;
    std::size_t m_capacity;
    std::uint64_t m_count = 0;
};

/// The arguments, wrapped because a va_list may be an array.
struct Arguments
{
    std::va_list list;
};

/// The text up to its zero; with a precision at most so many units, and no look behind them.
template <class C>
std::basic_string_view<C> bounded(const C* text, int precision)
{
    if (precision < 0) return text;
    std::size_t length = 0;
    while (length < static_cast<std::size_t>(precision) && text[length] != 0) ++length;
    return {text, length};
}

/// One formatting with wide arguments of type `Wide`.
template <class Wide>
class Formatter
{
   public:
    Formatter(Char* buffer, std::size_t capacity, std::va_list arguments) : m_output(buffer, capacity)
    {
        va_copy(m_arguments.list, arguments);
    }
    Formatter(const Formatter&) = delete;
    Formatter& operator=(const Formatter&) = delete;
    ~Formatter() { va_end(m_arguments.list); }

    int run(const Char* format)
    {
        while (*format != 0)
        {
            const Char* const plain = format;
            while (*format != 0 && *format != '%') ++format;
            m_output.write(TextView(plain, static_cast<std::size_t>(format - plain)));
            if (*format == 0) break;
            auto directive = readDirective(++format);
            if (!directive || !takeNumbers(*directive)) return -1;
            write(*directive);
        }
        constexpr auto LIMIT = static_cast<std::uint64_t>(std::numeric_limits<int>::max());
        return m_output.count() > LIMIT ? -1 : static_cast<int>(m_output.count());
    }

   private:
    template <class T>
    T take()
    {
        return va_arg(m_arguments.list, T);
    }

    /// Width and precision that are arguments. A negative width aligns to the left, a negative precision is none.
    /// False for a width that is out of range.
    bool takeNumbers(Directive& directive)
    {
        if (directive.widthFromArgument)
        {
            const int width = take<int>();
            if (width == std::numeric_limits<int>::min()) return false;
            directive.leftAligned = directive.leftAligned || width < 0;
            directive.width = std::abs(width);
        }
        if (directive.precisionFromArgument) directive.precision = std::max(take<int>(), -1);
        return true;
    }

    void write(const Directive& directive)
    {
        switch (directive.conversion)
        {
            case '%':
                m_output.write(TextView(OXA_TEXT("%")));
                break;
            case 'd':
            case 'i':
                writeSigned(directive);
                break;
            case 'o':
            case 'u':
            case 'x':
            case 'X':
                writeNumber(directive, formatInteger(directive, takeUnsigned(directive.size), false));
                break;
            case 'c':
            case 'C':
                writeCharacter(directive);
                break;
            case 's':
            case 'S':
                writeText(directive);
                break;
            case 'p':
                writePointer(directive);
                break;
            default:
                writeFloating(directive);
                break;
        }
    }

    std::int64_t takeSigned(ArgumentSize size)
    {
        switch (size)
        {
            case ArgumentSize::CHAR:
                return static_cast<signed char>(take<int>());
            case ArgumentSize::SHORT:
                return static_cast<short>(take<int>());
            case ArgumentSize::LONG:
                return take<long>();
            case ArgumentSize::LONG_DOUBLE:
            case ArgumentSize::BITS64:
                return take<long long>();
            default:
                return take<int>();
        }
    }

    std::uint64_t takeUnsigned(ArgumentSize size)
    {
        switch (size)
        {
            case ArgumentSize::CHAR:
                return static_cast<unsigned char>(take<int>());
            case ArgumentSize::SHORT:
                return static_cast<unsigned short>(take<int>());
            case ArgumentSize::LONG:
                return take<unsigned long>();
            case ArgumentSize::LONG_DOUBLE:
            case ArgumentSize::BITS64:
                return take<unsigned long long>();
            default:
                return take<unsigned int>();
        }
    }

    void writeSigned(const Directive& directive)
    {
        const std::int64_t value = takeSigned(directive.size);
        const auto bits = static_cast<std::uint64_t>(value);
        writeNumber(directive, formatInteger(directive, value < 0 ? 0 - bits : bits, value < 0));
    }

    void writeFloating(const Directive& directive)
    {
        if (directive.size == ArgumentSize::LONG_DOUBLE)
            writeNumber(directive, formatFloating(directive, take<long double>()));
        else
            writeNumber(directive, formatFloating(directive, take<double>()));
    }

    /// As the run-time library of Windows does: all hexadecimal digits of the address.
    void writePointer(const Directive& directive)
    {
        Directive digits = directive;
        digits.conversion = 'X';
        digits.alternate = false;
        digits.precision = 2 * sizeof(void*);
        const auto address = reinterpret_cast<std::uintptr_t>(take<void*>());
        writeNumber(directive, formatInteger(digits, address, false));
    }

    /// h means narrow whatever the letter's case, l wide; else the small letter is wide.
    static bool isNarrow(const Directive& directive)
    {
        if (directive.size == ArgumentSize::SHORT) return true;
        return directive.size != ArgumentSize::LONG && (directive.conversion & 0x20) == 0;
    }

    void writeCharacter(const Directive& directive)
    {
        const int argument = take<int>();
        if (isNarrow(directive))
        {
            const auto byte = static_cast<char>(argument);
            writePadded(directive, platform::decodeCodePage(0, {&byte, 1}));
            return;
        }
        const auto wide = static_cast<Wide>(argument);
        writePadded(directive, converted({&wide, 1}));
    }

    void writeText(const Directive& directive)
    {
        if (isNarrow(directive))
            writeNarrow(directive, take<const char*>());
        else
            writeWide(directive, take<const Wide*>());
    }

    void writeNarrow(const Directive& directive, const char* text)
    {
        if (text == nullptr) return writeNull(directive);
        const std::string_view bytes = bounded(text, directive.precision);
        const Text decoded = bytes.empty() ? Text() : platform::decodeCodePage(0, bytes);
        writePadded(directive, decoded);
    }

    void writeWide(const Directive& directive, const Wide* text)
    {
        if (text == nullptr) return writeNull(directive);
        writePadded(directive, converted(bounded(text, directive.precision)));
    }

    void writeNull(const Directive& directive)
    {
        writePadded(directive, bounded(OXA_TEXT("(null)"), directive.precision));
    }

    static auto converted(std::basic_string_view<Wide> text)
    {
        if constexpr (std::is_same_v<Wide, Char>)
            return text;
        else
            return fromForeign(text);
    }

    void writePadded(const Directive& directive, TextView text)
    {
        const std::int64_t padding = directive.width - static_cast<std::int64_t>(text.size());
        if (!directive.leftAligned) m_output.fill(padding, ' ');
        m_output.write(text);
        if (directive.leftAligned) m_output.fill(padding, ' ');
    }

    void writeNumber(const Directive& directive, const NumberText& number)
    {
        const std::string_view digits = number.digits;
        const std::int64_t length = static_cast<std::int64_t>(number.prefix.size() + digits.size()) +
                                    number.leadingZeros + number.trailingZeros;
        const std::int64_t padding = std::max<std::int64_t>(directive.width - length, 0);
        const bool zeros = directive.zeroPadded && !directive.leftAligned && number.zeroPaddable;
        if (!directive.leftAligned && !zeros) m_output.fill(padding, ' ');
        m_output.write(std::string_view(number.prefix));
        m_output.fill(number.leadingZeros + (zeros ? padding : 0), '0');
        m_output.write(digits.substr(0, number.split));
        m_output.fill(number.trailingZeros, '0');
        m_output.write(digits.substr(number.split));
        if (directive.leftAligned) m_output.fill(padding, ' ');
    }

    Output m_output;
    Arguments m_arguments{};
};

}  // namespace

int formatText(Char* buffer, std::size_t capacity, const Char* format, std::va_list arguments)
{
    return Formatter<Char>(buffer, capacity, arguments).run(format);
}

int formatTextForeign(Char* buffer, std::size_t capacity, const Char* format, std::va_list arguments)
{
    return Formatter<ForeignChar>(buffer, capacity, arguments).run(format);
}

}  // namespace Oxa_1_1::detail
