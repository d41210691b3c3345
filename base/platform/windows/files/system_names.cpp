#include "base/platform/windows/files/system_names.h"

#include <algorithm>
#include <iterator>

#include "base/platform/windows/windows_api.h"
#include "base/text/character.h"

namespace Oxa_1_1::platform
{

namespace
{

constexpr TextView LONG_PATH = L"\\\\?\\";
constexpr TextView DEVICE = L"\\\\.\\";
constexpr TextView SEPARATORS = L"\\/";

/// Folders must be shorter than files, by the room for a short name.
constexpr std::size_t SHORT_ENOUGH = MAX_PATH - 12;

/// From the current folder on; empty when the system cannot tell.
Text wholePath(const Text& path)
{
    Text whole(MAX_PATH, L'\0');
    for (;;)
    {
        const DWORD length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(whole.size()), whole.data(), nullptr);
        const bool fits = length <= whole.size();
        whole.resize(length);
        if (fits) return whole;
    }
}

bool startsAtRoot(TextView path)
{
    if (path.starts_with(L"\\\\")) return true;
    return path.size() > 2 && path[1] == L':' && SEPARATORS.find(path[2]) != TextView::npos;
}

bool isNumberedDevice(TextView name)
{
    if (name.size() != 4 || (!name.starts_with(L"COM") && !name.starts_with(L"LPT"))) return false;
    return TextView(L"123456789\u00B9\u00B2\u00B3").find(name[3]) != TextView::npos;
}

/// The last name of a path, up to its first period and without blanks at its end, in capitals.
Text deviceNameIn(TextView path)
{
    path = path.substr(0, path.find_last_not_of(SEPARATORS) + 1);
    path.remove_prefix(path.find_last_of(L"\\/:") + 1);
    path = path.substr(0, path.find(L'.'));
    path = path.substr(0, path.find_last_not_of(L' ') + 1);
    Text name(path);
    for (wchar_t& c : name)
        if (text::detail::isAsciiLetter(c)) c = static_cast<wchar_t>(c & ~0x20);
    return name;
}

bool isDevice(TextView path)
{
    constexpr TextView DEVICES[] = {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"};
    const Text name = deviceNameIn(path);
    return isNumberedDevice(name) || std::ranges::find(DEVICES, TextView(name)) != std::end(DEVICES);
}

}  // namespace

Text pathForSystem(TextView path)
{
    if (path.starts_with(LONG_PATH))
    {
        if (path.size() > LONG_PATH.size() && path[LONG_PATH.size()] != L'\\') return Text(path);
        path.remove_prefix(LONG_PATH.size());
    }
    Text plain(path);
    if (path.starts_with(DEVICE) || (path.size() < SHORT_ENOUGH && startsAtRoot(path))) return plain;
    const Text whole = wholePath(plain);
    if (whole.size() < SHORT_ENOUGH || whole.starts_with(DEVICE) || whole.starts_with(LONG_PATH)) return plain;
    const bool isShare = whole.starts_with(L"\\\\");
    return isShare ? Text(LONG_PATH).append(L"UNC\\").append(whole, 2) : Text(LONG_PATH).append(whole);
}

bool refusesNew(TextView path)
{
    if (!isDevice(path)) return false;
    // Without the mark, the device itself would answer.
    const bool isMarked = path.starts_with(LONG_PATH);
    if (isMarked && GetFileAttributesW(pathForSystem(path).c_str()) != INVALID_FILE_ATTRIBUTES) return false;
    SetLastError(ERROR_BAD_DEVICE);
    return true;
}

}  // namespace Oxa_1_1::platform
