#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/formats/resource_index.h"
#include "base/text/utf8.h"
#include "tests/text/exact_buffer.h"

/// Files for the tests of readers, and descriptions of what these find.
namespace Oxa_1_1::test
{

inline std::string readFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline std::string readData(const std::string& name) { return readFile(std::string(OXA_TEST_DATA) + "/" + name); }

inline std::span<const std::byte> asBytes(std::string_view bytes) { return std::as_bytes(std::span(bytes)); }

/// The units that `bytes` hold.
inline Text textOf(std::span<const std::byte> bytes)
{
    Text text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        text += static_cast<Char>(std::to_integer<unsigned>(bytes[i]) | std::to_integer<unsigned>(bytes[i + 1]) << 8);
    return text;
}

/// Puts numbers and texts behind each other as files hold them.
class Writer
{
   public:
    Writer& number16(std::size_t value)
    {
        for (int shift = 0; shift < 16; shift += 8) m_bytes += static_cast<char>(value >> shift & 0xFF);
        return *this;
    }

    Writer& number32(std::size_t value) { return number16(value & 0xFFFF).number16(value >> 16 & 0xFFFF); }

    Writer& text(TextView units)
    {
        for (const Char c : units) number16(c);
        return *this;
    }

    Writer& raw(std::string_view bytes)
    {
        m_bytes += bytes;
        return *this;
    }

    Writer& padTo(std::size_t size)
    {
        m_bytes.resize(std::max(size, m_bytes.size()));
        return *this;
    }

    Writer& align() { return padTo((m_bytes.size() + 3) / 4 * 4); }

    std::size_t size() const { return m_bytes.size(); }
    const std::string& bytes() const { return m_bytes; }

   private:
    std::string m_bytes;
};

inline std::string describe(const formats::ResourceKey& key)
{
    return key.isText() ? text::encodeUtf8(key.name) : std::string("#").append(std::to_string(key.id));
}

inline std::string describe(const formats::ResourceEntry& entry)
{
    return describe(entry.type) + " " + describe(entry.name) + " " + std::to_string(entry.language) + ": " +
           std::to_string(entry.bytes.size());
}

inline std::vector<std::string> describe(std::span<const formats::ResourceEntry> entries)
{
    std::vector<std::string> lines;
    for (const auto& entry : entries) lines.push_back(describe(entry));
    return lines;
}

}  // namespace Oxa_1_1::test
