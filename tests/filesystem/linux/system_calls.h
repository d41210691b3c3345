#pragma once

#include <functional>
#include <string>

namespace Oxa_1_1::test
{

/// Takes part in the system calls on files that this thread makes, while it lives: the library's go through this
/// program. `before` is called with the number of each, from 1 on; it gives the value of `errno` that the call shall
/// fail with, or 0 to let it be made.
class SystemCalls
{
   public:
    using Before = std::function<int(int number)>;

    explicit SystemCalls(Before before);
    SystemCalls(const SystemCalls&) = delete;
    SystemCalls& operator=(const SystemCalls&) = delete;
    ~SystemCalls();

    int count() const noexcept { return m_count; }
    /// The name of the one that failed last.
    const std::string& failed() const noexcept { return m_failed; }

    /// For the calls.
    static int answer(const char* name);

   private:
    Before m_before;
    int m_count = 0;
    bool m_isAsking = false;
    std::string m_failed = "none";
};

}  // namespace Oxa_1_1::test
