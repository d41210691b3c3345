#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <span>
#include <utility>
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
    LevelList(LevelList&& other) noexcept
        : m_block(std::exchange(other.m_block, nullptr)), m_size(std::exchange(other.m_size, 0))
    {
    }
    LevelList& operator=(LevelList other) noexcept
    {
        std::swap(m_block, other.m_block);
        std::swap(m_size, other.m_size);
        return *this;
    }
    ~LevelList()
    {
        if (m_block != nullptr) Block::release(m_block);
    }

    std::size_t size() const noexcept { return m_size; }
    bool empty() const noexcept { return m_size == 0; }
    const String* begin() const noexcept { return m_block != nullptr ? m_block->levels() : nullptr; }
    const String* end() const noexcept { return begin() + m_size; }
    const String& operator[](std::size_t index) const noexcept { return begin()[index]; }
    const String& back() const noexcept { return end()[-1]; }

    /// Takes room for as many levels in all.
    void reserve(std::size_t count);
    void append(String level);
    /// Of another list.
    void append(std::span<const String> levels);
    /// There must be one.
    void dropBack() noexcept
    {
        --m_size;
        if (m_block->hasOneOwner()) m_block->truncate(m_size);
    }

   private:
    friend class LevelWriter;

    /// In one piece of memory with its levels, of which each list has the first ones. Who is at the end of those that
    /// are used may add one.
    struct Block
    {
        std::atomic<std::size_t> owners = 1;
        std::atomic<std::size_t> used = 0;
        std::size_t room = 0;

        String* levels() noexcept { return reinterpret_cast<String*>(this + 1); }
        bool hasOneOwner() const noexcept { return owners.load(std::memory_order_acquire) == 1; }
        /// For the only owner.
        void truncate(std::size_t count) noexcept
        {
            const std::size_t last = used.load(std::memory_order_relaxed);
            std::destroy(levels() + count, levels() + last);
            used.store(count, std::memory_order_relaxed);
        }
        static Block* make(std::size_t room);
        static void release(Block* block) noexcept;
    };

    bool claimPlace() noexcept;
    /// To a block of its own.
    void moveTo(std::size_t room);

    Block* m_block = nullptr;
    std::size_t m_size = 0;
};

/// Makes a new list, without a look at what others might have of it.
class LevelWriter
{
   public:
    /// `room` is a hint.
    explicit LevelWriter(std::size_t room)
    {
        m_list.m_block = LevelList::Block::make(room != 0 ? room : 1);
        begin();
    }
    LevelWriter(const LevelWriter&) = delete;
    LevelWriter& operator=(const LevelWriter&) = delete;
    ~LevelWriter() { finish(); }

    bool empty() const noexcept { return m_end == m_list.begin(); }
    void append(TextView level)
    {
        if (m_end == m_limit) grow();
        new (m_end) String(level);
        ++m_end;
    }
    void dropBack() noexcept { std::destroy_at(--m_end); }
    /// The end of the writer.
    LevelList take() noexcept;

   private:
    void begin() noexcept
    {
        m_end = m_list.m_block->levels() + m_list.m_size;
        m_limit = m_list.m_block->levels() + m_list.m_block->room;
    }
    void grow();
    void finish() noexcept;

    LevelList m_list;
    String* m_end = nullptr;
    String* m_limit = nullptr;
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
