#pragma once

#include <string>
#include <vector>

#include "examples/foldertool/operands.h"

namespace foldertool
{

/// A folder with everything below it, as it was when it was read.
struct Tree
{
    struct Entry
    {
        SharedFile file;
        /// 0 for a size that cannot be read.
        unsigned long long bytes = 0;
    };

    SharedFolder root;
    /// The outer ones before the inner ones, without the root.
    std::vector<SharedFolder> folders;
    std::vector<Entry> files;
    unsigned long long bytes = 0;
    /// Messages about folders that cannot be read.
    std::vector<std::string> problems;
};

Tree readTree(const SharedFolder& root);

/// "5,070 files in 93 folders, 48.1 MB"
std::string summary(const Tree& tree);

/// Complain about what could not be read. True when there was nothing of that.
bool reportProblems(const Tree& tree);
bool reportUnreadableFolders(const SharedFolder& root);

}  // namespace foldertool
