#include "base/platform/files/system_path.h"

#include <fcntl.h>
#include <io.h>

#include <cstdint>
#include <utility>

#include "base/platform/windows/files/system_names.h"
#include "base/platform/windows/windows_api.h"
#ifdef __GLIBCXX__
#include <ext/stdio_filebuf.h>
#endif

namespace Oxa_1_1::platform
{

namespace
{

using OpenMode = std::ios_base::openmode;

bool has(OpenMode mode, OpenMode bits) { return (mode & bits) == bits; }

#ifdef __GLIBCXX__
/// Shared as the run-time library shares; INVALID_HANDLE_VALUE sets the last error.
HANDLE openFile(const Text& path, OpenMode mode)
{
    const bool reads = has(mode, std::ios_base::in);
    const bool appends = has(mode, std::ios_base::app);
    if (appends && has(mode, std::ios_base::trunc))
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return INVALID_HANDLE_VALUE;
    }
    const DWORD creation = reads ? OPEN_EXISTING : appends ? OPEN_ALWAYS : CREATE_ALWAYS;
    return CreateFileW(path.c_str(), reads ? GENERIC_READ : GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                       creation, FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// The number of the run-time library for it, which owns it then; -1 when it has none left.
int numberOf(HANDLE file, OpenMode mode)
{
    const int flags = (has(mode, std::ios_base::binary) ? _O_BINARY : _O_TEXT) |
                      (has(mode, std::ios_base::app) ? _O_APPEND : 0) |
                      (has(mode, std::ios_base::in) ? _O_RDONLY : _O_WRONLY);
    const int number = _open_osfhandle(reinterpret_cast<std::intptr_t>(file), flags);
    if (number < 0)
    {
        CloseHandle(file);
        SetLastError(ERROR_TOO_MANY_OPEN_FILES);
    }
    return number;
}

/// The run-time library takes no paths of any length.
template <class Stream>
bool openByHandle(Stream& stream, const Text& path, OpenMode mode)
{
    const HANDLE file = openFile(path, mode);
    const int number = file != INVALID_HANDLE_VALUE ? numberOf(file, mode) : -1;
    if (number < 0) return false;
    __gnu_cxx::stdio_filebuf<char> buffer(number, mode);
    const bool isAtEnd = has(mode, std::ios_base::ate);
    if (isAtEnd && buffer.pubseekoff(0, std::ios_base::end, mode) == std::streampos(-1)) return false;
    *stream.rdbuf() = std::move(static_cast<std::filebuf&>(buffer));
    return true;
}
#else
template <class Stream>
bool openByHandle(Stream& stream, const Text& path, OpenMode mode)
{
    stream.open(std::filesystem::path(path), mode);
    return stream.is_open();
}
#endif

template <class Stream>
void open(Stream& stream, TextView spelling, OpenMode mode)
{
    const bool isRefused = !has(mode, std::ios_base::in) && refusesNew(spelling);
    if (isRefused || !openByHandle(stream, pathForSystem(spelling), mode)) stream.setstate(std::ios_base::failbit);
}

}  // namespace

std::filesystem::path systemPath(TextView spelling) { return spelling; }

Text spellingOfSystemPath(const std::filesystem::path& path) { return path.native(); }

void openStream(std::ifstream& stream, TextView spelling, std::ios_base::openmode mode)
{
    open(stream, spelling, mode);
}

void openStream(std::ofstream& stream, TextView spelling, std::ios_base::openmode mode)
{
    open(stream, spelling, mode);
}

}  // namespace Oxa_1_1::platform
