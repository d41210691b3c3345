#include <map>

#include "base/string/oxa_string.h"
#include "base/string/text_reader.h"
#include "benchmarks/shared_work.h"

namespace Oxa_1_1::bench
{

namespace
{

String fromUtf8(const std::string& bytes) { return String(UTF8Interface(bytes.c_str())); }

void addConversions()
{
    add(work::FROM_UTF8_TOLD, OURS, [bytes = asciiSample(32)] { keep(String::fromUTF8(bytes)); });
    addUtf8(OURS, fromUtf8, [](const String& text) { return text.stringUTF8(); });
    add(work::FROM_ANSI, OURS, [bytes = ansiSample()] { keep(String(bytes)); });
}

void addNumbers()
{
    add(
        work::BUILD_LIST, OURS,
        [name = String(u"position"), values = doublesSample()]
        {
            String list;
            for (int i = 0; i < 100; ++i)
                list << name << OXA_TEXT(' ') << i << OXA_TEXT(' ') << values[static_cast<std::size_t>(i)];
            keep(list);
        },
        100);
    add(
        work::WRITE_DOUBLE, OURS,
        [values = doublesSample(), text = String(Char(' '), 100)]() mutable
        {
            for (const double value : values)
            {
                text = String::EMPTY;
                text << value;
                keep(text);
            }
        },
        1000);
    add(
        work::READ_INTS, OURS,
        [text = String(numbersSample())]
        {
            String rest = text;
            int value = 0;
            for (int i = 0; i < 1000; ++i)
            {
                rest >> value;
                keep(value);
            }
        },
        1000);
}

void addReading()
{
    add(
        work::EXTRACT_DOUBLES, OURS,
        [text = String(doublesText())]
        {
            String rest = text;
            double value = 0;
            for (int i = 0; i < DOUBLES; ++i)
            {
                rest >> value;
                keep(value);
            }
        },
        DOUBLES);
    addReaders(
        OURS, [](const std::string& bytes) { return String(bytes); },
        [](const String& text) { return TextReader(text); }, [](TextReader& reader, auto& value) { reader >> value; });
}

void addSearches()
{
    const String haystack(haystackSample());
    add(work::FIND_UNIT, OURS, [haystack] { keep(haystack.find(Char('#'))); });
    add(work::FIND_TEXT, OURS, [haystack, needle = String(NEEDLE)] { keep(haystack.find(needle)); });
    const std::string line = asciiSample(64);
    add(work::COMPARE, OURS, [a = String(line), b = String(changedCase(line))] { keep(a.compareIgnoreCase(b)); });
    add(work::ESCAPE, OURS,
        [text = String(escapeSample())]
        {
            String escaped = text;
            escaped.controlsToEsc(true);
            keep(escaped);
        });
}

void addMaps()
{
    using Map = std::map<String, int, StringLess2>;
    std::vector<String> names;
    std::vector<String> others;
    for (const std::string& name : namesSample())
    {
        names.emplace_back(name);
        others.emplace_back(changedCase(name));
    }
    Map filled;
    for (const String& name : names) filled.emplace(name, 1);

    add(
        work::MAP_INSERT, OURS,
        [names]
        {
            Map map;
            for (const String& name : names) map.emplace(name, 1);
            keep(map);
        },
        static_cast<double>(names.size()));
    add(
        work::MAP_FIND, OURS,
        [filled, others]
        {
            for (const String& name : others) keep(filled.find(name));
        },
        static_cast<double>(names.size()));
}

}  // namespace

void addOxa()
{
    addConversions();
    addNumbers();
    addReading();
    addSearches();
    addMaps();
    addCopyAndMove(OURS, String(SEVEN), [](const String& text) { return String(text); });
}

}  // namespace Oxa_1_1::bench
