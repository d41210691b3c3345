#pragma once

#include "base/char.h"

namespace Oxa_1_1::detail
{

/// A search string: "*" stands for any run of units, "?" for exactly one, everything else for itself in either case.
class Wildcard
{
   public:
    explicit Wildcard(TextView pattern);
    /// In at most pattern times name steps, whatever the pattern.
    bool matches(TextView name) const noexcept;

   private:
    bool matchesAt(std::size_t patternIndex, Char c) const noexcept;
    /// Whether what follows the star, the first unit of the search string, ends the name.
    bool matchesEnd(TextView name) const noexcept;

    /// In lower case.
    Text m_pattern;
    bool m_hasOnlyLeadingStar = false;
};

}  // namespace Oxa_1_1::detail
