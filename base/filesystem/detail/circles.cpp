#include "base/filesystem/detail/circles.h"

#include <algorithm>

namespace Oxa_1_1::detail
{

bool Circles::closesAt(FolderWay& way, TextView link)
{
    const auto identity = way.current().readIdentity(link);
    if (!identity) return false;
    if (way.passes(*identity)) return true;
    if (!m_isRead) read();
    return std::ranges::find(m_above, *identity) != m_above.end();
}

void Circles::read()
{
    m_isRead = true;
    if (m_kind == Above::BY_EITHER_WAY)
    {
        const auto top = platform::OpenFolder::at(readablePath(m_path), platform::Links::FOLLOW);
        if (top.isOpen()) m_above = top.ancestry();
    }
    ParsedDirectory above = m_path;
    while (!above.levels.empty())
    {
        above.levels.dropBack();
        if (const auto found = platform::readIdentity(longName(above))) m_above.push_back(*found);
    }
}

}  // namespace Oxa_1_1::detail
