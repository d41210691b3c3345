#pragma once

#include <memory>
#include <string>

#include "base/export.h"
#include "base/platform/platform_types.h"

namespace Oxa_1_1
{

/// Reads `size` bytes at `address` of `process` and stores in `read` how many it got; 0 when it got none. It is called
/// while the walked thread is stopped, so it must neither wait for a lock nor allocate memory.
using ReadProcessMemoryFunction = BOOL (*)(HANDLE process, DWORD64 address, void* buffer, DWORD size, DWORD* read,
                                           void* userData);

/// Walks the call stack of a thread and hands each frame, each module and each error to hooks. A class that derives
/// from it overrides those that it wants to see; the default ones format a line of text for OnOutput.
///
/// Narrow texts are in the system's narrow encoding: the ANSI code page on Windows, UTF-8 on Linux. They and the
/// entries are valid during the call of the hook.
///
/// A walker serves one thread at a time; several walkers may be at work at once. Hooks may start walks of their own.
class OXA_API StackWalker
{
   public:
    /// What is found out. Bits of the options word.
    enum Options : int
    {
        /// Addresses only.
        AddressesOnly = 0,
        /// The name of each frame's function.
        FunctionNames = 0x01,
        /// Source file and line of each frame.
        SourceLines = 0x02,
        /// The module of each frame, with its base address, file and kind of symbols.
        FrameModules = 0x04,
        /// The file version of each module, for OnLoadModule.
        FileVersions = 0x08,
        /// Symbol files are looked for in the caller's path, the current folder, the program's folder and the folders
        /// that the environment names. Without this bit: in the caller's path, or else where the system looks.
        BuildSearchPath = 0x10,
        /// With BuildSearchPath: also on the server of setSymbolServer, if there is one.
        UseSymbolServer = 0x20,

        AllOptions = 0x3F,
        DefaultOptions = AllOptions
    };

    /// The most frames that a walk reports.
    static constexpr int FRAME_LIMIT = 1024;

    /// The place of a frame in its stack.
    enum CallstackEntryType
    {
        /// The innermost frame, even when it is the only one.
        firstEntry,
        /// One between.
        nextEntry,
        /// The outermost frame, unless it is the first one, too.
        lastEntry
    };

    /// A frame. Texts are never null, but empty where nothing is known; numbers are then 0.
    struct CallstackEntry
    {
        /// Where the frame is: in the innermost one the next instruction, in others the one that a call returns to.
        DWORD64 offset;
        /// The function as the linker knows it, as the source names it, and with its parameters.
        /// @{
        const char* name;
        const char* undName;
        const char* undFullName;
        /// @}
        /// From the beginning of the function and of the line, in bytes.
        /// @{
        DWORD64 offsetFromSymbol;
        DWORD offsetFromLine;
        /// @}
        /// The line, counted from 1, and the source file as the compiler knew it.
        /// @{
        DWORD lineNumber;
        const char* lineFileName;
        /// @}
        /// The module's kind of symbols, as a number of the system and as a text.
        /// @{
        DWORD symType;
        const char* symTypeString;
        /// @}
        /// The module's name, where it begins in memory, and its file.
        /// @{
        const char* moduleName;
        DWORD64 baseOfImage;
        const char* loadedImageName;
        /// @}
    };

    /// Walks threads of the process `processId`. `process` is its handle, with the right to read its memory; null and
    /// the system's value for the calling process mean that one; a child that is forked later walks itself then.
    /// `symPath` names folders for symbol files, separated by semicolons; it may be null. Without options all of them
    /// are taken.
    /// @{
    StackWalker(int options, const char* symPath, DWORD processId, HANDLE process);
    StackWalker(DWORD processId, HANDLE process);
    /// @}
    StackWalker(const StackWalker&) = delete;
    StackWalker& operator=(const StackWalker&) = delete;
    virtual ~StackWalker();

    /// Loads the symbol reader and the list of modules, once, and reports them through OnSymInit and OnLoadModule.
    /// True when symbols and modules are ready.
    int LoadModules();

    /// Reports the frames of a thread through OnCallstackEntry, innermost first.
    ///
    /// `thread` null is the calling thread, whose innermost frame is then the caller of this function. Another thread
    /// is stopped while its frames are collected, and runs again before the first hook is called. `context` null begins
    /// where the thread is; otherwise the walk begins at those registers. `readMemory` reads the stack, with `userData`
    /// as its last argument; null reads the process's memory.
    ///
    /// Modules loaded since the last call are reported first. True when the walk took place; otherwise the reason went
    /// to OnDbgHelpErr. A frame that returns to its own address is the last one that is reported, followed by an error.
    int ShowCallstack(HANDLE thread = nullptr, const CONTEXT* context = nullptr,
                      ReadProcessMemoryFunction readMemory = nullptr, void* userData = nullptr);

    /// The memory reader of a walk that is given none. False with the reason as the last error. `userData` is not used.
    static BOOL myReadProcMem(HANDLE process, DWORD64 address, void* buffer, DWORD size, DWORD* read, void* userData);

    /// The address of a symbol server for walkers that begin afterwards; null, as at first, for none. Files from there
    /// are kept in the folder websymbols of the system's drive.
    static void setSymbolServer(const char* address);

    /// Stores the addresses of the calling thread's frames, beginning with the caller of this function, and returns
    /// their number, at most `capacity`. Looks for no symbol, takes no lock and no memory. On Linux it may be called
    /// from a signal handler.
    static int captureFrames(void** addresses, int capacity) noexcept;

    /// A handle of the calling thread that another thread can pass to ShowCallstack, until closeThread. Null when the
    /// system refuses.
    static HANDLE openCurrentThread() noexcept;
    /// Gives the handle up.
    static void closeThread(HANDLE thread) noexcept;

    /// The registers at a fault, for ShowCallstack: of the third argument of a signal handler (SA_SIGINFO), or of the
    /// EXCEPTION_POINTERS on Windows. Null gives registers of 0.
    static CONTEXT contextOfFault(const void* fault) noexcept;

   protected:
    /// The symbol reader is ready and looks for files in `searchPath`.
    virtual void OnSymInit(const char* searchPath, DWORD symOptions, const char* userName);
    /// A module was found. `result` is 0, or the error why its symbols cannot be read. `fileVersion` holds four 16-bit
    /// numbers, the major one in the highest bits; 0 for none.
    virtual void OnLoadModule(const char* img, const char* mod, DWORD64 baseAddr, DWORD size, DWORD result,
                              const char* symType, const char* pdbName, ULONGLONG fileVersion);
    /// A frame; the entry may be changed, which nobody sees.
    virtual void OnCallstackEntry(CallstackEntryType eType, CallstackEntry& entry);
    /// Something failed; `gle` is the system's error code, `addr` the frame that it concerns, or 0.
    virtual void OnDbgHelpErr(const char* funcName, DWORD gle, DWORD64 addr);
    /// Takes each line of text, with its line feed. The default writes it to the debugger's output, indented by the
    /// depth of the innermost OutputDebugParenthesesScope.
    virtual void OnOutput(const char* text);

   private:
    class Symbols;

    OXA_HIDDEN bool openSymbols();
    OXA_HIDDEN void reportNewModules();
    OXA_HIDDEN std::string searchPath() const;

    int m_options;
    std::string m_symPath;
    bool m_hasSymPath;
    DWORD m_processId;
    HANDLE m_process;
    bool m_modulesLoaded = false;
    std::unique_ptr<Symbols> m_symbols;
};

}  // namespace Oxa_1_1
