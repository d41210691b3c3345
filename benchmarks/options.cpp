#include "benchmarks/options.h"

#include <optional>

namespace Oxa_1_1::bench
{

namespace
{

namespace fs = std::filesystem;

/// Removes the first argument that begins with `name` and returns what follows it.
std::optional<std::string> take(std::vector<std::string>& arguments, const std::string& name)
{
    for (auto i = arguments.begin(); i != arguments.end(); ++i)
    {
        if (!i->starts_with(name)) continue;
        std::string value = i->substr(name.size());
        arguments.erase(i);
        return value;
    }
    return std::nullopt;
}

fs::path memoryFolder()
{
    const fs::path usual = "/dev/shm";
    return fs::is_directory(usual) ? usual : fs::temp_directory_path();
}

}  // namespace

Options& options()
{
    static Options options;
    return options;
}

Options takeOptions(std::vector<std::string>& arguments)
{
    Options taken;
    taken.isQuick = take(arguments, "--quick").has_value();
    taken.filter = take(arguments, "--benchmark_filter=").value_or("");
    taken.json = take(arguments, "--json=").value_or("");
    taken.disk = take(arguments, "--disk=").value_or(fs::temp_directory_path());
    taken.memoryDisk = take(arguments, "--memory-disk=").value_or(memoryFolder());
    return taken;
}

}  // namespace Oxa_1_1::bench
