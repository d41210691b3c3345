#pragma once

#include <vector>

#include "base/filesystem/detail/tree_walk.h"

namespace Oxa_1_1::detail
{

/// Whether a walk that has followed a link would come round: what the link leads to is on the way, or above its top.
class Circles
{
   public:
    /// What counts as above the top: the folders in its path, or also those that it really lies in.
    enum class Above
    {
        BY_PATH,
        BY_EITHER_WAY
    };

    /// `path` is the absolute one of the top.
    explicit Circles(const ParsedDirectory& path, Above above = Above::BY_EITHER_WAY) : m_path(path), m_kind(above) {}
    bool closesAt(FolderWay& way, TextView link);

   private:
    void read();

    const ParsedDirectory& m_path;
    Above m_kind;
    /// Read when the first link is met.
    std::vector<platform::FileIdentity> m_above;
    bool m_isRead = false;
};

}  // namespace Oxa_1_1::detail
