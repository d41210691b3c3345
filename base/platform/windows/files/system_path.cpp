#include "base/platform/files/system_path.h"

namespace Oxa_1_1::platform
{

std::filesystem::path systemPath(TextView spelling) { return spelling; }

Text spellingOfSystemPath(const std::filesystem::path& path) { return path.native(); }

void openStream(std::ifstream& stream, TextView spelling, std::ios_base::openmode mode)
{
    stream.open(systemPath(spelling), mode);
}

void openStream(std::ofstream& stream, TextView spelling, std::ios_base::openmode mode)
{
    stream.open(systemPath(spelling), mode);
}

}  // namespace Oxa_1_1::platform
