#include "base/platform/code_page.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>

#include "base/platform/linux/windows_1252.h"
#include "base/platform/utf8.h"

namespace Oxa_1_1::platform
{

namespace
{

constexpr std::uint32_t WINDOWS_1252 = 1252;
constexpr std::uint32_t SHIFT_JIS = 932;
constexpr std::uint32_t UTF_8 = 65001;

/// What iconv calls the units of a Text.
constexpr const char* WIDE = "UTF-16LE";

/// Names of the pages whose number alone iconv does not know, or knows as something else.
struct PageName
{
    std::uint32_t codePage;
    const char* name;
};

constexpr std::array PAGE_NAMES{
    PageName{708, "ASMO_708"},      PageName{10000, "MACINTOSH"},   PageName{10007, "MAC-CYRILLIC"},
    PageName{20127, "US-ASCII"},    PageName{20866, "KOI8-R"},      PageName{20932, "EUC-JP"},
    PageName{20949, "EUC-KR"},      PageName{21866, "KOI8-U"},      PageName{28591, "ISO-8859-1"},
    PageName{28592, "ISO-8859-2"},  PageName{28593, "ISO-8859-3"},  PageName{28594, "ISO-8859-4"},
    PageName{28595, "ISO-8859-5"},  PageName{28596, "ISO-8859-6"},  PageName{28597, "ISO-8859-7"},
    PageName{28598, "ISO-8859-8"},  PageName{28599, "ISO-8859-9"},  PageName{28603, "ISO-8859-13"},
    PageName{28605, "ISO-8859-15"}, PageName{50220, "ISO-2022-JP"}, PageName{50225, "ISO-2022-KR"},
    PageName{51932, "EUC-JP"},      PageName{51936, "EUC-CN"},      PageName{51949, "EUC-KR"},
    PageName{54936, "GB18030"},     PageName{65000, "UTF-7"},
};

/// Bytes that have no character but, on Windows, a unit each.
struct UnassignedBytes
{
    std::uint32_t codePage;
    unsigned char first;
    unsigned char last;
    char16_t unit;
};

constexpr std::array UNASSIGNED_BYTES{
    UnassignedBytes{874, 0xDB, 0xDE, 0xF8C1},  UnassignedBytes{874, 0xFC, 0xFF, 0xF8C5},
    UnassignedBytes{932, 0xA0, 0xA0, 0xF8F0},  UnassignedBytes{932, 0xFD, 0xFF, 0xF8F1},
    UnassignedBytes{1253, 0xAA, 0xAA, 0xF8F9}, UnassignedBytes{1253, 0xD2, 0xD2, 0xF8FA},
    UnassignedBytes{1253, 0xFF, 0xFF, 0xF8FB}, UnassignedBytes{1255, 0xD9, 0xDF, 0xF88D},
    UnassignedBytes{1255, 0xFB, 0xFC, 0xF894}, UnassignedBytes{1255, 0xFF, 0xFF, 0xF896},
    UnassignedBytes{1257, 0xA1, 0xA1, 0xF8FC}, UnassignedBytes{1257, 0xA5, 0xA5, 0xF8FD},
};

/// The pages that stand for others: ANSI, OEM, Macintosh and the thread's ANSI page.
std::uint32_t resolve(std::uint32_t codePage)
{
    switch (codePage)
    {
        case 0:
        case 3:
            return WINDOWS_1252;
        case 1:
            return 437;
        case 2:
            return 10000;
        default:
            return codePage;
    }
}

/// UTF-16 and UTF-32 are no code pages of narrow text, on Windows either.
bool isWide(std::uint32_t codePage)
{
    return codePage == 1200 || codePage == 1201 || codePage == 12000 || codePage == 12001;
}

bool isWindowsSingleByte(std::uint32_t codePage) { return codePage == 874 || (codePage >= 1250 && codePage <= 1258); }

std::string pageName(std::uint32_t codePage)
{
    const auto* const entry = std::find_if(PAGE_NAMES.begin(), PAGE_NAMES.end(),
                                           [codePage](const PageName& page) { return page.codePage == codePage; });
    return entry != PAGE_NAMES.end() ? entry->name : "CP" + std::to_string(codePage);
}

char16_t replacementOf(std::uint32_t codePage, unsigned char byte)
{
    for (const UnassignedBytes& range : UNASSIGNED_BYTES)
        if (range.codePage == codePage && byte >= range.first && byte <= range.last)
            return static_cast<char16_t>(range.unit + (byte - range.first));
    if (isWindowsSingleByte(codePage) && byte < 0xA0) return byte;
    return codePage == SHIFT_JIS ? 0x30FB : '?';
}

/// An open conversion; false when the system does not know the page.
class Converter
{
   public:
    Converter(const std::string& to, const std::string& from) : m_handle(iconv_open(to.c_str(), from.c_str())) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter()
    {
        if (*this) iconv_close(m_handle);
    }

