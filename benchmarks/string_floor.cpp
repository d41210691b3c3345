#include <map>

#include "benchmarks/floors.h"
#include "benchmarks/shared_work.h"

namespace Oxa_1_1::bench
{

namespace
{

struct FoldedLess
{
    bool operator()(const std::u16string& a, const std::u16string& b) const { return floors::compareFolded(a, b) < 0; }
};

void addConversions()
{
    const struct
    {
        const std::string& from;
        const std::string& to;
        std::size_t size;
    } cases[] = {{work::FROM_UTF8_SHORT, work::TO_UTF8_SHORT, 32},
                 {work::FROM_UTF8_ASCII, work::TO_UTF8_ASCII, FOUR_KIB}};
    for (const auto& [from, to, size] : cases)
    {
        add(from, FLOOR, [bytes = asciiSample(size)] { keep(floors::widen(bytes)); });
        add(to, FLOOR, [text = widened(asciiSample(size))] { keep(floors::narrow(text)); });
    }
    add(work::FROM_UTF8_TOLD, FLOOR, [bytes = asciiSample(32)] { keep(floors::widen(bytes)); });
    add(work::FROM_ANSI, FLOOR, [bytes = ansiSample()] { keep(floors::fromAnsi(bytes)); });
}

void addNumbers()
{
    add(
        work::BUILD_LIST, FLOOR,
        [name = std::u16string(u"position"), values = doublesSample()]
        { keep(floors::buildList(name, values.data(), 100)); },
        100);
    add(
        work::WRITE_DOUBLE, FLOOR,
        [values = doublesSample()]
        {
            char16_t buffer[32];
            for (const double value : values)
            {
                keep(floors::writeDouble(buffer, value));
                keep(buffer);
            }
        },
        1000);
    add(
        work::READ_INTS, FLOOR,
        [text = widened(numbersSample())]
        {
            std::u16string rest = text;
            for (int i = 0; i < 1000; ++i) keep(floors::readInt(rest));
        },
        1000);
}

struct Walk
{
    const char16_t* at;
    const char16_t* end;

    void next(int& value) { value = floors::scanInt(at, end); }
    void next(double& value) { value = floors::scanDouble(at, end); }
};

void addReading()
{
    addReaders(
        FLOOR, [](const std::string& bytes) { return widened(bytes); },
        [](const std::u16string& text) {
            return Walk{text.data(), text.data() + text.size()};
        },
        [](Walk& walk, auto& value) { walk.next(value); });
}

void addSearches()
{
    const std::u16string haystack = haystackSample();
    add(work::FIND_UNIT, FLOOR, [haystack] { keep(floors::findUnit(haystack, u'#')); });
    add(work::FIND_TEXT, FLOOR, [haystack] { keep(floors::findText(haystack, NEEDLE)); });
    const std::string line = asciiSample(64);
    add(work::COMPARE, FLOOR,
        [a = widened(line), b = widened(changedCase(line))] { keep(floors::compareFolded(a, b)); });
    add(work::ESCAPE, FLOOR, [text = widened(escapeSample())] { keep(floors::escape(text)); });
}

void addMaps()
{
    using Map = std::map<std::u16string, int, FoldedLess>;
    std::vector<std::u16string> names;
    std::vector<std::u16string> others;
    for (const std::string& name : namesSample())
    {
        names.push_back(widened(name));
        others.push_back(widened(changedCase(name)));
    }
    Map filled;
    for (const auto& name : names) filled.emplace(name, 1);
    const auto count = static_cast<double>(names.size());
    add(
        work::MAP_INSERT, FLOOR,
        [names]
        {
            Map map;
            for (const auto& name : names) map.emplace(name, 1);
            keep(map);
        },
        count);
    add(
        work::MAP_FIND, FLOOR,
        [filled, others]
        {
            for (const auto& name : others) keep(filled.find(name));
        },
        count);
}

}  // namespace

void addFloors()
{
    addConversions();
    addNumbers();
    addReading();
    addSearches();
    addMaps();
}

}  // namespace Oxa_1_1::bench
