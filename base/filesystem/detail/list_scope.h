#pragma once

namespace Oxa_1_1::detail
{

/// One list of what is in folders, which may be made of others. The outermost of a thread begins as a whole one.
class ListScope
{
   public:
    ListScope() noexcept;
    ListScope(const ListScope&) = delete;
    ListScope& operator=(const ListScope&) = delete;
    ~ListScope();

    /// Something is missing from the list that is being made on this thread.
    static void setPartial() noexcept;
    /// Something counts as a file, as the system does not tell what it is.
    static void setUnsure() noexcept;
    /// Whether nothing was missing from the last one of this thread.
    static bool wasWhole() noexcept;
    /// Whether nothing was missing but what setUnsure() tells.
    static bool wasRead() noexcept;
};

}  // namespace Oxa_1_1::detail
