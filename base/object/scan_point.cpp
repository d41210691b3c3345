#include "base/object/scan_point.h"

#include <algorithm>
#include <cstdint>

namespace Oxa_1_1
{

namespace
{

#include "base/object/vector/normal_code.inl"

}  // namespace

template <ScanPosition T>
constinit const ScanPtColor<T> ScanPtColor<T>::nullReference{T{}, normalCode(0, 0, 1), {}};

template struct ScanPtColor<Vec3d<float>>;
template struct ScanPtColor<Vec3d<double>>;
template struct ScanPtColor<int>;
template struct ScanPtColor<double>;

namespace
{

template <class Source, class Target>
std::size_t convertAll(std::span<const Source> sources, std::span<Target> targets) noexcept
{
    const std::size_t count = std::min(sources.size(), targets.size());
    for (std::size_t i = 0; i < count; ++i) detail::convert(sources[i], targets[i]);
    return count;
}

}  // namespace

std::size_t scanpt_cast(std::span<const ScanPtColor<Vec3d<double>>> sources,
                        std::span<ScanPtColor<Vec3d<float>>> targets) noexcept
{
    return convertAll(sources, targets);
}

std::size_t scanpt_cast(std::span<const ScanPtColor<Vec3d<float>>> sources,
                        std::span<ScanPtColor<Vec3d<double>>> targets) noexcept
{
    return convertAll(sources, targets);
}

std::size_t scanpt_cast(std::span<const ScanPtColorExt<Vec3d<double>>> sources,
                        std::span<ScanPtColorExt<Vec3d<float>>> targets) noexcept
{
    return convertAll(sources, targets);
}

std::size_t scanpt_cast(std::span<const ScanPtColorExt<Vec3d<float>>> sources,
                        std::span<ScanPtColorExt<Vec3d<double>>> targets) noexcept
{
    return convertAll(sources, targets);
}

}  // namespace Oxa_1_1
