#include "base/formats/version_block.h"

#include <algorithm>
#include <cstdint>

#include "base/formats/bytes.h"
#include "base/text/scan.h"

namespace Oxa_1_1::formats
{

namespace
{

/// The lengths of the block and of its value, and the kind of the value.
constexpr std::size_t NODE_HEADER = 6;
constexpr std::uint16_t TEXT_KIND = 1;

/// The whole version, kinds of information, tables of texts, texts.
constexpr unsigned TEXT_DEPTH = 3;

constexpr std::size_t FIXED_SIZE = 52;
constexpr std::uint32_t FIXED_SIGNATURE = 0xFEEF04BD;

/// A block of the version. Everything within is aligned from the beginning of the whole, so places count from there.
struct Node
{
    std::size_t end = 0;
    Bytes key;
    Bytes value;
    std::size_t children = 0;
};

/// What lies from `begin` to `end`, as far as that is there.
Bytes cut(Bytes whole, std::size_t begin, std::size_t end)
{
    end = std::min(end, whole.size());
    return begin < end ? whole.subspan(begin, end - begin) : Bytes();
}

/// The block at `begin`, cut at `limit`.
std::optional<Node> readNode(Bytes whole, std::size_t begin, std::size_t limit, unsigned depth)
{
    const Bytes rest = cut(whole, begin, limit);
    if (rest.size() < NODE_HEADER) return std::nullopt;
    const std::size_t length = load16(rest, 0);
    if (length < NODE_HEADER) return std::nullopt;

    Node node;
    node.end = begin + std::min(length, rest.size());
    const std::size_t key = begin + NODE_HEADER;
    node.key = cut(whole, key, node.end);
    node.key = node.key.first(textBytes(node.key));

    const std::size_t value = alignUp4(key + node.key.size() + sizeof(Char));
    const std::size_t valueLength = load16(rest, 2);
    node.children = alignUp4(value + valueLength);
    node.value = cut(whole, value, std::min(value + valueLength, node.end));
    if (depth == TEXT_DEPTH && load16(rest, 4) == TEXT_KIND && valueLength > 0)
    {
        const Bytes text = cut(whole, value, node.end);
        node.value = text.first(textBytes(text));
    }
    return node;
}

bool isKey(const Node& node, TextView name)
{
    if (node.key.size() != name.size() * sizeof(Char)) return false;
    const Text key = copyText(node.key);
    return text::compareUnitsIgnoreCase(key.data(), name.data(), name.size()) == 0;
}

std::optional<Node> findChild(Bytes whole, const Node& parent, TextView name, unsigned depth)
{
    for (std::size_t begin = parent.children; begin < parent.end;)
    {
        const auto child = readNode(whole, begin, parent.end, depth);
        if (!child) return std::nullopt;
        if (isKey(*child, name)) return child;
        begin = alignUp4(child->end);
    }
    return std::nullopt;
}

/// Takes the next key from the front of the path. Empty at its end.
TextView takeKey(TextView& path)
{
    path.remove_prefix(std::min(path.find_first_not_of(Char('\\')), path.size()));
    const TextView key = path.substr(0, path.find(Char('\\')));
    path.remove_prefix(key.size());
    return key;
}

std::optional<Bytes> fixedPart(Bytes value)
{
    if (value.size() < FIXED_SIZE || load32(value, 0) != FIXED_SIGNATURE) return std::nullopt;
    return value.first(FIXED_SIZE);
}

}  // namespace

std::optional<std::span<const std::byte>> queryVersionValue(std::span<const std::byte> block, TextView query)
{
    auto node = readNode(block, 0, block.size(), 0);
    unsigned depth = 0;
    for (TextView key = takeKey(query); node && !key.empty(); key = takeKey(query))
    {
        if (++depth > TEXT_DEPTH) return std::nullopt;
        node = findChild(block, *node, key, depth);
    }
    if (!node) return std::nullopt;
    return depth == 0 ? fixedPart(node->value) : node->value;
}

}  // namespace Oxa_1_1::formats
