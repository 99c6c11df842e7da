#pragma once

#include "model/CCCryptMessage.h"

#include <QDate>

#include <array>
#include <cstdint>

namespace korvale {

/// The key of one day. Wiped when it goes out of scope; never copied.
class UpdaterKey {
public:
    using Bytes = std::array<std::uint8_t, cipherKeyLength>;

    /// `date` is the local one of both sides. It must be valid.
    UpdaterKey(const Bytes& baseKey, QDate date);
    UpdaterKey(const UpdaterKey&) = delete;
    UpdaterKey& operator=(const UpdaterKey&) = delete;
    ~UpdaterKey();

    [[nodiscard]] const Bytes& bytes() const { return m_bytes; }

private:
    Bytes m_bytes;
};

} // namespace korvale
