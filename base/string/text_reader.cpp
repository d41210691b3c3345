#include "base/string/text_reader.h"

#include "base/string/detail/extraction.h"

namespace Oxa_1_1
{

template <class T>
TextReader& TextReader::read(T& out)
{
    const detail::Taken taken = detail::take(rest(), out);
    m_position += taken.length;
    m_hasRead = taken.found;
    return *this;
}

TextReader& TextReader::operator>>(signed char& out) noexcept { return read(out); }

TextReader& TextReader::operator>>(unsigned char& out) noexcept { return read(out); }

TextReader& TextReader::operator>>(short& out) noexcept { return read(out); }

TextReader& TextReader::operator>>(unsigned short& out) noexcept { return read(out); }

TextReader& TextReader::operator>>(int& out) noexcept { return read(out); }

TextReader& TextReader::operator>>(long& out) noexcept { return read(out); }

TextReader& TextReader::operator>>(long long& out) noexcept { return read(out); }

TextReader& TextReader::operator>>(unsigned int& out) noexcept { return read(out); }

TextReader& TextReader::operator>>(unsigned long& out) noexcept { return read(out); }

TextReader& TextReader::operator>>(unsigned long long& out) noexcept { return read(out); }

TextReader& TextReader::operator>>(float& out) { return read(out); }

TextReader& TextReader::operator>>(double& out) { return read(out); }

TextReader& TextReader::operator>>(bool& out) { return read(out); }

TextReader& TextReader::operator>>(Char& out) noexcept { return read(out); }

TextReader& TextReader::operator>>(ForeignChar& out) noexcept { return read(out); }

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
