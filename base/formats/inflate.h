#pragma once

#include <cstddef>
#include <vector>

#include "base/formats/bytes.h"

namespace Oxa_1_1::formats
{

/// Unpacks what was packed in the zlib form, to `size` bytes. Empty when it is damaged or of another size. The checksum
/// is not compared.
std::vector<std::byte> inflate(Bytes packed, std::size_t size);

}  // namespace Oxa_1_1::formats
