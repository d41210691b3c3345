#include "base/formats/reparse_point.h"

#include <cstdint>
#include <cstring>

#include "base/formats/bytes.h"
#include "base/text/character.h"

namespace Oxa_1_1::formats
{

namespace
{

constexpr std::uint32_t MOUNT_POINT = 0xA0000003;
constexpr std::uint32_t SYMBOLIC_LINK = 0xA000000C;

/// Tag, length of what follows, two reserved bytes; then where in the names the system's name and the one to be shown
/// lie. A symbolic link has flags behind that.
constexpr std::size_t LENGTH_AT = 4;
constexpr std::size_t HEAD = 8;
constexpr std::size_t NAMES_OF_MOUNT_POINT = 16;
constexpr std::size_t NAMES_OF_LINK = 20;
constexpr std::size_t LARGEST = 16 * 1024;

constexpr TextView NAMESPACE_PREFIX = OXA_TEXT("\\??\\");
constexpr TextView SHARE_PREFIX = OXA_TEXT("UNC\\");

struct Place
{
    std::size_t offset;
    std::size_t length;
};

Place placeAt(Bytes bytes, std::size_t offset) { return {load16(bytes, offset), load16(bytes, offset + 2)}; }

std::optional<Text> nameAt(Bytes names, Place place)
{
    if (place.length == 0 || place.length % sizeof(Char) != 0 || !holds(names, place.offset, place.length))
        return std::nullopt;
    return copyText(names.subspan(place.offset, place.length));
}

Text withoutPrefix(Text name)
{
    if (!name.starts_with(NAMESPACE_PREFIX)) return name;
    name.erase(0, NAMESPACE_PREFIX.size());
    if (name.starts_with(SHARE_PREFIX)) return Text(2, '\\').append(name, SHARE_PREFIX.size());
    const bool isOnDrive = name.size() > 1 && name[1] == ':';
    return isOnDrive ? name : Text(OXA_TEXT("\\\\?\\")).append(name);
}

bool isAbsoluteOnDrive(TextView path)
{
    return path.size() > 2 && text::detail::isAsciiLetter(path[0]) && path[1] == ':' && path[2] == '\\';
}

class Writer
{
   public:
    void number16(std::size_t value)
    {
        m_bytes.push_back(static_cast<std::byte>(value));
        m_bytes.push_back(static_cast<std::byte>(value >> 8));
    }
    void number32(std::uint32_t value)
    {
        number16(value & 0xFFFF);
        number16(value >> 16);
    }
    /// With a zero behind it.
    void text(TextView units)
    {
        for (const Char c : units) number16(c);
        number16(0);
    }
    std::vector<std::byte> take() { return std::move(m_bytes); }

   private:
    std::vector<std::byte> m_bytes;
};

}  // namespace

std::optional<Text> readReparsePoint(std::span<const std::byte> bytes)
{
    if (!holds(bytes, 0, HEAD)) return std::nullopt;
    const std::uint32_t tag = load32(bytes, 0);
    if (tag != MOUNT_POINT && tag != SYMBOLIC_LINK) return std::nullopt;
    const std::size_t end = HEAD + load16(bytes, LENGTH_AT);
    const std::size_t namesAt = tag == MOUNT_POINT ? NAMES_OF_MOUNT_POINT : NAMES_OF_LINK;
    if (end < namesAt || !holds(bytes, 0, end)) return std::nullopt;
    const Bytes names = bytes.subspan(namesAt, end - namesAt);
    std::optional<Text> target = nameAt(names, placeAt(bytes, HEAD));
    if (!target) target = nameAt(names, placeAt(bytes, HEAD + 4));
    if (!target) return std::nullopt;
    return withoutPrefix(std::move(*target));
}

std::optional<std::vector<std::byte>> makeJunction(TextView target)
{
    if (!isAbsoluteOnDrive(target)) return std::nullopt;
    const Text systemName = Text(NAMESPACE_PREFIX) + Text(target);
    const std::size_t systemBytes = systemName.size() * sizeof(Char);
    const std::size_t shownBytes = target.size() * sizeof(Char);
    const std::size_t namesBytes = systemBytes + shownBytes + 2 * sizeof(Char);
    if (NAMES_OF_MOUNT_POINT + namesBytes > LARGEST) return std::nullopt;
    Writer writer;
    writer.number32(MOUNT_POINT);
    writer.number16(NAMES_OF_MOUNT_POINT - HEAD + namesBytes);
    writer.number16(0);
    writer.number16(0);
    writer.number16(systemBytes);
    writer.number16(systemBytes + sizeof(Char));
    writer.number16(shownBytes);
    writer.text(systemName);
    writer.text(target);
    return writer.take();
}

}  // namespace Oxa_1_1::formats
