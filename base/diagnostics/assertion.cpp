#include "base/diagnostics/assertion.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <map>
#include <mutex>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "base/diagnostics/detail/world.h"
#include "base/diagnostics/resolved_stack.h"
#include "base/diagnostics/stack_walker.h"
#include "base/platform/system/debug_output.h"
#include "base/platform/system/system_info.h"
#include "base/string/oxa_string.h"

namespace
{

using Oxa_1_1::AssertionAnswer;
using Oxa_1_1::Char;
using Oxa_1_1::String;

constexpr int ABORT_EXIT_CODE = 3;
constexpr const char* UNKNOWN = "(unknown)";

const char* orUnknown(const char* text) { return text == nullptr ? UNKNOWN : text; }

/// The lines of each file whose assertions the user chose to pass over.
class PassOverList
{
   public:
    bool contains(std::string_view file, unsigned int line) const
    {
        const std::lock_guard lock(m_mutex);
        const auto lines = m_lines.find(file);
        return lines != m_lines.end() && lines->second.contains(line);
    }

    void add(std::string_view file, unsigned int line)
    {
        const std::lock_guard lock(m_mutex);
        m_lines[std::string(file)].insert(line);
    }

   private:
    // A handler of the program's own may call the default one from any thread.
    mutable std::mutex m_mutex;
    std::map<std::string, std::set<unsigned int>, std::less<>> m_lines;
};

PassOverList& passOverList()
{
    // Never destroyed: destructors of static objects may assert, too.
    static auto& list = *new PassOverList;
    return list;
}

/// Narrow texts as `String` takes them. But what is UTF-8 on a system whose programs write it is shown as that.
String decoded(const char* text)
{
    constexpr Char REPLACEMENT = 0xFFFD;
    Oxa_1_1::Text narrow = Oxa_1_1::platform::decodeNarrow(text);
    return narrow.find(REPLACEMENT) == Oxa_1_1::Text::npos ? String(std::move(narrow)) : String(text);
}

String reportOf(const char* expression, const char* message, const char* file, unsigned int line, const char* function)
{
    String report;
    report << String("Assertion ") << decoded(orUnknown(expression)) << String(" failed.\nIn file ") << decoded(file)
           << String(":") << line << String(" in function ") << decoded(orUnknown(function)) << String(".");
    if (message != nullptr) report << String("\n\"") << decoded(message) << String("\"");
    return report;
}

/// Where the assertion failed, without what reports it.
std::string stackText()
{
    std::array<void*, 64> addresses;
    const int count = Oxa_1_1::StackWalker::captureFrames(addresses.data(), static_cast<int>(addresses.size()));
    const Oxa_1_1::ResolvedStack stack =
        Oxa_1_1::resolveFrames(std::span(addresses).first(static_cast<std::size_t>(count)));
    const auto reporter =
        std::find_if(stack.begin(), stack.end(),
                     [](const Oxa_1_1::ResolvedFrame& frame) { return frame.function == "__assert_fail_x"; });
    const auto first = reporter == stack.end() ? stack.begin() : reporter + 1;
    return "Call stack:\n" + stack.text(static_cast<std::size_t>(first - stack.begin()));
}

void askAboutAssertion(const char* expression, const char* message, const char* file, unsigned int line,
                       const char* function)
{
    PassOverList& passedOver = passOverList();
    if (passedOver.contains(file, line)) return;

    const String report = reportOf(expression, message, file, line, function);
    const bool isWritten = Oxa_1_1::detail::writeParagraph(report.stringPath());
    Oxa_1_1::detail::writeDebugText(stackText().c_str());
    switch (Oxa_1_1::detail::askUser(report.stringPath(), isWritten))
    {
        case AssertionAnswer::Abort:
            Oxa_1_1::platform::leaveCoreFile();
            std::_Exit(ABORT_EXIT_CODE);
        case AssertionAnswer::Retry:
            Oxa_1_1::detail::breakIntoDebugger();
            break;
        case AssertionAnswer::Ignore:
            passedOver.add(file, line);
            break;
    }
}

void defaultHandler(const char* expression, const char* message, const char* file, unsigned int line,
                    const char* function) noexcept
{
    try
    {
        askAboutAssertion(expression, message, orUnknown(file), line, function);
    }
    catch (...)
    {
        // Without memory for the report there is nobody to ask; that the program goes on is what it asked for.
        Oxa_1_1::platform::writeDebugOutput("Assertion failed, and there is no memory to report it.\n");
    }
}

constinit std::atomic<AssertionFailureHandler> currentHandler{defaultHandler};
constinit std::atomic<int> callsInProgress{0};

/// Counts this call for as long as it lasts, whatever way it ends.
class CallCount
{
   public:
    CallCount() : m_isFirst(++callsInProgress == 1) {}
    ~CallCount() { --callsInProgress; }
    CallCount(const CallCount&) = delete;
    CallCount& operator=(const CallCount&) = delete;

    bool isFirst() const { return m_isFirst; }

   private:
    bool m_isFirst;
};

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier)

void __assert_fail_x(const char* expression, const char* message, const char* file, unsigned int line,
                     const char* function)
{
    const CallCount call;
    const AssertionFailureHandler handler = currentHandler.load();
    if (call.isFirst() && handler != nullptr) handler(expression, message, file, line, function);
}

AssertionFailureHandler __get_assertion_failure_handler() { return currentHandler.load(); }

void __set_assertion_failure_handler(AssertionFailureHandler handler) { currentHandler.store(handler); }

// NOLINTEND(bugprone-reserved-identifier)
