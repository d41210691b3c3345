// The standard library and the run-time library.

#include <charconv>
#include <cstdio>
#include <cwchar>
#include <sstream>

#include "benchmarks/floors.h"
#include "benchmarks/shared_work.h"

namespace Oxa_1_1::bench
{

namespace
{

const std::string STANDARD = "std";

}  // namespace

void addStandard()
{
    add(
        work::WRITE_DOUBLE, "to_chars",
        [values = doublesSample()]
        {
            char buffer[400];
            for (const double value : values)
            {
                std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general,
                              floors::precisionOf(value));
                keep(buffer);
            }
        },
        1000);
    add(
        work::WRITE_DOUBLE, "snprintf",
        [values = doublesSample()]
        {
            char buffer[400];
            for (const double value : values)
            {
                std::snprintf(buffer, sizeof buffer, "%.*g", floors::precisionOf(value), value);
                keep(buffer);
            }
        },
        1000);
    add(
        work::WRITE_DOUBLE, "swprintf",
        [values = doublesSample()]
        {
            wchar_t buffer[400];
            for (const double value : values)
            {
                std::swprintf(buffer, std::size(buffer), L"%.*g", floors::precisionOf(value), value);
                keep(buffer);
            }
        },
        1000);
    add(
        work::BUILD_LIST, "ostringstream",
        [values = doublesSample()]
        {
            std::ostringstream list;
            for (int i = 0; i < 100; ++i)
            {
                const double value = values[static_cast<std::size_t>(i)];
                list.precision(floors::precisionOf(value));
                list << "position" << ' ' << i << ' ' << value;
            }
            keep(list.str());
        },
        100);
    add(
        work::READ_INTS, "wistringstream",
        [text = widened<std::wstring>(numbersSample())]
        {
            std::wistringstream stream(text);
            int value = 0;
            while (stream >> value) keep(value);
        },
        1000);

    add(
        work::EXTRACT_DOUBLES, "wcstod",
        [text = widened<std::wstring>(doublesText())]
        {
            const wchar_t* at = text.c_str();
            for (int i = 0; i < DOUBLES; ++i)
            {
                wchar_t* end = nullptr;
                keep(std::wcstod(at, &end));
                at = end;
            }
        },
        DOUBLES);
    addReaders(
        "from_chars 8 bit", [](const std::string& bytes) { return bytes; },
        [](const std::string& bytes) { return std::string_view(bytes); },
        [](std::string_view& rest, auto& value)
        {
            const char* const end = std::from_chars(rest.data(), rest.data() + rest.size(), value).ptr;
            // With the blank behind it.
            rest.remove_prefix(static_cast<std::size_t>(end + 1 - rest.data()));
        });

    const std::u16string haystack = haystackSample();
    add(work::FIND_UNIT, STANDARD, [haystack] { keep(haystack.find(u'#')); });
    add(work::FIND_TEXT, STANDARD, [haystack] { keep(haystack.find(NEEDLE)); });
    addCopyAndMove(STANDARD, std::u16string(SEVEN), [](const std::u16string& text) { return std::u16string(text); });
}

}  // namespace Oxa_1_1::bench
