#include "examples/foldertool/comparison.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <map>

#include "examples/foldertool/output.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

/// What lies in a tree, by its name seen from the root. Here names that differ in case are two.
using Items = std::map<String, SharedItem>;

Items itemsOf(const Tree& tree)
{
    Items items;
    const auto add = [&](const SharedItem& item) { items[item->makeRelative(*tree.root)->getFullName()] = item; };
    for (const SharedFolder& folder : tree.folders) add(folder);
    for (const Tree::Entry& entry : tree.files) add(entry.file);
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

/// A link that leads nowhere is copied as it is: it has no content but where it would lead.
bool leadsNowhere(const File& file)
{
    std::error_code error;
    return std::filesystem::is_symlink(std::filesystem::symlink_status(file.toPath(), error)) &&
           !std::filesystem::exists(file.toPath(), error);
}

bool leadsToSamePlace(const File& a, const File& b)
{
    std::error_code error;
    const auto placeOfA = std::filesystem::read_symlink(a.toPath(), error);
    return placeOfA == std::filesystem::read_symlink(b.toPath(), error) && !error;
}

/// 0, or the message about two items of the same name.
unsigned int difference(const FileSystemItem& a, const FileSystemItem& b)
{
    const auto* const fileA = dynamic_cast<const File*>(&a);
    const auto* const fileB = dynamic_cast<const File*>(&b);
    if (fileA == nullptr || fileB == nullptr) return 0;
    if (leadsNowhere(*fileA)) return leadsToSamePlace(*fileA, *fileB) ? 0 : IDS_OTHER_CONTENT;
    if (!fileA->hasEqualSize(*fileB)) return IDS_OTHER_SIZE;
    return hasSameContent(*fileA, *fileB) ? 0 : IDS_OTHER_CONTENT;
}

}  // namespace

std::vector<std::string> differences(const Tree& original, const Tree& copy)
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
