#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace korvale {

enum class JsonKind : std::uint8_t { Null, False, True, Number, Text, List, Object };

/// A file's bytes. Shared, as what is shown later points into them.
using JsonBytes = std::shared_ptr<const char[]>;

/// One value, or one member's name, of a parsed document.
/// Numbers and texts: `offset` and `extent` are place and length in the document's bytes (a number
/// as it was spelled, a text without its quotes and escapes). Lists and objects: `offset` is the
/// number of elements or members, `extent` the index of the node behind the container.
struct JsonNode {
    JsonKind kind : 3;
    /// Set for a member's name when a later member has the same one: the member counts as absent.
    std::uint32_t superseded : 1;
    std::uint32_t offset : 28;
    std::uint32_t extent;

    [[nodiscard]] bool isContainer() const { return kind >= JsonKind::List; }
};

/// A parsed text: its nodes in the order of the file (a member's name stands before its value; the
/// first node is the whole), pointing into its bytes. Made by JsonParser only.
struct JsonDocument {
    JsonBytes bytes;
    std::unique_ptr<JsonNode[]> nodes;
    /// fastHash, by hashSeed, of each member's name in the outermost object, superseded ones too;
    /// none where there are few members.
    std::vector<std::uint64_t> nameHashes;

    [[nodiscard]] std::string_view view(JsonNode node) const {
        return {bytes.get() + node.offset, node.extent};
    }
    /// Index of the node behind the value at `index`.
    [[nodiscard]] std::uint32_t behind(std::uint32_t index) const {
        return nodes[index].isContainer() ? nodes[index].extent : index + 1;
    }
};

} // namespace korvale
