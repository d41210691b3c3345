#pragma once

#include <cmath>
#include <limits>

#include "base/object/vec3d.h"

namespace Oxa_1_1
{

/// What the code of bounding boxes needs to know of a precision.
template <Coordinate T>
struct OxaBoundingBoxTraits
{
    /// Differences up to this count as none, in units of the coordinates.
    static constexpr T epsilon = static_cast<T>(1e-5);

    /// The square root in this precision; NaN for negative numbers.
    static constexpr T (*sqrt)(T) noexcept = [](T value) noexcept { return std::sqrt(value); };

    /// The corner that no finite position lies beyond.
    static constexpr Vec3d<T> maxVector{(std::numeric_limits<T>::max)(), (std::numeric_limits<T>::max)(),
                                        (std::numeric_limits<T>::max)()};
};

}  // namespace Oxa_1_1
