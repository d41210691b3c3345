// A program whose global object works with files when nearly everything else has been destroyed. It ends with 0 when
// all was as before.

#include <cstdlib>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "base/diagnostics/kp_stack_walker.h"
#include "base/diagnostics/windows_error.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/object/uz_class.h"

namespace
{

using namespace Oxa_1_1;

/// Of this run alone.
std::string folderName()
{
    static const unsigned number = std::random_device{}();
    return std::string(OXA_TEST_RUN "_last_object_").append(std::to_string(number));
}

/// Whether all is as it should be.
bool work()
{
    std::vector<String> messages;
    const auto former = FileSystemItem::setErrorSink([&](const String& text) { messages.push_back(text); });
    const auto folder = Directory::fromPath(std::filesystem::temp_directory_path())->appendLevel(folderName());
    const auto file = File::fromString(*folder, "file");
    bool isRight = folder->create() && file->touch() && file->copy(*file, true, nullptr) != 0 &&
                   file->copy(*File::fromString(*folder, "copy"), true, nullptr) == 0 &&
                   folder->collectContents("*", true).size() == 2 && File::fromString("a|b") == nullptr &&
                   messages.size() == 1;
    *file->openWrite() << "text";
    Directory moved(*folder);
    Directory taken(std::move(moved));
    isRight = isRight && Directory::fromString("")->makeAbsolute()->exists() && taken.remove(true) && !folder->exists();
    FileSystemItem::setErrorSink(former);
    const uZClass* const record = file->getClassType();
    isRight = isRight && record->isDerivedFrom(FileSystemItem::Class()) && String(record->name) == "File";
    KpStackWalker walker;
    return isRight && walker.countFrames() > 0 && !getWindowsError(2).isEmpty();
}

class LastObject
{
   public:
    LastObject() = default;
    LastObject(const LastObject&) = delete;
    LastObject& operator=(const LastObject&) = delete;
    ~LastObject()
    {
        if (!work()) std::_Exit(2);
    }
};

const LastObject lastObject;

}  // namespace

// What the library makes when it is first needed is younger than the object.
int main() { return work() ? 0 : 1; }
