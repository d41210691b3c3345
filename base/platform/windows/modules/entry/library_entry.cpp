// The entry point of a dynamic library.

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include "base/module/module_start.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE handle, DWORD reason, LPVOID)
{
    switch (reason)
    {
        case DLL_PROCESS_ATTACH:
            return Oxa_1_1::attachModule(handle, {}) ? TRUE : FALSE;
        case DLL_PROCESS_DETACH:
            Oxa_1_1::detachModule();
            return TRUE;
        default:
            return TRUE;
    }
}
