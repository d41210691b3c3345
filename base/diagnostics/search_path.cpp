#include "base/diagnostics/detail/search_path.h"

#include <utility>

#include "base/platform/system/system_info.h"

namespace Oxa_1_1::detail
{

namespace
{

class PathList
{
   public:
    void add(const std::string& folder)
    {
        if (!folder.empty()) m_text += folder + ";";
    }

    std::string take() { return std::move(m_text); }

   private:
    std::string m_text;
};

std::string folderOf(const std::string& file)
{
    const std::size_t end = file.find_last_of(platform::pathSeparator());
    return end == std::string::npos ? std::string() : file.substr(0, end);
}

}  // namespace

std::string buildSearchPath(const std::string& callersPath, const std::string& server)
{
    PathList path;
    path.add(callersPath);
    path.add(platform::workingFolder());
    path.add(folderOf(platform::programFile()));
    path.add(platform::environmentVariable("_NT_SYMBOL_PATH"));
    path.add(platform::environmentVariable("_NT_ALTERNATE_SYMBOL_PATH"));
    const std::string systemRoot = platform::environmentVariable("SYSTEMROOT");
    if (!systemRoot.empty())
    {
        path.add(systemRoot);
        path.add(systemRoot + "\\system32");
    }
    if (!server.empty())
    {
        const std::string drive = platform::environmentVariable("SYSTEMDRIVE");
        path.add("SRV*" + (drive.empty() ? std::string("c:") : drive) + "\\websymbols*" + server);
    }
    return path.take();
}

}  // namespace Oxa_1_1::detail
