#include "model/FileThreatKeys.h"

#include "core/base/Digits.h"
#include "model/FastHash.h"
#include "model/Values.h"

#include <array>
#include <charconv>

namespace korvale {

namespace {

std::uint64_t mixDigit(std::uint64_t hash, char digit) {
    return mixWords(hash ^ 0x8EBC6AF09C88C6E3U,
                    0x589965CC75374CC3U + static_cast<unsigned char>(digit));
}

std::uint64_t mixState(std::uint64_t hash, std::uint32_t state) {
    if (state < 10) { // nearly always
        return mixDigit(hash, static_cast<char>('0' + state));
    }
    std::array<char, 10> digits{};
    const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), state).ptr;
    for (const char* digit = digits.data(); digit != end; ++digit) {
        hash = mixDigit(hash, *digit);
    }
    return hash;
}

} // namespace

FileThreatKeys::FileThreatKeys(const FileThreatRows::Storage& storage)
    : m_storage(storage), m_seed(hashSeed()) {}

// Where the state ends and the identifier begins cannot be told: all digits in front are mixed one
// by one. What follows is hashed faster.
std::uint64_t FileThreatKeys::hash(const FileThreatKey& key) const {
    std::uint64_t hash = mixState(m_seed, key.state);
    std::string made;
    std::string_view rest;
    if (key.id.kind == JsonKind::Text) {
        rest = bytesOf(key.id);
    } else {
        rest = made = printed(key.id);
    }
    for (; !rest.empty() && isDigit(rest.front()); rest.remove_prefix(1)) {
        hash = mixDigit(hash, rest.front());
    }
    return fastHash(rest, hash);
}

bool FileThreatKeys::equal(const FileThreatKey& a, const FileThreatKey& b) const {
    if (a.state == b.state && a.id.kind == JsonKind::Text && b.id.kind == JsonKind::Text) {
        return bytesOf(a.id) == bytesOf(b.id);
    }
    return whole(a) == whole(b);
}

std::string_view FileThreatKeys::bytesOf(JsonNode node) const {
    return {m_storage.bytes.get() + node.offset, node.extent};
}

std::string FileThreatKeys::printed(JsonNode id) const {
    if (id.kind == JsonKind::Null) {
        return {};
    }
    return (id.isContainer() ? m_storage.texts[id.offset] : scalarText(id.kind, bytesOf(id)))
        .toStdString();
}

std::string FileThreatKeys::whole(const FileThreatKey& key) const {
    return std::to_string(key.state).append(printed(key.id));
}

} // namespace korvale
