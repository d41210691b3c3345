#include "examples/foldertool/comparison.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <map>

#include "base/filesystem/links.h"
#include "base/filesystem/tree_walk.h"
#include "examples/foldertool/operands.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

/// What lies in a tree, by its name seen from the root. Here names that differ in case are two.
using Items = std::map<String, SharedItem>;

Items itemsOf(const Directory& folder)
{
    Items items;
    TreeWalk walk(folder);
    for (const WalkEntry& entry : walk)
    {
        throwIfStopped();
        items[entry.relativeName()] = entry.item();
    }
    return items;
}

bool hasSameContent(const File& a, const File& b)
{
    constexpr std::size_t PIECE = 65536;
    std::array<char, PIECE> pieceOfA;
    std::array<char, PIECE> pieceOfB;
    const auto streamOfA = a.openRead();
    const auto streamOfB = b.openRead();
    while (*streamOfA && *streamOfB)
    {
        throwIfStopped();
        streamOfA->read(pieceOfA.data(), PIECE);
        streamOfB->read(pieceOfB.data(), PIECE);
        const bool isSame = streamOfA->gcount() == streamOfB->gcount() &&
                            std::equal(pieceOfA.begin(), pieceOfA.begin() + streamOfA->gcount(), pieceOfB.begin());
        if (!isSame) return false;
    }
    return streamOfA->eof() && streamOfB->eof();
}

/// 0, or the message about two items of the same name.
unsigned int difference(const FileSystemItem& a, const FileSystemItem& b)
{
    // Links are copied as they are.
    if (isLink(a)) return linkTarget(a) == linkTarget(b) ? 0 : IDS_OTHER_CONTENT;
    const auto* const fileA = dynamic_cast<const File*>(&a);
    const auto* const fileB = dynamic_cast<const File*>(&b);
    if (fileA == nullptr || fileB == nullptr) return 0;
    if (!fileA->hasEqualSize(*fileB)) return IDS_OTHER_SIZE;
    return hasSameContent(*fileA, *fileB) ? 0 : IDS_OTHER_CONTENT;
}

}  // namespace

std::vector<std::string> differences(const Directory& original, const Directory& copy)
{
    std::vector<std::string> messages;
    const auto add = [&](unsigned int id, const SharedItem& item) { messages.push_back(text(id, {pathText(*item)})); };

    Items copies = itemsOf(copy);
    for (const auto& [name, item] : itemsOf(original))
    {
        const auto found = copies.find(name);
        if (found == copies.end())
        {
            add(IDS_ONLY_IN_ORIGINAL, item);
            continue;
        }
        if (const unsigned int id = difference(*item, *found->second)) add(id, item);
        copies.erase(found);
    }
    for (const auto& [name, item] : copies) add(IDS_ONLY_IN_COPY, item);
    return messages;
}

}  // namespace foldertool
