#pragma once

#include "base/char.h"

/// Files by their Windows spelling.
namespace Oxa_1_1::platform
{

/// Whether the file or folder is there and may be read.
bool isReadable(TextView path);

}  // namespace Oxa_1_1::platform
