#include "base/text/scan.h"

#include "base/text/vector/kernels.h"

namespace Oxa_1_1::text
{

std::size_t findUnit(const Char* text, std::size_t length, Char c) noexcept
{
    return textKernels().findUnit(text, length, c);
}

std::size_t findText(const Char* text, std::size_t length, const Char* pattern, std::size_t patternLength) noexcept
{
    return textKernels().findText(text, length, pattern, patternLength);
}

int compareUnits(const Char* a, const Char* b, std::size_t length) noexcept
{
    return textKernels().compareUnits(a, b, length);
}

int compareUnitsIgnoreCase(const Char* a, const Char* b, std::size_t length) noexcept
{
    return textKernels().compareUnitsIgnoreCase(a, b, length);
}

}  // namespace Oxa_1_1::text
