// Folders, read in large pieces as the system has them.

#include "base/platform/files/detail/native_files.h"
#include "base/platform/system/last_error.h"
#include "base/platform/windows/files/system_names.h"
#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform::native
{

namespace
{

class NativeFolderReader : public FolderReader
{
   public:
    explicit NativeFolderReader(TextView path)
        : m_folder(withSeparator(path)),
          m_search(FindFirstFileExW((m_folder + L'*').c_str(), FindExInfoBasic, &m_found, FindExSearchNameMatch,
                                    nullptr, FIND_FIRST_EX_LARGE_FETCH)),
          m_isFresh(isOpen())
    {
    }

    NativeFolderReader(const NativeFolderReader&) = delete;
    NativeFolderReader& operator=(const NativeFolderReader&) = delete;

    ~NativeFolderReader() override
    {
        if (isOpen()) FindClose(m_search);
    }

    bool isOpen() const { return m_search != INVALID_HANDLE_VALUE; }

    bool nextOf(FolderEntry& entry, EntryKinds kinds) override
    {
        for (;;)
        {
            if (!advance()) return false;
            if (isDots(m_found.cFileName)) continue;
            entry.kind = kindOfFound();
            if (isOf(entry.kind, kinds)) break;
        }
        entry.name = m_found.cFileName;
        return true;
    }

   private:
    EntryKind kindOfFound() const
    {
        const bool isFolder = (m_found.dwFileAttributes & FOLDER) != 0;
        // The tag of what is no link, but marked in the same way by other services, has other bits.
        const bool isLink = (m_found.dwFileAttributes & LINK) != 0 && IsReparseTagNameSurrogate(m_found.dwReserved0);
        if (!isLink) return isFolder ? EntryKind::SUBFOLDER : EntryKind::PLAIN_FILE;
        if (!isFolder) return EntryKind::FILE_LINK;
        // It is marked as a folder even when the folder is gone.
        if (const auto behind = readAttributes(m_folder + m_found.cFileName))
            return (*behind & FOLDER) != 0 ? EntryKind::FOLDER_LINK : EntryKind::FILE_LINK;
        return saysLost(GetLastError()) ? EntryKind::FILE_LINK : EntryKind::UNKNOWN_LINK;
    }

    static bool isDots(TextView name) { return name == L"." || name == L".."; }

    bool advance()
    {
        if (m_isFresh)
        {
            m_isFresh = false;
            return true;
        }
        if (isOpen()) return FindNextFileW(m_search, &m_found) != 0;
        SetLastError(ERROR_NO_MORE_FILES);
        return false;
    }

    static Text withSeparator(TextView path)
    {
        const bool needsSeparator = !path.empty() && TextView(L"\\/:").find(path.back()) == TextView::npos;
        return pathForSystem(path).append(needsSeparator ? L"\\" : L"");
    }

    Text m_folder;
    WIN32_FIND_DATAW m_found{};
    HANDLE m_search;
    /// The first entry comes with opening.
    bool m_isFresh;
};

}  // namespace

std::unique_ptr<FolderReader> openFolder(TextView path)
{
    auto reader = std::make_unique<NativeFolderReader>(path);
    if (reader->isOpen()) return reader;
    // The root of a drive that holds nothing has not even "." and "..".
    const DWORD error = GetLastError();
    const DWORD attributes = error == ERROR_FILE_NOT_FOUND ? GetFileAttributesW(pathForSystem(path).c_str()) : 0;
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FOLDER) != 0) return reader;
    SetLastError(error);
    return nullptr;
}

}  // namespace Oxa_1_1::platform::native
