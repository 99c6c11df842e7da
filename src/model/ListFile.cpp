#include "model/ListFile.h"

#include "model/FastHash.h"
#include "model/JsonFingerprint.h"
#include "platform/RegularFile.h"

#include <array>
#include <cstring>
#include <zlib.h>

namespace korvale {

namespace {

/// Size and hash of bytes that come block by block.
class RawChecksum {
public:
    void add(std::span<const char> block) {
        m_hash = fastBlockHash({block.data(), block.size()}, m_hash);
        m_size += block.size();
    }
    [[nodiscard]] ListChecksum result() const { return {m_size, m_hash, 0}; }

private:
    std::uint64_t m_hash = hashSeed();
    std::uint64_t m_size = 0;
};

std::uint32_t contentCrc(const JsonDocument& document) {
    const std::uint64_t image = jsonFingerprint(document, 0);
    std::array<Bytef, sizeof image> bytes{};
    std::memcpy(bytes.data(), &image, sizeof image);
    return static_cast<std::uint32_t>(crc32_z(crc32_z(0, nullptr, 0), bytes.data(), bytes.size()));
}

/// A look at the bytes without keeping them; worth it when the size gives hope.
bool hasBytesOf(RegularFile& file, const ListChecksum& last) {
    if (file.size() != last.size) {
        return false;
    }
    RawChecksum raw;
    return file.readBlocks([&raw](std::span<const char> block) { raw.add(block); }) &&
           raw.result().sameBytes(last);
}

} // namespace

ListRead readListFile(const QString& path, const ListChecksum& last, JsonParser& parser) {
    auto file = RegularFile::open(path);
    if (!file) {
        return {};
    }
    if (hasBytesOf(*file, last)) {
        return {ListState::Unchanged, last, {}};
    }
    // The file may be rewritten meanwhile: checksum and list come from one reading of the bytes.
    RawChecksum raw;
    auto content = file->readAll([&raw](std::span<const char> block) { raw.add(block); });
    if (!content) {
        return {};
    }
    auto document = parser.parse(std::move(content->bytes), content->size);
    if (!document) {
        return {};
    }
    ListChecksum checksum = raw.result();
    JsonValue list(document, 0);
    if (list.size() == 0) {
        return {ListState::Empty, {}, std::move(list)};
    }
    checksum.crc = contentCrc(*document);
    if (checksum.sameContent(last)) {
        return {ListState::Unchanged, checksum, std::move(list)};
    }
    return {ListState::Changed, checksum, std::move(list)};
}

} // namespace korvale
