#include "examples/foldertool/call_stack.h"

#include <string_view>

#include "base/diagnostics/stack_walker.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

constexpr std::size_t NAME_COLUMNS = 46;

std::string lineText(const StackWalker::CallstackEntry& entry)
{
    std::string_view file = entry.lineFileName;
    file.remove_prefix(file.find_last_of("/\\") + 1);
    return file.empty() ? std::string() : std::string(file) + ':' + std::to_string(entry.lineNumber);
}

/// Without what only tells apart what has the same name.
std::string shortName(const StackWalker::CallstackEntry& entry)
{
    String name(*entry.undName != '\0' ? entry.undName : entry.name);
    if (name.isEmpty()) name.printf_apply(OXA_TEXT("0x%llx"), entry.offset);
    for (const char* const part : {"(anonymous namespace)::", "[abi:cxx11]"}) name.replace(String(part), String::EMPTY);
    return name.stringUTF8();
}

class Frames : public StackWalker
{
   public:
    Frames() : StackWalker(FunctionNames | SourceLines, nullptr, 0, nullptr) {}

    std::vector<std::string> take() { return std::move(m_frames); }

   protected:
    void OnCallstackEntry(CallstackEntryType, CallstackEntry& entry) override
    {
        const std::string line = lineText(entry);
        m_frames.push_back(line.empty() ? shortName(entry) : left(shortName(entry), NAME_COLUMNS) + "  " + line);
    }
    // Modules and errors are for those who look for a fault in the walk.
    void OnOutput(const char*) override {}

   private:
    std::vector<std::string> m_frames;
};

}  // namespace

std::vector<std::string> callStack()
{
    Frames frames;
    frames.ShowCallstack();
    return frames.take();
}

}  // namespace foldertool
