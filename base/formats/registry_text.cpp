#include "base/formats/registry_text.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "base/formats/bytes.h"
#include "base/formats/registry_line.h"
#include "base/text/scan.h"
#include "base/text/utf8.h"
#include "base/text/windows_1252.h"

namespace Oxa_1_1::formats
{

namespace
{

constexpr TextView ANSI_TITLE = OXA_TEXT("REGEDIT4");
constexpr TextView UNICODE_TITLE = OXA_TEXT("Windows Registry Editor Version 5.00");

struct RootName
{
    TextView brief;
    TextView full;
};

constexpr std::array<RootName, 5> ROOT_NAMES = {{
    {OXA_TEXT("HKCR"), OXA_TEXT("HKEY_CLASSES_ROOT")},
    {OXA_TEXT("HKCU"), OXA_TEXT("HKEY_CURRENT_USER")},
    {OXA_TEXT("HKLM"), OXA_TEXT("HKEY_LOCAL_MACHINE")},
    {OXA_TEXT("HKU"), OXA_TEXT("HKEY_USERS")},
    {OXA_TEXT("HKCC"), OXA_TEXT("HKEY_CURRENT_CONFIG")},
}};

bool equalIgnoreCase(TextView a, TextView b)
{
    return a.size() == b.size() && text::compareUnitsIgnoreCase(a.data(), b.data(), a.size()) == 0;
}

/// The key with its root written out and no backslash behind it.
Text normalKey(TextView key)
{
    while (key.ends_with('\\')) key.remove_suffix(1);
    const TextView root = key.substr(0, key.find('\\'));
    for (const RootName& name : ROOT_NAMES)
        if (equalIgnoreCase(root, name.brief)) return Text(name.full).append(key.substr(root.size()));
    return Text(key);
}

/// Whether `key` is `ancestor` or lies below it.
bool isWithin(TextView key, TextView ancestor)
{
    if (!equalIgnoreCase(key.substr(0, ancestor.size()), ancestor)) return false;
    return key.size() == ancestor.size() || key[ancestor.size()] == '\\';
}

/// Follows what the lines of a file do to one value.
class ValueSearch
{
   public:
    ValueSearch(TextView key, TextView valueName) : m_key(normalKey(key)), m_valueName(valueName) {}

    std::optional<RegistryValue> run(RegistryScanner& lines)
    {
        for (Char first = lines.skipToLine(); !lines.atEnd(); first = lines.skipToLine())
        {
            if (first == '[')
                enterSection(lines.takeLine());
            else if (first == '"' || first == '@')
                assign(lines.takeAssignment());
            else
                lines.takeLine();
        }
        return std::move(m_value);
    }

   private:
    void enterSection(TextView line)
    {
        // A key may hold a bracket, so the last one ends it. After a malformed line nothing is known of the key.
        m_isInKey = false;
        const std::size_t end = line.rfind(']');
        if (end == TextView::npos) return;
        line = line.substr(1, end - 1);
        const bool deletes = line.starts_with('-');
        const Text key = normalKey(line.substr(deletes ? 1 : 0));
        if (deletes && isWithin(m_key, key)) m_value.reset();
        m_isInKey = !deletes && equalIgnoreCase(key, m_key);
    }

    void assign(std::optional<RegistryAssignment>&& assignment)
    {
        if (!assignment || !m_isInKey || !equalIgnoreCase(assignment->name, m_valueName)) return;
        m_value = std::move(assignment->value);
    }

    Text m_key;
    TextView m_valueName;
    bool m_isInKey = false;
    std::optional<RegistryValue> m_value;
};

/// The text of a file whose first bytes tell in what it is written.
Text decode(Bytes file)
{
    const std::string_view bytes(reinterpret_cast<const char*>(file.data()), file.size());
    if (bytes.starts_with("\xFF\xFE")) return copyText(file.subspan(2));
    if (bytes.starts_with("\xEF\xBB\xBF")) return text::decodeUtf8(bytes.substr(3));
    return bytes.starts_with("REGEDIT4") ? text::decodeWindows1252(bytes) : text::decodeUtf8(bytes);
}

}  // namespace

std::optional<RegistryValue> findRegistryValue(std::span<const std::byte> file, TextView key, TextView valueName)
{
    const Text text = decode(file);
    const TextView title = RegistryScanner(text, RegistryBytes::UTF16).takeLine();
    if (title != UNICODE_TITLE && title != ANSI_TITLE) return std::nullopt;
    RegistryScanner lines(text, title == ANSI_TITLE ? RegistryBytes::ANSI : RegistryBytes::UTF16);
    return ValueSearch(key, valueName).run(lines);
}

}  // namespace Oxa_1_1::formats
