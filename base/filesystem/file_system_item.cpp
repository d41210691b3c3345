#include "base/filesystem/file_system_item.h"

#include <mutex>
#include <ostream>
#include <utility>

#include "base/filesystem/detail/held_reports.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/module/module.h"
#include "base/object/creatable_class.h"
#include "base/platform/files/system_path.h"
#include "base/platform/never_destroyed.h"
#include "base/text/character.h"

namespace Oxa_1_1
{

namespace
{

using SharedSink = std::shared_ptr<const FileSystemItem::ErrorSink>;

struct SinkPlace
{
    std::mutex mutex;
    SharedSink sink;
};

SinkPlace& sinkPlace()
{
    static platform::NeverDestroyed<SinkPlace> place;
    return place.get();
}

SharedSink currentSink()
{
    SinkPlace& place = sinkPlace();
    const std::scoped_lock lock(place.mutex);
    return place.sink;
}

}  // namespace

void FileSystemItem::reportError(const String& message)
{
    if (detail::HeldReports::hold(message)) return;
    if (const SharedSink sink = currentSink(); sink != nullptr && *sink) (*sink)(message);
}

FileSystemItem::ErrorSink FileSystemItem::setErrorSink(ErrorSink sink)
{
    auto shared = std::make_shared<const ErrorSink>(std::move(sink));
    SinkPlace& place = sinkPlace();
    {
        const std::scoped_lock lock(place.mutex);
        shared.swap(place.sink);
    }
    return shared != nullptr ? *shared : ErrorSink();
}

const uZClass* FileSystemItem::Class()
{
    class BaseClass final : public CreateableUZClass<FileSystemItem>, public CreateableFromClass<FileSystemItem>
    {
       public:
        BaseClass() : CreateableUZClass(OXA_TEXT("FileSystemItem"), getThisModule(), ClassVersion()) {}
        std::shared_ptr<FileSystemItem> create() const override { return nullptr; }
    };
    static const platform::NeverDestroyed<BaseClass> record;
    return &record.get();
}

FileSystemItem::~FileSystemItem() = default;

const uZClass* FileSystemItem::getClassType() const { return Class(); }

bool FileSystemItem::exists() const { return false; }

std::shared_ptr<FileSystemItem> FileSystemItem::fromExistingString(const String& path)
{
    if (path.isEmpty()) return nullptr;
    detail::HeldReports refusals;
    auto file = File::fromString(path);
    if (file != nullptr)
    {
        refusals.release();
        if (file->exists()) return file;
    }
    auto directory = Directory::fromString(path);
    if (file == nullptr && directory == nullptr) refusals.release();
    refusals.forget();
    return directory != nullptr && directory->exists() ? directory : nullptr;
}

std::shared_ptr<FileSystemItem> FileSystemItem::fromExistingString(const Directory& directory, const String& name)
{
    if (name.isEmpty()) return nullptr;
    const auto file = File::fromString(directory, name);
    return file != nullptr ? fromExistingString(file->getFullName()) : nullptr;
}

std::shared_ptr<const FileSystemItem> FileSystemItem::makeAbsolute() const
{
    if (const auto* const file = dynamic_cast<const File*>(this)) return file->makeAbsolute();
    if (const auto* const directory = dynamic_cast<const Directory*>(this)) return directory->makeAbsolute();
    return nullptr;
}

std::shared_ptr<const FileSystemItem> FileSystemItem::makeRelative(const Directory& reference) const
{
    if (const auto* const file = dynamic_cast<const File*>(this)) return file->makeRelative(reference);
    if (const auto* const directory = dynamic_cast<const Directory*>(this)) return directory->makeRelative(reference);
    return nullptr;
}

std::filesystem::path FileSystemItem::toPath() const { return platform::systemPath(getFullName()); }

Utf8Bytes utf8(const FileSystemItem& item) { return utf8(item.getFullName()); }

std::ostream& operator<<(std::ostream& stream, const FileSystemItem& item) { return stream << item.getFullName(); }

}  // namespace Oxa_1_1

std::size_t std::hash<Oxa_1_1::FileSystemItem>::operator()(const Oxa_1_1::FileSystemItem& item) const
{
    const auto absolute = item.isAbsolute() ? nullptr : item.makeAbsolute();
    Oxa_1_1::Text name((absolute != nullptr ? *absolute : item).getFullName().view());
    for (Oxa_1_1::Char& c : name) c = Oxa_1_1::text::toLower(c);
    return std::hash<Oxa_1_1::Text>{}(name);
}
