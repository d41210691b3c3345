#include "base/formats/demangle.h"

#if __has_include(<cxxabi.h>)
#include <cxxabi.h>
#endif

#include <cstdlib>
#include <string_view>

namespace Oxa_1_1::formats
{

namespace
{

/// Where the list of parameters begins: at what the last closing parenthesis outside of a suffix such as " const" or
/// "[clone .cold]" belongs to.
std::size_t endOfName(std::string_view name)
{
    const std::size_t last = name.rfind(')');
    if (last == std::string_view::npos) return name.size();
    int depth = 0;
    for (std::size_t at = last + 1; at-- > 0;)
    {
        if (name[at] == ')') ++depth;
        if (name[at] == '(') --depth;
        if (depth != 0) continue;
        const std::string_view before = name.substr(0, at);
        return before.empty() || before.ends_with("operator") || before.ends_with("::") ? name.size() : at;
    }
    return name.size();
}

/// Behind the last blank that is not within brackets. What follows the word "operator" is all part of the name.
std::size_t beginOfName(std::string_view name)
{
    std::size_t begin = 0;
    int depth = 0;
    for (std::size_t at = 0; at < name.size() && !name.substr(at).starts_with("operator"); ++at)
    {
        if (std::string_view("<({").find(name[at]) != std::string_view::npos) ++depth;
        if (std::string_view(">)}").find(name[at]) != std::string_view::npos) --depth;
        if (name[at] == ' ' && depth == 0) begin = at + 1;
    }
    return begin;
}

}  // namespace

std::string demangle(const std::string& name)
{
#if __has_include(<cxxabi.h>)
    if (!name.starts_with("_Z")) return name;
    int status = 0;
    char* const text = abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status);
    if (text == nullptr) return name;
    std::string demangled(text);
    std::free(text);  // NOLINT(cppcoreguidelines-no-malloc): that is who made it
    return demangled;
#else
    return name;
#endif
}

std::string nameAlone(const std::string& name)
{
    const std::string_view named = std::string_view(name).substr(0, endOfName(name));
    return std::string(named.substr(beginOfName(named)));
}

}  // namespace Oxa_1_1::formats
