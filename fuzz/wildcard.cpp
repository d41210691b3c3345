// Search strings: as the rule says, by a matcher that is slow and plain.

#include <algorithm>
#include <vector>

#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/detail/wildcard.h"
#include "base/text/character.h"
#include "fuzz/fuzz_input.h"

using namespace Oxa_1_1;

namespace
{

/// Row by row: whether the first p units of the pattern match the first n of the name.
bool matchesPlainly(TextView pattern, TextView name)
{
    std::vector<bool> row(name.size() + 1, false);
    row[0] = true;
    for (const Char c : pattern)
    {
        std::vector<bool> next(name.size() + 1, false);
        next[0] = row[0] && c == '*';
        for (std::size_t n = 1; n <= name.size(); ++n)
        {
            const bool isSame = c == '?' || text::toLower(c) == text::toLower(name[n - 1]);
            next[n] = c == '*' ? row[n] || next[n - 1] : row[n - 1] && isSame;
        }
        row = std::move(next);
    }
    return row.back();
}

/// A small alphabet, so that names match.
Text folded(TextView text)
{
    Text result;
    for (const Char c : text) result += TextView(OXA_TEXT("aAbB.*?"))[c % 7];
    return result;
}

void check(TextView pattern, Text name)
{
    for (Char& c : name)
        if (c == '*' || c == '?') c = 'a';
    fuzz::require(detail::Wildcard(pattern).matches(name) == matchesPlainly(pattern, name));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    const String text = fuzz::units(data + 1, std::min<std::size_t>(size - 1, 400));
    const std::size_t split = data[0] % (text.view().size() + 1);
    const TextView pattern = text.view().substr(0, split);
    const TextView name = text.view().substr(split);
    check(pattern, Text(name));
    check(folded(pattern), folded(name));
    static_cast<void>(detail::isValidSearchString(pattern));
    return 0;
}
