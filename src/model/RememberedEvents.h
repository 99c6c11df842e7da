#pragma once

#include <QByteArrayView>
#include <QCryptographicHash>

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <unordered_set>

namespace korvale {

/// The events already reported. It only ever grows, so it holds a 128-bit digest (BLAKE2s) of each
/// event's identity in place of the text: two identities never meet in practice, nor can anyone
/// make them. Looking one up costs the same however many there are.
class RememberedEvents {
public:
    /// Remembers the identity that `parts`, one behind the other, spell in UTF-8. True when it was
    /// not yet known.
    bool insert(std::initializer_list<QByteArrayView> parts);

    [[nodiscard]] std::size_t size() const { return m_digests.size(); }

private:
    using Digest = std::array<std::uint64_t, 2>;
    struct FirstHalf {
        std::size_t operator()(const Digest& digest) const noexcept { return digest[0]; }
    };

    QCryptographicHash m_hash{QCryptographicHash::Blake2s_128};
    std::unordered_set<Digest, FirstHalf> m_digests;
};

} // namespace korvale
