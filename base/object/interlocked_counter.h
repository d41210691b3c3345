#pragma once

#include <atomic>
#include <cstdint>

#include "base/export.h"

namespace Oxa_1_1
{

/// An unsigned 32-bit counter that several threads may count with.
///
/// The read-modify-write operators are sequentially consistent. Reading and copying are plain: they order nothing,
/// and what they give may be outdated at once.
class InterlockedCounter
{
   public:
    /// Starts at 0.
    InterlockedCounter() noexcept = default;
    /// Starts at the low 32 bits of `value`.
    InterlockedCounter(long value) noexcept : m_value(static_cast<std::uint32_t>(value)) {}
    /// Takes the value that the other has at the moment.
    /// @{
    InterlockedCounter(const InterlockedCounter& other) noexcept : m_value(other.read()) {}
    InterlockedCounter& operator=(const InterlockedCounter& other) noexcept
    {
        m_value.store(other.read(), std::memory_order_relaxed);
        return *this;
    }
    /// @}
    /// Exchanges the value; returns the assigned one.
    // NOLINTNEXTLINE(misc-unconventional-assign-operator)
    unsigned int operator=(unsigned int value) noexcept
    {
        m_value.exchange(value);
        return value;
    }

    /// The value at the moment.
    operator unsigned int() const noexcept { return read(); }

    /// Each gives what such an operator of a number gives, and wraps around.
    /// @{
    unsigned int operator++() noexcept { return m_value.fetch_add(1) + 1; }
    unsigned int operator++(int) noexcept { return m_value.fetch_add(1); }
    unsigned int operator--() noexcept { return m_value.fetch_sub(1) - 1; }
    unsigned int operator--(int) noexcept { return m_value.fetch_sub(1); }
    /// @}
    /// Returns the value before the addition, not the sum.
    unsigned int operator+=(unsigned int value) noexcept { return m_value.fetch_add(value); }

    /// Sets `desired` if the value is `expected`, and says so; otherwise `expected` becomes the value found.
    bool compareExchange(unsigned int& expected, unsigned int desired) noexcept
    {
        return m_value.compare_exchange_strong(expected, desired);
    }

   private:
    std::uint32_t read() const noexcept { return m_value.load(std::memory_order_relaxed); }

    std::atomic<std::uint32_t> m_value = 0;
};

static_assert(sizeof(InterlockedCounter) == 4);

}  // namespace Oxa_1_1
