#include "base/module/detail/module_file.h"

#include <cstring>
#include <span>
#include <vector>

#include "base/formats/version_block.h"
#include "base/module/module.h"
#include "base/platform/modules/resources.h"
#include "base/platform/modules/version_info.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1::detail
{

namespace
{

using Bytes = std::span<const std::byte>;

std::uint16_t readWord(Bytes bytes, std::size_t offset)
{
    std::uint16_t word = 0;
    std::memcpy(&word, bytes.data() + offset, sizeof word);
    return word;
}

/// \StringFileInfo\040904b0\ for the first language and code page that the resource lists; empty when it lists none.
Text pathOfTexts(Bytes info)
{
    const auto translation = formats::queryVersionValue(info, OXA_TEXT("\\VarFileInfo\\Translation"));
    if (!translation || translation->size() < 4) return {};
    String path;
    path.printf_apply(OXA_TEXT("\\StringFileInfo\\%04x%04x\\"), readWord(*translation, 0), readWord(*translation, 2));
    return Text(path.view());
}

Text textOf(Bytes info, const Text& path, TextView name, TextView defaultText)
{
    if (path.empty()) return Text(defaultText);
    const auto value = formats::queryVersionValue(info, Text(path).append(name));
    if (!value) return Text(defaultText);
    Text text(value->size() / sizeof(Char), 0);
    std::memcpy(text.data(), value->data(), text.size() * sizeof(Char));
    return text;
}

std::optional<FileVersion> fileVersionIn(Bytes info)
{
    // Behind signature and version of the structure: two words, each with the more significant half above.
    constexpr std::size_t VERSION = 8;
    const auto fixed = formats::queryVersionValue(info, OXA_TEXT("\\"));
    if (!fixed || fixed->size() < VERSION + 8) return std::nullopt;
    return FileVersion{readWord(*fixed, VERSION + 2), readWord(*fixed, VERSION), readWord(*fixed, VERSION + 6),
                       readWord(*fixed, VERSION + 4)};
}

}  // namespace

TextView folderOf(TextView path)
{
    const std::size_t last = path.rfind('\\');
    return last == TextView::npos ? TextView() : path.substr(0, last + 1);
}

TextView withoutExtension(TextView path)
{
    const std::size_t dot = path.rfind('.');
    return dot == TextView::npos || dot < folderOf(path).size() ? path : path.substr(0, dot);
}

TextView baseNameOf(TextView path) { return withoutExtension(path.substr(folderOf(path).size())); }

std::optional<FileVersion> fileVersionOf(TextView path) { return fileVersionIn(platform::readVersionInfo(path)); }

std::optional<FileVersion> fileVersionOf(HINSTANCE dataFile)
{
    constexpr unsigned int VERSION_TYPE = 16;
    const HRSRC found = platform::findResource(dataFile, resourceNumber(VERSION_TYPE), resourceNumber(1));
    return found != nullptr ? fileVersionIn(platform::resourceBytes(dataFile, found)) : std::nullopt;
}

Text productFolderOf(TextView path)
{
    const std::vector<std::byte> info = platform::readVersionInfo(path);
    const Text texts = pathOfTexts(info);
    Text folder;
    folder.append(textOf(info, texts, OXA_TEXT("CompanyName"), OXA_TEXT("Maraq Scanner Production GmbH")))
        .append(1, '\\');
    folder.append(textOf(info, texts, OXA_TEXT("ProductName"), OXA_TEXT("custom product"))).append(1, '\\');
    folder.append(textOf(info, texts, OXA_TEXT("ProductVersion"), OXA_TEXT("internal"))).append(1, '\\');
    return folder;
}

}  // namespace Oxa_1_1::detail
