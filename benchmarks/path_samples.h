#pragma once

#include <string>
#include <string_view>

/// The paths that are parsed and compared, in the spellings of both systems.
namespace Oxa_1_1::bench
{

/// Eight levels when "." and ".." are collapsed.
inline constexpr std::u16string_view WINDOWS_PATH = u"C:\\data\\scans\\.\\hall\\..\\site\\2024\\raw\\a\\.\\b\\c";
inline const std::string UNIX_PATH = "/data/scans/./hall/../site/2024/raw/a/./b/c";

inline constexpr std::u16string_view WINDOWS_FOLDER = u"C:\\data\\scans\\2024\\raw\\a";
inline constexpr std::u16string_view WINDOWS_REFERENCE = u"C:\\data\\scans\\2024\\cooked\\b";
inline const std::string UNIX_FOLDER = "/data/scans/2024/raw/a";
inline const std::string UNIX_REFERENCE = "/data/scans/2024/cooked/b";

}  // namespace Oxa_1_1::bench
