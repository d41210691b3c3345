#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include "benchmarks/samples.h"
#include "benchmarks/work.h"

namespace Oxa_1_1::bench
{

namespace
{

const std::string ICU = "ICU";

[[maybe_unused]] const bool registered = []
{
    using icu::UnicodeString;
    const struct
    {
        const std::string& from;
        const std::string& to;
        std::string bytes;
    } cases[] = {{work::FROM_UTF8_SHORT, work::TO_UTF8_SHORT, asciiSample(32)},
                 {work::FROM_UTF8_ASCII, work::TO_UTF8_ASCII, asciiSample(FOUR_KIB)},
                 {work::FROM_UTF8_MIXED, work::TO_UTF8_MIXED, mixedSample()}};
    for (const auto& [from, to, bytes] : cases)
    {
        add(from, ICU, [bytes = bytes] { keep(UnicodeString::fromUTF8(bytes)); });
        add(to, ICU,
            [text = UnicodeString::fromUTF8(bytes)]
            {
                std::string result;
                text.toUTF8String(result);
                keep(result);
            });
    }

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
    add(work::COPY, ICU, [text = UnicodeString(SEVEN.data())] { keep(UnicodeString(text)); });
    add(
        work::MOVE, ICU,
        [a = UnicodeString(SEVEN.data()), b = UnicodeString()]() mutable
        {
            b = std::move(a);
            keep(b);
            a = std::move(b);
            keep(a);
        },
        2);
    return true;
}();

}  // namespace

}  // namespace Oxa_1_1::bench
