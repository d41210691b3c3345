#include "base/string/text_reader.h"

#include "base/string/detail/extraction.h"
#include "base/text/vector/bits.h"

namespace Oxa_1_1
{

template <class T>
OXA_KEPT_APART TextReader& TextReader::readAny(T& out)
{
    const detail::Taken taken = detail::take(rest(), out);
    m_position += taken.length;
    m_hasRead = taken.found;
    return *this;
}

template <class T>
TextReader& TextReader::readNumber(T& out)
{
    const Char* const front = m_text.data();
    const Char* const behind = detail::readPlain(front + m_position, front + m_text.size(), out);
    // The last thing done, so that what it takes costs only those who need it.
    if (behind == nullptr) return readAny(out);
    m_position = static_cast<std::size_t>(behind - front);
    m_hasRead = true;
    return *this;
}

TextReader& TextReader::operator>>(signed char& out) noexcept { return readNumber(out); }

TextReader& TextReader::operator>>(unsigned char& out) noexcept { return readNumber(out); }

TextReader& TextReader::operator>>(short& out) noexcept { return readNumber(out); }

TextReader& TextReader::operator>>(unsigned short& out) noexcept { return readNumber(out); }

TextReader& TextReader::operator>>(int& out) noexcept { return readNumber(out); }

TextReader& TextReader::operator>>(long& out) noexcept { return readNumber(out); }

TextReader& TextReader::operator>>(long long& out) noexcept { return readNumber(out); }

TextReader& TextReader::operator>>(unsigned int& out) noexcept { return readNumber(out); }

TextReader& TextReader::operator>>(unsigned long& out) noexcept { return readNumber(out); }

TextReader& TextReader::operator>>(unsigned long long& out) noexcept { return readNumber(out); }

TextReader& TextReader::operator>>(float& out) { return readAny(out); }

TextReader& TextReader::operator>>(double& out) { return readNumber(out); }

TextReader& TextReader::operator>>(bool& out) { return readAny(out); }

TextReader& TextReader::operator>>(Char& out) noexcept { return readAny(out); }

TextReader& TextReader::operator>>(ForeignChar& out) noexcept { return readAny(out); }

TextReader& TextReader::operator>>(String& out)
{
    const detail::TakenText taken = detail::takeText(rest());
    out = String(taken.text);
    m_position += taken.length;
    m_hasRead = taken.found;
    return *this;
}

void TextReader::eatwhite() noexcept { m_position += detail::countBlanks(rest()); }

}  // namespace Oxa_1_1
