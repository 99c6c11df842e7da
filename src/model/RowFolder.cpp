#include "model/RowFolder.h"

#include <algorithm>

namespace korvale {

void appendFolded(const QString& text, std::string& folded) {
    const QByteArray bytes = text.toCaseFolded().toUtf8();
    folded.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

bool appendFoldedAscii(std::string_view bytes, std::string& folded) {
    unsigned char all = 0;
    for (const char byte : bytes) {
        all |= static_cast<unsigned char>(byte);
    }
    if (all >= 0x80) {
        return false;
    }
    const std::size_t start = folded.size();
    folded.resize(start + bytes.size());
    std::transform(bytes.begin(), bytes.end(), folded.begin() + static_cast<std::ptrdiff_t>(start),
                   [](char byte) {
                       const bool isUpper = byte >= 'A' && byte <= 'Z';
                       return static_cast<char>(isUpper ? byte + ('a' - 'A') : byte);
                   });
    return true;
}

void TextFolder::append(std::size_t index, RowKey key, std::string& folded) {
    if (const std::optional<QString> text = m_batch.text(index, key)) {
        appendFolded(*text, folded);
    }
}

std::unique_ptr<RowFolder> RowBatch::folder() const {
    return std::make_unique<TextFolder>(*this);
}

} // namespace korvale
