// Of a static library that the static library links.

#include "tests/module/records/told.h"

static const ToldClass record;

int inInnerArchive() { return 0; }
