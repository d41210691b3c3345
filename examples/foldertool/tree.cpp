#include "examples/foldertool/tree.h"

#include "examples/foldertool/output.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

const String EVERYTHING(OXA_TEXT("*"));

constexpr int FOR_READING = 4;

/// Messages about those folders that lists pass over, because they cannot be read.
std::vector<std::string> unreadable(const SharedFolder& root, std::vector<SharedFolder> folders)
{
    folders.insert(folders.begin(), root);
    std::vector<std::string> messages;
    for (const SharedFolder& folder : folders)
        if (!folder->access(FOR_READING)) messages.push_back(text(IDS_NOT_READ, {pathText(*folder), lastReason()}));
    return messages;
}

bool report(const std::vector<std::string>& problems)
{
    for (const std::string& problem : problems) complain(problem);
    return problems.empty();
}

}  // namespace

Tree readTree(const SharedFolder& root)
{
    Tree tree;
    tree.root = root;
    tree.folders = root->collectDirectories(EVERYTHING, true);
    tree.problems = unreadable(root, tree.folders);
    for (const SharedFile& file : root->collectFiles(EVERYTHING, true))
    {
        throwIfStopped();
        Tree::Entry& entry = tree.files.emplace_back(Tree::Entry{.file = file});
        if (file->size(entry.bytes)) tree.bytes += entry.bytes;
    }
    return tree;
}

std::string summary(const Tree& tree)
{
    return text(IDS_FILES_IN_FOLDERS, {counted(IDS_ONE_FILE, tree.files.size()),
                                       counted(IDS_ONE_FOLDER, tree.folders.size()), byteText(tree.bytes)});
}

bool reportProblems(const Tree& tree) { return report(tree.problems); }

bool reportUnreadableFolders(const SharedFolder& root)
{
    return report(unreadable(root, root->collectDirectories(EVERYTHING, true)));
}

}  // namespace foldertool
