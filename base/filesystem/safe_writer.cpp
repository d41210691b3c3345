#include "base/filesystem/safe_writer.h"

#include <chrono>
#include <thread>
#include <utility>

#include "base/filesystem/detail/own_items.h"
#include "base/filesystem/detail/system_item.h"
#include "base/filesystem/detail/unique_name.h"
#include "base/filesystem/directory.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/files/new_items.h"
#include "base/platform/files/stream_error.h"
#include "base/platform/never_destroyed.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1
{

namespace
{

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
    return reason == platform::SHARING_VIOLATION || reason == platform::LOCK_VIOLATION;
}

/// Scanners of viruses and the like hold new files for a moment.
bool replacePatiently(const String& draft, const String& target, bool waitForDisk)
{
    const auto end = std::chrono::steady_clock::now() + PATIENCE;
    while (!platform::replaceFile(draft, target, waitForDisk))
    {
        if (!isHeldByAnother(platform::lastError()) || std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(PAUSE);
    }
    return true;
}

/// Nobody's, so what somebody has set in it does not count for the next one.
std::ostream& closedStream() noexcept
{
    thread_local platform::NeverDestroyed<std::ostream> closed(nullptr);
    closed.get().exceptions(std::ios_base::goodbit);
    closed.get().rdbuf(nullptr);
    return closed.get();
}

}  // namespace

struct SafeWriter::Draft
{
    std::shared_ptr<const File> target;
    std::shared_ptr<const File> file;
    std::unique_ptr<std::ofstream> stream;
    /// Why no new file could be made; then there is neither that nor a stream.
    platform::FailedStep failure;

    explicit Draft(const File& named);
    bool open(const File& named);
    /// False, always.
    bool tellFailure() const;
    bool create(const String& name);
    /// False when something could not be written.
    bool finish();
    bool takePlace(Durability durability) const;
};

SafeWriter::Draft::Draft(const File& named)
{
    platform::KeptFailure before;
    if (open(named))
    {
        before.restoreStep();
        return;
    }
    file = nullptr;
    const platform::FailedStep* const step = platform::failedStep();
    failure.path = named.getFullName().view();
    if (step != nullptr && !step->operation.empty()) failure = *step;
}

bool SafeWriter::Draft::tellFailure() const
{
    const bool isKnown = !failure.operation.empty();
    return platform::failStep(isKnown ? failure.code : platform::INVALID_HANDLE,
                              isKnown ? failure.operation : "writeFile", failure.path, failure.target);
}

bool SafeWriter::Draft::open(const File& named)
{
    target = behindLinks(named);
    if (target == nullptr) return false;
    if (!detail::makeWithUniqueName(OXA_TEXT("~"), [&](const String& name) { return create(name); })) return false;
    stream = file->openWrite(std::ios_base::binary | std::ios_base::trunc);
    if (*stream) return true;
    stream.reset();
    detail::removeOwnFile(*file);
    return false;
}

/// What replaces a private file is not to be read by others meanwhile; a new one gets what new files get.
bool SafeWriter::Draft::create(const String& name)
{
    file = File::fromString(*target->getDirectory(), name);
    const String path = file != nullptr ? detail::seamPath(*file) : String();
    if (!path.isNil())
        return target->exists() ? platform::createPrivateFile(path)
                                : platform::touchFile(path) == platform::Touch::CREATED;
    // Others make it when it is opened.
    const bool isTaken = file != nullptr && file->exists();
    if (isTaken) platform::setLastError(detail::NAME_IS_TAKEN);
    return file != nullptr && !isTaken;
}

bool SafeWriter::Draft::finish()
{
    // What failed before may have written all at once, and there is nothing left to fail now.
    if (stream->good()) platform::forgetStreamError();
    stream->flush();
    // Some file systems write only now. Streams of other implementations may have no file.
    if (stream->is_open()) stream->close();
    const DWORD reason = platform::streamError();
    const bool isWhole = stream->good();
    stream.reset();
    return isWhole || platform::failStep(reason, "writeFile", file->getFullName(), target->getFullName());
}

bool SafeWriter::Draft::takePlace(Durability durability) const
{
    const String draftPath = detail::seamPath(*file);
    const String targetPath = detail::seamPath(*target);
    if (draftPath.isNil() || targetPath.isNil()) return file->move(*target, true);
    const bool waitForDisk = durability == Durability::Power;
    if (waitForDisk && !platform::flushToDisk(draftPath)) return false;
    return replacePatiently(draftPath, targetPath, waitForDisk);
}

SafeWriter::SafeWriter(const File& target) : m_draft(std::make_unique<Draft>(target)) {}

SafeWriter::SafeWriter(SafeWriter&& other) noexcept = default;

SafeWriter& SafeWriter::operator=(SafeWriter&& other) noexcept
{
    if (this == &other) return *this;
    discard();
    m_draft = std::move(other.m_draft);
    return *this;
}

SafeWriter::~SafeWriter() { discard(); }

std::ostream& SafeWriter::stream() noexcept
{
    const bool isOpen = m_draft != nullptr && m_draft->stream != nullptr;
    return isOpen ? static_cast<std::ostream&>(*m_draft->stream) : closedStream();
}

bool SafeWriter::commit(Durability durability)
{
    if (m_draft == nullptr) return platform::failStep(platform::INVALID_HANDLE, "writeFile", {});
    // A caller's stream may throw what it could not write; then the end of this removes it.
    const bool isDone =
        m_draft->file != nullptr ? m_draft->finish() && m_draft->takePlace(durability) : m_draft->tellFailure();
    if (isDone) m_draft = nullptr;
    discard();
    return isDone;
}

void SafeWriter::discard() noexcept
{
    if (m_draft == nullptr) return;
    // An open file cannot be removed everywhere.
    m_draft->stream.reset();
    if (m_draft->file != nullptr) detail::removeOwnFile(*m_draft->file);
    m_draft = nullptr;
}

}  // namespace Oxa_1_1
