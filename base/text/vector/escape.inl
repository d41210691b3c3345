// Escapes by vectors of any width. Included like scan.inl.

#include "base/text/vector/scan.inl"

/// The lengths of \n and of \uXXXX.
constexpr std::size_t LETTER_ESCAPE = 2;
constexpr std::size_t UNICODE_ESCAPE = 6;

/// The bits of which an escaped unit has at least one, if it is not escaped by a letter.
constexpr Char bitsOfUnicodeEscaped(bool unicode) { return unicode ? 0xFF80 : 0; }

inline bool isEscapedByLetter(Char c) { return c == '\n' || c == '\r' || c == '"' || c == '\\'; }

template <class V>
auto escapedByLetter(typename V::Register units)
{
    const auto controls = V::either(V::equal(units, V::splat('\n')), V::equal(units, V::splat('\r')));
    return V::either(controls, V::either(V::equal(units, V::splat('"')), V::equal(units, V::splat('\\'))));
}

template <class V>
unsigned maskOfUnicodeEscaped(typename V::Register units, Char bits)
{
    return V::mask(V::equal(V::both(units, V::splat(bits)), V::splat(0))) ^ V::ALL;
}

template <class V>
std::size_t escapedLength(const Char* text, std::size_t length, bool unicode)
{
    const Char bits = bitsOfUnicodeEscaped(unicode);
    std::size_t result = length;
    std::size_t i = 0;
    if constexpr (!std::is_same_v<V, Scalar>)
    {
        for (; length - i >= V::UNITS; i += V::UNITS)
        {
            const auto units = V::load(text + i);
            // Masks have two bits a unit.
            result += bitCount(V::mask(escapedByLetter<V>(units))) / 2 * (LETTER_ESCAPE - 1);
            result += bitCount(maskOfUnicodeEscaped<V>(units, bits)) / 2 * (UNICODE_ESCAPE - 1);
        }
    }
    for (; i < length; ++i)
    {
        result += isEscapedByLetter(text[i]) ? LETTER_ESCAPE - 1 : 0;
        result += (text[i] & bits) != 0 ? UNICODE_ESCAPE - 1 : 0;
    }
    return result;
}

constexpr Char HEXADECIMAL_DIGITS[] = OXA_TEXT("0123456789ABCDEF");

/// Writes the escape of `c`; returns its length.
inline std::size_t writeEscape(Char c, Char* out)
{
    out[0] = '\\';
    if (c < 0x80)
    {
        out[1] = c == '\n' ? 'n' : c == '\r' ? 'r' : c;
        return LETTER_ESCAPE;
    }
    out[1] = 'u';
    for (int i = 0; i < 4; ++i) out[2 + i] = HEXADECIMAL_DIGITS[c >> (12 - 4 * i) & 0xF];
    return UNICODE_ESCAPE;
}

/// Every vector is written as it is; behind each escape within it, its rest is written again further on. So vectors are
/// stored past what counts, and the source must go on for one more. The result is never shorter than the source.
template <class V>
void escapeBy(const Char* text, std::size_t length, Char bits, Char* out, std::size_t i)
{
    if constexpr (std::is_same_v<V, Scalar>)
    {
        for (; i < length; ++i)
        {
            if (isEscapedByLetter(text[i]) || (text[i] & bits) != 0)
                out += writeEscape(text[i], out);
            else
                *out++ = text[i];
        }
    }
    else
    {
        for (; length - i >= 2 * V::UNITS; i += V::UNITS)
        {
            const auto units = V::load(text + i);
            V::store(units, out);
            unsigned hits = V::mask(escapedByLetter<V>(units)) | maskOfUnicodeEscaped<V>(units, bits);
            for (; hits != 0; hits = V::withoutFirst(hits))
            {
                const std::size_t place = V::firstUnit(hits);
                const std::size_t size = writeEscape(text[i + place], out + place);
                V::store(V::load(text + i + place + 1), out + place + size);
                out += size - 1;
            }
            out += V::UNITS;
        }
        escapeBy<typename V::Half>(text, length, bits, out, i);
    }
}

template <class V>
void escape(const Char* text, std::size_t length, bool unicode, Char* out)
{
    escapeBy<V>(text, length, bitsOfUnicodeEscaped(unicode), out, 0);
}
