// Of a static library that the module links.

#include "tests/module/records/told.h"

static const ToldClass record;

int inArchive() { return inInnerArchive(); }
