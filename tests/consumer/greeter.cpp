#include "greeter.h"

#include "base/module/module_entry.h"

const Oxa_1_1::Module& greeterModule() { return Oxa_1_1::ownModule(); }