    explicit operator bool() const { return m_handle != iconv_t(-1); }

    /// Converts what can be converted. At the end `input` is empty or begins with what stopped it.
    template <class Result>
    void run(std::string_view& input, Result& result)
    {
        std::array<typename Result::value_type, 512> buffer{};
        int error = E2BIG;
        while (error == E2BIG)
        {
            auto* in = const_cast<char*>(input.data());
            std::size_t inLeft = input.size();
            auto* out = reinterpret_cast<char*>(buffer.data());
            std::size_t outLeft = sizeof buffer;
            // Without input left, the converter writes what it still holds back.
            const bool last = input.empty();
            error = iconv(m_handle, last ? nullptr : &in, &inLeft, &out, &outLeft) == std::size_t(-1) ? errno : 0;
            result.append(buffer.data(), (sizeof buffer - outLeft) / sizeof buffer[0]);
            input.remove_prefix(input.size() - inLeft);
            if (error == 0 && !last) error = E2BIG;
        }
    }

   private:
    iconv_t m_handle;
};

std::string_view bytesOf(TextView text)
{
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(Char)};
}

/// Takes a result in place of a string and only counts it.
template <class C>
struct Measure
{
    using value_type = C;

    void append(const C*, std::size_t count) { size += count; }
    void push_back(C) { ++size; }

    std::size_t size = 0;
};

template <class Result>
void decodeAll(std::uint32_t page, std::string_view bytes, Result& text)
{
    Converter converter(WIDE, pageName(page));
    while (true)
    {
        converter.run(bytes, text);
        if (bytes.empty()) return;
        text.push_back(replacementOf(page, static_cast<unsigned char>(bytes.front())));
        bytes.remove_prefix(1);
    }
}

template <class Result>
void encodeAll(std::uint32_t page, std::string_view units, Result& bytes)
{
    Converter converter(pageName(page), WIDE);
    while (true)
    {
        converter.run(units, bytes);
        if (units.empty()) return;
        // Each half of a surrogate pair is one of its own.
        do
        {
            bytes.push_back('?');
            units.remove_prefix(std::min(units.size(), sizeof(Char)));
        } while (units.size() >= sizeof(Char) && (static_cast<unsigned char>(units[1]) & 0xFC) == 0xDC);
    }
}

/// Whether the page is one of narrow text that the system knows.
bool isKnown(std::uint32_t page)
{
    return !isWide(page) && Converter(WIDE, pageName(page)) && Converter(pageName(page), WIDE);
}

}  // namespace

Text decodeCodePage(std::uint32_t codePage, std::string_view bytes)
{
    const std::uint32_t page = resolve(codePage);
    if (page == WINDOWS_1252) return decodeWindows1252(bytes);
    if (page == UTF_8) return decodeUtf8(bytes);
    if (!isKnown(page)) return {};

    Measure<Char> measure;
    decodeAll(page, bytes, measure);
    Text text;
    text.reserve(measure.size);
    decodeAll(page, bytes, text);
    return text;
}

std::string encodeCodePage(std::uint32_t codePage, TextView text)
{
    const std::uint32_t page = resolve(codePage);
    if (page == WINDOWS_1252) return encodeWindows1252(text);
    if (page == UTF_8) return encodeUtf8(text);
    if (!isKnown(page)) return {};

    Measure<char> measure;
    encodeAll(page, bytesOf(text), measure);
    std::string bytes;
    bytes.reserve(measure.size);
    encodeAll(page, bytesOf(text), bytes);
    return bytes;
}

}  // namespace Oxa_1_1::platform
