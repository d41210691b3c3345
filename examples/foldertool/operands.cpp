#include "examples/foldertool/operands.h"

#include <sstream>

#include "examples/foldertool/failure.h"
#include "examples/foldertool/system.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace fs = std::filesystem;

namespace
{

/// The whole path. The library takes "link/.." as it is written; here it is, as for the system, beside what the link
/// leads to.
fs::path wholePath(const fs::path& operand)
{
    std::error_code error;
    fs::path path = fs::absolute(operand, error);
    if (operand.empty() || error) throw Failure(text(IDS_NO_PATH, {nameText(operand)}));
    if (!path.has_filename()) path = path.parent_path();
    const bool hasParents = std::find(path.begin(), path.end(), fs::path("..")) != path.end();
    if (!hasParents) return path;
    const bool isName = path.filename() != ".." && path.filename() != ".";
    return isName ? fs::weakly_canonical(path.parent_path(), error) / path.filename()
                  : fs::weakly_canonical(path, error);
}

std::shared_ptr<Directory> folderAt(const fs::path& operand)
{
    auto folder = Directory::fromPath(wholePath(operand));
    if (folder == nullptr) throw Failure(text(IDS_NO_PATH, {nameText(operand)}));
    return folder;
}

/// Also whether there is a link that leads nowhere.
bool isThere(const FileSystemItem& item)
{
    std::error_code error;
    return item.exists() || fs::is_symlink(fs::symlink_status(item.toPath(), error));
}

/// Where the links in a path lead. Its end need not be there yet.
SharedFolder realFolder(const FileSystemItem& item)
{
    std::error_code error;
    return Directory::fromPath(fs::weakly_canonical(item.toPath(), error));
}

bool isSame(const FileSystemItem& a, const FileSystemItem& b)
{
    return system::isSame(realFolder(a)->toPath(), realFolder(b)->toPath());
}

bool isInside(const Directory& inner, const Directory& outer)
{
    for (SharedFolder place = realFolder(inner)->getParent(); place != nullptr; place = place->getParent())
        if (isSame(*place, outer)) return true;
    return false;
}

Failure noItem(const fs::path& operand) { return Failure(text(IDS_REASON, {nameText(operand), lastReason()})); }

}  // namespace

SharedItem existingItem(const fs::path& operand)
{
    const auto folder = folderAt(operand);
    if (folder->exists()) return folder;
    auto file = File::fromPath(wholePath(operand));
    if (file == nullptr || !isThere(*file)) throw noItem(operand);
    return file;
}

SharedFolder existingFolder(const fs::path& operand)
{
    auto folder = std::dynamic_pointer_cast<const Directory>(existingItem(operand));
    if (folder == nullptr) throw Failure(text(IDS_IS_FILE, {nameText(operand)}));
    if (!folder->access(4)) throw noItem(operand);
    return folder;
}

std::string contentOf(const fs::path& operand, std::size_t megabytes)
{
    const auto file = std::dynamic_pointer_cast<const File>(existingItem(operand));
    const std::string name = nameText(operand);
    if (file == nullptr) throw Failure(text(IDS_IS_FOLDER, {name}));
    // A pipe would keep the program waiting.
    if (std::error_code error; !fs::is_regular_file(file->toPath(), error))
        throw Failure(text(IDS_IS_NO_PLAIN_FILE, {name}));
    unsigned long long bytes = 0;
    if (!file->size(bytes) || !file->access(4)) throw noItem(operand);
    if (bytes > megabytes * 1'000'000) throw Failure(text(IDS_TOO_LARGE, {name, std::to_string(megabytes) + " MB"}));
    std::ostringstream content;
    content << file->openRead()->rdbuf();
    return std::move(content).str();
}

SharedFolder newFolder(const fs::path& operand, const Directory& source, bool overwrite)
{
    auto folder = folderAt(operand);
    const std::string name = nameText(operand);
    if (!folder->exists() && isThere(*File::fromPath(wholePath(operand)))) throw Failure(text(IDS_IS_FILE, {name}));
    if (isSame(*folder, source)) throw Failure(text(IDS_IS_SAME, {name}));
    if (isInside(*folder, source)) throw Failure(text(IDS_LIES_INSIDE, {name, pathText(source)}));
    if (!overwrite && folder->exists() && !folder->isEmpty()) throw Failure(text(IDS_IS_THERE, {name}));
    return folder;
}

SharedFile newFile(const fs::path& operand, const File& source, bool overwrite)
{
    const std::string name = nameText(operand);
    if (folderAt(operand)->exists()) throw Failure(text(IDS_IS_FOLDER, {name}));
    auto file = File::fromPath(wholePath(operand));
    if (isSame(*file, source)) throw Failure(text(IDS_IS_SAME, {name}));
    if (!overwrite && isThere(*file)) throw Failure(text(IDS_IS_THERE, {name}));
    return file;
}

}  // namespace foldertool
