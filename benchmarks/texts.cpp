// A module of texts; OXA_TEXTS is the function that gives it.

#include "benchmarks/texts.h"

#include "base/module/module_entry.h"

__attribute__((visibility("default"))) const Oxa_1_1::Module& OXA_TEXTS() { return Oxa_1_1::ownModule(); }
