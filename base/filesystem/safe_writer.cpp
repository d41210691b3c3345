#include "base/filesystem/safe_writer.h"

#include <chrono>
#include <thread>

#include "base/filesystem/detail/system_item.h"
#include "base/filesystem/detail/unique_name.h"
#include "base/filesystem/directory.h"
#include "base/platform/files/new_items.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1
{

namespace
{

constexpr int ATTEMPTS = 100;
constexpr auto PATIENCE = std::chrono::milliseconds(1000);
constexpr auto PAUSE = std::chrono::milliseconds(20);

/// The file that is written: at the end of all links. Empty for a link to nothing.
std::shared_ptr<const File> behindLinks(const File& target)
{
    std::shared_ptr<const File> absolute = target.makeAbsolute();
    const String path = absolute != nullptr ? detail::seamPath(*absolute) : String();
    if (path.isNil() || !platform::isLink(path)) return absolute;
    const Text final = platform::finalPath(path);
    return final.empty() ? nullptr : File::fromString(String(final));
}

bool isHeldByAnother(DWORD reason)
{
    constexpr DWORD SHARING_VIOLATION = 32;
    constexpr DWORD LOCK_VIOLATION = 33;
    return reason == SHARING_VIOLATION || reason == LOCK_VIOLATION;
}

/// Scanners of viruses and the like hold new files for a moment.
bool replacePatiently(const String& draft, const String& target)
{
    const auto end = std::chrono::steady_clock::now() + PATIENCE;
    while (!platform::replaceFile(draft, target))
    {
        const DWORD reason = platform::lastError();
        if (!isHeldByAnother(reason) || std::chrono::steady_clock::now() > end)
        {
            platform::setLastError(reason);
            return false;
        }
        std::this_thread::sleep_for(PAUSE);
    }
    return true;
}

std::ostream& closedStream()
{
    thread_local std::ostream closed(nullptr);
    return closed;
}

}  // namespace

struct SafeWriter::Draft
{
    std::shared_ptr<const File> target;
    std::shared_ptr<const File> file;
    std::unique_ptr<std::ofstream> stream;

    /// Empty when no new file can be made.
    static std::unique_ptr<Draft> of(const File& named);
    bool create() const;
    /// False when something could not be written.
    bool finish();
    bool takePlace(Durability durability) const;
};

std::unique_ptr<SafeWriter::Draft> SafeWriter::Draft::of(const File& named)
{
    auto draft = std::make_unique<Draft>();
    draft->target = behindLinks(named);
    if (draft->target == nullptr) return nullptr;
    for (int attempt = 0; attempt < ATTEMPTS; ++attempt)
    {
        draft->file = File::fromString(*draft->target->getDirectory(), detail::uniqueName(OXA_TEXT("~")));
        if (draft->file == nullptr) return nullptr;
        if (draft->create())
        {
            draft->stream = draft->file->openWrite(std::ios_base::binary | std::ios_base::trunc);
            if (*draft->stream) return draft;
            draft->file->remove();
            return nullptr;
        }
        if (!draft->file->exists()) return nullptr;
    }
    return nullptr;
}

/// What replaces a private file is not to be read by others meanwhile; a new one gets what new files get.
bool SafeWriter::Draft::create() const
{
    const String path = detail::seamPath(*file);
    if (path.isNil()) return !file->exists();
    if (target->exists()) return platform::createPrivateFile(path);
    return platform::touchFile(path) == platform::Touch::CREATED;
}

bool SafeWriter::Draft::finish()
{
    stream->flush();
    // Some file systems write only now. Streams of other implementations may have no file.
    if (stream->is_open()) stream->close();
    const bool isWhole = stream->good();
    stream.reset();
    return isWhole;
}

bool SafeWriter::Draft::takePlace(Durability durability) const
{
    const String draftPath = detail::seamPath(*file);
    const String targetPath = detail::seamPath(*target);
    if (draftPath.isNil() || targetPath.isNil()) return file->move(*target, true);
    const bool flush = durability == Durability::Power;
    if (flush && !platform::flushToDisk(draftPath)) return false;
    if (!replacePatiently(draftPath, targetPath)) return false;
    if (flush) platform::flushToDisk(target->getDirectory()->getFullNameUnicode());
    return true;
}

SafeWriter::SafeWriter(const File& target) : m_draft(Draft::of(target)) {}

SafeWriter::SafeWriter(SafeWriter&& other) noexcept = default;

SafeWriter& SafeWriter::operator=(SafeWriter&& other) noexcept
{
    m_draft.swap(other.m_draft);
    return *this;
}

SafeWriter::~SafeWriter() { discard(); }

std::ostream& SafeWriter::stream() noexcept
{
    return m_draft != nullptr ? static_cast<std::ostream&>(*m_draft->stream) : closedStream();
}

bool SafeWriter::commit(Durability durability)
{
    if (m_draft == nullptr) return false;
    const bool isDone = m_draft->finish() && m_draft->takePlace(durability);
    if (isDone) m_draft = nullptr;
    const DWORD reason = platform::lastError();
    discard();
    if (!isDone) platform::setLastError(reason);
    return isDone;
}

void SafeWriter::discard() noexcept
{
    if (m_draft == nullptr) return;
    // An open file cannot be removed everywhere.
    m_draft->stream.reset();
    m_draft->file->remove();
    m_draft = nullptr;
}

}  // namespace Oxa_1_1
