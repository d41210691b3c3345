#include "examples/foldertool/text.h"

#include <algorithm>
#include <array>

#include "base/diagnostics/windows_error.h"
#include "base/module/module_entry.h"
#include "base/string/oxa_string.h"
#include "examples/foldertool/system.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

String resourceText(unsigned int id) { return String::loadFromResource(id, ownModule()); }

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

std::string blanksBeside(const std::string& text, std::size_t columns)
{
    const std::size_t used = columnsOf(text);
    return std::string(columns > used ? columns - used : 0, ' ');
}

/// Three digits or so: "4.2", "48.1", "210".
std::string roundedText(double value)
{
    String number;
    number.printf_apply(value < 99.95 ? OXA_TEXT("%.1f") : OXA_TEXT("%.0f"), value);
    number.replace(String("."), resourceText(IDS_DECIMAL_POINT));
    return number.stringUTF8();
}

}  // namespace

std::string text(unsigned int id, std::initializer_list<std::string> arguments)
{
    const std::string pattern = resourceText(id).stringUTF8();
    std::string result;
    for (std::size_t i = 0; i < pattern.size(); ++i)
    {
        const bool isPlace = pattern[i] == '%' && i + 1 < pattern.size() && pattern[i + 1] > '0' &&
                             pattern[i + 1] <= '0' + static_cast<int>(arguments.size());
        if (isPlace)
            result += arguments.begin()[pattern[++i] - '1'];
        else
            result += pattern[i];
    }
    return result;
}

std::string counted(unsigned int id, unsigned long long count)
{
    return text(count == 1 ? id : id + 1, {numberText(count)});
}

std::string numberText(unsigned long long number)
{
    constexpr std::size_t GROUP = 3;
    std::string digits = std::to_string(number);
    for (std::size_t place = digits.size(); place > GROUP; place -= GROUP)
        digits.insert(place - GROUP, text(IDS_DIGIT_GROUP));
    return digits;
}

std::string byteText(unsigned long long bytes)
{
    if (bytes < 1000) return std::to_string(bytes) + " B";
    constexpr std::array UNITS{" kB", " MB", " GB", " TB", " PB", " EB"};
    auto value = static_cast<double>(bytes) / 1000;
    auto unit = UNITS.begin();
    for (; value >= 999.5 && unit + 1 != UNITS.end(); ++unit) value /= 1000;
    return roundedText(value) + *unit;
}

std::string rateText(unsigned long long bytes, std::chrono::duration<double> time)
{
    if (time.count() <= 0) return {};
    return text(IDS_RATE, {byteText(static_cast<unsigned long long>(static_cast<double>(bytes) / time.count()))});
}

std::string timeText(std::chrono::duration<double> time)
{
    return time.count() < 1 ? roundedText(time.count() * 1000) + " ms" : roundedText(time.count()) + " s";
}

std::string pathText(const FileSystemItem& item)
{
    std::filesystem::path path = item.toPath();
    // Of a folder, without what ends it.
    if (!path.has_filename() && path.has_relative_path()) path = path.parent_path();
    return nameText(path);
}

std::string nameText(const std::filesystem::path& path) { return escaped(system::bytesOf(path)); }

std::string escaped(const std::string& name)
{
    constexpr char DIGITS[] = "0123456789abcdef";
    std::string result;
    for (std::size_t i = 0; i < name.size(); ++i)
    {
        const auto byte = static_cast<unsigned char>(name[i]);
        const auto next = static_cast<unsigned char>(i + 1 < name.size() ? name[i + 1] : 0);
        // Those beyond ASCII have two bytes.
        const bool isLongControl = byte == 0xC2 && next >= 0x80 && next < 0xA0;
        if (byte >= 0x20 && byte != 0x7F && !isLongControl)
        {
            result += name[i];
            continue;
        }
        const unsigned char shown = isLongControl ? next : byte;
        result.append("\\x").append(1, DIGITS[shown >> 4]).append(1, DIGITS[shown & 0xF]);
        i += isLongControl ? 1 : 0;
    }
    return result;
}

std::string lastReason() { return getWindowsError().stringUTF8(); }

std::string reasonText(const Oxa_1_1::Failure& failure) { return failure.code.message(); }

std::size_t columnsOf(const std::string& text)
{
    return static_cast<std::size_t>(std::ranges::count_if(text, std::not_fn(isContinuation)));
}

std::string left(const std::string& text, std::size_t columns) { return text + blanksBeside(text, columns); }

std::string right(const std::string& text, std::size_t columns) { return blanksBeside(text, columns) + text; }

}  // namespace foldertool
