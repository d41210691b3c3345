// The entry point of a shared library or program, which is attached after all static objects of the module were made.
// It lies in an archive, out of which modules take it by this name.

#include "base/module/module_start.h"

extern "C"
{
    // The compiled resource script, if the module embeds one.
    extern const std::byte oxa_module_resources_begin[] __attribute__((weak, visibility("hidden")));
    extern const std::byte oxa_module_resources_end[] __attribute__((weak, visibility("hidden")));
    extern const char oxa_module_entry __attribute__((visibility("hidden")));
}

const char oxa_module_entry = 0;

namespace Oxa_1_1
{

namespace
{

bool isAttached = false;

void detachOnce()
{
    if (isAttached) detachModule();
    isAttached = false;
}

/// At the end of the program, static objects are destroyed before destructor functions run.
struct Session
{
    Session()
    {
        const std::byte* const begin = oxa_module_resources_begin;
        const std::byte* const end = oxa_module_resources_end;
        isAttached = attachModule(moduleHandleOf(&isAttached), {begin, end});
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() { detachOnce(); }
};

/// Runs at two places of the start, of which the later one counts.
void attachAtSecondCall()
{
    static bool isSecond = false;
    if (isSecond) static const Session session;
    isSecond = true;
}

// Where static objects are made in the order of linking, the place of this object is behind all others. Where the
// linker puts code that it optimised itself behind all else, priorities beyond the usual ones come still later; other
// linkers put them in front.
__attribute__((section(".init_array"), used)) void (*inOrder)() = attachAtSecondCall;
__attribute__((section(".init_array.65537"), used)) void (*behindAll)() = attachAtSecondCall;

/// When a library is unloaded, destructor functions run before static objects are destroyed: class records that were
/// made after the start are still there to be told.
__attribute__((destructor)) void beforeStatics() { detachOnce(); }

}  // namespace

}  // namespace Oxa_1_1
