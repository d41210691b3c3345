#pragma once

#include <concepts>
#include <cstddef>
#include <iterator>
#include <memory>

#include "base/export.h"

namespace Oxa_1_1
{

class Directory;
class File;
class FileSystemItem;

/// @file
/// Iterators over what one folder held when they were made. They hold nothing of the system open. Each is read once,
/// by getNext() or by range-for over the shared pointer that the find operations return:
///
///     for (const auto& file : folder->findFiles(OXA_TEXT("*.txt"))) ...

/// Files and folders mixed, in the system's order.
class OXA_API FileSystemIterator
{
   public:
    virtual ~FileSystemIterator() = default;
    /// The next item; empty at the end, however often it is asked.
    virtual std::shared_ptr<const FileSystemItem> getNext() = 0;
};

/// Files, in the system's order.
class OXA_API FileIterator
{
   public:
    virtual ~FileIterator() = default;
    /// The next file; empty at the end, however often it is asked.
    virtual std::shared_ptr<const File> getNext() = 0;
};

/// Folders, in the system's order.
class OXA_API DirectoryIterator
{
   public:
    virtual ~DirectoryIterator() = default;
    /// The next folder; empty at the end, however often it is asked.
    virtual std::shared_ptr<const Directory> getNext() = 0;
};

/// One of these iterators.
template <class T>
concept ItemSource = std::derived_from<T, FileSystemIterator> || std::derived_from<T, FileIterator> ||
    std::derived_from<T, DirectoryIterator>;

/// The place of a range-for in one of the iterators above.
template <ItemSource Source>
class ItemCursor
{
   public:
    /// What algorithms ask for.
    /// @{
    using value_type = decltype(std::declval<Source&>().getNext());
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::input_iterator_tag;
    using reference = const value_type&;
    using pointer = const value_type*;
    /// @}

    /// Reads the first item; at the end for null.
    explicit ItemCursor(Source* source) : m_source(source) { ++*this; }

    /// The item, and the step to the next.
    /// @{
    reference operator*() const noexcept { return m_item; }
    pointer operator->() const noexcept { return &m_item; }
    ItemCursor& operator++()
    {
        m_item = m_source != nullptr ? m_source->getNext() : nullptr;
        return *this;
    }
    void operator++(int) { ++*this; }
    /// @}
    /// Whether there is no item left.
    friend bool operator==(const ItemCursor& cursor, std::default_sentinel_t) noexcept
    {
        return cursor.m_item == nullptr;
    }

   private:
    Source* m_source = nullptr;
    value_type m_item;
};

/// What range-for takes. An empty pointer, as a refused search string gives, is an empty range.
/// @{
template <ItemSource Source>
ItemCursor<Source> begin(const std::shared_ptr<Source>& source)
{
    return ItemCursor<Source>(source.get());
}
template <ItemSource Source>
std::default_sentinel_t end(const std::shared_ptr<Source>&) noexcept
{
    return {};
}
/// @}

}  // namespace Oxa_1_1
