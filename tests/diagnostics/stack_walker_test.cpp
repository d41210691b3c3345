#include "base/diagnostics/stack_walker.h"
#include "base/platform/stack/call_stack.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <string_view>
#include <thread>

#include "base/diagnostics/hooks.h"
#include "base/diagnostics/kp_stack_walker.h"
#include "tests/diagnostics/stack_samples.h"

namespace Oxa_1_1
{

namespace
{

using test::RecordingWalker;
using test::SeenFrame;

constexpr int DEPTH = 32;

/// The walker's view of `depth` known functions.
template <int N>
void walkBelow(RecordingWalker& walker)
{
    auto work = [&] { EXPECT_TRUE(walker.ShowCallstack()); };
    test::knownFunction<N>(work);
}

std::string knownName(int number) { return "knownFunction<" + std::to_string(number) + ","; }

TEST(StackWalker, FindsKnownFunctionsByNameFileAndLine)
{
    RecordingWalker walker;
    walkBelow<DEPTH>(walker);
    const std::vector<SeenFrame> known = walker.framesNamed("knownFunction<");
    ASSERT_EQ(known.size(), static_cast<std::size_t>(DEPTH));
    for (int i = 0; i < DEPTH; ++i)
    {
        const SeenFrame& frame = known[static_cast<std::size_t>(i)];
        EXPECT_NE(frame.name.find("test::" + knownName(i + 1)), std::string::npos) << frame.name;
        EXPECT_TRUE(frame.file.ends_with("stack_samples.h")) << frame.file;
        // The calls stand within these lines.
        EXPECT_GE(frame.line, 18U);
        EXPECT_LE(frame.line, 32U);
        EXPECT_NE(frame.module.find("diagnostics_test"), std::string::npos) << frame.module;
        EXPECT_GT(frame.base, 0U);
        EXPECT_FALSE(frame.symbolType.empty() || frame.symbolType.starts_with('-')) << frame.symbolType;
    }
    EXPECT_EQ(walker.framesNamed("main").empty(), false);
    EXPECT_TRUE(walker.errors.empty());
}

TEST(StackWalker, BeginsWithTheCallerAndEndsWithTheOutermostFrame)
{
    RecordingWalker walker;
    walkBelow<3>(walker);
    ASSERT_GE(walker.frames.size(), 5U);
    EXPECT_EQ(walker.framesNamed("ShowCallstack").size(), 0U);
    for (std::size_t i = 0; i < walker.frames.size(); ++i)
    {
        const bool isLast = i + 1 == walker.frames.size();
        EXPECT_EQ(walker.frames[i].type,
                  i == 0 ? StackWalker::firstEntry : (isLast ? StackWalker::lastEntry : StackWalker::nextEntry));
    }
    // The addresses are those of the plain capture.
    void* addresses[100];
    const auto count = static_cast<std::size_t>(StackWalker::captureFrames(addresses, 100));
    ASSERT_LT(count, walker.frames.size());
    for (std::size_t i = 1; i < count; ++i)
        EXPECT_EQ(walker.frames[walker.frames.size() - i].address,
                  reinterpret_cast<std::uintptr_t>(addresses[count - i]));
}

TEST(StackWalker, ASecondWalkGivesTheSame)
{
    RecordingWalker walker;
    std::vector<std::string> names[2];
    for (auto& list : names)
    {
        walker.frames.clear();
        walkBelow<10>(walker);
        for (const SeenFrame& frame : walker.frames)
            list.push_back(frame.fullName + frame.file + std::to_string(frame.line) + frame.module);
    }
    EXPECT_EQ(names[0], names[1]);
    EXPECT_EQ(walker.paths.size(), 1U);
}

TEST(StackWalker, EachOptionAddsItsPart)
{
    const auto any = [](const auto& list, auto predicate) { return std::any_of(list.begin(), list.end(), predicate); };
    for (const int option : {0, 1, 2, 4, 8})
    {
        RecordingWalker walker(option);
        walkBelow<2>(walker);
        EXPECT_EQ(any(walker.frames, [](const SeenFrame& f) { return !f.fullName.empty() || !f.name.empty(); }),
                  option == StackWalker::FunctionNames);
        EXPECT_EQ(any(walker.frames, [](const SeenFrame& f) { return !f.file.empty() || f.line != 0; }),
                  option == StackWalker::SourceLines);
        EXPECT_EQ(any(walker.frames,
                      [](const SeenFrame& f) { return !f.module.empty() || f.base != 0 || !f.symbolType.empty(); }),
                  option == StackWalker::FrameModules);
        EXPECT_EQ(any(walker.modules, [](const auto& m) { return m.version != 0; }),
                  option == StackWalker::FileVersions);
        EXPECT_GE(walker.frames.size(), 3U);
        EXPECT_FALSE(walker.frames[0].address == 0);
    }
}

TEST(StackWalker, TheSearchPathIsTheCallersAloneOrBuilt)
{
    const auto pathOf = [](int options, const char* path)
    {
        RecordingWalker walker(options, path);
        EXPECT_TRUE(walker.LoadModules());
        return walker.paths.at(0);
    };
    EXPECT_EQ(pathOf(0, "given"), "given");
    const std::string built = pathOf(StackWalker::BuildSearchPath, "given");
    EXPECT_TRUE(built.starts_with("given;")) << built;
    EXPECT_NE(built.find("bin;"), std::string::npos) << built;
    EXPECT_EQ(pathOf(StackWalker::AllOptions, "given"), built);

    StackWalker::setSymbolServer("server");
    EXPECT_EQ(pathOf(StackWalker::BuildSearchPath, "given"), built);
    EXPECT_EQ(pathOf(StackWalker::UseSymbolServer, "given"), "given");
    const std::string served = pathOf(StackWalker::AllOptions, "given");
    StackWalker::setSymbolServer(nullptr);
    EXPECT_TRUE(served.starts_with(built + "SRV*")) << served;
    EXPECT_TRUE(served.ends_with(":\\websymbols*server;")) << served;
}

TEST(StackWalker, ModulesAreReportedOnceWithTheirPlace)
{
    RecordingWalker walker;
    EXPECT_TRUE(walker.LoadModules());
    const std::size_t count = walker.modules.size();
    EXPECT_TRUE(walker.LoadModules());
    EXPECT_TRUE(walker.ShowCallstack());
    // A walk may load the library that reads symbols, but reports nothing again.
    std::vector<DWORD64> bases;
    for (const auto& module : walker.modules) bases.push_back(module.base);
    std::sort(bases.begin(), bases.end());
    EXPECT_EQ(std::adjacent_find(bases.begin(), bases.end()), bases.end());
    ASSERT_GE(count, 3U);

    const auto code = reinterpret_cast<std::uintptr_t>(&knownName);
    const auto own = std::find_if(walker.modules.begin(), walker.modules.end(),
                                  [&](const auto& m) { return code >= m.base && code < m.base + m.size; });
    ASSERT_NE(own, walker.modules.end());
    EXPECT_TRUE(own->name.starts_with("diagnostics_test")) << own->name;
    EXPECT_TRUE(own->file.ends_with(own->name)) << own->file;
    EXPECT_EQ(own->symbolFile, own->file);
    EXPECT_EQ(own->result, 0U);
}

/// In `pattern`, '*' stands for any text and '#' for hexadecimal digits.
bool fits(std::string_view text, std::string_view pattern)
{
    if (pattern.empty()) return text.empty();
    if (pattern[0] != '*' && pattern[0] != '#')
        return !text.empty() && text[0] == pattern[0] && fits(text.substr(1), pattern.substr(1));
    std::size_t length = pattern[0] == '*' ? 0 : 1;
    for (; length <= text.size(); ++length)
    {
        if (pattern[0] == '#' && std::isxdigit(static_cast<unsigned char>(text[length - 1])) == 0) return false;
        if (fits(text.substr(length), pattern.substr(1))) return true;
    }
    return false;
}

TEST(StackWalker, DefaultHooksWriteTheDescribedLines)
{
    RecordingWalker walker;
    EXPECT_TRUE(walker.ShowCallstack());
    ASSERT_GT(walker.output.size(), 5U);
    EXPECT_TRUE(fits(walker.output[0], "SymInit: Symbol-SearchPath: '*;', symOptions: #, UserName: '*'\n"))
        << walker.output[0];
    EXPECT_TRUE(fits(walker.output[1], "OS-Version: #.#.# (*) 0x#-0x#\n")) << walker.output[1];
    const std::string module = "*:* (#), size: # (result: #), SymType: '*', PDB: '*'";
    std::size_t line = 2;
    for (; line < 2 + walker.modules.size(); ++line)
        EXPECT_TRUE(fits(walker.output[line], module + "\n") ||
                    fits(walker.output[line], module + ", fileVersion: #.#.#.#\n"))
            << walker.output[line];
    for (; line < walker.output.size(); ++line)
        EXPECT_TRUE(fits(walker.output[line], "# (*): (filename not available): *\n") ||
                    fits(walker.output[line], "* (#): *\n"))
            << walker.output[line];
}

/// Hands made-up values to the default hooks.
class HookCaller : public RecordingWalker
{
   public:
    std::string lineOf(CallstackEntry entry)
    {
        output.clear();
        StackWalker::OnCallstackEntry(nextEntry, entry);
        return output.empty() ? std::string() : output.back();
    }

