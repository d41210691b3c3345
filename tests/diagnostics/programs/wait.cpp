// Waits below known functions, to be walked by another process.

#include <chrono>
#include <thread>

#include "tests/diagnostics/stack_samples.h"

int main()
{
    auto wait = [] { std::this_thread::sleep_for(std::chrono::seconds(60)); };
    Oxa_1_1::test::knownFunction<9>(wait);
    return 0;
}
