#pragma once

#include "base/export.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

/// The system's text for an error code, without line breaks at its end. Codes are numbered as on Windows everywhere.
/// Empty for 0; "[0x20000001]" for a code that the system has no text for.
OXA_API String getWindowsError(unsigned long code);

/// The text of the calling thread's last error: of the last call of the library or, on Windows, of the system.
OXA_API String getWindowsError();

}  // namespace Oxa_1_1
