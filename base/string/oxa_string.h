#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "base/char.h"
#include "base/export.h"
#include "base/string/code_page_interface.h"
#include "base/string/text_concepts.h"

/// Defined by a program whose narrow text is UTF-8, before this header or on the command line: then narrow text without
/// a code page never becomes a String by itself, only where String(text) is written out.
#ifdef OXA_NO_IMPLICIT_ANSI
#define OXA_ANSI explicit
#else
#define OXA_ANSI
#endif

namespace Oxa_1_1
{

class Module;

/// UTF-16 text that is either present (and may be empty) or absent: NIL.
///
/// A value type; copies are deep. Every operation says what it does with NIL; where it does not, NIL reads as the
/// empty text. Positions and lengths count 16-bit units, so a surrogate pair counts as two. Narrow text without a
/// code page is in the system's ANSI code page; UTF-8 is passed as a UTF8Interface. Nothing throws for bad text; only
/// memory that runs out does. Wide literals of either kind (L"...", u"...") and u8"..." are taken on every system.
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
    OXA_ANSI String(const char* text);
    /// The first min(length, length of `text`) bytes; NIL for null. A negative length counts as 0.
    OXA_ANSI String(const char* text, int length);
    /// The whole narrow text of the ANSI code page, embedded zeros included.
    /// @{
    OXA_ANSI String(const std::string& text);
    template <std::same_as<std::string_view> T>
    OXA_ANSI String(T text) : String(std::string(text))
    {
    }
    /// @}
    /// Narrow text of a code page up to its zero; NIL for null, present and empty for a code page nobody knows.
    /// Ill-formed bytes become the code page's replacement character.
    String(const CodePageInterface& text);

    /// The other kind of wide literal, converted. Unpaired surrogates and values beyond Unicode become U+FFFD.
    /// @{
    String(const ForeignChar* text);
    String(const ForeignChar* text, int length);
    String(const std::basic_string<ForeignChar>& text);
    String(std::basic_string_view<ForeignChar> text);
    /// @}
    /// Text that is UTF-8 by its type, as its constructors of Char have it; lengths count bytes.
    /// @{
    String(const char8_t* text);
    String(const char8_t* text, int length);
    String(const std::u8string& text) : String(std::u8string_view(text)) {}
    String(std::u8string_view text);
    /// @}
    /// `count` copies of a character of another type.
    template <OtherCharacter C>
    String(C c, int count) : String(repeated(textUnitsOf(c).view(), count))
    {
    }
    /// Swapped arguments.
    template <std::integral N, Character C>
    String(N count, C c) = delete;

    /// The whole text, embedded zeros included, of UTF-8; a null pointer gives NIL. Ill-formed sequences become U+FFFD.
    /// @{
    [[nodiscard]] static String fromUTF8(std::string_view bytes);
    [[nodiscard]] static String fromUTF8(std::u8string_view bytes) { return {bytes}; }
    [[nodiscard]] static String fromUTF8(const char* bytes);
    [[nodiscard]] static String fromUTF8(const char8_t* bytes) { return {bytes}; }
    [[nodiscard]] static String fromUTF8(std::nullptr_t) { return {}; }
    /// @}
    /// The same, but nothing when the bytes are not well-formed.
    /// @{
    [[nodiscard]] static std::optional<String> fromUTF8Exactly(std::string_view bytes);
    [[nodiscard]] static std::optional<String> fromUTF8Exactly(std::u8string_view bytes);
    /// @}
    /// The whole text, embedded zeros included, of bytes in a code page by its Windows number, 0 for ANSI; nothing when
    /// the system does not know the code page.
    [[nodiscard]] static std::optional<String> fromCodePage(std::string_view bytes, std::uint32_t codePage);

    /// The entry `id` of the module's string table, from its translation if that has one, in the language that the
    /// system prefers. "Error loading string resource!" for an entry that is missing or empty.
    [[nodiscard]] static String loadFromResource(unsigned int id, const Module& module);

