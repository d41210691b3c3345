#include "base/filesystem/detail/level_list.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

namespace Oxa_1_1::detail
{

namespace
{

/// Most paths are short, and have just the room that they need. Of a long one, longer ones may follow.
std::size_t roomFor(std::size_t count) noexcept
{
    constexpr std::size_t LONG = 16;
    return count < LONG ? count : count + count / 2;
}

}  // namespace

LevelList::Block* LevelList::Block::make(std::size_t room)
{
    static_assert(alignof(Block) >= alignof(String) && sizeof(Block) % alignof(String) == 0);
    auto* const block = new (::operator new(sizeof(Block) + room * sizeof(String))) Block;
    block->room = room;
    return block;
}

void LevelList::Block::truncate(std::size_t count) noexcept
{
    const std::size_t last = used.exchange(count, std::memory_order_relaxed);
    std::destroy(levels() + count, levels() + last);
}

void LevelList::Block::release(Block* block) noexcept
{
    if (block == nullptr || block->owners.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    block->truncate(0);
    block->~Block();
    ::operator delete(block);
}

LevelList::LevelList(const LevelList& other) noexcept : m_block(other.m_block), m_size(other.m_size)
{
    if (m_block != nullptr) m_block->owners.fetch_add(1, std::memory_order_relaxed);
}

LevelList::LevelList(LevelList&& other) noexcept
    : m_block(std::exchange(other.m_block, nullptr)), m_size(std::exchange(other.m_size, 0))
{
}

LevelList& LevelList::operator=(LevelList other) noexcept
{
    std::swap(m_block, other.m_block);
    std::swap(m_size, other.m_size);
    return *this;
}

LevelList::~LevelList() { Block::release(m_block); }

void LevelList::reserve(std::size_t count)
{
    if (m_block != nullptr && isOnlyOne() ? count <= m_block->room : count <= m_size) return;
    LevelList larger;
    larger.m_block = Block::make(count);
    for (const String& level : *this) larger.append(level);
    *this = std::move(larger);
}

void LevelList::appendShared(String level)
{
    // What others have added is gone with them.
    if (m_block != nullptr && isOnlyOne()) m_block->truncate(m_size);
    std::size_t end = m_size;
    const bool hasRoom = m_block != nullptr && m_size < m_block->room;
    if (!hasRoom || !m_block->used.compare_exchange_strong(end, m_size + 1, std::memory_order_acq_rel))
    {
        reserve(roomFor(m_size + 1));
        return append(level.view());
    }
    // Nobody else reads this place before it has got a copy of this list.
    new (m_block->levels() + m_size++) String(std::move(level));
}

void LevelList::append(std::span<const String> levels)
{
    reserve(m_size + levels.size());
    for (const String& level : levels) append(level.view());
}

void LevelList::dropBack() noexcept
{
    --m_size;
    if (isOnlyOne()) m_block->truncate(m_size);
}

LevelVector& LevelVector::operator=(const LevelVector& other) noexcept
{
    if (this != &other) delete m_vector.exchange(nullptr);
    return *this;
}

LevelVector::~LevelVector() { delete m_vector.load(); }

const std::vector<String>& LevelVector::of(const LevelList& levels) const
{
    const std::vector<String>* found = m_vector.load(std::memory_order_acquire);
    if (found != nullptr) return *found;
    auto made = std::make_unique<const std::vector<String>>(levels.begin(), levels.end());
    if (!m_vector.compare_exchange_strong(found, made.get(), std::memory_order_acq_rel)) return *found;
    return *made.release();
}

}  // namespace Oxa_1_1::detail
