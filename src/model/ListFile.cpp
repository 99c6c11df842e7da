#include "model/ListFile.h"

#include "model/JsonFingerprint.h"
#include "platform/RegularFile.h"

#include <zlib.h>

namespace korvale {

namespace {

/// Size and crc of bytes that come block by block.
class RawChecksum {
public:
    void add(std::span<const char> block) {
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): zlib's bytes are unsigned
        const auto* bytes = static_cast<const Bytef*>(static_cast<const void*>(block.data()));
        m_crc = crc32_z(m_crc, bytes, block.size());
        m_size += block.size();
    }
    [[nodiscard]] ListChecksum result() const {
        return {m_size, static_cast<std::uint32_t>(m_crc), 0};
    }

private:
    uLong m_crc = crc32_z(0, nullptr, 0);
    std::uint64_t m_size = 0;
};

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
    checksum.content = jsonFingerprint(*document, 0);
    if (checksum.sameContent(last)) {
        return {ListState::Unchanged, checksum, {}};
    }
    return {ListState::Changed, checksum, std::move(list)};
}

} // namespace korvale
