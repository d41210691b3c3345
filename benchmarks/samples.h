#pragma once

#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace Oxa_1_1::bench
{

inline constexpr std::size_t FOUR_KIB = 4096;
inline constexpr std::size_t MEBI = 1 << 20;

/// Words, repeated up to `size` bytes.
inline std::string repeated(std::string_view words, std::size_t size)
{
    std::string text;
    while (text.size() + words.size() <= size) text += words;
    text.append(size - text.size(), '.');
    return text;
}

inline std::string asciiSample(std::size_t size)
{
    return repeated("The scanner stood in the hall; its 12 targets were found at once. ", size);
}

/// Latin with accents, Greek, Cyrillic, Chinese, and a few characters of four bytes.
inline std::string mixedSample()
{
    return repeated(
        "Die Halle ist 12 m hoch, très haute. "
        "Сканер стоит в зале. Ο σαρωτής είναι εδώ. "
        "扫描仪在大厅里，目标都找到了。 😀 ",
        FOUR_KIB);
}

/// Windows-1252: mostly ASCII, letters of the upper half, now and then one of the range that is not Latin-1.
inline std::string ansiSample()
{
    return repeated(
        "Gr\xFC\xDF"
        "e aus der gro\xDF"
        "en Halle, H\xF6he 12 m, Kosten 300 \x80 je Tag. ",
        FOUR_KIB);
}

/// Text with a line feed, a quote or a backslash every twenty characters or so.
inline std::string escapeSample()
{
    return repeated("name = \"C:\\scans\\hall\"\nheight over ground in metres = 12.5\n", FOUR_KIB);
}

inline std::string numbersSample(int count = 1000)
{
    std::mt19937 random(1);
    std::string text;
    for (int i = 0; i < count; ++i) text += std::to_string(random() % 1000000) + " ";
    return text;
}

inline std::vector<double> doublesSample()
{
    std::mt19937_64 random(2);
    std::vector<double> values(1000);
    for (double& value : values) value = static_cast<double>(random() % 2000000000) / 1e5 + 1.0 / 3;
    return values;
}

/// The number of doubles in a text of 7 KB, and that text.
inline constexpr int DOUBLES = 400;
inline std::string doublesText(int count = DOUBLES)
{
    const std::vector<double> values = doublesSample();
    std::string text;
    for (int i = 0; i < count; ++i)
        text += std::to_string(values[static_cast<std::size_t>(i) % values.size()]) + "123 ";
    return text;
}

inline std::vector<std::string> namesSample()
{
    std::mt19937 random(3);
    std::vector<std::string> names(10000);
    for (std::size_t i = 0; i < names.size(); ++i)
        names[i] = "Scan_Position_" + std::to_string(random() % 100000) + "_" + std::to_string(i);
    return names;
}

inline std::string changedCase(std::string text)
{
    for (char& c : text)
        if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')) c = static_cast<char>(c ^ 0x20);
    return text;
}

/// ASCII text of any 16-bit string type.
template <class T = std::u16string>
T widened(std::string_view text)
{
    T result;
    for (const char c : text) result += static_cast<typename T::value_type>(static_cast<unsigned char>(c));
    return result;
}

inline constexpr std::u16string_view NEEDLE = u"target found";
inline constexpr std::u16string_view SEVEN = u"scan012";

/// 1 Mi units that end with the needle, whose letters are everywhere, and with a unit that is nowhere else.
inline std::u16string haystackSample()
{
    std::u16string text = widened(asciiSample(MEBI));
    text.replace(text.size() - NEEDLE.size() - 1, NEEDLE.size() + 1, std::u16string(NEEDLE) + u'#');
    return text;
}

}  // namespace Oxa_1_1::bench
