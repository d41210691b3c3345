#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "base/char.h"
#include "base/export.h"
#include "base/string/code_page_interface.h"

namespace Oxa_1_1
{

class Module;
class String;

/// A standard text or view that a String is compared with where it lies, without a copy.
template <class T>
concept TextLike =
    !std::same_as<T, String> && !std::convertible_to<const T&, const Char*> && std::convertible_to<const T&, TextView>;

/// The host framework's own wide text class, known by its interface.
template <class T>
concept FrameworkText = requires(const T& text)
{
    {
        text.GetString()
        } -> std::convertible_to<const Char*>;
    {
        text.GetLength()
        } -> std::convertible_to<int>;
};

/// UTF-16 text that is either present (and may be empty) or absent: NIL.
///
/// A value type; copies are deep. Every operation says what it does with NIL; where it does not, NIL reads as the
/// empty text. Positions and lengths count 16-bit units, so a surrogate pair counts as two. Narrow text without a
/// code page is in the system's ANSI code page; UTF-8 is passed as a UTF8Interface. Nothing throws for bad text; only
/// memory that runs out does. Wide literals of either kind (L"...", u"...") are taken on every system.
///
/// Threads: concurrent reads are safe, a write needs exclusive access.
class OXA_API String
{
   public:
    /// The present text without characters.
    static const String EMPTY;
    /// The absent text.
    static const String NIL;

    // ---- Construction -----------------------------------------------------------------------------------------

    /// NIL.
    /// @{
    constexpr String() noexcept = default;
    constexpr String(std::nullptr_t) noexcept {}
    /// @}
    String(const String& other) = default;
    /// Takes the text; `other` is left NIL.
    String(String&& other) noexcept : m_text(std::move(other.m_text)), m_present(std::exchange(other.m_present, false))
    {
        other.m_text.clear();
    }
    constexpr ~String() = default;

    /// The text up to its zero; NIL for null.
    String(const Char* text);
    /// The first min(length, length of `text`) units; NIL for null. A negative length counts as 0.
    String(const Char* text, int length);
    /// `count` copies of `c`, present even when `count` is 0 (or negative, which counts as 0).
    String(Char c, int count);
    /// The whole text, embedded zeros included.
    /// @{
    String(const Text& text) : m_text(text), m_present(true) {}
    String(Text&& text) noexcept : m_text(std::move(text)), m_present(true) {}
    String(TextView text) : m_text(text), m_present(true) {}
    /// @}

    /// Narrow text of the ANSI code page up to its zero; NIL for null.
    String(const char* text);
    /// The first min(length, length of `text`) bytes; NIL for null. A negative length counts as 0.
    String(const char* text, int length);
    /// The whole narrow text of the ANSI code page, embedded zeros included.
    String(const std::string& text);
    /// Narrow text of a code page up to its zero; NIL for null, present and empty for a code page nobody knows.
    /// Ill-formed bytes become the code page's replacement character.
    String(const CodePageInterface& text);

    /// The other kind of wide literal, converted. Unpaired surrogates and values beyond Unicode become U+FFFD.
    /// @{
    String(const ForeignChar* text);
    String(const ForeignChar* text, int length);
    String(const std::basic_string<ForeignChar>& text);
    String(std::basic_string_view<ForeignChar> text);
    template <std::same_as<ForeignChar> C>
    String(C c, int count) : String(repeated(c, count))
    {
    }
    /// @}

    /// The entry `id` of the module's string table, from its translation if that has one, in the language that the
    /// system prefers. "Error loading string resource!" for an entry that is missing or empty.
    static String loadFromResource(unsigned int id, const Module& module);

    /// The host framework's text: NIL for a null buffer.
    template <FrameworkText T>
    String(const T& text)
    {
        const Char* const buffer = text.GetString();
        if (buffer != nullptr) *this = String(TextView(buffer, static_cast<std::size_t>(text.GetLength())));
    }

    String& operator=(const String& other) = default;
    /// Takes the text; `other` is left NIL.
    String& operator=(String&& other) noexcept
    {
        if (this == &other) return *this;
        m_text = std::move(other.m_text);
        m_present = std::exchange(other.m_present, false);
        other.m_text.clear();
        return *this;
    }

    // ---- State and conversion ---------------------------------------------------------------------------------

