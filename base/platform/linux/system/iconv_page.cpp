#include "base/platform/linux/system/iconv_page.h"

#include <algorithm>
#include <array>

namespace Oxa_1_1::platform
{

namespace
{

constexpr std::uint32_t SHIFT_JIS = 932;
constexpr std::uint32_t KOREAN = 949;
constexpr std::uint32_t UTF_7 = 65000;

/// Names of the pages whose number alone iconv does not know, or knows as something else.
struct PageName
{
    std::uint32_t codePage;
    const char* name;
};

constexpr std::array PAGE_NAMES{
    PageName{37, "IBM037"},
    PageName{708, "ASMO-708"},
    PageName{10000, "MACINTOSH"},
    PageName{10007, "MAC-CYRILLIC"},
    PageName{10029, "MAC-CENTRALEUROPE"},
    PageName{20127, "US-ASCII"},
    PageName{20866, "KOI8-R"},
    PageName{20932, "EUC-JP"},
    PageName{20949, "EUC-KR"},
    PageName{21866, "KOI8-U"},
    PageName{28591, "ISO-8859-1"},
    PageName{28592, "ISO-8859-2"},
    PageName{28593, "ISO-8859-3"},
    PageName{28594, "ISO-8859-4"},
    PageName{28595, "ISO-8859-5"},
    PageName{28596, "ISO-8859-6"},
    PageName{28597, "ISO-8859-7"},
    PageName{28598, "ISO-8859-8"},
    PageName{28599, "ISO-8859-9"},
    PageName{28603, "ISO-8859-13"},
    PageName{28605, "ISO-8859-15"},
    PageName{38598, "ISO-8859-8"},
    PageName{50220, "ISO-2022-JP"},
    PageName{50225, "ISO-2022-KR"},
    PageName{51932, "EUC-JP"},
    PageName{51936, "EUC-CN"},
    PageName{51949, "EUC-KR"},
    PageName{54936, "GB18030"},
    PageName{65000, "UTF-7"},
};

/// Bytes that have no character but, on Windows, a unit each.
struct UnassignedBytes
{
    std::uint32_t codePage;
    unsigned char first;
    unsigned char last;
    Char unit;
};

#include "base/platform/linux/system/unassigned_bytes.inc"

bool isLeadByte(std::uint32_t codePage, unsigned char byte)
{
    switch (codePage)
    {
        case SHIFT_JIS:
            return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
        case 936:
        case KOREAN:
        case 950:
            return byte >= 0x81 && byte <= 0xFE;
        default:
            return false;
    }
}

}  // namespace

std::string iconvName(std::uint32_t codePage)
{
    const auto* const entry = std::find_if(PAGE_NAMES.begin(), PAGE_NAMES.end(),
                                           [codePage](const PageName& page) { return page.codePage == codePage; });
    return entry != PAGE_NAMES.end() ? entry->name : "CP" + std::to_string(codePage);
}

bool joinsMarks(std::uint32_t codePage) { return codePage == 1255 || codePage == 1258; }

Char unitOfUnassigned(std::uint32_t codePage, unsigned char byte)
{
    // iconv insists that some characters be encoded which others write as they are.
    if (codePage == UTF_7) return byte;
    for (const UnassignedBytes& run : UNASSIGNED_BYTES)
        if (run.codePage == codePage && byte >= run.first && byte <= run.last)
            return static_cast<Char>(run.unit + (byte - run.first));
    return codePage == SHIFT_JIS ? 0x30FB : '?';
}

std::optional<char> unassignedByte(std::uint32_t codePage, Char unit)
{
    for (const UnassignedBytes& run : UNASSIGNED_BYTES)
        if (run.codePage == codePage && unit >= run.unit && unit - run.unit <= run.last - run.first)
            return static_cast<char>(run.first + (unit - run.unit));
    return std::nullopt;
}

bool failsBehind(std::uint32_t codePage, std::string_view done)
{
    // The postal code mark, which the older page lacks, is taken out after it has been read.
    return codePage == KOREAN && done.ends_with("\xA2\xE8");
}

std::size_t replacedLength(std::uint32_t codePage, std::string_view bytes)
{
    // A lead byte takes the next one along, whatever it is; only a zero stays.
    const bool isPair =
        bytes.size() > 1 && bytes[1] != '\0' && isLeadByte(codePage, static_cast<unsigned char>(bytes.front()));
    return isPair ? 2 : 1;
}

}  // namespace Oxa_1_1::platform
