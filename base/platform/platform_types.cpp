#include "base/platform/platform_types.h"

#include <cstddef>

#ifdef _WIN32
#include "base/platform/windows/windows_api.h"
#endif

// The layout that callers on every system rely on.
static_assert(sizeof(BOOL) == 4 && sizeof(WORD) == 2 && sizeof(DWORD) == 4 && sizeof(DWORD64) == 8);
static_assert(sizeof(HANDLE) == 8 && sizeof(ULONGLONG) == 8);
static_assert(sizeof(CONTEXT) == 1232 && alignof(CONTEXT) == 16);
static_assert(offsetof(CONTEXT, ContextFlags) == 0x30 && offsetof(CONTEXT, EFlags) == 0x44);
static_assert(offsetof(CONTEXT, Rax) == 0x78 && offsetof(CONTEXT, Rsp) == 0x98 && offsetof(CONTEXT, Rip) == 0xF8);
static_assert(offsetof(CONTEXT, FltSave) == 0x100 && offsetof(CONTEXT, VectorRegister) == 0x300);
