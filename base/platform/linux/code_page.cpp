#include "base/platform/code_page.h"

#include <iconv.h>

#include <array>
#include <cerrno>
#include <string>

#include "base/platform/linux/iconv_page.h"
#include "base/platform/linux/windows_1252.h"
#include "base/platform/utf8.h"

namespace Oxa_1_1::platform
{

namespace
{

constexpr std::uint32_t WINDOWS_1252 = 1252;
constexpr std::uint32_t UTF_8 = 65001;
constexpr const char* UTF_16 = "UTF-16LE";

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

/// What ended a conversion.
enum class Stop
{
    END,
    NO_CHARACTER,
    INCOMPLETE,
};

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

    /// Converts what can be converted. `input` keeps what was not, and begins with what stopped it.
    template <class Result>
    Stop run(std::string_view& input, Result& result)
    {
        std::array<typename Result::value_type, 512> buffer;
        while (true)
        {
            auto* in = const_cast<char*>(input.data());
            std::size_t inLeft = input.size();
            auto* out = reinterpret_cast<char*>(buffer.data());
            std::size_t outLeft = sizeof buffer;
            // Without input left, the converter writes what it still holds back.
            const bool last = input.empty();
            const bool failed = iconv(m_handle, last ? nullptr : &in, &inLeft, &out, &outLeft) == std::size_t(-1);
            const int error = failed ? errno : 0;
            result.append(buffer.data(), (sizeof buffer - outLeft) / sizeof buffer[0]);
            input.remove_prefix(input.size() - inLeft);
            if (error == EILSEQ) return Stop::NO_CHARACTER;
            if (error == EINVAL) return Stop::INCOMPLETE;
            if (last && error != E2BIG) return Stop::END;
        }
    }

   private:
    iconv_t m_handle;
};

std::string_view bytesOf(TextView text)
{
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(Char)};
}

/// In the page's own spelling, and after the end of a shifted passage where it has such.
void appendQuestionMark(Converter& converter, std::string& bytes)
{
    std::string_view mark = bytesOf(OXA_TEXT("?"));
    converter.run(mark, bytes);
}

}  // namespace

Text decodeCodePage(std::uint32_t codePage, std::string_view bytes)
{
    const std::uint32_t page = resolve(codePage);
    if (page == WINDOWS_1252) return decodeWindows1252(bytes);
    if (page == UTF_8) return decodeUtf8(bytes);
    if (isWide(page)) return {};
    Converter converter(UTF_16, iconvName(page));
    if (!converter) return {};

    Text text;
    std::string_view rest = bytes;
    // A letter that is sent alone stays alone.
    const std::size_t step = joinsMarks(page) ? 1 : bytes.size();
    while (!rest.empty())
    {
        std::string_view part = rest.substr(0, step);
        const std::size_t length = part.size();
        const Stop stop = converter.run(part, text);
        const std::string_view done = rest.substr(0, length - part.size());
        rest.remove_prefix(done.size());
        if (stop == Stop::END) continue;
        const bool isBehind = part.empty() || failsBehind(page, done);
        text += unitOfUnassigned(page, static_cast<unsigned char>(isBehind ? done.back() : rest.front()));
        if (!isBehind) rest.remove_prefix(stop == Stop::INCOMPLETE ? rest.size() : replacedLength(page, rest));
    }
    return text;
}

std::string encodeCodePage(std::uint32_t codePage, TextView text)
{
    const std::uint32_t page = resolve(codePage);
    if (page == WINDOWS_1252) return encodeWindows1252(text);
    if (page == UTF_8) return encodeUtf8(text);
    if (isWide(page)) return {};
    Converter converter(iconvName(page), UTF_16);
    if (!converter) return {};

    std::string bytes;
    TextView rest = text;
    while (!rest.empty())
    {
        std::string_view part = bytesOf(rest);
        converter.run(part, bytes);
        rest.remove_prefix(rest.size() - part.size() / sizeof(Char));
        if (rest.empty()) break;
        // Of a surrogate pair each half is replaced on its own.
        if (const auto byte = unassignedByte(page, rest.front()))
            bytes += *byte;
        else
            appendQuestionMark(converter, bytes);
        rest.remove_prefix(1);
    }
    return bytes;
}

}  // namespace Oxa_1_1::platform
