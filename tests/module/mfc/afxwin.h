#pragma once

// Stands in for the framework's header: notes each call.

#include <string>
#include <vector>

#include "base/platform/platform_types.h"

#ifndef FALSE
#define FALSE 0
#endif

inline std::vector<std::string> calls;
inline bool refuses = false;

struct AFX_EXTENSION_MODULE
{
    bool isUsed = false;
    HINSTANCE handle = nullptr;
};

struct AFX_MODULE_STATE
{
    HINSTANCE m_hCurrentResourceHandle = nullptr;
};

inline AFX_MODULE_STATE* AfxGetModuleState()
{
    static AFX_MODULE_STATE state;
    return &state;
}

inline int AfxInitExtensionModule(AFX_EXTENSION_MODULE& extension, HINSTANCE handle)
{
    calls.push_back(extension.isUsed ? "init of a used structure" : "init");
    extension = {true, handle};
    return refuses ? 0 : 1;
}

inline void AfxTermExtensionModule(AFX_EXTENSION_MODULE&, int all) { calls.push_back(all == 0 ? "term" : "term all"); }

class CDynLinkLibrary
{
   public:
    CDynLinkLibrary(AFX_EXTENSION_MODULE& extension, int system)
    {
        calls.push_back(extension.isUsed && system == 0 ? "link" : "link wrongly");
    }
    CDynLinkLibrary(const CDynLinkLibrary&) = delete;
    CDynLinkLibrary& operator=(const CDynLinkLibrary&) = delete;
    ~CDynLinkLibrary() { calls.emplace_back("unlink"); }
};