    /// Whether it is absent.
    bool isNil() const noexcept { return !m_present; }
    /// True for NIL and for a text without characters.
    bool isEmpty() const noexcept { return m_text.empty(); }
    /// The number of units; 0 for NIL.
    int length() const noexcept { return static_cast<int>(m_text.size()); }

    /// The whole stored text; empty for NIL. Valid until the next change.
    /// @{
    TextView view() const noexcept { return m_text; }
    operator TextView() const noexcept { return m_text; }
    /// @}
    /// The text with its terminating zero, never null. Valid until the next change.
    const Char* stringPath() const noexcept { return m_text.c_str(); }
    /// The text in the ANSI code page, '?' for what it lacks; empty for NIL.
    std::string stringAnsi() const;
    /// The text in UTF-8, U+FFFD for unpaired surrogates; empty for NIL.
    std::string stringUTF8() const;

    /// Appends the first min(length, length of `text`) units; null changes nothing, not even NIL.
    /// @{
    void write(const Char* text, int length);
    template <std::same_as<ForeignChar> C>
    void write(const C* text, int length)
    {
        if (text != nullptr) append(String(text, length).view());
    }
    /// @}

    // ---- Comparison -------------------------------------------------------------------------------------------

    /// -1, 0 or 1: ordinal by unsigned unit, up to the first zero. NIL equals NIL only and comes before every present
    /// text; a null pointer counts as NIL.
    /// @{
    int compare(const String& other) const noexcept;
    int compare(const Char* text) const noexcept;
    int compare(Char c) const noexcept;
    template <TextLike T>
    int compare(const T& text) const noexcept
    {
        return compareText(text);
    }
    template <std::same_as<ForeignChar> C>
    int compare(C c) const
    {
        return compare(repeated(c, 1));
    }
    template <std::same_as<ForeignChar> C>
    int compare(const C* text) const
    {
        return compare(String(text));
    }
    /// @}

    /// The same after mapping each unit to lower case: a negative value, 0 or a positive one.
    /// @{
    int compareIgnoreCase(const String& other) const noexcept;
    int compareIgnoreCase(const Char* text) const noexcept;
    int compareIgnoreCase(Char c) const noexcept;
    template <TextLike T>
    int compareIgnoreCase(const T& text) const noexcept
    {
        return compareTextIgnoreCase(text);
    }
    template <std::same_as<ForeignChar> C>
    int compareIgnoreCase(C c) const
    {
        return compareIgnoreCase(repeated(c, 1));
    }
    template <std::same_as<ForeignChar> C>
    int compareIgnoreCase(const C* text) const
    {
        return compareIgnoreCase(String(text));
    }
    /// @}

    /// Both NIL, or both present with the same length and the same units up to the first zero.
    bool compareEquality(const String& other) const noexcept;

    /// In terms of compare().
    /// @{
    friend bool operator==(const String& a, const String& b) noexcept { return a.compare(b) == 0; }
    friend bool operator==(const String& a, const Char* b) noexcept { return a.compare(b) == 0; }
    template <TextLike T>
    friend bool operator==(const String& a, const T& b) noexcept
    {
        return a.compareText(b) == 0;
    }
    friend std::weak_ordering operator<=>(const String& a, const String& b) noexcept { return a.compare(b) <=> 0; }
    friend std::weak_ordering operator<=>(const String& a, const Char* b) noexcept { return a.compare(b) <=> 0; }
    template <TextLike T>
    friend std::weak_ordering operator<=>(const String& a, const T& b) noexcept
    {
        return a.compareText(b) <=> 0;
    }
    /// @}

    // ---- Appending --------------------------------------------------------------------------------------------

