#include <wx/string.h>

#include <map>

#include "benchmarks/contest.h"
#include "benchmarks/samples.h"

namespace Oxa_1_1::bench
{

namespace
{

const std::string WX = "wx";

struct FoldedLess
{
    bool operator()(const wxString& a, const wxString& b) const { return a.CmpNoCase(b) < 0; }
};

[[maybe_unused]] const bool registered = []
{
    add(work::FROM_UTF8_SHORT, WX, [bytes = asciiSample(32)] { keep(wxString::FromUTF8(bytes.data(), bytes.size())); });
    const std::string line = asciiSample(64);
    add(work::COMPARE, WX, [a = wxString(line), b = wxString(changedCase(line))] { keep(a.CmpNoCase(b)); });

    using Map = std::map<wxString, int, FoldedLess>;
    Map filled;
    std::vector<wxString> names;
    std::vector<wxString> others;
    for (const std::string& name : namesSample())
    {
        filled.emplace(name, 1);
        names.emplace_back(name);
        others.emplace_back(changedCase(name));
    }
    add(
        work::MAP_INSERT, WX,
        [names]
        {
            Map map;
            for (const wxString& name : names) map.emplace(name, 1);
            keep(map);
        },
        static_cast<double>(names.size()));
    add(
        work::MAP_FIND, WX,
        [filled, others]
        {
            for (const wxString& name : others) keep(filled.find(name));
        },
        static_cast<double>(others.size()));
    return true;
}();

}  // namespace

}  // namespace Oxa_1_1::bench
