// The start and end of a program. Linked first, since static objects are made against the order of linking: it is
// attached after all others were made.

#include "base/module/module_start.h"

namespace Oxa_1_1
{

namespace
{

struct Session
{
    Session() { attachModule(moduleHandleOf(this), {}); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() { detachModule(); }
};

const Session session;

}  // namespace

}  // namespace Oxa_1_1
