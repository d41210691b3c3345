// A conversion measures and then allocates once; short texts need no memory at all.

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "base/diagnostics/debug_output.h"
#include "base/diagnostics/stack_walker.h"
#include "base/string/oxa_string.h"

namespace
{

thread_local std::size_t allocations = 0;

// Not called by name: where only the operators delete are inlined, GCC finds that they do not match those that
// allocate.
void (*volatile giveBack)(void*) = std::free;

}  // namespace

void* operator new(std::size_t size)
{
    ++allocations;
    if (void* const memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}

// The standard algorithms take their memory so, and give it back to the same functions.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    ++allocations;
    return std::malloc(size);
}

void operator delete(void* memory) noexcept { giveBack(memory); }

void operator delete(void* memory, std::size_t) noexcept { giveBack(memory); }

namespace Oxa_1_1
{

namespace
{

template <class Work>
std::size_t allocationsOf(Work work)
{
    const std::size_t before = allocations;
    work();
    return allocations - before;
}

TEST(Allocation, ShortTextsNeedNone)
{
    EXPECT_EQ(allocationsOf(
                  []
                  {
                      String text(OXA_TEXT("scan00"));
                      text << 9;
                      text.incrementIndex();
                      const String copy = text;
                      const String fromUtf8(UTF8Interface("\xC3\xA4\xE4\xB8\xAD 1234"));
                      static_cast<void>(text.compareIgnoreCase(copy) + fromUtf8.length());
                  }),
              0u);
}

TEST(Allocation, AConversionNeedsAtMostOne)
{
    const std::string bytes(1000, '\xE4');
    std::string utf8;
    for (int i = 0; i < 300; ++i) utf8 += "a\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80";
    EXPECT_LE(allocationsOf([&] { const String text(bytes); }), 1u);
    EXPECT_LE(allocationsOf([&] { const String text{UTF8Interface(utf8.c_str())}; }), 1u);
    const String text{UTF8Interface(utf8.c_str())};
    EXPECT_LE(allocationsOf([&] { EXPECT_EQ(text.stringUTF8().capacity(), utf8.size()); }), 1u);
    EXPECT_LE(allocationsOf([&] { static_cast<void>(text.stringAnsi()); }), 1u);
}

TEST(Allocation, AppendingDrawsOnWhatIsThere)
{
    String text;
    // As many as doubling needs.
    EXPECT_LE(allocationsOf(
                  [&]
                  {
                      for (int i = 0; i < 1000; ++i) text << i << OXA_TEXT(' ') << i * 0.5 << OXA_TEXT("\n");
                  }),
              14u);
}

TEST(Allocation, CountingAndCapturingFramesNeedNone)
{
    EXPECT_EQ(allocationsOf(
                  []
                  {
                      const OutputDebugParenthesesScope scope;
                      void* addresses[16];
                      EXPECT_GT(StackWalker::captureFrames(addresses, 16), 0);
                  }),
              0u);
}

}  // namespace

}  // namespace Oxa_1_1
