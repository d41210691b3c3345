#include "extras/memory_file_system/memory_volume.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace Oxa_1_1
{

namespace
{

std::uint64_t now()
{
    using Ticks = std::chrono::duration<std::uint64_t, std::ratio<1, 10'000'000>>;
    constexpr std::uint64_t FROM_1601_TO_1970 = 116'444'736'000'000'000;
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<Ticks>(sinceEpoch).count() + FROM_1601_TO_1970;
}

bool isSamePath(const MemoryPath& a, const MemoryPath& b)
{
    return std::ranges::equal(a, b, [](const String& x, const String& y) { return x.compareIgnoreCase(y) == 0; });
}

}  // namespace

struct MemoryVolume::Node
{
    bool isFolder = false;
    bool isReadOnly = false;
    std::uint64_t created = now();
    std::uint64_t written = created;
    std::string content;
    Children children;
};

MemoryVolume::MemoryVolume() : m_root(std::make_unique<Node>()) { m_root->isFolder = true; }

MemoryVolume::~MemoryVolume() = default;

void MemoryVolume::fail(MemoryOperation operation, MemoryError code)
{
    const std::scoped_lock lock(m_mutex);
    m_faults[operation] = code;
}

void MemoryVolume::setCapacity(std::uint64_t bytes)
{
    const std::scoped_lock lock(m_mutex);
    m_capacity = bytes;
}

void MemoryVolume::vanishWhenListed(const MemoryPath& path)
{
    const std::scoped_lock lock(m_mutex);
    m_vanishing.push_back(path);
}

void MemoryVolume::setHandsOver(bool handsOver)
{
    const std::scoped_lock lock(m_mutex);
    m_handsOver = handsOver;
}

bool MemoryVolume::handsOver() const
{
    const std::scoped_lock lock(m_mutex);
    return m_handsOver;
}

MemoryVolume::Node* MemoryVolume::find(const MemoryPath& path) const
{
    Node* node = m_root.get();
    for (const String& name : path)
    {
        const auto found = node->children.find(name);
        if (found == node->children.end()) return nullptr;
        node = found->second.get();
    }
    return node;
}

MemoryVolume::Node* MemoryVolume::findParent(const MemoryPath& path) const
{
    if (path.empty()) return nullptr;
    Node* const parent = find(MemoryPath(path.begin(), path.end() - 1));
    return parent != nullptr && parent->isFolder ? parent : nullptr;
}

MemoryError MemoryVolume::fault(MemoryOperation operation) const
{
    const auto found = m_faults.find(operation);
    return found != m_faults.end() ? found->second : memory_error::NONE;
}

MemoryError MemoryVolume::place(const MemoryPath& path, Node*& parent) const
{
    parent = findParent(path);
    return parent != nullptr ? memory_error::NONE : memory_error::PATH_NOT_FOUND;
}

std::optional<MemoryVolume::Status> MemoryVolume::status(const MemoryPath& path) const
{
    const std::scoped_lock lock(m_mutex);
    const Node* const node = find(path);
    if (node == nullptr) return std::nullopt;
    return Status{.isFolder = node->isFolder,
                  .isReadOnly = node->isReadOnly,
                  .size = node->content.size(),
                  .created = node->created,
                  .written = node->written};
}

MemoryError MemoryVolume::read(const MemoryPath& path, std::string& content) const
{
    const std::scoped_lock lock(m_mutex);
    if (const MemoryError code = fault(MemoryOperation::READ)) return code;
    const Node* const node = find(path);
    if (node == nullptr) return memory_error::NOT_FOUND;
    if (node->isFolder) return memory_error::ACCESS_DENIED;
    content = node->content;
    return memory_error::NONE;
}

MemoryError MemoryVolume::write(const MemoryPath& path, std::string content)
{
    const std::scoped_lock lock(m_mutex);
    Node* parent = nullptr;
    if (const MemoryError code = fault(MemoryOperation::WRITE)) return code;
    if (const MemoryError code = place(path, parent)) return code;
    const auto found = parent->children.find(path.back());
    Node* node = found != parent->children.end() ? found->second.get() : nullptr;
    if (node != nullptr && (node->isFolder || node->isReadOnly)) return memory_error::ACCESS_DENIED;
    const std::uint64_t before = node != nullptr ? node->content.size() : 0;
    if (m_used - before + content.size() > m_capacity) return memory_error::DISK_FULL;
    if (node == nullptr) node = (parent->children[path.back()] = std::make_unique<Node>()).get();
    m_used += content.size() - before;
    node->content = std::move(content);
    node->written = now();
    return memory_error::NONE;
}

MemoryError MemoryVolume::touch(const MemoryPath& path)
{
    const std::scoped_lock lock(m_mutex);
    if (const MemoryError code = fault(MemoryOperation::WRITE)) return code;
    Node* const node = find(path);
    if (node == nullptr) return memory_error::NOT_FOUND;
    if (node->isReadOnly) return memory_error::ACCESS_DENIED;
    node->written = now();
    return memory_error::NONE;
}

MemoryError MemoryVolume::setReadOnly(const MemoryPath& path, bool isReadOnly)
{
    const std::scoped_lock lock(m_mutex);
    Node* const node = find(path);
    if (node == nullptr) return memory_error::NOT_FOUND;
    node->isReadOnly = isReadOnly;
    return memory_error::NONE;
}

MemoryError MemoryVolume::createFolder(const MemoryPath& path)
{
    const std::scoped_lock lock(m_mutex);
    Node* parent = nullptr;
    if (const MemoryError code = fault(MemoryOperation::CREATE_FOLDER)) return code;
    if (const MemoryError code = place(path, parent)) return code;
    auto& child = parent->children[path.back()];
    if (child != nullptr) return memory_error::ALREADY_EXISTS;
    child = std::make_unique<Node>();
    child->isFolder = true;
    return memory_error::NONE;
}

MemoryError MemoryVolume::remove(const MemoryPath& path)
{
    const std::scoped_lock lock(m_mutex);
    if (const MemoryError code = fault(MemoryOperation::REMOVE)) return code;
    return removeUnlocked(path);
}

MemoryError MemoryVolume::removeUnlocked(const MemoryPath& path)
{
    const Node* const node = find(path);
    if (node == nullptr) return memory_error::NOT_FOUND;
    if (node->isReadOnly || path.empty()) return memory_error::ACCESS_DENIED;
    if (!node->children.empty()) return memory_error::NOT_EMPTY;
    m_used -= node->content.size();
    findParent(path)->children.erase(path.back());
    return memory_error::NONE;
}

MemoryError MemoryVolume::rename(const MemoryPath& from, const MemoryPath& to)
{
    const std::scoped_lock lock(m_mutex);
    Node* parent = nullptr;
    if (const MemoryError code = fault(MemoryOperation::RENAME)) return code;
    if (find(from) == nullptr) return memory_error::NOT_FOUND;
    if (const MemoryError code = place(to, parent)) return code;
    Children& source = findParent(from)->children;
    if (!isSamePath(from, to) && find(to) != nullptr)
        if (const MemoryError code = removeUnlocked(to)) return code;
    auto handle = source.extract(from.back());
    handle.key() = to.back();
    parent->children.insert(std::move(handle));
    return memory_error::NONE;
}

std::vector<MemoryVolume::Entry> MemoryVolume::list(const MemoryPath& path)
{
    const std::scoped_lock lock(m_mutex);
    std::vector<Entry> entries;
    const Node* const node = find(path);
    if (node == nullptr) return entries;
    for (const auto& [name, child] : node->children) entries.push_back({name, child->isFolder});
    std::erase_if(m_vanishing,
                  [&](const MemoryPath& vanishing)
                  {
                      const bool isHere = findParent(vanishing) == node;
                      if (isHere) removeUnlocked(vanishing);
                      return isHere;
                  });
    return entries;
}

}  // namespace Oxa_1_1
