#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "base/platform/stack/call_stack.h"

/// Names for addresses.
namespace Oxa_1_1::platform
{

struct ModuleInfo
{
    std::string file;
    std::string name;
    std::uint64_t base = 0;
    std::uint32_t size = 0;
    /// 0, or the error why the module's symbols are not read.
    std::uint32_t result = 0;
    std::uint32_t symbolType = 0;
    /// The file that the symbols come from; empty when there are none.
    std::string symbolFile;
    /// Four 16-bit numbers, the major one in the highest bits; 0 when the file has no version.
    std::uint64_t fileVersion = 0;
    /// Tells modules apart that are loaded to the same place one after the other.
    std::uint64_t stamp = 0;
};

/// Where a module lies, and which one it is.
struct ModuleStamp
{
    std::uint64_t begin;
    std::uint64_t end;
    std::uint64_t stamp;
};

/// A function that the compiler made a part of the one that called it.
struct InlinedFunction
{
    std::string name;
    std::string plainName;
    std::string fullName;
    std::string file;
    std::uint32_t line = 0;
};

/// What is known of an address. Texts are empty and numbers 0 where nothing is.
struct SymbolInfo
{
    /// As the linker knows it.
    std::string name;
    /// As the source has it: without and with parameters.
    std::string plainName;
    std::string fullName;
    std::uint64_t offset = 0;

    std::string file;
    std::uint32_t line = 0;
    std::uint32_t lineOffset = 0;

    /// The functions that the address lies in within the one above, from the inside to the outside.
    std::vector<InlinedFunction> inlined;

    ModuleInfo module;
};

/// The kinds of knowledge to look for.
struct SymbolParts
{
    bool names = false;
    bool lines = false;
    bool modules = false;
    /// With names and lines: of inlined functions, too.
    bool inlined = false;
};

/// The symbol reader of the system at work for one process. Sessions may be used from several threads at once.
class SymbolSession
{
   public:
    /// Null when the reader is missing or fails, with the last error. `searchPath` names folders, separated by
    /// semicolons, for symbol files; null leaves the system's own order.
    static std::unique_ptr<SymbolSession> open(std::uint32_t processId, HANDLE process, const char* searchPath);

    SymbolSession() = default;
    virtual ~SymbolSession() = default;
    SymbolSession(const SymbolSession&) = delete;
    SymbolSession& operator=(const SymbolSession&) = delete;

    virtual std::string searchPath() const = 0;
    virtual std::uint32_t options() const = 0;

    /// A number that changes when the process loads or unloads modules.
    virtual std::uint64_t moduleGeneration() const = 0;
    /// The modules of the process, ascending by address.
    virtual std::vector<ModuleStamp> moduleStamps() const = 0;
    /// The modules that the process has loaded since the last call, or ever at the first one.
    virtual std::vector<ModuleInfo> loadModules(bool withVersions) = 0;

    virtual SymbolInfo find(std::uint64_t address, const SymbolParts& parts) const = 0;
    /// Stores the frames of a thread of the process, innermost first, and returns their number; at most as many as
    /// there is room for. A thread that is not the calling one is stopped meanwhile. 0 when that fails, with the last
    /// error.
    virtual std::size_t walk(WalkRequest walk, std::span<StackFrame> frames) const = 0;
};

/// "-nosymbols-", "COFF" and so on for a symbol type; "-unknown-" for numbers without a meaning.
const char* symbolTypeText(std::uint32_t type) noexcept;

}  // namespace Oxa_1_1::platform
