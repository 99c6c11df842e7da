#include "model/UpdaterKey.h"

#include <cstring>

namespace korvale {

UpdaterKey::UpdaterKey(const Bytes& baseKey, QDate date) : m_bytes(baseKey) {
    const auto dayOfMonth = static_cast<std::size_t>(date.day());
    const auto dayOfYear = static_cast<std::size_t>(date.dayOfYear());
    const auto weekday = static_cast<std::size_t>(date.dayOfWeek() % 7); // Sunday is 0
    m_bytes[dayOfMonth] = static_cast<std::uint8_t>(dayOfYear % 255);
    // The second write wins where both meet.
    m_bytes[4 * weekday] = static_cast<std::uint8_t>(dayOfMonth * weekday % 256);
}

UpdaterKey::~UpdaterKey() {
    explicit_bzero(m_bytes.data(), m_bytes.size());
}

} // namespace korvale
