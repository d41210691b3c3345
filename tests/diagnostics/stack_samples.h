#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "base/diagnostics/stack_walker.h"

namespace Oxa_1_1::test
{

/// Keeps a call from being the last thing that a function does, so that its frame stays.
inline void keepFrame() { asm volatile("" ::: "memory"); }

/// Calls `work` below N functions of known names, knownFunction<N> to knownFunction<1>.
template <int N, class Work>
[[gnu::noinline]] void knownFunction(Work& work)
{
    if constexpr (N == 1)
        work();
    else
        knownFunction<N - 1>(work);
    keepFrame();
}

struct SeenFrame
{
    StackWalker::CallstackEntryType type;
    DWORD64 address;
    std::string name;
    std::string fullName;
    std::string file;
    DWORD line;
    std::string module;
    DWORD64 base;
    std::string symbolType;
};

struct SeenModule
{
    std::string file;
    std::string name;
    DWORD64 base;
    DWORD size;
    DWORD result;
    std::string symbolType;
    std::string symbolFile;
    ULONGLONG version;
};

struct SeenError
{
    std::string text;
    DWORD code;
    DWORD64 address;
};

/// Writes down what the hooks get.
class RecordingWalker : public StackWalker
{
   public:
    explicit RecordingWalker(int options = AllOptions, const char* path = nullptr, DWORD processId = 0,
                             HANDLE process = nullptr)
        : StackWalker(options, path, processId, process)
    {
    }

    std::vector<SeenFrame> frames;
    std::vector<SeenModule> modules;
    std::vector<SeenError> errors;
    std::vector<std::string> paths;
    std::vector<std::string> output;

    /// The frames whose name begins with `text`, in their order.
    std::vector<SeenFrame> framesNamed(const std::string& text) const
    {
        std::vector<SeenFrame> found;
        for (const SeenFrame& frame : frames)
            if (frame.fullName.find(text) != std::string::npos) found.push_back(frame);
        return found;
    }

   protected:
    void OnSymInit(const char* searchPath, DWORD symOptions, const char* userName) override
    {
        paths.emplace_back(searchPath);
        StackWalker::OnSymInit(searchPath, symOptions, userName);
    }

    void OnLoadModule(const char* img, const char* mod, DWORD64 baseAddr, DWORD size, DWORD result, const char* symType,
                      const char* pdbName, ULONGLONG fileVersion) override
    {
        modules.push_back({img, mod, baseAddr, size, result, symType, pdbName, fileVersion});
        StackWalker::OnLoadModule(img, mod, baseAddr, size, result, symType, pdbName, fileVersion);
    }

    void OnCallstackEntry(CallstackEntryType type, CallstackEntry& entry) override
    {
        frames.push_back({type, entry.offset, entry.undName, entry.undFullName, entry.lineFileName, entry.lineNumber,
                          entry.moduleName, entry.baseOfImage, entry.symTypeString});
        StackWalker::OnCallstackEntry(type, entry);
    }

    void OnDbgHelpErr(const char* text, DWORD code, DWORD64 address) override
    {
        errors.push_back({text, code, address});
        StackWalker::OnDbgHelpErr(text, code, address);
    }

    void OnOutput(const char* text) override { output.emplace_back(text); }
};

}  // namespace Oxa_1_1::test
