// A source that was added to the module when that was made already.

#include "tests/module/records/told.h"

static const ToldClass record;

int late() { return 0; }
