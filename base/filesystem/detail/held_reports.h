#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "base/string/oxa_string.h"

namespace Oxa_1_1::detail
{

/// Keeps what is reported on this thread until it is known whether anybody shall hear of it: a text that one
/// implementation refuses may be another one's. What is not released is forgotten.
class HeldReports
{
   public:
    HeldReports() noexcept : m_innermost(innermost()), m_outer(std::exchange(m_innermost, this)) {}
    HeldReports(const HeldReports&) = delete;
    HeldReports& operator=(const HeldReports&) = delete;
    ~HeldReports() { forget(); }

    std::size_t count() const noexcept { return m_messages.size(); }
    /// Holds no longer, and passes on what came, but for the first ones.
    void release(std::size_t from = 0)
    {
        forget();
        if (!m_messages.empty()) passOn(from);
    }
    /// Holds no longer.
    void forget() noexcept
    {
        if (std::exchange(m_holds, false)) m_innermost = m_outer;
    }

    /// False when nobody holds on this thread.
    static bool hold(const String& message);

   private:
    /// Of this thread; looked up once, as every path that is made from text comes by here.
    static HeldReports*& innermost() noexcept;
    void passOn(std::size_t from);

    HeldReports*& m_innermost;
    HeldReports* m_outer;
    bool m_holds = true;
    std::vector<String> m_messages;
};

}  // namespace Oxa_1_1::detail
