#pragma once

#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "benchmarks/rows.h"

namespace Oxa_1_1::bench
{

/// How everyone does in a row: nanoseconds or bytes an item, by name.
struct Standing
{
    std::optional<double> of(const std::string& who) const;
    /// The best of those that are neither the library nor a floor; empty when there is none.
    std::string bestPeer() const;
    /// What the library takes, as a multiple of what the goal is measured by.
    std::optional<double> ratio() const;
    std::string verdict() const;

    Row row;
    std::map<std::string, double> values;
};

/// A Markdown table that is readable as it stands.
void writeTable(std::ostream& out, const std::vector<Standing>& standings);

/// The same figures, unrounded.
void writeJson(std::ostream& out, const std::vector<Standing>& standings);

}  // namespace Oxa_1_1::bench
