#include "model/JsonNames.h"

#include "model/FastHash.h"
#include "model/IndexTable.h"

#include <array>
#include <utility>
#include <vector>

namespace korvale {

namespace {

/// Up to here comparing each with each is cheaper than hashing.
constexpr std::uint32_t fewNames = 8;
/// How far ahead of its use an entry of a large table is fetched from memory.
constexpr std::size_t fetchAhead = 16;

/// Calls `visit` with the node index of each name.
template <typename Visit>
void forEachName(const JsonDocument& document, std::uint32_t object, Visit visit) {
    const std::uint32_t end = document.nodes[object].extent;
    for (std::uint32_t name = object + 1; name < end; name = document.behind(name + 1)) {
        visit(name);
    }
}

std::uint32_t supersedeFew(JsonDocument& document, std::uint32_t object) {
    std::array<std::uint32_t, fewNames> kept{};
    std::uint32_t count = 0;
    forEachName(document, object, [&](std::uint32_t name) {
        const JsonNode later = document.nodes[name];
        std::uint32_t same = 0;
        while (same < count && document.view(document.nodes[kept[same]]) != document.view(later)) {
            ++same;
        }
        if (same < count) {
            document.nodes[kept[same]].superseded = 1;
        } else {
            ++count;
        }
        kept[same] = name;
    });
    return count;
}

std::uint32_t supersedeMany(JsonDocument& document, std::uint32_t object) {
    const std::uint64_t seed = hashSeed();
    std::vector<std::uint64_t> hashes;
    hashes.reserve(document.nodes[object].offset);
    forEachName(document, object, [&](std::uint32_t name) {
        hashes.push_back(fastHash(document.view(document.nodes[name]), seed));
    });
    IndexTable table(hashes.size());
    std::uint32_t left = 0;
    std::size_t position = 0;
    forEachName(document, object, [&](std::uint32_t name) {
        if (position + fetchAhead < hashes.size()) {
            table.prefetch(hashes[position + fetchAhead]);
        }
        const std::string_view text = document.view(document.nodes[name]);
        IndexTable::Entry& entry = table.at(hashes[position++], [&](std::uint32_t other) {
            return document.view(document.nodes[other]) == text;
        });
        if (entry.isNew()) {
            ++left;
        } else {
            document.nodes[entry.index()].superseded = 1;
        }
        entry.setIndex(name);
    });
    if (object == 0) {
        document.nameHashes = std::move(hashes);
    }
    return left;
}

} // namespace

std::uint32_t supersedeNames(JsonDocument& document, std::uint32_t object) {
    return document.nodes[object].offset <= fewNames ? supersedeFew(document, object)
                                                     : supersedeMany(document, object);
}

} // namespace korvale
