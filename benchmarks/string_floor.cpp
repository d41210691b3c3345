// The best plain loops for exactly the work, as marks to aim at. They need AVX2, as the goals do.

#include <immintrin.h>

#include <map>

#include "benchmarks/samples.h"
#include "benchmarks/work.h"

namespace Oxa_1_1::bench
{

namespace
{

__attribute__((target("avx2"))) std::u16string widen(const std::string& bytes)
{
    std::u16string text(bytes.size(), u'\0');
    std::size_t i = 0;
    for (; i + 16 <= bytes.size(); i += 16)
    {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.data() + i));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(text.data() + i), _mm256_cvtepu8_epi16(block));
    }
    for (; i < bytes.size(); ++i) text[i] = static_cast<unsigned char>(bytes[i]);
    return text;
}

__attribute__((target("avx2"))) std::string narrow(const std::u16string& text)
{
    std::string bytes(text.size(), '\0');
    std::size_t i = 0;
    for (; i + 16 <= text.size(); i += 16)
    {
        const auto* const from = reinterpret_cast<const __m128i*>(text.data() + i);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes.data() + i),
                         _mm_packus_epi16(_mm_loadu_si128(from), _mm_loadu_si128(from + 1)));
    }
    for (; i < text.size(); ++i) bytes[i] = static_cast<char>(text[i]);
    return bytes;
}

__attribute__((target("avx2"))) std::size_t findUnit(const std::u16string& text, char16_t c)
{
    const __m256i wanted = _mm256_set1_epi16(static_cast<short>(c));
    std::size_t i = 0;
    for (; i + 64 <= text.size(); i += 64)
    {
        const auto* const block = reinterpret_cast<const __m256i*>(text.data() + i);
        const __m256i first = _mm256_or_si256(_mm256_cmpeq_epi16(_mm256_loadu_si256(block), wanted),
                                              _mm256_cmpeq_epi16(_mm256_loadu_si256(block + 1), wanted));
        const __m256i second = _mm256_or_si256(_mm256_cmpeq_epi16(_mm256_loadu_si256(block + 2), wanted),
                                               _mm256_cmpeq_epi16(_mm256_loadu_si256(block + 3), wanted));
        if (_mm256_movemask_epi8(_mm256_or_si256(first, second)) != 0) break;
    }
    while (i < text.size() && text[i] != c) ++i;
    return i;
}

__attribute__((target("avx2"))) std::size_t findText(const std::u16string& text, std::u16string_view pattern)
{
    const __m256i first = _mm256_set1_epi16(static_cast<short>(pattern.front()));
    const __m256i last = _mm256_set1_epi16(static_cast<short>(pattern.back()));
    std::size_t i = 0;
    for (; i + 16 + pattern.size() <= text.size(); i += 16)
    {
        const auto* const front = reinterpret_cast<const __m256i*>(text.data() + i);
        const auto* const back = reinterpret_cast<const __m256i*>(text.data() + i + pattern.size() - 1);
        const __m256i hits = _mm256_and_si256(_mm256_cmpeq_epi16(_mm256_loadu_si256(front), first),
                                              _mm256_cmpeq_epi16(_mm256_loadu_si256(back), last));
        for (auto mask = static_cast<unsigned>(_mm256_movemask_epi8(hits)); mask != 0; mask &= mask - 1)
        {
            const std::size_t place = i + static_cast<std::size_t>(__builtin_ctz(mask)) / 2;
            if (std::u16string_view(text).substr(place, pattern.size()) == pattern) return place;
        }
    }
    return text.find(pattern, i);
}

__attribute__((target("avx2"))) int compareFolded(const char16_t* a, const char16_t* b, std::size_t length)
{
    const __m256i below = _mm256_set1_epi16('A' - 1);
    const __m256i above = _mm256_set1_epi16('Z' + 1);
    const __m256i bit = _mm256_set1_epi16(0x20);
    std::size_t i = 0;
    const auto load = [&](const char16_t* from) __attribute__((target("avx2")))
    {
        const __m256i units = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
        const __m256i upper = _mm256_and_si256(_mm256_cmpgt_epi16(units, below), _mm256_cmpgt_epi16(above, units));
        return _mm256_or_si256(units, _mm256_and_si256(upper, bit));
    };
    for (; i + 16 <= length; i += 16)
        if (_mm256_movemask_epi8(_mm256_cmpeq_epi16(load(a + i), load(b + i))) != -1) break;
    const auto fold = [](char16_t c) { return c >= 'A' && c <= 'Z' ? c | 0x20 : int{c}; };
    for (; i < length; ++i)
        if (fold(a[i]) != fold(b[i])) return fold(a[i]) - fold(b[i]);
    return 0;
}

struct FoldedLess
{
    bool operator()(const std::u16string& a, const std::u16string& b) const
    {
        const int difference = compareFolded(a.data(), b.data(), std::min(a.size(), b.size()));
        return difference != 0 ? difference < 0 : a.size() < b.size();
    }
};

std::u16string escape(const std::u16string& text)
{
    const auto letter = [](char16_t c) -> char16_t
    {
        switch (c)
        {
            case '\n':
                return 'n';
            case '\r':
                return 'r';
            case '"':
            case '\\':
                return c;
            default:
                return 0;
        }
    };
    std::size_t size = 0;
    for (const char16_t c : text) size += letter(c) != 0 ? 2 : c < 0x80 ? 1 : 6;
    std::u16string result(size, u'\0');
    char16_t* out = result.data();
    for (const char16_t c : text)
    {
        if (const char16_t escaped = letter(c))
        {
            *out++ = '\\';
            *out++ = escaped;
            continue;
        }
        *out++ = c;
    }
    return result;
}

int readInt(std::u16string& text)
{
    std::size_t i = 0;
    while (i < text.size() && (text[i] < '0' || text[i] > '9')) ++i;
    int value = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) value = value * 10 + (text[i] - '0');
    text.erase(0, i);
    return value;
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
    add(work::FROM_UTF8_SHORT, FLOOR, [bytes = asciiSample(32)] { keep(widen(bytes)); });
    add(work::FROM_UTF8_ASCII, FLOOR, [bytes = asciiSample(FOUR_KIB)] { keep(widen(bytes)); });
    add(work::TO_UTF8_SHORT, FLOOR, [text = widened(asciiSample(32))] { keep(narrow(text)); });
    add(work::TO_UTF8_ASCII, FLOOR, [text = widened(asciiSample(FOUR_KIB))] { keep(narrow(text)); });
    add(
        work::READ_INTS, FLOOR,
        [text = widened(numbersSample())]
        {
            std::u16string rest = text;
            for (int i = 0; i < 1000; ++i) keep(readInt(rest));
        },
        1000);
    const std::u16string haystack = haystackSample();
    add(work::FIND_UNIT, FLOOR, [haystack] { keep(findUnit(haystack, u'#')); });
    add(work::FIND_TEXT, FLOOR, [haystack] { keep(findText(haystack, NEEDLE)); });
    const std::string line = asciiSample(64);
    add(work::COMPARE, FLOOR,
        [a = widened(line), b = widened(changedCase(line))] { keep(compareFolded(a.data(), b.data(), a.size())); });
    add(work::ESCAPE, FLOOR, [text = widened(escapeSample())] { keep(escape(text)); });
    addMaps();
}

}  // namespace Oxa_1_1::bench
