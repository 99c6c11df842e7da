#include "model/RememberedEvents.h"

#include <cstring>

namespace korvale {

bool RememberedEvents::insert(std::initializer_list<QByteArrayView> parts) {
    m_hash.reset();
    for (const QByteArrayView part : parts) {
        m_hash.addData(part);
    }
    Digest digest{};
    std::memcpy(digest.data(), m_hash.resultView().data(), sizeof digest);
    return m_digests.insert(digest).second;
}

} // namespace korvale
