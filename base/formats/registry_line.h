#pragma once

#include <optional>

#include "base/char.h"
#include "base/formats/registry_text.h"

/// The single lines of a registry text.
namespace Oxa_1_1::formats
{

/// How the bytes of texts are written in hexadecimal.
enum class RegistryBytes
{
    UTF16,
    ANSI
};

/// A line that gives a value to a name or deletes it.
struct RegistryAssignment
{
    Text name;
    /// Empty when the value is deleted.
    std::optional<RegistryValue> value;
};

/// Takes lines from the front of a text.
class RegistryScanner
{
   public:
    RegistryScanner(TextView text, RegistryBytes bytes) : m_rest(text), m_bytes(bytes) {}

    bool atEnd() const { return m_rest.empty(); }

    /// The next line, without what separates it and without blanks around it.
    TextView takeLine();

    /// Passes blanks and empty lines. The first unit that follows, 0 at the end.
    Char skipToLine();

    /// The assignment here, with all lines that it takes. Empty, and one line on, when it is malformed.
    std::optional<RegistryAssignment> takeAssignment();

   private:
    bool readAssignment(RegistryAssignment& assignment);
    bool readValue(std::optional<RegistryValue>& value);
    bool readQuoted(Text& text);
    bool readNumber(RegistryValue& value);
    bool readHexadecimal(RegistryValue& value);
    bool readBytes(std::vector<std::byte>& bytes);
    bool readDigits(unsigned most, std::uint32_t& number);
    bool readEndOfLine();
    bool skipContinuation();
    bool take(TextView word);
    void skipBlanks();
    Char peek() const { return m_rest.empty() ? Char(0) : m_rest.front(); }

    TextView m_rest;
    RegistryBytes m_bytes;
};

}  // namespace Oxa_1_1::formats
