#pragma once

#include <cstdio>

#include "base/module/module_entry.h"
#include "base/object/uz_class.h"

/// How many records of this module have been told of its start.
extern int told;

/// A record at file level, wherever in the module. It says when it is told of the end.
struct ToldClass final : Oxa_1_1::uZClass
{
    ToldClass() : uZClass(OXA_TEXT("Told"), Oxa_1_1::ownModule(), Oxa_1_1::ClassVersion()) {}
    void initClassStatics() const override { ++told; }
    void clearClassStatics() const override
    {
        std::puts("clear");
        std::fflush(stdout);
    }
};

int late();
int inArchive();
int inInnerArchive();