    /// Appends a number in decimal, whatever the locale; the byte types are numbers, never characters. Appending to NIL
    /// gives a present text of just what was appended.
    /// @{
    String& operator+=(signed char value) { return appendSigned(value); }
    String& operator+=(unsigned char value) { return appendUnsigned(value); }
    String& operator+=(short value) { return appendSigned(value); }
    String& operator+=(unsigned short value) { return appendUnsigned(value); }
    String& operator+=(int value) { return appendSigned(value); }
    String& operator+=(unsigned int value) { return appendUnsigned(value); }
    String& operator+=(long value) { return appendSigned(value); }
    String& operator+=(unsigned long value) { return appendUnsigned(value); }
    String& operator+=(long long value) { return appendSigned(value); }
    String& operator+=(unsigned long long value) { return appendUnsigned(value); }
    /// @}
    /// About five significant digits beyond the integer part, four for a fraction; "nan", "inf", "-inf".
    String& operator+=(float value);
    /// About nine significant digits beyond the integer part, eight for a fraction; "nan", "inf", "-inf".
    /// @{
    String& operator+=(double value);
    String& operator+=(long double value) { return *this += static_cast<double>(value); }
    /// @}
    /// "true" or "false". Exactly bool: a pointer never turns into a truth value.
    template <std::same_as<bool> B>
    String& operator+=(B value)
    {
        return append(value ? TextView(OXA_TEXT("true")) : TextView(OXA_TEXT("false")));
    }
    /// The character; a zero appends nothing, but makes NIL present.
    /// @{
    String& operator+=(Char c);
    template <std::same_as<ForeignChar> C>
    String& operator+=(C c)
    {
        return c == 0 ? append({}) : append(repeated(c, 1).view());
    }
    /// @}
    /// The text up to its zero; null appends nothing and leaves NIL as it is.
    String& operator+=(const Char* text);
    /// The text up to its first zero; NIL becomes a copy of `other`.
    String& operator+=(const String& other);
    /// The text up to its first zero.
    template <TextLike T>
    String& operator+=(const T& text)
    {
        return appendText(text);
    }

    /// The same as +=, for chains: text << name << OXA_TEXT(": ") << 5.
    template <class T>
    requires requires(String& self, const T& value) { self += value; }
    String& operator<<(const T& value) { return *this += value; }

    /// A new text: a copy of the first with the second appended, as += does.
    /// @{
    friend String operator+(const String& a, const String& b) { return String(a) += b; }
    friend String operator+(const String& a, const Char* b) { return String(a) += b; }
    friend String operator+(const String& a, Char b) { return String(a) += b; }
    template <std::same_as<ForeignChar> C>
    friend String operator+(const String& a, C b)
    {
        return String(a) += b;
    }
    template <std::same_as<ForeignChar> C>
    friend String operator+(String&& a, C b)
    {
        return std::move(a += b);
    }
    template <std::same_as<ForeignChar> C>
    friend String operator+(C a, const String& b)
    {
        return (String() += a) += b;
    }
    friend String operator+(String&& a, const String& b) { return std::move(a += b); }
    friend String operator+(String&& a, const Char* b) { return std::move(a += b); }
    friend String operator+(String&& a, Char b) { return std::move(a += b); }
    friend String operator+(const Char* a, const String& b) { return String(a) += b; }
    friend String operator+(Char a, const String& b) { return (String() += a) += b; }
    /// @}

    /// Replaces the text by a formatted one, by the rules of the wide printf family: in the format's own character
    /// type, %s, %ls and %c mean wide text, %hs, %S and %C narrow text of the ANSI code page. %n and whatever else is
    /// malformed leave the text as it was.
    void printf_apply(const Char* format, ...);
    /// The same for the other kind of wide literal, whose wide arguments are of that kind, too.
    void printf_apply(const ForeignChar* format, ...);

    // ---- Trailing index: the run of decimal digits at the end -------------------------------------------------

    /// Its value, at most the largest int; 0 without digits.
    unsigned int getIndex() const noexcept;
    /// Replaces the trailing digits by `n` without padding; 0 only removes them, unless nothing would remain.
    void setIndex(unsigned int n);
    /// Counts up in place: the field keeps its width and zeros and grows only on carry ("scan009" => "scan010",
    /// "scan99" => "scan100"), whatever its length. Without digits it appends "1".
    void incrementIndex();
    /// Counts down in place ("scan010" => "scan009", "scan10" => "scan09"); 0 stays 0. Without digits it appends "1".
    void decrementIndex();

    // ---- Extraction: each reads a value from the front and removes what it consumed ---------------------------

