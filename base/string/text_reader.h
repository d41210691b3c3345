#pragma once

#include <concepts>
#include <cstddef>

#include "base/char.h"
#include "base/export.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

/// Reads off a text, from front to back, exactly what `>>` of a String would, but leaves the text as it is: a read
/// costs what it reads, however much lies behind.
///
/// A view: the text must outlive the reader, unchanged.
class OXA_API TextReader
{
   public:
    /// At the front of `text`; at the end of nothing for null. A temporary text would be gone at the first read, so it
    /// does not compile.
    /// @{
    explicit TextReader(TextView text) noexcept : m_text(text) {}
    explicit TextReader(const Char* text) noexcept : m_text(text == nullptr ? TextView() : TextView(text)) {}
    template <class T>
    requires(std::same_as<T, String> || std::same_as<T, Text>) explicit TextReader(const T&& text) = delete;
    /// @}

    /// As `>>` of String does.
    /// @{
    TextReader& operator>>(signed char& out) noexcept;
    TextReader& operator>>(unsigned char& out) noexcept;
    TextReader& operator>>(short& out) noexcept;
    TextReader& operator>>(unsigned short& out) noexcept;
    TextReader& operator>>(int& out) noexcept;
    TextReader& operator>>(long& out) noexcept;
    TextReader& operator>>(long long& out) noexcept;
    TextReader& operator>>(unsigned int& out) noexcept;
    TextReader& operator>>(unsigned long& out) noexcept;
    TextReader& operator>>(unsigned long long& out) noexcept;
    TextReader& operator>>(float& out);
    TextReader& operator>>(double& out);
    TextReader& operator>>(bool& out);
    TextReader& operator>>(Char& out) noexcept;
    TextReader& operator>>(ForeignChar& out) noexcept;
    TextReader& operator>>(String& out);
    /// @}

    /// Goes past characters that are not graphic; stays where no other follows.
    void eatwhite() noexcept;

    /// Whether the last `>>` found a value and went past it. False before the first, for what is not of the type, and
    /// for an int behind a plus sign: that is read and stays in the way, as with String. True for an empty line.
    /// @{
    [[nodiscard]] bool hasRead() const noexcept { return m_hasRead; }
    explicit operator bool() const noexcept { return m_hasRead; }
    /// @}

    /// How many units lie behind the reader.
    [[nodiscard]] std::size_t position() const noexcept { return m_position; }
    /// Goes there, at most to the end.
    void setPosition(std::size_t position) noexcept
    {
        m_position = position < m_text.size() ? position : m_text.size();
    }
    /// What is not read yet.
    [[nodiscard]] TextView rest() const noexcept { return {m_text.data() + m_position, m_text.size() - m_position}; }
    /// Whether nothing is left.
    [[nodiscard]] bool isAtEnd() const noexcept { return m_position == m_text.size(); }

   private:
    template <class T>
    OXA_HIDDEN TextReader& readAny(T& out);
    template <class T>
    OXA_HIDDEN TextReader& readNumber(T& out);

    TextView m_text;
    std::size_t m_position = 0;
    bool m_hasRead = false;
};

}  // namespace Oxa_1_1
