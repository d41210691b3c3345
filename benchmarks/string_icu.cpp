#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include "benchmarks/shared_work.h"

namespace Oxa_1_1::bench
{

namespace
{

const std::string ICU = "ICU";

icu::UnicodeString escape(const icu::UnicodeString& text)
{
    icu::UnicodeString escaped;
    for (int32_t i = 0; i < text.length(); ++i)
    {
        const char16_t c = text[i];
        if (c == u'\n')
            escaped.append(u"\\n", 2);
        else if (c == u'\r')
            escaped.append(u"\\r", 2);
        else if (c == u'"' || c == u'\\')
            escaped.append(u'\\').append(c);
        else
            escaped.append(c);
    }
    return escaped;
}

[[maybe_unused]] const bool registered = []
{
    using icu::UnicodeString;
    addUtf8(
        ICU, [](const std::string& bytes) { return UnicodeString::fromUTF8(bytes); },
        [](const UnicodeString& text)
        {
            std::string bytes;
            text.toUTF8String(bytes);
            return bytes;
        });

    UErrorCode error = U_ZERO_ERROR;
    UConverter* const converter = ucnv_open("windows-1252", &error);
    add(work::FROM_ANSI, ICU,
        [bytes = ansiSample(), converter]
        {
            UErrorCode status = U_ZERO_ERROR;
            keep(UnicodeString(bytes.data(), static_cast<int32_t>(bytes.size()), converter, status));
        });

    const std::u16string sample = haystackSample();
    const UnicodeString haystack(sample.data(), static_cast<int32_t>(sample.size()));
    add(work::FIND_UNIT, ICU, [haystack] { keep(haystack.indexOf(u'#')); });
    add(work::FIND_TEXT, ICU, [haystack, needle = UnicodeString(NEEDLE.data())] { keep(haystack.indexOf(needle)); });
    const std::string line = asciiSample(64);
    add(work::COMPARE, ICU,
        [a = UnicodeString::fromUTF8(line), b = UnicodeString::fromUTF8(changedCase(line))]
        { keep(a.caseCompare(b, 0)); });
    add(work::ESCAPE, ICU, [text = UnicodeString::fromUTF8(escapeSample())] { keep(escape(text)); });
    addCopyAndMove(ICU, UnicodeString(SEVEN.data()), [](const UnicodeString& text) { return UnicodeString(text); });
    return true;
}();

}  // namespace

}  // namespace Oxa_1_1::bench