    /// The host framework's text: NIL for a null buffer.
    template <FrameworkText T>
    String(const T& text);

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
    [[nodiscard]] bool isNil() const noexcept { return !m_present; }
    /// True for NIL and for a text without characters.
    [[nodiscard]] bool isEmpty() const noexcept { return m_text.empty(); }
    /// The number of units; 0 for NIL. Of a longer text the largest int, which is then as far as searches look.
    [[nodiscard]] int length() const noexcept { return static_cast<int>(countable().size()); }
    /// The unit at a position; 0 outside of the text.
    template <std::integral I>
    [[nodiscard]] Char operator[](I index) const noexcept
    {
        const auto i = static_cast<std::size_t>(index);
        return i < m_text.size() ? m_text[i] : Char();
    }
    /// The units, embedded zeros included. Valid until the next change.
    /// @{
    [[nodiscard]] const Char* begin() const noexcept { return m_text.data(); }
    [[nodiscard]] const Char* end() const noexcept { return m_text.data() + m_text.size(); }
    /// @}

    /// The whole stored text; empty for NIL. Valid until the next change. Text and view turn into each other, so a
    /// conditional expression of both says which one it is to be: `condition ? text : String(view)`.
    /// @{
    [[nodiscard]] TextView view() const noexcept { return m_text; }
    operator TextView() const noexcept { return m_text; }
    /// @}
    /// The text with its terminating zero, never null. Valid until the next change.
    [[nodiscard]] const Char* stringPath() const noexcept { return m_text.c_str(); }
    /// The text in the ANSI code page, '?' for what it lacks; empty for NIL.
    [[nodiscard]] std::string stringAnsi() const;
    /// The text in UTF-8, U+FFFD for unpaired surrogates; empty for NIL.
    [[nodiscard]] std::string stringUTF8() const;
    /// The text in a code page by its Windows number, as stringAnsi(); nothing when the system does not know it.
    [[nodiscard]] std::optional<std::string> toCodePage(std::uint32_t codePage) const;

    /// Appends the first min(length, length of `text`) units; null changes nothing, not even NIL.
    /// @{
    void write(const Char* text, int length);
    template <ForeignUnit C>
    void write(const C* text, int length);
    /// @}

    // ---- Comparison -------------------------------------------------------------------------------------------

    /// -1, 0 or 1: ordinal by unsigned unit, up to the first zero. NIL equals NIL only and comes before every present
    /// text; a null pointer counts as NIL.
    /// @{
    [[nodiscard]] int compare(const String& other) const noexcept;
    [[nodiscard]] int compare(const Char* text) const noexcept;
    [[nodiscard]] int compare(Char c) const noexcept;
    template <OtherText T>
    [[nodiscard]] int compare(const T& text) const noexcept;
    template <OtherCharacter C>
    [[nodiscard]] int compare(C c) const noexcept;
    /// @}

    /// The same after mapping each unit to lower case: a negative value, 0 or a positive one.
    /// @{
    [[nodiscard]] int compareIgnoreCase(const String& other) const noexcept;
    [[nodiscard]] int compareIgnoreCase(const Char* text) const noexcept;
    [[nodiscard]] int compareIgnoreCase(Char c) const noexcept;
    template <OtherText T>
    [[nodiscard]] int compareIgnoreCase(const T& text) const noexcept;
    template <OtherCharacter C>
    [[nodiscard]] int compareIgnoreCase(C c) const noexcept;
    /// @}

    /// Both NIL, or both present with the same length and the same units up to the first zero.
    [[nodiscard]] bool compareEquality(const String& other) const noexcept;