    std::string errorLine(const char* text, DWORD code, DWORD64 address)
    {
        StackWalker::OnDbgHelpErr(text, code, address);
        return output.back();
    }

    std::string moduleLine(ULONGLONG version)
    {
        StackWalker::OnLoadModule("C:\\a.dll", "a.dll", 0x180000000, 4096, 5, "COFF", nullptr, version);
        return output.back();
    }
};

TEST(StackWalker, LinesNameWhatIsMissing)
{
    HookCaller caller;
    StackWalker::CallstackEntry entry{};
    EXPECT_EQ(caller.lineOf(entry), "");
    entry.offset = 0x1234ABCD;
    EXPECT_EQ(
        caller.lineOf(entry),
        "000000001234ABCD ((module-name not available)): (filename not available): (function-name not available)\n");
    entry.name = "raw";
    entry.moduleName = "a.dll";
    entry.lineFileName = "a.cpp";
    EXPECT_EQ(caller.lineOf(entry), "000000001234ABCD (a.dll): a.cpp: raw\n");
    entry.lineNumber = 12;
    entry.undName = "plain";
    EXPECT_EQ(caller.lineOf(entry), "a.cpp (12): plain\n");
    entry.undFullName = "plain(int)";
    EXPECT_EQ(caller.lineOf(entry), "a.cpp (12): plain(int)\n");

    EXPECT_EQ(caller.errorLine("Failed", 0xFFFFFFFF, 0xAB),
              "ERROR: Failed, GetLastError: 4294967295 (Address: 00000000000000AB)\n");
    EXPECT_EQ(caller.errorLine(nullptr, 0, 0), "ERROR: , GetLastError: 0 (Address: 0000000000000000)\n");
    EXPECT_EQ(caller.moduleLine(0),
              "C:\\a.dll:a.dll (0000000180000000), size: 4096 (result: 5), SymType: 'COFF', PDB: ''\n");
    EXPECT_EQ(
        caller.moduleLine(0x0001000200030004),
        "C:\\a.dll:a.dll (0000000180000000), size: 4096 (result: 5), SymType: 'COFF', PDB: '', fileVersion: 1.2.3.4\n");
}

[[gnu::noinline]] void recurse(int times, RecordingWalker& walker)
{
    if (times == 0)
        EXPECT_TRUE(walker.ShowCallstack());
    else
        recurse(times - 1, walker);
    test::keepFrame();
}

TEST(StackWalker, AFrameThatReturnsToItselfEndsTheWalk)
{
    RecordingWalker walker;
    recurse(10, walker);
    // The innermost call, and the first that returns to itself.
    EXPECT_EQ(walker.framesNamed("recurse").size(), 2U);
    ASSERT_EQ(walker.errors.size(), 1U);
    EXPECT_EQ(walker.errors[0].text, "StackWalk64-Endless-Callstack!");
    EXPECT_EQ(walker.errors[0].address, walker.frames.back().address);
    EXPECT_EQ(walker.frames.back().type, StackWalker::lastEntry);
}

[[gnu::noinline]] void recurseByTurns(int times, RecordingWalker& walker);

[[gnu::noinline]] void otherTurn(int times, RecordingWalker& walker)
{
    recurseByTurns(times, walker);
    test::keepFrame();
}

void recurseByTurns(int times, RecordingWalker& walker)
{
    if (times == 0)
        EXPECT_TRUE(walker.ShowCallstack());
    else
        otherTurn(times - 1, walker);
    test::keepFrame();
}

TEST(StackWalker, WalksAtMostItsLimitOfFrames)
{
    RecordingWalker walker(StackWalker::AddressesOnly);
    recurseByTurns(2000, walker);
    EXPECT_EQ(walker.frames.size(), static_cast<std::size_t>(StackWalker::FRAME_LIMIT));
    EXPECT_TRUE(walker.errors.empty());
}

TEST(StackWalker, ReadsTheStackThroughTheGivenFunction)
{
    struct Counted
    {
        int calls = 0;
    } counted;
    const auto read = [](HANDLE process, DWORD64 address, void* buffer, DWORD size, DWORD* count, void* userData)
    {
        ++static_cast<Counted*>(userData)->calls;
        return StackWalker::myReadProcMem(process, address, buffer, size, count, nullptr);
    };
    RecordingWalker walker;
    auto work = [&] { EXPECT_TRUE(walker.ShowCallstack(nullptr, nullptr, read, &counted)); };
    test::knownFunction<DEPTH>(work);
    EXPECT_EQ(walker.framesNamed("knownFunction<").size(), static_cast<std::size_t>(DEPTH));
    EXPECT_GE(counted.calls, DEPTH);
}

TEST(StackWalker, MemoryThatCannotBeReadEndsTheWalkQuietly)
{
    const auto read = [](HANDLE, DWORD64, void*, DWORD, DWORD* count, void*)
    {
        *count = 0;
        return BOOL{0};
    };
    RecordingWalker walker;
    walker.ShowCallstack(nullptr, nullptr, read, nullptr);
    EXPECT_LE(walker.frames.size(), 2U);
}

TEST(StackWalker, NonsenseForRegistersDoesNoHarm)
{
    for (const DWORD64 value : {DWORD64{0}, DWORD64{1}, DWORD64{0xFFFFFFFFFFFFFFF8}, DWORD64{0x8000000000000000}})
    {
        CONTEXT context{};
        context.Rip = context.Rsp = context.Rbp = value;
        RecordingWalker walker;
        walker.ShowCallstack(nullptr, &context);
        EXPECT_LE(walker.frames.size(), 2U) << value;
        context.Rip = reinterpret_cast<std::uintptr_t>(&knownName);
        walker.ShowCallstack(nullptr, &context);
        EXPECT_LE(walker.frames.size(), 6U) << value;
    }
}

/// A thread that waits below known functions.
class WaitingThread
{
   public:
    WaitingThread() : m_thread([this] { run(); })
    {
        while (m_handle.load() == nullptr) std::this_thread::yield();
    }
    ~WaitingThread()
    {
        finish();
        StackWalker::closeThread(m_handle);
    }