    /// A number, which begins at the first letter, digit, '-', '.' or '+'. Without one the value is 0 and the text
    /// becomes present and empty. A letter where a number was expected gives 0 and stays: compare the text before and
    /// after. Values beyond the type's range give its nearest limit; the byte and short types are cut from an int, and
    /// `long` has 32 bits, as on Windows.
    /// @{
    String& operator>>(signed char& out);
    String& operator>>(unsigned char& out);
    String& operator>>(short& out);
    String& operator>>(unsigned short& out);
    String& operator>>(int& out);
    String& operator>>(long& out);
    String& operator>>(long long& out);
    String& operator>>(unsigned int& out);
    String& operator>>(unsigned long& out);
    String& operator>>(unsigned long long& out);
    String& operator>>(float& out);
    String& operator>>(double& out);
    /// @}
    /// "true" and "false" in any case, or a number that is not 0. Another word gives false and stays.
    String& operator>>(bool& out);
    /// The next graphic character.
    /// @{
    String& operator>>(Char& out);
    String& operator>>(ForeignChar& out);
    /// @}
    /// A quoted text (backslashes kept as they are) or the rest of the line without its line feed.
    String& operator>>(String& out);
    /// Removes leading characters that are not graphic; a text of nothing else is kept.
    void eatwhite();

    // ---- Search: the index of a match at or after `start`, or -1 ----------------------------------------------

    /// The first occurrence of `text` before the first zero from `start` on; -1 for a null or empty one. As all
    /// searches it gives -1 also in NIL, in an empty text, and for a start that is negative or not below the length.
    /// @{
    int find(const Char* text, int start = 0) const noexcept;
    int find(const String& text, int start = 0) const noexcept { return find(text.stringPath(), start); }
    /// @}
    /// In the whole stored text, embedded zeros included. A character beyond U+FFFF is found as the pair that it is
    /// stored as.
    /// @{
    int find(Char c, int start = 0) const noexcept;
    template <std::same_as<ForeignChar> C>
    int find(C c, int start = 0) const
    {
        return isUnit(c) ? find(static_cast<Char>(c), start) : find(repeated(c, 1), start);
    }
    /// @}
    /// The last occurrence, which may overlap others; -1 for a null or empty text.
    /// @{
    int findLastOf(const Char* text) const noexcept;
    int findLastOf(const String& text) const noexcept { return findLastOf(text.stringPath()); }
    /// @}
    /// The last `c` at or after `start`.
    int findLastOf(Char c, int start = 0) const noexcept;

    /// The first letter, by Unicode; the first unit that is none.
    /// @{
    int findAlpha(int start = 0) const noexcept;
    int findNonAlpha(int start = 0) const noexcept;
    /// @}
    /// The first letter, digit, '-', '.' or '+'; the first unit that is none of these.
    /// @{
    int findAlphaNum(int start = 0) const noexcept;
    int findNonAlphaNum(int start = 0) const noexcept;
    /// @}
    /// The first decimal digit other than `except`.
    int findDigit(int start = 0, Char except = 0) const noexcept;
    /// The first unit that is no decimal digit.
    int findNonDigit(int start = 0) const noexcept;
    /// The first digit or '-'; the first unit that is neither. Kept on purpose: '+' does not count here, though it
    /// starts a number for findAlphaNum.
    /// @{
    int findSignedDigit(int start = 0) const noexcept;
    int findNonSignedDigit(int start = 0) const noexcept;
    /// @}
    /// The first digit, '.', '+', '-', 'e' or 'E'.
    int findNumeric(int start = 0) const noexcept;
    /// The first unit that is not graphic (blank, control, line break); the first that is.
    /// @{
    int findWS(int start = 0) const noexcept;
    int findNonWS(int start = 0) const noexcept;
    /// @}

    // ---- Editing ----------------------------------------------------------------------------------------------

    /// From `start` up to but not including `end`, both clamped; a negative end means the length. Present and empty
    /// for an empty span, a copy (NIL for NIL) when the span is the whole text.
    String substr(int start, int end = -1) const;
    /// A copy without leading and trailing white space.
    String trim(bool left = true, bool right = true) const;
    /// Case counts. Kept on purpose: true for an empty or NIL prefix, where endsWith gives false.
    bool startsWith(const String& prefix) const noexcept;
    /// Case counts unless it is to be ignored. False for an empty or NIL suffix.
    /// @{
    bool endsWith(const String& suffix, bool ignoreCase) const noexcept;
    bool endsWith(const String& suffix) const noexcept { return endsWith(suffix, false); }
    /// @}

