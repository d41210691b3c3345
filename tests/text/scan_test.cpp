// Every kind of kernel that this processor has, beside plain loops.

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "base/text/character.h"
#include "base/text/scan.h"
#include "base/text/vector/kernels.h"
#include "tests/text/exact_buffer.h"

namespace Oxa_1_1::text
{

namespace
{

using Buffer = test::ExactBuffer<Char>;

class TextScan : public testing::TestWithParam<const TextKernels*>
{
   protected:
    std::mt19937 m_random{7};

    /// Units of a small alphabet, so that partial matches are many.
    Text randomText(std::size_t length, TextView alphabet)
    {
        Text text(length, Char(0));
        for (Char& c : text) c = alphabet[m_random() % alphabet.size()];
        return text;
    }
};

int sign(int value) { return (value > 0) - (value < 0); }

int plainCompare(TextView a, TextView b, bool ignoreCase)
{
    for (std::size_t i = 0; i < a.size(); ++i)
    {
        const int difference = ignoreCase ? toLower(a[i]) - toLower(b[i]) : a[i] - b[i];
        if (difference != 0 || a[i] == 0) return difference;
    }
    return 0;
}

TEST_P(TextScan, FindsAUnitAtEveryPlaceAndNotBehindTheEnd)
{
    for (std::size_t length = 0; length <= 150; ++length)
    {
        const Buffer text{Text(length, Char('x'))};
        EXPECT_EQ(GetParam()->findUnit(text.data(), length, 'y'), NOT_FOUND);
        for (std::size_t place = 0; place < length; ++place)
        {
            Text changed(length, Char('x'));
            changed[place] = 'y';
            if (place + 3 < length) changed[place + 3] = 'y';
            ASSERT_EQ(GetParam()->findUnit(Buffer(changed).data(), length, 'y'), place) << length;
        }
    }
}

TEST_P(TextScan, FindsTextsBeforeAZeroLikeThePlainSearch)
{
    for (int round = 0; round < 4000; ++round)
    {
        Text units = randomText(m_random() % 100, OXA_TEXT("ab"));
        if (round % 3 == 0 && !units.empty()) units[m_random() % units.size()] = 0;
        const Buffer text{units};
        const Buffer pattern{randomText(1 + m_random() % 9, OXA_TEXT("ab"))};
        const std::size_t expected = text.view().substr(0, units.find(Char(0))).find(pattern.view());
        ASSERT_EQ(GetParam()->findText(text.data(), text.size(), pattern.data(), pattern.size()),
                  expected == TextView::npos ? NOT_FOUND : expected);
    }
}

TEST_P(TextScan, ComparesLikeThePlainLoop)
{
    // Letters whose case differs, among them one beyond ASCII whose lower case is ASCII; zeros; extreme units.
    const TextView alphabets[] = {OXA_TEXT("aA"), OXA_TEXT("kK\u212A"), OXA_TEXT("\u0416\u0436zZ"),
                                  TextView(OXA_TEXT("aA\0"), 3), OXA_TEXT("@[`{\u8000\uFFFF")};
    for (int round = 0; round < 20000; ++round)
    {
        const TextView alphabet = alphabets[m_random() % std::size(alphabets)];
        const std::size_t length = m_random() % 70;
        Text first = randomText(length, alphabet);
        Text second = first;
        for (Char& c : second)
            if (m_random() % 3 == 0) c = toLower(c);
        if (length > 0 && round % 2 == 0) second[m_random() % length] = alphabet[m_random() % alphabet.size()];

        const Buffer a{first};
        const Buffer b{second};
        ASSERT_EQ(sign(GetParam()->compareUnits(a.data(), b.data(), length)),
                  sign(plainCompare(a.view(), b.view(), false)));
        ASSERT_EQ(sign(GetParam()->compareUnitsIgnoreCase(a.data(), b.data(), length)),
                  sign(plainCompare(a.view(), b.view(), true)));
    }
}

TEST_P(TextScan, MarksTheControlsOfLatin1)
{
    std::string bytes(256 * 5, '\0');
    for (char& byte : bytes) byte = static_cast<char>(m_random());
    for (std::size_t i = 0; i < 256; ++i) bytes[i] = static_cast<char>(i);
    std::vector<std::uint64_t> marks(bytes.size() / 64);
    GetParam()->markControls(bytes.data(), marks.size(), marks.data());
    for (std::size_t i = 0; i < bytes.size(); ++i)
        ASSERT_EQ(marks[i / 64] >> i % 64 & 1, static_cast<unsigned char>(bytes[i]) / 32 == 4) << i;
}

INSTANTIATE_TEST_SUITE_P(Kernels, TextScan,
                         testing::ValuesIn(availableTextKernels().begin(), availableTextKernels().end()),
                         [](const auto& kernels) { return std::string(kernels.param->name); });

}  // namespace

}  // namespace Oxa_1_1::text