    HANDLE handle() const { return m_handle; }
    long rounds() const { return m_rounds; }

    void finish()
    {
        m_stop = true;
        if (m_thread.joinable()) m_thread.join();
    }

   private:
    void run()
    {
        auto wait = [this]
        {
            m_handle = StackWalker::openCurrentThread();
            for (; !m_stop; ++m_rounds) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        };
        test::knownFunction<8>(wait);
    }

    std::atomic<HANDLE> m_handle{nullptr};
    std::atomic<bool> m_stop{false};
    std::atomic<long> m_rounds{0};
    std::thread m_thread;
};

TEST(StackWalker, WalksAnotherThreadAndLetsItRunAgain)
{
    WaitingThread waiting;
    RecordingWalker walker;
    for (int i = 0; i < 20; ++i)
    {
        walker.frames.clear();
        ASSERT_TRUE(walker.ShowCallstack(waiting.handle()));
        EXPECT_EQ(walker.framesNamed("knownFunction<").size(), 8U);
        const long rounds = waiting.rounds();
        while (waiting.rounds() == rounds) std::this_thread::yield();
    }
}

TEST(StackWalker, AThreadThatHasEndedGivesAnError)
{
    WaitingThread waiting;
    waiting.finish();
    RecordingWalker walker;
    EXPECT_FALSE(walker.ShowCallstack(waiting.handle()));
    EXPECT_TRUE(walker.frames.empty());
    ASSERT_EQ(walker.errors.size(), 1U);
    EXPECT_NE(walker.errors[0].code, 0U);
}

TEST(StackWalker, AThreadMayEndWhileItIsWalked)
{
    RecordingWalker walker(StackWalker::AddressesOnly);
    for (int i = 0; i < 100; ++i)
    {
        std::atomic<HANDLE> handle{nullptr};
        std::thread thread([&] { handle = StackWalker::openCurrentThread(); });
        while (handle.load() == nullptr) std::this_thread::yield();
        walker.ShowCallstack(handle);
        thread.join();
        walker.ShowCallstack(handle);
        StackWalker::closeThread(handle);
    }
}

TEST(StackWalker, SeveralThreadsWalkAtOnce)
{
    std::vector<std::thread> threads;
    std::atomic<int> found{0};
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(
            [&]
            {
                RecordingWalker walker;
                for (int round = 0; round < 5; ++round) walkBelow<6>(walker);
                found += static_cast<int>(walker.framesNamed("knownFunction<").size());
            });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(found, 4 * 5 * 6);
}

TEST(StackWalker, HooksMayWalk)
{
    class Nested : public RecordingWalker
    {
       public:
        int inner = 0;

       protected:
        void OnCallstackEntry(CallstackEntryType type, CallstackEntry& entry) override
        {
            RecordingWalker::OnCallstackEntry(type, entry);
            if (type == firstEntry && inner++ == 0) ShowCallstack();
        }
    } walker;
    EXPECT_TRUE(walker.ShowCallstack());
    EXPECT_EQ(walker.inner, 2);
}

volatile int capturedInHandler = 0;

void captureInHandler(int)
{
    static void* addresses[64];
    capturedInHandler = StackWalker::captureFrames(addresses, 64);
}

TEST(StackWalker, CapturesFromASignalHandler)
{
    auto raise = []
    {
        const auto former = std::signal(SIGINT, captureInHandler);
        std::raise(SIGINT);
        std::signal(SIGINT, former);
    };
    test::knownFunction<20>(raise);
    EXPECT_GT(capturedInHandler, 20);
}

TEST(StackWalker, CaptureKeepsToItsRoom)
{
    void* addresses[4] = {};
    auto capture = [&]
    {
        EXPECT_EQ(StackWalker::captureFrames(addresses, 3), 3);
        EXPECT_EQ(StackWalker::captureFrames(addresses, 0), 0);
        EXPECT_EQ(StackWalker::captureFrames(addresses, -1), 0);
        EXPECT_EQ(StackWalker::captureFrames(nullptr, 3), 0);
    };
    test::knownFunction<5>(capture);
    EXPECT_TRUE(addresses[2] != nullptr && addresses[3] == nullptr);
}

TEST(KpStackWalker, CountsFramesAndPrintsNothing)
{
    static int written;
    written = 0;
    DiagnosticHooks hooks;
    hooks.debugOutput = [](const Char*) { ++written; };
    const DiagnosticHooks former = setDiagnosticHooks(hooks);
    KpStackWalker walker;
    int counted = 0;
    auto work = [&]
    {
        EXPECT_TRUE(walker.ShowCallstack());
        counted = walker.countFrames();
    };
    test::knownFunction<DEPTH>(work);
    setDiagnosticHooks(former);
    EXPECT_EQ(walker.frameCount(), counted);
    EXPECT_GT(counted, DEPTH);
    EXPECT_EQ(written, 0);
}

}  // namespace

}  // namespace Oxa_1_1
