#include "examples/foldertool/temporary_folder.h"

#include "examples/foldertool/failure.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/system.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace fs = std::filesystem;

namespace
{

/// Where there is none yet: foldertool001, foldertool002 and so on.
SharedFolder makeNewFolder(const Directory& place)
{
    std::error_code error;
    String name(OXA_TEXT("foldertool001"));
    auto folder = place.appendLevel(name);
    while (!fs::create_directory(folder->toPath(), error) && !error)
    {
        name.incrementIndex();
        folder = place.appendLevel(name);
    }
    fs::permissions(folder->toPath(), fs::perms::owner_all, error);
    if (error) throw Failure(text(IDS_NOT_MADE, {pathText(*folder), error.message()}));
    return folder;
}

}  // namespace

TemporaryFolder::TemporaryFolder(unsigned long long bytes)
{
    std::error_code error;
    const fs::path path = fs::temp_directory_path(error);
    const auto place = error ? nullptr : Directory::fromPath(fs::absolute(path, error));
    if (place == nullptr) throw Failure(text(IDS_NO_TEMPORARY_FOLDER));
    const fs::space_info room = fs::space(path, error);
    if (!error && room.available < bytes)
        throw Failure(text(IDS_NO_ROOM, {system::bytesOf(path), byteText(bytes), byteText(room.available)}));
    m_folder = makeNewFolder(*place);
}

TemporaryFolder::~TemporaryFolder()
{
    if (!removeFolder(*m_folder)) complain(text(IDS_NOT_REMOVED, {pathText(*m_folder), lastReason()}));
}

bool removeFolder(const Directory& folder)
{
    for (const SharedFile& file : folder.collectFiles(OXA_TEXT("*"), true))
        if (file->isReadOnly()) file->unsetAsReadOnly();
    return folder.remove(true);
}

}  // namespace foldertool
