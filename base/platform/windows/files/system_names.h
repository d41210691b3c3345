#pragma once

#include "base/char.h"

/// What the system makes of paths and names, which the calls would not tell.
namespace Oxa_1_1::platform
{

/// The path in the spelling that system calls take, whatever its length: short ones as they are, longer ones with the
/// mark for that. One from the root of the current drive on, which leads nowhere with the mark, loses it.
Text pathForSystem(TextView path);

/// Whether a new file or folder must not be made here, as its name is that of a device (CON, COM1.txt): programs would
/// find the device instead. Sets the last error; false where something of that name is there all the same.
bool refusesNew(TextView path);

}  // namespace Oxa_1_1::platform
