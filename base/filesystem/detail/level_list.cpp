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

void LevelList::Block::release(Block* block) noexcept
{
    // The only owner needs no locked operation.
    if (!block->hasOneOwner() && block->owners.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    block->truncate(0);
    block->~Block();
    ::operator delete(block);
}

LevelList::LevelList(const LevelList& other) noexcept : m_block(other.m_block), m_size(other.m_size)
{
    if (m_block != nullptr) m_block->owners.fetch_add(1, std::memory_order_relaxed);
}

void LevelList::moveTo(std::size_t room)
{
    LevelList larger;
    larger.m_block = Block::make(room);
    for (const String& level : *this)
    {
        new (larger.m_block->levels() + larger.m_size) String(level);
        larger.m_block->used.store(++larger.m_size, std::memory_order_relaxed);
    }
    *this = std::move(larger);
}

void LevelList::reserve(std::size_t count)
{
    const bool isOwn = m_block != nullptr && m_block->hasOneOwner();
    if (count > (isOwn ? m_block->room : m_size)) moveTo(count);
}

/// The one behind the last level, unless another list has it.
bool LevelList::claimPlace() noexcept
{
    if (m_block == nullptr) return false;
    // What others have added is gone with them.
    if (m_block->hasOneOwner()) m_block->truncate(m_size);
    std::size_t end = m_size;
    return m_size < m_block->room && m_block->used.compare_exchange_strong(end, m_size + 1, std::memory_order_acq_rel);
}

void LevelList::append(String level)
{
    if (!claimPlace())
    {
        moveTo(roomFor(m_size + 1));
        claimPlace();
    }
    // Nobody else reads this place before it has got a copy of this list.
    new (m_block->levels() + m_size++) String(std::move(level));
}

void LevelList::append(std::span<const String> levels)
{
    if (levels.empty()) return;
    reserve(m_size + levels.size());
    // The block is its own now.
    m_block->truncate(m_size);
    for (const String& level : levels)
    {
        new (m_block->levels() + m_size) String(level);
        m_block->used.store(++m_size, std::memory_order_relaxed);
    }
}

void LevelWriter::finish() noexcept
{
    if (m_list.m_block == nullptr) return;
    m_list.m_size = static_cast<std::size_t>(m_end - m_list.begin());
    m_list.m_block->used.store(m_list.m_size, std::memory_order_relaxed);
}

void LevelWriter::grow()
{
    finish();
    m_list.moveTo(2 * m_list.m_block->room);
    begin();
}

LevelList LevelWriter::take() noexcept
{
    finish();
    return std::move(m_list);
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
