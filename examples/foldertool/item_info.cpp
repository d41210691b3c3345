#include "examples/foldertool/item_info.h"

#include <algorithm>
#include <chrono>

#include "base/filesystem/disk_facts.h"
#include "examples/foldertool/text.h"
#include "examples/foldertool/tree.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

String stringOf(const std::string& utf8) { return String(UTF8Interface(utf8.c_str())); }

/// "2026-11-21 11:00:13 UTC"
String dateText(FileTime moment)
{
    using namespace std::chrono;
    const auto day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss clock(floor<seconds>(moment - day));
    String text;
    text.printf_apply(OXA_TEXT("%04d-%02u-%02u %02d:%02d:%02d UTC"), static_cast<int>(date.year()),
                      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                      static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                      static_cast<int>(clock.seconds().count()));
    return text;
}

/// Under keys in the user's language.
class Collector
{
   public:
    void add(unsigned int key, const String& value) { m_info.addInfo(stringOf(text(key)), value); }
    void add(unsigned int key, const std::string& value) { add(key, stringOf(value)); }
    InfoStringMap take() { return std::move(m_info); }

   private:
    InfoStringMap m_info;
};

void addSizes(Collector& info, const Directory& folder)
{
    const TreeTotals totals = measure(folder);
    info.add(IDS_KEY_KIND, text(IDS_KIND_FOLDER));
    info.add(IDS_KEY_SIZE, byteText(totals.bytes));
    info.add(IDS_KEY_FILES, numberText(totals.files));
    info.add(IDS_KEY_FOLDERS, numberText(totals.folders));
}

void addSizes(Collector& info, const File& file)
{
    unsigned long long bytes = 0;
    info.add(IDS_KEY_KIND, text(IDS_KIND_FILE));
    // A link that leads nowhere has none.
    if (!file.size(bytes)) return;
    info.add(IDS_KEY_SIZE, byteText(bytes));
    info.add(IDS_KEY_READ_ONLY, text(file.isReadOnly() ? IDS_YES : IDS_NO));
}

}  // namespace

InfoStringMap infoOf(const FileSystemItem& item)
{
    Collector info;
    if (const auto* const file = dynamic_cast<const File*>(&item)) addSizes(info, *file);
    if (const auto* const folder = dynamic_cast<const Directory*>(&item)) addSizes(info, *folder);
    if (const auto changed = lastWriteTime(item)) info.add(IDS_KEY_CHANGED, dateText(*changed));
    return info.take();
}

std::vector<std::string> linesOf(const InfoStringMap& info)
{
    int width = 0;
    for (const auto& [key, value] : info.getInfos()) width = std::max(width, key.length());
    std::vector<std::string> lines;
    for (const auto& [key, value] : info.getInfos())
        lines.push_back(left(key.stringUTF8(), static_cast<std::size_t>(width)) + " = " + value.stringUTF8());
    return lines;
}

}  // namespace foldertool
