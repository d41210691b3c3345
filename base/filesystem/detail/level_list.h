#pragma once

#include <atomic>
#include <cstddef>
#include <span>
#include <vector>

#include "base/string/oxa_string.h"

namespace Oxa_1_1::detail
{

/// The levels of a path, from the root outwards. Paths that begin with the same ones share them: a path one level
/// longer takes no copy of the others, so that a chain of folders is not the square of its depth. Copies may be changed
/// and dropped by other threads.
class LevelList
{
   public:
    LevelList() noexcept = default;
    LevelList(const LevelList& other) noexcept;
    LevelList(LevelList&& other) noexcept;
    LevelList& operator=(LevelList other) noexcept;
    ~LevelList();

    std::size_t size() const noexcept { return m_size; }
    bool empty() const noexcept { return m_size == 0; }
    const String* begin() const noexcept { return m_block != nullptr ? m_block->levels() : nullptr; }
    const String* end() const noexcept { return begin() + m_size; }
    const String& operator[](std::size_t index) const noexcept { return begin()[index]; }
    const String& back() const noexcept { return end()[-1]; }

    /// Takes room for as many levels in all.
    void reserve(std::size_t count);
    void append(TextView level)
    {
        if (!hasOwnRoom()) return appendShared(String(level));
        new (m_block->levels() + m_size) String(level);
        m_block->used.store(++m_size, std::memory_order_relaxed);
    }
    /// Of another list.
    void append(std::span<const String> levels);
    /// There must be one.
    void dropBack() noexcept;
    void clear() noexcept { *this = LevelList(); }

   private:
    /// In one piece of memory with its levels, of which each list has the first ones. Who is at the end of those that
    /// are used may add one.
    struct Block
    {
        std::atomic<std::size_t> owners = 1;
        std::atomic<std::size_t> used = 0;
        std::size_t room = 0;

        String* levels() noexcept { return reinterpret_cast<String*>(this + 1); }
        void truncate(std::size_t count) noexcept;
        static Block* make(std::size_t room);
        static void release(Block* block) noexcept;
    };

    /// Whether nobody else has the block.
    bool isOnlyOne() const noexcept { return m_block->owners.load(std::memory_order_acquire) == 1; }
    bool hasOwnRoom() const noexcept
    {
        return m_block != nullptr && isOnlyOne() && m_size < m_block->room &&
               m_size == m_block->used.load(std::memory_order_relaxed);
    }
    void appendShared(String level);

    Block* m_block = nullptr;
    std::size_t m_size = 0;
};

/// The same levels for who asks for a vector, made by whichever thread is the first to ask. Copies have none yet.
class LevelVector
{
   public:
    LevelVector() noexcept = default;
    LevelVector(const LevelVector& /*other*/) noexcept {}
    LevelVector& operator=(const LevelVector& other) noexcept;
    ~LevelVector();

    /// Of the list that stands beside it, which is not changed any more.
    const std::vector<String>& of(const LevelList& levels) const;

   private:
    mutable std::atomic<const std::vector<String>*> m_vector = nullptr;
};

}  // namespace Oxa_1_1::detail
