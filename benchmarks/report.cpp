#include "benchmarks/report.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ostream>
#include <string_view>

namespace Oxa_1_1::bench
{

namespace
{

constexpr std::size_t COLUMNS = 9;
using Cells = std::array<std::string, COLUMNS>;

std::string rounded(double value, const char* unit)
{
    char text[64];
    std::snprintf(text, sizeof text, value < 10 ? "%.2f %s" : value < 100 ? "%.1f %s" : "%.0f %s", value, unit);
    return text;
}

std::string shown(double value, Unit unit)
{
    if (unit == Unit::BYTES) return rounded(value, "B");
    if (unit == Unit::TIMES) return rounded(value, "x");
    if (value < 1e3) return rounded(value, "ns");
    return value < 1e6 ? rounded(value / 1e3, "us") : rounded(value / 1e6, "ms");
}

std::string shownFor(const Standing& standing, const std::string& who)
{
    const auto value = standing.of(who);
    return value ? shown(*value, standing.row.unit) : std::string();
}

std::string shownRatio(double ratio)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", ratio);
    return text;
}

std::string others(const Standing& standing, const std::string& best)
{
    std::string text;
    for (const auto& [who, value] : standing.values)
    {
        if (who == OURS || who == FLOOR || who == best) continue;
        text += (text.empty() ? "" : ", ") + who + " " + shown(value, standing.row.unit);
    }
    return text;
}

Cells cellsOf(const Standing& standing)
{
    const std::string best = standing.bestPeer();
    const auto ratio = standing.ratio();
    return {standing.row.name(),
            standing.row.description(),
            shownFor(standing, OURS),
            shownFor(standing, FLOOR),
            best.empty() ? "" : best + " " + shownFor(standing, best),
            ratio ? shownRatio(*ratio) : "",
            shownRatio(standing.row.goal) + " of " + standing.row.goalPeer,
            standing.verdict(),
            others(standing, best)};
}

void writeCells(std::ostream& out, const Cells& cells, const std::array<std::size_t, COLUMNS>& widths)
{
    for (std::size_t i = 0; i < COLUMNS; ++i)
        out << "| " << cells[i] << std::string(widths[i] - cells[i].size() + 1, ' ');
    out << "|\n";
}

std::string quoted(std::string_view text)
{
    std::string result = "\"";
    for (const char c : text) (result += c == '"' || c == '\\' ? "\\" : "") += c;
    return result + '"';
}

/// The value of a member, or null.
std::string number(std::optional<double> value)
{
    if (!value) return "null";
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", *value);
    return text;
}

const char* nameOf(Unit unit)
{
    if (unit == Unit::BYTES) return "bytes";
    return unit == Unit::TIMES ? "times" : "ns";
}

void writeMember(std::ostream& out, const Standing& standing)
{
    const Row& row = standing.row;
    out << "  {\"row\": " << quoted(row.name()) << ", \"work\": " << quoted(row.description())
        << ", \"unit\": " << quoted(nameOf(row.unit)) << ", \"ours\": " << number(standing.of(OURS))
        << ", \"floor\": " << number(standing.of(FLOOR)) << ", \"bestPeer\": " << quoted(standing.bestPeer())
        << ", \"goalPeer\": " << quoted(row.goalPeer) << ", \"goal\": " << number(row.goal)
        << ", \"ratio\": " << number(standing.ratio()) << ", \"verdict\": " << quoted(standing.verdict())
        << ", \"all\": {";
    const char* separator = "";
    for (const auto& [who, value] : standing.values)
    {
        out << separator << quoted(who) << ": " << number(value);
        separator = ", ";
    }
    out << "}}";
}

}  // namespace

std::optional<double> Standing::of(const std::string& who) const
{
    const auto found = values.find(who);
    return found != values.end() ? std::optional(found->second) : std::nullopt;
}

std::string Standing::bestPeer() const
{
    std::string best;
    for (const auto& [who, value] : values)
        if (who != OURS && !isFloor(who) && (best.empty() || value < values.at(best))) best = who;
    return best;
}

std::optional<double> Standing::ratio() const
{
    const auto ours = of(OURS);
    const auto mark = of(row.goalPeer);
    if (!ours || !mark) return std::nullopt;
    return *ours / *mark;
}

std::string Standing::verdict() const
{
    const auto reached = ratio();
    if (!reached) return (of(OURS) ? row.goalPeer : OURS) + " is missing";
    return *reached <= row.goal ? "reached" : "MISSED";
}

void writeTable(std::ostream& out, const std::vector<Standing>& standings)
{
    std::vector<Cells> lines = {{"row", "work", "ours", "floor", "best peer", "ratio", "goal", "goal is", "others"}};
    for (const Standing& standing : standings) lines.push_back(cellsOf(standing));
    std::array<std::size_t, COLUMNS> widths{};
    for (const Cells& cells : lines)
        for (std::size_t i = 0; i < COLUMNS; ++i) widths[i] = std::max(widths[i], cells[i].size());

    writeCells(out, lines.front(), widths);
    for (const std::size_t width : widths) out << '|' << std::string(width + 2, '-');
    out << "|\n";
    for (std::size_t i = 1; i < lines.size(); ++i) writeCells(out, lines[i], widths);
}

void writeJson(std::ostream& out, const std::vector<Standing>& standings)
{
    out << "[\n";
    for (const Standing& standing : standings)
    {
        writeMember(out, standing);
        out << (&standing == &standings.back() ? "\n" : ",\n");
    }
    out << "]\n";
}

}  // namespace Oxa_1_1::bench
