#pragma once

#include <algorithm>
#include <memory>
#include <string_view>

namespace Oxa_1_1::test
{

/// A copy on the heap with nothing behind it, so that the sanitizer sees a read past the end.
template <class C>
class ExactBuffer
{
   public:
    explicit ExactBuffer(std::basic_string_view<C> text) : m_data(new C[text.size()]), m_size(text.size())
    {
        std::copy(text.begin(), text.end(), m_data.get());
    }

    const C* data() const { return m_data.get(); }
    std::size_t size() const { return m_size; }
    std::basic_string_view<C> view() const { return {data(), size()}; }

   private:
    std::unique_ptr<C[]> m_data;
    std::size_t m_size;
};

}  // namespace Oxa_1_1::test
