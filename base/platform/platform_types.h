#pragma once

/// @file
/// The few system types that appear in public signatures. On Windows these are the system's own, declared alike here
/// so that callers are spared its header; elsewhere they stand for the same things, with the same layout.

#ifndef _WIN32
#include <sys/stat.h>
#endif

#include <cstdint>

#ifdef _WIN32

using BOOL = int;
using DWORD = unsigned long;
using DWORD64 = unsigned long long;
using HANDLE = void*;
using ULONGLONG = unsigned long long;
using WORD = unsigned short;
// NOLINTBEGIN(bugprone-reserved-identifier): the system's own names.
/// The registers of a thread.
using CONTEXT = struct _CONTEXT;
// Declared only: who looks inside includes the system's header.
using FILETIME = struct _FILETIME;
using ULARGE_INTEGER = union _ULARGE_INTEGER;
struct _stat64i32;
// NOLINTEND(bugprone-reserved-identifier)

#else

/// Numbers of the system's sizes; a BOOL is false when it is 0.
/// @{
using BOOL = int;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using DWORD64 = std::uint64_t;
using ULONGLONG = std::uint64_t;
/// @}
/// A thread's is its number in the system, a process's the process id; null and negative values mean the caller's own.
using HANDLE = void*;

/// The registers of a thread.
struct alignas(16) CONTEXT
{
    /// By the names and in the places that Windows gives them.
    /// @{
    DWORD64 P1Home, P2Home, P3Home, P4Home, P5Home, P6Home;
    DWORD ContextFlags;
    DWORD MxCsr;
    WORD SegCs, SegDs, SegEs, SegFs, SegGs, SegSs;
    DWORD EFlags;
    DWORD64 Dr0, Dr1, Dr2, Dr3, Dr6, Dr7;
    DWORD64 Rax, Rcx, Rdx, Rbx, Rsp, Rbp, Rsi, Rdi, R8, R9, R10, R11, R12, R13, R14, R15;
    DWORD64 Rip;
    unsigned char FltSave[512];
    DWORD64 VectorRegister[26][2];
    DWORD64 VectorControl;
    DWORD64 DebugControl, LastBranchToRip, LastBranchFromRip, LastExceptionToRip, LastExceptionFromRip;
    /// @}
};

/// 100 ns ticks since 1601, in halves.
struct FILETIME
{
    /// The less and the more significant half.
    /// @{
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
    /// @}
};

/// 64 bits and their halves.
union ULARGE_INTEGER
{
    /// The same bits as u, by shorter names.
    __extension__ struct
    {
        DWORD LowPart;   ///< The less significant half.
        DWORD HighPart;  ///< The more significant half.
    };
    /// The halves.
    struct
    {
        DWORD LowPart;   ///< The less significant half.
        DWORD HighPart;  ///< The more significant half.
    } u;
    /// All 64 bits.
    ULONGLONG QuadPart;
};

/// What is known of a file, with seconds since 1970. Sizes have 32 bits. The system's header makes st_atime and its
/// like macros, which lead to the fields here as well.
struct _stat64i32  // NOLINT(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
{
    /// A time as the system's header spells it.
    struct Seconds
    {
        std::int64_t tv_sec;  ///< Since 1970, UTC.
    };

    /// By the names of the system; 0 for what it does not tell.
    /// @{
    std::uint32_t st_dev;
    std::uint16_t st_ino;
    std::uint16_t st_mode;
    std::int16_t st_nlink;
    std::int16_t st_uid;
    std::int16_t st_gid;
    std::uint32_t st_rdev;
    std::int32_t st_size;
    Seconds st_atim;
    Seconds st_mtim;
    Seconds st_ctim;
    /// @}
};

#endif

// NOLINTBEGIN(bugprone-reserved-identifier): the system's own names.
/// A code module (program, shared library) or a file of resources, as the loader knows it.
using HINSTANCE = struct HINSTANCE__*;
/// A resource within a module.
using HRSRC = struct HRSRC__*;
// NOLINTEND(bugprone-reserved-identifier)
/// A locale: a language in the low 16 bits, a sort order above.
using LCID = DWORD;
