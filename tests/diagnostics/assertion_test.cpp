#include "base/diagnostics/assertion.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "base/diagnostics/hooks.h"
#include "tests/string/string_printer.h"

namespace Oxa_1_1
{

namespace
{

std::vector<String> reports;
std::vector<String> stacks;
std::vector<String> questions;
String lastCaption;
AssertionAnswer answer = AssertionAnswer::Ignore;
int breaks = 0;

/// The default handler with a user who answers at once.
class Assertion : public testing::Test
{
   protected:
    Assertion()
    {
        reports.clear();
        stacks.clear();
        questions.clear();
        breaks = 0;
        answer = AssertionAnswer::Ignore;
        DiagnosticHooks hooks;
        hooks.debugOutput = [](const Char* text)
        {
            const bool isStack = String(text).find(OXA_TEXT("Call stack:")) == 0;
            (isStack ? stacks : reports).emplace_back(text);
        };
        hooks.ask = [](const Char* text, const Char* caption)
        {
            questions.emplace_back(text);
            lastCaption = caption;
            return answer;
        };
        hooks.debugBreak = [] { ++breaks; };
        m_formerHooks = setDiagnosticHooks(hooks);
    }

    ~Assertion() override
    {
        setDiagnosticHooks(m_formerHooks);
        __set_assertion_failure_handler(m_formerHandler);
    }

