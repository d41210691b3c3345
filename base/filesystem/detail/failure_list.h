#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/filesystem/failure.h"

namespace Oxa_1_1::detail
{

/// Counts all failures and keeps the first ones.
class FailureList
{
   public:
    explicit FailureList(std::size_t limit) noexcept : m_limit(limit) {}

    void add(const Failure& failure)
    {
        ++m_count;
        if (m_first.size() < m_limit) m_first.push_back(failure);
    }
    const std::vector<Failure>& first() const noexcept { return m_first; }
    std::uint64_t count() const noexcept { return m_count; }

   private:
    std::size_t m_limit;
    std::vector<Failure> m_first;
    std::uint64_t m_count = 0;
};

}  // namespace Oxa_1_1::detail
