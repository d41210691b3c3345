#include "base/platform/system/code_page.h"

#include <iconv.h>

#include <array>
#include <cerrno>
#include <string>

#include "base/platform/linux/system/iconv_page.h"
#include "base/text/utf8.h"
#include "base/text/windows_1252.h"

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

    /// As if newly opened.
    void reset() { iconv(m_handle, nullptr, nullptr, nullptr, nullptr); }

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
void decodeAll(Converter& converter, std::uint32_t page, std::string_view rest, Result& text)
{
    // A letter that is sent alone stays alone.
    const std::size_t step = joinsMarks(page) ? 1 : rest.size();
    while (!rest.empty())
    {
        std::string_view part = rest.substr(0, step);
        const std::size_t length = part.size();
        const Stop stop = converter.run(part, text);
        const std::string_view done = rest.substr(0, length - part.size());
        rest.remove_prefix(done.size());
        if (stop == Stop::END) continue;
        const bool isBehind = part.empty() || failsBehind(page, done);
        text.push_back(unitOfUnassigned(page, static_cast<unsigned char>(isBehind ? done.back() : rest.front())));
        if (!isBehind) rest.remove_prefix(stop == Stop::INCOMPLETE ? rest.size() : replacedLength(page, rest));
    }
}

/// In the page's own spelling, and after the end of a shifted passage where it has such.
template <class Result>
void appendQuestionMark(Converter& converter, Result& bytes)
{
    std::string_view mark = bytesOf(OXA_TEXT("?"));
    converter.run(mark, bytes);
}

template <class Result>
void encodeAll(Converter& converter, std::uint32_t page, TextView rest, Result& bytes)
{
    while (!rest.empty())
    {
        std::string_view part = bytesOf(rest);
        converter.run(part, bytes);
        rest.remove_prefix(rest.size() - part.size() / sizeof(Char));
        if (rest.empty()) return;
        // Of a surrogate pair each half is replaced on its own.
        if (const auto byte = unassignedByte(page, rest.front()))
            bytes.push_back(*byte);
        else
            appendQuestionMark(converter, bytes);
        rest.remove_prefix(1);
    }
}

}  // namespace

Text decodeCodePage(std::uint32_t codePage, std::string_view bytes)
{
    const std::uint32_t page = resolve(codePage);
    if (page == WINDOWS_1252) return text::decodeWindows1252(bytes);
    if (page == UTF_8) return text::decodeUtf8(bytes);
    if (isWide(page)) return {};
    Converter converter(UTF_16, iconvName(page));
    if (!converter) return {};

    Measure<Char> measure;
    decodeAll(converter, page, bytes, measure);
    converter.reset();
    Text text;
    text.reserve(measure.size);
    decodeAll(converter, page, bytes, text);
    return text;
}

std::string encodeCodePage(std::uint32_t codePage, TextView text)
{
    const std::uint32_t page = resolve(codePage);
    if (page == WINDOWS_1252) return text::encodeWindows1252(text);
    if (page == UTF_8) return text::encodeUtf8(text);
    if (isWide(page)) return {};
    Converter converter(iconvName(page), UTF_16);
    if (!converter) return {};

    Measure<char> measure;
    encodeAll(converter, page, text, measure);
    converter.reset();
    std::string bytes;
    bytes.reserve(measure.size);
    encodeAll(converter, page, text, bytes);
    return bytes;
}

}  // namespace Oxa_1_1::platform
