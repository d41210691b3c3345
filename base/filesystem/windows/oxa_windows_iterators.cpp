#include "base/filesystem/windows/oxa_windows_iterators.h"

#include <cstddef>
#include <utility>
#include <vector>

#include "base/filesystem/detail/list_scope.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/filesystem/windows/detail/folder_list.h"

namespace Oxa_1_1
{

struct OxaWindowsFileSystemIterator::Snapshot
{
    std::vector<std::shared_ptr<const FileSystemItem>> items;
    std::size_t cursor = 0;
    bool isStarted = false;

    bool atEnd() const noexcept { return (isStarted ? cursor : 0) == items.size(); }
    void advance() noexcept
    {
        cursor = isStarted ? cursor + 1 : 1;
        isStarted = true;
    }
};

namespace
{

class Collector final : public detail::ItemReceiver
{
   public:
    void take(std::shared_ptr<const File> file) override { items.push_back(std::move(file)); }
    void take(std::shared_ptr<const Directory> directory, bool /*mayBeLink*/) override
    {
        items.push_back(std::move(directory));
    }

    std::vector<std::shared_ptr<const FileSystemItem>> items;
};

/// The next item that is a T.
template <class T>
std::shared_ptr<const T> nextOf(OxaWindowsFileSystemIterator& iterator)
{
    while (auto item = iterator.getNext())
    {
        if (const auto* const wanted = dynamic_cast<const T*>(item.get())) return {std::move(item), wanted};
    }
    return nullptr;
}

}  // namespace

OxaWindowsFileSystemIterator::OxaWindowsFileSystemIterator(const Directory& directory, const String& pattern)
    : OxaWindowsFileSystemIterator(directory, pattern, detail::Kinds::ALL)
{
}

OxaWindowsFileSystemIterator::OxaWindowsFileSystemIterator(const Directory& directory, const String& pattern,
                                                           detail::Kinds kinds)
    : m_snapshot(std::make_unique<Snapshot>())
{
    const detail::ListScope scope;
    Collector collector;
    detail::listFolder(directory, pattern, kinds, collector);
    m_snapshot->items = std::move(collector.items);
}

OxaWindowsFileSystemIterator::~OxaWindowsFileSystemIterator() = default;

std::shared_ptr<const FileSystemItem> OxaWindowsFileSystemIterator::getNext()
{
    if (atEnd()) return nullptr;
    auto item = m_snapshot->items[m_snapshot->cursor];
    m_snapshot->advance();
    return item;
}

void OxaWindowsFileSystemIterator::next()
{
    if (!atEnd()) m_snapshot->advance();
}

bool OxaWindowsFileSystemIterator::atEnd() const { return m_snapshot->atEnd(); }

OxaWindowsFileSystemDirectoryIterator::OxaWindowsFileSystemDirectoryIterator(const Directory& directory,
                                                                             const String& pattern)
    : m_iterator(directory, pattern, detail::Kinds::DIRECTORIES)
{
}

std::shared_ptr<const Directory> OxaWindowsFileSystemDirectoryIterator::getNext()
{
    return nextOf<Directory>(m_iterator);
}

OxaWindowsFileSystemFileIterator::OxaWindowsFileSystemFileIterator() noexcept = default;

OxaWindowsFileSystemFileIterator::OxaWindowsFileSystemFileIterator(const Directory& directory, const String& pattern)
    : m_iterator(std::make_unique<OxaWindowsFileSystemIterator>(directory, pattern, detail::Kinds::FILES))
{
}

OxaWindowsFileSystemFileIterator::OxaWindowsFileSystemFileIterator(OxaWindowsFileSystemFileIterator&& other) noexcept
    : m_iterator(std::move(other.m_iterator))
{
}

OxaWindowsFileSystemFileIterator& OxaWindowsFileSystemFileIterator::operator=(
    OxaWindowsFileSystemFileIterator&& other) noexcept
{
    m_iterator = std::move(other.m_iterator);
    return *this;
}

OxaWindowsFileSystemFileIterator::~OxaWindowsFileSystemFileIterator() = default;

std::shared_ptr<const File> OxaWindowsFileSystemFileIterator::getNext()
{
    return m_iterator != nullptr ? nextOf<File>(*m_iterator) : nullptr;
}

}  // namespace Oxa_1_1
