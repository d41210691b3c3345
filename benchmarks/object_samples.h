#pragma once

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "base/module/module.h"
#include "base/object/uz_class.h"

/// What the benchmarks of objects and modules work on, the same for everyone.
namespace Oxa_1_1::bench
{

inline constexpr int CLASS_DEPTH = 8;

/// A chain of classes, each derived from the one before.
inline const uZClass* classAtDepth(int depth)
{
    static const std::vector<const uZClass*> chain = []
    {
        // They live until the end, as class records do.
        std::vector<const uZClass*> classes = {new uZClass(OXA_TEXT("root"), getThisModule(), ClassVersion())};
        while (classes.size() <= CLASS_DEPTH)
            classes.push_back(new uZClass(OXA_TEXT("x"), classes.back(), getThisModule(), ClassVersion()));
        return classes;
    }();
    return chain[static_cast<std::size_t>(depth)];
}

inline constexpr unsigned SYMBOLS = 10'000;

inline std::string symbolName(unsigned i) { return "IDS_DIALOG_" + std::to_string(i * 7919 % 100'003); }

/// A resource header as editors write it.
inline std::string sampleHeader()
{
    std::string header = "//{{NO_DEPENDENCIES}}\r\n";
    for (unsigned i = 0; i < SYMBOLS; ++i)
        header.append("#define ")
            .append(symbolName(i))
            .append("             ")
            .append(std::to_string(i))
            .append("\r\n");
    return header;
}

template <class Name>
std::vector<Name> shuffledNames()
{
    std::vector<Name> names;
    for (unsigned i = 0; i < SYMBOLS; ++i) names.emplace_back(symbolName(i).c_str());
    std::shuffle(names.begin(), names.end(), std::mt19937(1));
    return names;
}

/// Walks through the numbers of texts in large steps.
inline unsigned nextId(unsigned& id)
{
    constexpr unsigned TEXTS = 2000;
    id = (id + 613) % TEXTS;
    return id + 1;
}

}  // namespace Oxa_1_1::bench