    /// In terms of compare().
    /// @{
    friend bool operator==(const String& a, const String& b) noexcept { return a.compare(b) == 0; }
    friend bool operator==(const String& a, const Char* b) noexcept { return a.compare(b) == 0; }
    template <OtherText T>
    friend bool operator==(const String& a, const T& b) noexcept
    {
        return a.compare(b) == 0;
    }
    friend std::weak_ordering operator<=>(const String& a, const String& b) noexcept { return a.compare(b) <=> 0; }
    friend std::weak_ordering operator<=>(const String& a, const Char* b) noexcept { return a.compare(b) <=> 0; }
    template <OtherText T>
    friend std::weak_ordering operator<=>(const String& a, const T& b) noexcept
    {
        return a.compare(b) <=> 0;
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
    /// "true" or "false", also of objects that stand for a truth value. A pointer never turns into one.
    /// @{
    template <std::same_as<bool> B>
    String& operator+=(B value)
    {
        return append(value ? TextView(OXA_TEXT("true")) : TextView(OXA_TEXT("false")));
    }
    template <TruthObject T>
    String& operator+=(const T& value);
    /// @}
    /// The character; a zero appends nothing, but makes NIL present.
    /// @{
    String& operator+=(Char c);
    template <OtherCharacter C>
    String& operator+=(C c);
#ifdef OXA_NO_IMPLICIT_ANSI
    template <std::same_as<char> C>
    requires OtherCharacter<C> String& operator+=(C c) = delete;
    template <std::same_as<char> C>
    requires OtherCharacter<C> String(C c, int count)
    = delete;
#endif
    /// @}
    /// The text up to its zero; null appends nothing and leaves NIL as it is.
    /// @{
    String& operator+=(const Char* text);
    template <PointedText T>
    String& operator+=(const T& text);
    /// @}
    /// The text up to its first zero; NIL becomes a copy of `other`.
    /// @{
    String& operator+=(const String& other);
    template <std::same_as<Text> T>
    String& operator+=(const T& other);
    /// @}
    /// The text up to its first zero.
    template <TextLike T>
    requires(!std::same_as<T, Text>) String& operator+=(const T& text) { return appendText(text); }

    /// The same as +=, for chains: text << name << OXA_TEXT(": ") << 5.
    template <class T>
    requires requires(String& self, const T& value) { self += value; }
    String& operator<<(const T& value) { return *this += value; }

    /// A new text: a copy of the first with the second appended, as += does.
    /// @{
    [[nodiscard]] friend String operator+(const String& a, const String& b) { return String(a) += b; }
    [[nodiscard]] friend String operator+(const String& a, const Char* b) { return String(a) += b; }
    [[nodiscard]] friend String operator+(const String& a, Char b) { return String(a) += b; }
    [[nodiscard]] friend String operator+(String&& a, const String& b) { return std::move(a += b); }
    [[nodiscard]] friend String operator+(String&& a, const Char* b) { return std::move(a += b); }
    [[nodiscard]] friend String operator+(String&& a, Char b) { return std::move(a += b); }
    [[nodiscard]] friend String operator+(const Char* a, const String& b) { return String(a) += b; }
    [[nodiscard]] friend String operator+(Char a, const String& b) { return (String() += a) += b; }
    template <AppendedValue T>
    [[nodiscard]] friend String operator+(const String& a, const T& b)
    {
        return String(a) += b;
    }
    template <AppendedValue T>
    [[nodiscard]] friend String operator+(String&& a, const T& b)
    {
        return std::move(a += b);
    }
    template <AppendedValue T>
    requires(!std::convertible_to<const T&, String> || PointedText<T>) [[nodiscard]] friend String operator+(
        const T& a, const String& b)
    {
        return (String() += a) += b;
    }
    /// @}

    /// Replaces the text by a formatted one, by the rules of the wide printf family: in the format's own character
    /// type, %s, %ls and %c mean wide text, %hs, %S and %C narrow text of the ANSI code page. %n and whatever else is
    /// malformed leave the text as it was.
    void printf_apply(const Char* format, ...);
    /// The same for the other kind of wide literal, whose wide arguments are of that kind, too.
    void printf_apply(const ForeignChar* format, ...);
    /// An object is no argument of printf: hand over its stringPath().
    template <class F, class... A>
    requires((std::is_class_v<A> || std::is_union_v<A>) || ...) void printf_apply(const F& format,
                                                                                  const A&... arguments) = delete;

    /// A new text made of a pattern, in which {0} stands for the first argument, {1} for the second and so on, {} for
    /// the next one, {{ and }} for a brace: for texts whose translations need another order. Each argument is written
    /// as << does. Anything else in braces, or a position that has no argument, stays as it is. NIL gives NIL.
    template <class... A>
    [[nodiscard]] static String format(const String& pattern, const A&... arguments);

    // ---- Trailing index: the run of decimal digits at the end -------------------------------------------------

    /// Its value, at most the largest int; 0 without digits.
    [[nodiscard]] unsigned int getIndex() const noexcept;
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
    /// after. Values beyond the type's range give its nearest limit; the byte and short types are cut from an int.
    /// Digits are the ten of ASCII.
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
    /// The next graphic character; 0 when there is none, and the text becomes present and empty. A type of 32 bits
    /// takes both halves of a surrogate pair.
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
    [[nodiscard]] int find(const Char* text, int start = 0) const noexcept;
    [[nodiscard]] int find(const String& text, int start = 0) const noexcept { return find(text.stringPath(), start); }
    template <PointedText T>
    [[nodiscard]] int find(const T& text, int start = 0) const noexcept;
    /// @}
    /// In the whole stored text, embedded zeros included. A character beyond U+FFFF is found as the pair that it is
    /// stored as.
    /// @{
    [[nodiscard]] int find(Char c, int start = 0) const noexcept;
    template <OtherCharacter C>
    [[nodiscard]] int find(C c, int start = 0) const noexcept;
    template <std::integral N, Character C>
    int find(N start, C c) const = delete;
    /// @}
    /// The last occurrence, which may overlap others; -1 for a null or empty text.
    /// @{
    [[nodiscard]] int findLastOf(const Char* text) const noexcept;
    [[nodiscard]] int findLastOf(const String& text) const noexcept { return findLastOf(text.stringPath()); }
    template <PointedText T>
    [[nodiscard]] int findLastOf(const T& text) const noexcept;
    /// @}
    /// The last `c` at or after `start`.
    /// @{
    [[nodiscard]] int findLastOf(Char c, int start = 0) const noexcept;
    template <OtherCharacter C>
    [[nodiscard]] int findLastOf(C c, int start = 0) const noexcept;
    template <std::integral N, Character C>
    int findLastOf(N start, C c) const = delete;
    /// @}

    /// The first letter, by Unicode; the first unit that is none.
    /// @{
    [[nodiscard]] int findAlpha(int start = 0) const noexcept;
    [[nodiscard]] int findNonAlpha(int start = 0) const noexcept;
    /// @}
    /// Whether the whole stored text holds `text` or the character; true for an empty or NIL `text`, as startsWith is.
    /// @{
    [[nodiscard]] bool contains(const String& text, bool ignoreCase = false) const noexcept;
    template <Character C>
    [[nodiscard]] bool contains(C c) const noexcept;
    /// @}

    /// The first letter, digit, '-', '.' or '+'; the first unit that is none of these.
    /// @{
    [[nodiscard]] int findAlphaNum(int start = 0) const noexcept;
    [[nodiscard]] int findNonAlphaNum(int start = 0) const noexcept;
    /// @}
    /// The first decimal digit other than `except`.
    [[nodiscard]] int findDigit(int start = 0, Char except = 0) const noexcept;
    /// The first unit that is no decimal digit.
    [[nodiscard]] int findNonDigit(int start = 0) const noexcept;
    /// The first digit or '-'; the first unit that is neither. Kept on purpose: '+' does not count here, though it
    /// starts a number for findAlphaNum.
    /// @{
    [[nodiscard]] int findSignedDigit(int start = 0) const noexcept;
    [[nodiscard]] int findNonSignedDigit(int start = 0) const noexcept;
    /// @}
    /// The first digit, '.', '+', '-', 'e' or 'E'.
    [[nodiscard]] int findNumeric(int start = 0) const noexcept;
    /// The first unit that is not graphic (blank, control, line break); the first that is.
    /// @{
    [[nodiscard]] int findWS(int start = 0) const noexcept;
    [[nodiscard]] int findNonWS(int start = 0) const noexcept;
    /// @}

    // ---- Editing ----------------------------------------------------------------------------------------------

    /// From `start` up to but not including `end`, both clamped; a negative end means the length. Present and empty
    /// for an empty span, a copy (NIL for NIL) when the span is the whole text.
    [[nodiscard]] String substr(int start, int end = -1) const;
    /// A copy without leading and trailing white space.
    [[nodiscard]] String trim(bool left = true, bool right = true) const;
    /// Case counts unless it is to be ignored. Kept on purpose: true for an empty or NIL prefix, where endsWith gives
    /// false.
    /// @{
    [[nodiscard]] bool startsWith(const String& prefix) const noexcept;
    [[nodiscard]] bool startsWith(const String& prefix, bool ignoreCase) const noexcept;
    /// @}
    /// Case counts unless it is to be ignored. False for an empty or NIL suffix.
    /// @{
    [[nodiscard]] bool endsWith(const String& suffix, bool ignoreCase) const noexcept;
    [[nodiscard]] bool endsWith(const String& suffix) const noexcept { return endsWith(suffix, false); }
    /// @}
    /// A copy with each unit in its simple lower or upper case, whatever the locale; NIL for NIL.
    /// @{
    [[nodiscard]] String toLower() const;
    [[nodiscard]] String toUpper() const;
    /// @}
    /// The parts between the separators, empty ones included: one part without a separator, none for NIL. An empty
    /// separator separates nothing.
    /// @{
    [[nodiscard]] std::vector<String> split(const String& separator) const { return splitAt(separator.view()); }
    template <Character C>
    [[nodiscard]] std::vector<String> split(C separator) const;
    /// @}
    /// The parts with the separator between them, each written as << does, Strings with all that they hold; present and
    /// empty without parts.
    /// @{
    template <class Range>
    [[nodiscard]] static String join(Range&& parts, const String& separator);
    [[nodiscard]] static String join(std::initializer_list<String> parts, const String& separator);
    /// @}

    /// Replaces units up to the first zero; the number of replacements.
    /// @{
    int replace(Char from, Char to) noexcept;
    template <Character A, Character B>
    requires(OtherCharacter<A> || OtherCharacter<B>) int replace(A from, B to);
    /// @}
    /// Replaces texts up to the first zero; the number of replacements. Resumes after the insertion, takes a null or
    /// NIL `to` as the empty text and does nothing for a null or empty `from`.
    /// @{
    int replace(const Char* from, const Char* to);
    int replace(const String& from, const String& to) { return replace(from.stringPath(), to.stringPath()); }
    int replace(const String& from, const Char* to) { return replace(from.stringPath(), to); }
    int replace(const Char* from, const String& to) { return replace(from, to.stringPath()); }
    template <class A, class B>
    requires(PointedText<A> || PointedText<B>) int replace(const A& from, const B& to);
    /// @}

    /// Reverses the units in place, surrogate pairs not kept together.
    void reverse() noexcept;

    /// A copy for display of at most `maxLength` units: a head of `headLength` units, cut after its last '/', an
    /// ellipsis, and as much of the end as fits, begun at its first '/' when it has one. A text that fits is copied.
    [[nodiscard]] String shortenString(int maxLength, int headLength) const;
    /// The same for paths with backslashes, slashes or both. A negative `headLength` stands for a third of the whole.
    [[nodiscard]] String shortenPath(int maxLength, int headLength = -1) const;

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

    static String repeated(TextView units, int count);
    static String formatted(const String& pattern, const String* arguments, std::size_t count);
    static const Char* pointerTo(const Char* text) noexcept { return text; }
    static const Char* pointerTo(const String& text) noexcept { return text.stringPath(); }
    template <PointedText T>
    static const Char* pointerTo(const T& text) noexcept;

    /// As far as an int counts.
    TextView countable() const noexcept
    {
        constexpr std::size_t LIMIT = (std::numeric_limits<int>::max)();
        return {m_text.data(), m_text.size() < LIMIT ? m_text.size() : LIMIT};
    }
    int findUnits(TextView units, int start) const noexcept;
    int findLastUnits(TextView units, int start) const noexcept;
    int replaceUnits(const CharacterUnits& from, const CharacterUnits& to);
    std::vector<String> splitAt(TextView separator) const;
    int compareText(TextView text) const noexcept;
    int compareTextIgnoreCase(TextView text) const noexcept;
    String& append(TextView text);
    String& appendText(TextView text);
    String& appendSigned(long long value);
    String& appendUnsigned(unsigned long long value);
    OXA_HIDDEN void dropFront(std::size_t count);
    template <class Predicate>
    OXA_HIDDEN int findUnit(int start, Predicate matches) const noexcept;
    OXA_HIDDEN String shortened(int maxLength, int headLength, TextView separators) const;
    template <class Scan, class T>
    OXA_HIDDEN String& extractScanned(T& out, Scan scan);

    Text m_text;
    bool m_present = false;
};

static_assert(sizeof(String) == sizeof(Text) + sizeof(void*));

}  // namespace Oxa_1_1

#include "base/string/string_adapters.h"
#include "base/string/string_order.h"
#include "base/string/string_stream.h"
