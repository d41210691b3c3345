#pragma once

// Loops of which compilers make vectors. Included like normal_code.inl, behind <cstddef> and vec3d.h.

#include "base/object/vector/normal_code.inl"

template <class T>
void encodeAll(const Vec3d<T>* directions, std::size_t count, std::uint16_t* codes) noexcept
{
    for (std::size_t i = 0; i < count; ++i) codes[i] = normalCode(directions[i].x, directions[i].y, directions[i].z);
}

void decodeAll(const std::uint16_t* codes, std::size_t count, const double* __restrict scales,
               Vec3d<double>* normals) noexcept
{
    for (std::size_t i = 0; i < count; ++i)
    {
        const unsigned code = codes[i];
        const Steps steps = unfold(code & LOW_BITS);
        const double scale = scales[code & LOW_BITS];
        normals[i].x = steps.x * signOf(code, NEGATIVE_X) * scale;
        normals[i].y = steps.y * signOf(code, NEGATIVE_Y) * scale;
        normals[i].z = steps.z * signOf(code, NEGATIVE_Z) * scale;
    }
}
