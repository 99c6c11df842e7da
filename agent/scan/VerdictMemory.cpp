#include "agent/scan/VerdictMemory.h"

#include "agent/store/VerdictCache.h"

#include <sys/stat.h>

namespace korvale::agent {

VerdictMemory::VerdictMemory(VerdictCache* cache, const Engine& engine)
    : m_cache(cache), m_engine(engine) {
    static_cast<void>(currentKey());
}

std::string VerdictMemory::currentKey() {
    std::string key = m_engine.state().signatureKey;
    const std::lock_guard lock(m_mutex);
    if (m_cache != nullptr && (key != m_key || m_key.empty())) {
        m_key = key;
        m_cache->setSignatureKey(key);
    }
    return key;
}

bool VerdictMemory::isKnownClean(const WalkedFile& file) const {
    return m_cache != nullptr && file.folder->facts.keepsVerdicts &&
           m_cache->find(file.identity) == KnownVerdict::Clean;
}

VerdictMemory::Begun VerdictMemory::begin(const WalkedFile& file) {
    return {file.identity, std::chrono::system_clock::now(), currentKey()};
}

bool VerdictMemory::remember(const WalkedFile& file, const Begun& begun) {
    const std::chrono::nanoseconds began = begun.time.time_since_epoch();
    // Of a change that seems to lie ahead (the clock was set back) nothing can be told either.
    const bool young = began - std::chrono::nanoseconds(begun.file.ctimeNs) < tooYoung;
    struct stat status {};
    if (!file.folder->facts.keepsVerdicts || young || begun.key.empty() ||
        ::fstat(file.descriptor.get(), &status) != 0 ||
        identityOf(status, file.folder->facts.id) != begun.file || currentKey() != begun.key) {
        return false;
    }
    if (m_cache != nullptr) {
        m_cache->remember(begun.file, KnownVerdict::Clean);
    }
    return true;
}

void VerdictMemory::flush() {
    if (m_cache != nullptr) {
        static_cast<void>(m_cache->flush());
    }
}

} // namespace korvale::agent