   private:
    DiagnosticHooks m_formerHooks;
    AssertionFailureHandler m_formerHandler = __get_assertion_failure_handler();
};

TEST_F(Assertion, ReportsHaveTheDescribedForm)
{
    const struct
    {
        const char* expression;
        const char* message;
        const char* file;
        unsigned int line;
        const char* function;
        const char* report;
    } cases[] = {
        {"a > b", nullptr, "one.cpp", 12, "f", "Assertion a > b failed.\nIn file one.cpp:12 in function f."},
        {"x", "why", "one.cpp", 4294967295U, "g",
         "Assertion x failed.\nIn file one.cpp:4294967295 in function g.\n\"why\""},
        {"x", "", "one.cpp", 0, "g", "Assertion x failed.\nIn file one.cpp:0 in function g.\n\"\""},
        {nullptr, nullptr, nullptr, 7, nullptr,
         "Assertion (unknown) failed.\nIn file (unknown):7 in function (unknown)."},
        {"100%s", "%n", "two.cpp", 1, "h", "Assertion 100%s failed.\nIn file two.cpp:1 in function h.\n\"%n\""},
    };
    answer = AssertionAnswer::Retry;
    for (const auto& c : cases)
    {
        __assert_fail_x(c.expression, c.message, c.file, c.line, c.function);
        ASSERT_FALSE(reports.empty());
        EXPECT_EQ(reports.back(), String(c.report));
        EXPECT_EQ(questions.back(), String(c.report));
    }
    EXPECT_EQ(reports.size(), std::size(cases));
    EXPECT_EQ(stacks.size(), std::size(cases));
    EXPECT_EQ(breaks, static_cast<int>(std::size(cases)));
    EXPECT_NE(lastCaption.find(OXA_TEXT("diagnostics_test")), -1);
}

[[gnu::noinline]] void failForItsStack()
{
    OXA_ASSERT(stacks.size() > 100);
    asm volatile("" ::: "memory");
}

TEST_F(Assertion, TheStackBeginsWhereTheAssertionFailed)
{
    failForItsStack();
    ASSERT_EQ(stacks.size(), 1U);
    const int begin = stacks[0].find(OXA_TEXT("failForItsStack()"));
    EXPECT_GT(begin, 0);
    EXPECT_EQ(stacks[0].find(OXA_TEXT("\n")), stacks[0].find(OXA_TEXT("\n  ")));
    EXPECT_LT(begin, stacks[0].find(OXA_TEXT("TheStackBeginsWhereTheAssertionFailed")));
    EXPECT_GT(stacks[0].find(OXA_TEXT("assertion_test.cpp:")), begin);
    EXPECT_EQ(stacks[0].find(OXA_TEXT("__assert_fail_x")), -1);
}

TEST_F(Assertion, IgnoringPassesOverTheLineForEver)
{
    const auto failAt = [](const char* file, unsigned int line, const char* expression)
    {
        const std::size_t before = reports.size();
        __assert_fail_x(expression, nullptr, file, line, "f");
        return reports.size() != before;
    };
    answer = AssertionAnswer::Retry;
    EXPECT_TRUE(failAt("ignored.cpp", 10, "a"));
    answer = AssertionAnswer::Ignore;
    EXPECT_TRUE(failAt("ignored.cpp", 10, "a"));
    EXPECT_FALSE(failAt("ignored.cpp", 10, "a"));
    EXPECT_FALSE(failAt(std::string("ignored.cpp").c_str(), 10, "another"));
    EXPECT_TRUE(failAt("ignored.cpp", 11, "a"));
    EXPECT_TRUE(failAt("ignored.cp", 10, "a"));
    EXPECT_TRUE(failAt(nullptr, 10, "a"));
    EXPECT_FALSE(failAt(nullptr, 10, "a"));
    EXPECT_EQ(questions.size(), reports.size());
}

TEST_F(Assertion, AbortEndsWithCodeThreeAndWithoutCleanUp)
{
    answer = AssertionAnswer::Abort;
    EXPECT_EXIT(
        {
            std::atexit([] { std::_Exit(77); });
            __assert_fail_x("x", nullptr, "abort.cpp", 1, "f");
        },
        testing::ExitedWithCode(3), "");
}

int handled = 0;

TEST_F(Assertion, AHandlerGetsTheArgumentsAsTheyAre)
{
    static const char *expression, *message, *file, *function;
    static unsigned int line;
    __set_assertion_failure_handler(
        [](const char* e, const char* m, const char* f, unsigned int l, const char* fn)
        {
            expression = e;
            message = m;
            file = f;
            line = l;
            function = fn;
        });
    const char* const texts[] = {"e", "m", "f", "fn"};
    __assert_fail_x(texts[0], texts[1], texts[2], 5, texts[3]);
    EXPECT_TRUE(expression == texts[0] && message == texts[1] && file == texts[2] && function == texts[3]);
    EXPECT_EQ(line, 5U);
    __assert_fail_x(nullptr, nullptr, nullptr, 0, nullptr);
    EXPECT_TRUE(expression == nullptr && message == nullptr && file == nullptr && function == nullptr);
    EXPECT_TRUE(reports.empty());
}

TEST_F(Assertion, WhatFailsInAHandlerIsDropped)
{
    handled = 0;
    __set_assertion_failure_handler(
        [](const char*, const char*, const char*, unsigned int, const char*)
        {
            ++handled;
            __assert_fail_x("inner", nullptr, "inner.cpp", 1, "f");
        });
    __assert_fail_x("outer", nullptr, "outer.cpp", 1, "f");
    EXPECT_EQ(handled, 1);
    __assert_fail_x("outer", nullptr, "outer.cpp", 1, "f");
    EXPECT_EQ(handled, 2);
}

TEST_F(Assertion, AHandlerThatThrowsDoesNotBlockLaterOnes)
{
    handled = 0;
    __set_assertion_failure_handler(
        [](const char*, const char*, const char*, unsigned int, const char*)
        {
            ++handled;
            throw std::runtime_error("handler");
        });
    EXPECT_THROW(__assert_fail_x("x", nullptr, "f", 1, "f"), std::runtime_error);
    EXPECT_THROW(__assert_fail_x("x", nullptr, "f", 1, "f"), std::runtime_error);
    EXPECT_EQ(handled, 2);
}

TEST_F(Assertion, ANullHandlerSilences)
{
    __set_assertion_failure_handler(nullptr);
    EXPECT_EQ(__get_assertion_failure_handler(), nullptr);
    __assert_fail_x("x", nullptr, "silent.cpp", 1, "f");
    EXPECT_TRUE(reports.empty() && questions.empty());
}

std::atomic<int> inHandler{0};
std::atomic<int> calls{0};
std::atomic<bool> overlapped{false};

void noteOverlap(const char*, const char*, const char*, unsigned int, const char*)
{
    if (++inHandler != 1) overlapped = true;
    ++calls;
    std::this_thread::yield();
    --inHandler;
}

TEST_F(Assertion, OneThreadAtATimeReachesTheHandlerEvenWhileItIsReplaced)
{
    calls = 0;
    overlapped = false;
    __set_assertion_failure_handler(noteOverlap);
    std::vector<std::thread> threads;
    std::atomic<bool> stop{false};
    for (int i = 0; i < 2; ++i)
        threads.emplace_back(
            [&]
            {
                while (!stop) __assert_fail_x("x", nullptr, "threads.cpp", 1, "f");
            });
    for (int i = 0; i < 200 || calls < 20; ++i)
    {
        __set_assertion_failure_handler(nullptr);
        __set_assertion_failure_handler(noteOverlap);
        std::this_thread::yield();
    }
    stop = true;
    for (std::thread& thread : threads) thread.join();
    EXPECT_FALSE(overlapped);
    const int before = calls;
    __assert_fail_x("x", nullptr, "threads.cpp", 1, "f");
    EXPECT_EQ(calls, before + 1);
}

TEST_F(Assertion, MacrosReportThePlaceAndEvaluateOnce)
{
    int evaluated = 0;
    OXA_ASSERT(++evaluated == 1);
    EXPECT_TRUE(reports.empty());
    const unsigned int line = __LINE__ + 1;
    OXA_ASSERT_MSG(++evaluated == 1, "again");
    EXPECT_EQ(evaluated, 2);
    String expected("Assertion ++evaluated == 1 failed.\nIn file ");
    expected << String(__FILE__) << String(":") << line << String(" in function ") << String(__func__)
             << String(".\n\"again\"");
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_EQ(reports[0], expected);
    if (evaluated > 0) OXA_ASSERT(evaluated == 2);
    EXPECT_EQ(reports.size(), 1U);
}

}  // namespace

}  // namespace Oxa_1_1
