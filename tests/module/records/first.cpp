// The first source of a module with records in all the places where they can lie.

#include "tests/module/records/told.h"

int told = 0;

static const ToldClass record;

extern "C" OXA_RECORDS_API int toldOfAll() { return late() + inArchive() + told; }
