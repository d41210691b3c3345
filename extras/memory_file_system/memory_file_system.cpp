#include "extras/memory_file_system/memory_file_system.h"

#include <utility>

#include "extras/memory_file_system/memory_directory.h"
#include "extras/memory_file_system/memory_file.h"

namespace Oxa_1_1
{

namespace
{

class MemoryFileCreator final : public File::ImplCreator
{
   public:
    explicit MemoryFileCreator(std::shared_ptr<MemoryVolume> volume) : m_volume(std::move(volume)) {}

    std::unique_ptr<IFileImpl> create(const Directory& directory, const String& name) const override
    {
        const auto* const impl = dynamic_cast<const MemoryDirectory*>(directory.getImpl());
        if (impl == nullptr || !isMemoryName(name)) return nullptr;
        return std::make_unique<MemoryFile>(impl->place(), name);
    }

    std::unique_ptr<IFileImpl> create(const String& path) const override
    {
        if (path.view().ends_with(OXA_TEXT('/'))) return nullptr;
        auto place = MemoryPlace::parse(path, m_volume);
        if (!place || place->path.empty()) return nullptr;
        const String name = std::move(place->path.back());
        place->path.pop_back();
        return isMemoryName(name) ? std::make_unique<MemoryFile>(std::move(*place), name) : nullptr;
    }

   private:
    std::shared_ptr<MemoryVolume> m_volume;
};

}  // namespace

MemoryFileSystem::MemoryFileSystem()
    : m_volume(std::make_shared<MemoryVolume>()),
      m_directoryCreator(std::make_shared<const Directory::ImplCreator>(
          [volume = m_volume](const String& path) -> std::unique_ptr<IDirectoryImpl>
          {
              auto place = MemoryPlace::parse(path, volume);
              return place ? std::make_unique<MemoryDirectory>(std::move(*place)) : nullptr;
          })),
      m_fileCreator(std::make_shared<const MemoryFileCreator>(m_volume))
{
    Directory::registerImplCreator(m_directoryCreator);
    File::registerImplCreator(m_fileCreator);
}

MemoryFileSystem::~MemoryFileSystem()
{
    File::unregisterImplCreator(m_fileCreator);
    Directory::unregisterImplCreator(m_directoryCreator);
}

}  // namespace Oxa_1_1
