// Objects to look at: in their usual states, and such as a debugger meets before and after their lives.

#include <cstring>
#include <memory>
#include <vector>

#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/module/module.h"
#include "base/module/string_resource.h"
#include "base/object/base_node.h"
#include "base/object/info_string_map.h"
#include "base/object/scan_point.h"
#include "base/string/oxa_string.h"

using namespace Oxa_1_1;

namespace
{

struct Survey : BaseNode
{
    const Char* station = OXA_TEXT("north");
};

struct Labelled
{
    virtual ~Labelled() = default;
};
/// A node that does not begin with its root class.
struct Target : Labelled, Survey
{
};

/// Bytes that were never an object of the type.
template <class T>
const T& garbage(unsigned char fill)
{
    static union Bytes
    {
        Bytes() {}
        ~Bytes() {}
        T object;
        unsigned char bytes[sizeof(T)];
    } bytes[3];
    static int next = 0;
    Bytes& place = bytes[next++];
    std::memset(place.bytes, fill, sizeof place.bytes);
    return place.object;
}

void stop(const String& byReference) { static_cast<void>(byReference.isNil()); }

template <class T>
void look(const T&)
{
}

}  // namespace

int main()
{
    const String nil;
    const String empty = String::EMPTY;
    const String text(u"scan009");
    const String quoted(u"a \"b\"\n\u00e4\U0001F600");
    String longText;
    for (int i = 0; i < 50; ++i) longText += u"0123456789";
    String moved(u"far longer than what is kept within the object itself");
    const String taken(std::move(moved));
    const String partOfShort = text.substr(4, 7);
    const String partOfLong = taken.substr(0, 8);
    const std::vector<String> texts{text, nil, empty};

    const SmartPtr<Survey> node = makeNode<Survey>();
    const SmartPtr<BaseNode> sameNode = node;
    const SmartPtr<BaseNode> noNode;
    const SmartPtr<Target> target = makeNode<Target>();
    const std::weak_ptr<WeakHandle> watched = node->getWeakHandle();
    const std::shared_ptr<WeakHandle> handle = watched.lock();
    const std::shared_ptr<WeakHandle> handleOfGone = makeNode<Survey>()->getWeakHandle().lock();
    const std::weak_ptr<WeakHandle> watchedGone = makeNode<Survey>()->getWeakHandle();

    const std::shared_ptr<Directory> folder = Directory::fromString(u"C:\\Data\\2024");
    const std::shared_ptr<const Directory> share = Directory::fromString(u"\\\\server\\scans\\a");
    const std::shared_ptr<const Directory> here = Directory::fromString(u".");
    const std::shared_ptr<const File> file = File::fromString(u"C:\\Data\\scan009.e57");
    const std::shared_ptr<const FileSystemItem> item = File::fromString(u"notes");
    const std::shared_ptr<const File> noFile;

    const Module& module = getThisModule();
    const ClassVersion version{1, 2, 3, 4};
    const uZClass& record = *InfoStringMap::Class();
    const StringResource resource(7, module);
    InfoStringMap infos;
    infos.addInfo(u"scanner", u"\u00c4lpha");
    infos.addInfo(u"distance", 12.5);
    infos.addInfo(u"Operator", String::NIL);
    const Vec3d<float> direction{1.5F, -2, 0};
    const ScanPtColor<Vec3d<double>> point{{1, 2, 3}, 7, {1, 2, 3, 4}};
    const UTF8Interface narrow("\xC3\xA4");

    const String& zeroText = garbage<String>(0);
    const String& badText = garbage<String>(0xA5);
    const String& wildText = garbage<String>(0x01);
    const SmartPtr<Survey>& badNode = garbage<SmartPtr<Survey>>(0xA5);
    const std::weak_ptr<WeakHandle>& badWatched = garbage<std::weak_ptr<WeakHandle>>(0xA5);
    const std::shared_ptr<const File>& badFile = garbage<std::shared_ptr<const File>>(0xA5);
    const Directory& badFolder = garbage<Directory>(0xA5);
    const Directory& zeroFolder = garbage<Directory>(0);
    const uZClass& badRecord = garbage<uZClass>(0xA5);
    const InfoStringMap& badInfos = garbage<InfoStringMap>(0xA5);
    const InfoStringMap& wildInfos = garbage<InfoStringMap>(0);
    const StringResource& badResource = garbage<StringResource>(0xA5);

    stop(text);
    look(taken), look(partOfShort), look(partOfLong), look(quoted), look(longText), look(texts), look(sameNode),
        look(noNode), look(target), look(handle), look(narrow);
    look(handleOfGone), look(watchedGone), look(folder), look(share), look(here), look(file), look(item), look(noFile);
    look(version), look(record), look(resource), look(direction), look(point), look(zeroText), look(badText);
    look(wildText), look(badNode), look(badWatched), look(badFile), look(badFolder), look(zeroFolder), look(badRecord);
    look(badInfos), look(wildInfos), look(badResource);
}
