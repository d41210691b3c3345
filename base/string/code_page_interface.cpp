#include "base/string/code_page_interface.h"

namespace Oxa_1_1
{

// Defined here, so that the classes' virtual tables live in the library alone.
CodePageInterface::~CodePageInterface() = default;
UTF8Interface::~UTF8Interface() = default;

}  // namespace Oxa_1_1