    /// Replaces units up to the first zero; the number of replacements.
    int replace(Char from, Char to) noexcept;
    /// Replaces texts up to the first zero; the number of replacements. Resumes after the insertion, takes a null or
    /// NIL `to` as the empty text and does nothing for a null or empty `from`.
    /// @{
    int replace(const Char* from, const Char* to);
    int replace(const String& from, const String& to) { return replace(from.stringPath(), to.stringPath()); }
    int replace(const String& from, const Char* to) { return replace(from.stringPath(), to); }
    int replace(const Char* from, const String& to) { return replace(from, to.stringPath()); }
    /// @}

    /// Reverses the units in place, surrogate pairs not kept together.
    void reverse() noexcept;

    /// A copy for display of at most `maxLength` units: a head of `headLength` units, cut after its last '/', an
    /// ellipsis, and as much of the end as fits, begun at its first '/' when it has one. A text that fits is copied.
    String shortenString(int maxLength, int headLength) const;

    /// Escapes line feed, carriage return, double quote and backslash by a backslash and, when `unicode`, every
    /// non-ASCII unit as `\uXXXX`, so that the text can stand as a one-line literal.
    void controlsToEsc(bool unicode);
    /// The reverse, `\uXXXX` only when `unicode`. Stops at the first escape it does not know and leaves the rest.
    /// Returns the number of escapes converted, -1 when the text holds no backslash.
    int escToControls(bool unicode);

   private:
    struct Present
    {
    };
    constexpr explicit String(Present) noexcept : m_present(true) {}

    static String repeated(ForeignChar c, int count);
    int compareText(TextView text) const noexcept;
    int compareTextIgnoreCase(TextView text) const noexcept;
    String& append(TextView text);
    String& appendText(TextView text);
    static bool isUnit(ForeignChar c) noexcept { return static_cast<ForeignChar>(static_cast<Char>(c)) == c; }
    String& appendSigned(long long value);
    String& appendUnsigned(unsigned long long value);
    OXA_HIDDEN void becomeEmpty() noexcept;
    OXA_HIDDEN void dropFront(std::size_t count);
    template <class Predicate>
    OXA_HIDDEN int findUnit(int start, Predicate matches) const noexcept;
    template <class Limits, class T>
    OXA_HIDDEN String& extractSigned(T& out);
    template <class Scan, class T>
    OXA_HIDDEN String& extractScanned(T& out, Scan scan);

    Text m_text;
    bool m_present = false;
};

static_assert(sizeof(String) == sizeof(Text) + sizeof(void*));

/// The order of every map and set keyed by String: blind to case, NIL first. Transparent: a view or a literal is
/// looked up without making a String of it.
struct StringLess2
{
    /// Containers look up what they are given without converting it.
    using is_transparent = void;

    /// Whether `a` comes before `b`.
    /// @{
    bool operator()(const String& a, const String& b) const noexcept { return a.compareIgnoreCase(b) < 0; }
    bool operator()(const String& a, const Char* b) const noexcept { return a.compareIgnoreCase(b) < 0; }
    bool operator()(const Char* a, const String& b) const noexcept { return b.compareIgnoreCase(a) > 0; }
    template <TextLike T>
    bool operator()(const String& a, const T& b) const noexcept
    {
        return a.compareIgnoreCase(b) < 0;
    }
    template <TextLike T>
    bool operator()(const T& a, const String& b) const noexcept
    {
        return b.compareIgnoreCase(a) > 0;
    }
    /// @}
};

/// Writes the ANSI form with the stream's width and fill.
/// Kept on purpose: NIL and empty texts write nothing, not even padding, and leave the width set.
OXA_API std::ostream& operator<<(std::ostream& stream, const String& text);

/// Reads one token of ANSI text: up to white space, or between double quotes, where a backslash makes the next
/// character literal. The result is present; at the end of input it is empty and the stream fails.
OXA_API std::istream& operator>>(std::istream& stream, String& text);

}  // namespace Oxa_1_1

/// Equal texts, by ==, have equal hashes.
template <>
struct std::hash<Oxa_1_1::String>
{
    /// Of the text up to its first zero.
    std::size_t operator()(const Oxa_1_1::String& text) const noexcept
    {
        if (text.isNil()) return 0;
        return std::hash<Oxa_1_1::TextView>{}(text.view().substr(0, text.view().find(Oxa_1_1::Char())));
    }
};
