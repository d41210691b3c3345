#pragma once

#include <vector>

#include "benchmarks/work.h"

namespace Oxa_1_1::bench
{

enum class Unit
{
    NANOSECONDS,
    BYTES,
    /// The time beside that for half of the work.
    TIMES
};

/// A row of the table: at most `goal` times what `goalPeer` takes.
struct Row
{
    /// "S1", "F7".
    std::string name() const { return work.substr(0, work.find(' ')); }
    std::string description() const { return work.substr(work.find(' ') + 1); }

    std::string work;
    std::string goalPeer;
    double goal = 0;
    Unit unit = Unit::NANOSECONDS;
};

/// All, in the order of the table.
const std::vector<Row>& allRows();

}  // namespace Oxa_1_1::bench
