// Prints how many records were told before, in a static library like the one that test programs have.

#include <cstdio>

extern "C" int toldOfAll();

int main()
{
    std::printf("told %d\n", toldOfAll());
    std::fflush(stdout);
}
