// Copying and moving files: what is the same for every implementation.

#include <utility>

#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"

namespace Oxa_1_1
{

namespace
{

void reportName(const File& file, IProgress* progress)
{
    if (progress != nullptr) progress->onItem(file.getName().stringUTF8());
}

}  // namespace

int File::copy(const File& target, bool overwrite, std::shared_ptr<IProgress> progress) const
{
    reportName(*this, progress.get());
    std::shared_ptr<const FileSystemItem> item;
    return m_impl->copy(target, overwrite, std::move(progress), item);
}

int File::copy(const std::shared_ptr<const File>& target, bool overwrite) const
{
    if (target != nullptr) return copy(*target, overwrite, nullptr);
    detail::noteRefusal({});
    return 1;
}

int File::copy(const String& target, bool overwrite, std::shared_ptr<IProgress> progress) const
{
    const auto file = fromString(target);
    return file != nullptr ? copy(*file, overwrite, std::move(progress)) : 1;
}

std::shared_ptr<const FileSystemItem> File::copy(const Directory& target, bool overwrite,
                                                 std::shared_ptr<IProgress> progress) const
{
    const auto file = fromString(target, getName());
    if (file == nullptr) return nullptr;
    reportName(*this, progress.get());
    std::shared_ptr<const FileSystemItem> item;
    return m_impl->copy(*file, overwrite, std::move(progress), item) == 0 ? item : nullptr;
}

std::shared_ptr<const FileSystemItem> File::copyFrom(const File& source, bool overwrite,
                                                     std::shared_ptr<IProgress> progress) const
{
    reportName(source, progress.get());
    std::shared_ptr<const FileSystemItem> item;
    return m_impl->copyFrom(source, overwrite, std::move(progress), item) == 0 ? item : nullptr;
}

bool File::move(const File& target, bool overwrite) const { return m_impl->move(target, overwrite); }

bool File::move(const String& target, bool overwrite) const
{
    const auto file = fromString(target);
    return file != nullptr && move(*file, overwrite);
}

}  // namespace Oxa_1_1
