#include "base/diagnostics/stack_walker.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <span>

#include "base/diagnostics/debug_output.h"
#include "base/diagnostics/detail/search_path.h"
#include "base/diagnostics/detail/symbol_cache.h"
#include "base/diagnostics/detail/walk_text.h"
#include "base/diagnostics/detail/world.h"
#include "base/diagnostics/kp_stack_walker.h"
#include "base/platform/system/error_text.h"
#include "base/platform/system/last_error.h"
#include "base/platform/system/system_info.h"

namespace Oxa_1_1
{

namespace
{

constexpr const char* SYMBOL_READER_ERROR = "Error while initializing dbghelp.dll";
constexpr const char* ENDLESS_ERROR = "StackWalk64-Endless-Callstack!";
constexpr const char* WALK_ERROR = "Error while walking the stack";

using Frames = std::array<platform::StackFrame, StackWalker::FRAME_LIMIT>;

std::mutex serverMutex;

std::string& symbolServer()
{
    // Never destroyed: destructors of static objects may walk the stack, too.
    static auto& address = *new std::string;
    return address;
}

/// The first frame that returns to itself ends the stack.
std::size_t countUntilRepeated(std::span<const platform::StackFrame> frames)
{
    const auto repeated = std::find_if(frames.begin(), frames.end(),
                                       [](const auto& frame) { return frame.address == frame.returnAddress; });
    return static_cast<std::size_t>(repeated - frames.begin()) + (repeated == frames.end() ? 0 : 1);
}

StackWalker::CallstackEntryType typeOf(std::size_t index, std::size_t count)
{
    if (index == 0) return StackWalker::firstEntry;
    return index + 1 == count ? StackWalker::lastEntry : StackWalker::nextEntry;
}

StackWalker::CallstackEntry entryOf(const platform::StackFrame& frame, const platform::SymbolInfo& symbol)
{
    StackWalker::CallstackEntry entry{};
    entry.offset = frame.address;
    entry.name = symbol.name.c_str();
    entry.undName = symbol.plainName.c_str();
    entry.undFullName = symbol.fullName.c_str();
    entry.offsetFromSymbol = symbol.offset;
    entry.offsetFromLine = symbol.lineOffset;
    entry.lineNumber = symbol.line;
    entry.lineFileName = symbol.file.c_str();
    entry.symType = symbol.module.symbolType;
    entry.symTypeString = symbol.module.base == 0 ? "" : platform::symbolTypeText(symbol.module.symbolType);
    entry.moduleName = symbol.module.name.c_str();
    entry.baseOfImage = symbol.module.base;
    entry.loadedImageName = symbol.module.file.c_str();
    return entry;
}

}  // namespace

/// The symbol reader at work, and what it found.
class StackWalker::Symbols
{
   public:
    std::unique_ptr<platform::SymbolSession> session;
    std::uint64_t generation = 0;
    detail::SymbolCache cache;
};

StackWalker::StackWalker(int options, const char* symPath, DWORD processId, HANDLE process)
    : m_options(options),
      m_symPath(symPath == nullptr ? "" : symPath),
      m_hasSymPath(symPath != nullptr),
      m_processId(processId),
      m_process(process)
{
    if (!platform::isCurrentProcess(processId, process)) return;
    // Its number would mean the parent in a child that is forked before the first walk.
    m_processId = 0;
    m_process = nullptr;
}

StackWalker::StackWalker(DWORD processId, HANDLE process) : StackWalker(DefaultOptions, nullptr, processId, process) {}

StackWalker::~StackWalker() = default;

std::string StackWalker::searchPath() const
{
    if ((m_options & BuildSearchPath) == 0) return m_symPath;
    const std::lock_guard lock(serverMutex);
    return detail::buildSearchPath(m_symPath, (m_options & UseSymbolServer) != 0 ? symbolServer() : std::string());
}

bool StackWalker::openSymbols()
{
    const bool hasPath = m_hasSymPath || (m_options & BuildSearchPath) != 0;
    const std::string path = searchPath();
    auto symbols = std::make_unique<Symbols>();
    symbols->session = platform::SymbolSession::open(m_processId, m_process, hasPath ? path.c_str() : nullptr);
    if (symbols->session == nullptr)
    {
        OnDbgHelpErr(SYMBOL_READER_ERROR, platform::lastError(), 0);
        return false;
    }
    m_symbols = std::move(symbols);
    OnSymInit(m_symbols->session->searchPath().c_str(), m_symbols->session->options(), platform::userName().c_str());
    return true;
}

int StackWalker::LoadModules()
{
    if (m_modulesLoaded) return 1;
    if (m_symbols == nullptr && !openSymbols()) return 0;
    m_modulesLoaded = true;
    reportNewModules();
    return 1;
}

void StackWalker::reportNewModules()
{
    m_symbols->generation = m_symbols->session->moduleGeneration();
    for (const platform::ModuleInfo& module : m_symbols->session->loadModules((m_options & FileVersions) != 0))
        OnLoadModule(module.file.c_str(), module.name.c_str(), module.base, module.size, module.result,
                     platform::symbolTypeText(module.symbolType), module.symbolFile.c_str(), module.fileVersion);
}

int StackWalker::ShowCallstack(HANDLE thread, const CONTEXT* context, ReadProcessMemoryFunction readMemory,
                               void* userData)
{
    const void* const innermost = OXA_CURRENT_FRAME;
    if (LoadModules() == 0) return 0;
    const std::uint64_t generation = m_symbols->session->moduleGeneration();
    if (m_symbols->generation != generation) reportNewModules();

    Frames buffer;
    const platform::WalkRequest walk{m_process, thread, context, readMemory, userData, innermost};
    const std::span found(buffer.data(), m_symbols->session->walk(walk, buffer));
    if (found.empty())
    {
        OnDbgHelpErr(WALK_ERROR, platform::lastError(), 0);
        return 0;
    }
    const std::span frames = found.first(countUntilRepeated(found));
    std::array<const detail::KnownAddress*, FRAME_LIMIT> known;
    const platform::SymbolParts parts{(m_options & FunctionNames) != 0, (m_options & SourceLines) != 0,
                                      (m_options & FrameModules) != 0};
    std::array<std::uint64_t, FRAME_LIMIT> instructions;
    std::transform(frames.begin(), frames.end(), instructions.begin(), [](const auto& f) { return f.instruction(); });
    const auto keeper = m_symbols->cache.find(*m_symbols->session, generation, parts,
                                              std::span(instructions).first(frames.size()), known);

    for (std::size_t i = 0; i < frames.size(); ++i)
    {
        CallstackEntry entry = entryOf(frames[i], known[i]->symbol);
        OnCallstackEntry(typeOf(i, frames.size()), entry);
    }
    const platform::StackFrame& last = frames.back();
    if (last.address == last.returnAddress) OnDbgHelpErr(ENDLESS_ERROR, 0, last.address);
    return 1;
}

BOOL StackWalker::myReadProcMem(HANDLE process, DWORD64 address, void* buffer, DWORD size, DWORD* read, void*)
{
    std::uint32_t count = 0;
    const bool isRead = platform::readProcessMemory(process, address, buffer, size, count);
    if (read != nullptr) *read = count;
    return isRead ? 1 : 0;
}

void StackWalker::setSymbolServer(const char* address)
{
    const std::lock_guard lock(serverMutex);
    symbolServer() = address == nullptr ? "" : address;
}

int StackWalker::captureFrames(void** addresses, int capacity) noexcept
{
    if (addresses == nullptr || capacity <= 0) return 0;
    const std::span room(addresses, static_cast<std::size_t>(capacity));
    return static_cast<int>(platform::captureStack(room, OXA_CURRENT_FRAME));
}

HANDLE StackWalker::openCurrentThread() noexcept { return platform::openCurrentThread(); }

void StackWalker::closeThread(HANDLE thread) noexcept { platform::closeThread(thread); }

CONTEXT StackWalker::contextOfFault(const void* fault) noexcept { return platform::contextOfFault(fault); }

void StackWalker::OnSymInit(const char* searchPath, DWORD symOptions, const char* userName)
{
    OnOutput(detail::searchPathLine(searchPath, symOptions, userName).c_str());
    OnOutput(detail::systemLine(platform::systemVersion()).c_str());
}

void StackWalker::OnLoadModule(const char* img, const char* mod, DWORD64 baseAddr, DWORD size, DWORD result,
                               const char* symType, const char* pdbName, ULONGLONG fileVersion)
{
    OnOutput(detail::moduleLine(img, mod, baseAddr, size, result, symType, pdbName, fileVersion).c_str());
}

void StackWalker::OnCallstackEntry(CallstackEntryType, CallstackEntry& entry)
{
    if (entry.offset != 0) OnOutput(detail::frameLine(entry).c_str());
}

void StackWalker::OnDbgHelpErr(const char* funcName, DWORD gle, DWORD64 addr)
{
    OnOutput(detail::errorLine(funcName, gle, addr).c_str());
}

void StackWalker::OnOutput(const char* text)
{
    if (text == nullptr) return;
    const int depth = OutputDebugParenthesesScope::depth();
    std::atomic_ref(KpStackWalker::callStackDepthOfPreviousOutput).store(depth);
    if (depth == 0) return detail::writeDebugText(text);
    const int indentation = depth - std::atomic_ref(KpStackWalker::initialCallStackDepth).load();
    detail::writeDebugText((std::string(static_cast<std::size_t>(std::max(indentation, 0)), ' ') + text).c_str());
}

}  // namespace Oxa_1_1
