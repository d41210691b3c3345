// Paths: any text is taken without harm, and what is a path has one spelling that leads back to it.

#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "fuzz/fuzz_input.h"

using namespace Oxa_1_1;

namespace
{

void checkDirectory(const String& text)
{
    const auto path = Directory::fromString(text);
    if (path == nullptr) return;
    for (const String& name : {path->getFullName(), path->getFullNameUnicode(), path->getFullNameUnix()})
    {
        const auto again = Directory::fromString(name);
        fuzz::require(again != nullptr && again->getFullName() == path->getFullName());
        // The name of the relative path without levels is read as the level ".".
        fuzz::require(*again == *path || path->getParent() == nullptr);
    }
    if (!path->isAbsolute()) return;
    const auto root = Directory::fromString(path->getRoot() + "\\");
    fuzz::require(root != nullptr && root->contains(*path));
    const auto relative = path->makeRelative(*root);
    fuzz::require(relative != nullptr);
    if (!path->getRoot().startsWith("\\\\"))
        fuzz::require(root->appendPath(*relative)->equals(*path) == FileSystemItem::Equal);
    for (auto parent = path->getParent(); parent != nullptr; parent = parent->getParent())
        fuzz::require(parent->contains(*path));
}

void checkFile(const String& text)
{
    const auto file = File::fromString(text);
    if (file == nullptr) return;
    const auto again = File::fromString(file->getFullName());
    fuzz::require(again != nullptr && again->getFullName() == file->getFullName());
    // As above, for the directory of a bare name.
    fuzz::require(again->equals(*file) == FileSystemItem::Equal || file->getDirectory()->getParent() == nullptr);
    fuzz::require(file->getDirectory()->contains(*file));
    fuzz::require(File::fromString(*file->getDirectory(), file->getName())->equals(*file) == FileSystemItem::Equal);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    for (const String& text : {fuzz::units(data, size), String(fuzz::bytes(data, size))})
    {
        checkDirectory(text);
        checkFile(text);
    }
    return 0;
}
