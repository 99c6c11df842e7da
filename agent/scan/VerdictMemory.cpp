#include "agent/scan/VerdictMemory.h"

#include "agent/store/VerdictCache.h"

#include <algorithm>
#include <sys/stat.h>
#include <utility>

namespace korvale::agent {

VerdictMemory::VerdictMemory(VerdictCache* cache, const Engine& engine)
    : m_cache(cache), m_engine(engine) {
    static_cast<void>(currentKey());
}

std::string VerdictMemory::settle(const EngineState& state) {
    const std::lock_guard lock(m_mutex);
    settleLocked(state);
    return state.signatureKey;
}

void VerdictMemory::settleLocked(const EngineState& state) {
    if (state.doubts > m_doubts) {
        for (Open& one : m_open) {
            m_doubted.push_back(std::move(one.path));
        }
        m_open.clear();
    } else if (state.proofs > m_proofs) {
        for (const Open& one : m_open) {
            if (one.keeps && m_cache != nullptr) {
                m_cache->remember(one.file, KnownVerdict::Clean);
            }
        }
        m_open.clear();
    }
    m_doubts = std::max(m_doubts, state.doubts); // of two threads, the later news may come first
    m_proofs = std::max(m_proofs, state.proofs);
    if (m_cache != nullptr && (state.signatureKey != m_key || m_key.empty())) {
        m_key = state.signatureKey;
        m_cache->setSignatureKey(m_key);
        for (Open& one : m_open) {
            one.keeps = false; // judged by others
        }
    }
}

bool VerdictMemory::isKnownClean(const WalkedFile& file) const {
    return m_cache != nullptr && file.folder->facts.keepsVerdicts &&
           m_cache->find(file.identity) == KnownVerdict::Clean;
}

VerdictMemory::Begun VerdictMemory::begin(const WalkedFile& file) {
    const EngineState state = m_engine.state();
    return {file.identity, std::chrono::system_clock::now(), settle(state), state.doubts};
}

bool VerdictMemory::mayKeep(const WalkedFile& file, const Begun& begun, const std::string& key) {
    const std::chrono::nanoseconds began = begun.time.time_since_epoch();
    // Of a change that seems to lie ahead (the clock was set back) nothing can be told either.
    const bool young = began - std::chrono::nanoseconds(begun.file.ctimeNs) < tooYoung;
    struct stat status {};
    return file.folder->facts.keepsVerdicts && !young && !begun.key.empty() && begun.key == key &&
           ::fstat(file.descriptor.get(), &status) == 0 &&
           identityOf(status, file.folder->facts.id) == begun.file;
}

bool VerdictMemory::remember(const WalkedFile& file, const Begun& begun, bool provisional) {
    const EngineState state = m_engine.state();
    const bool keeps = mayKeep(file, begun, state.signatureKey);
    const std::lock_guard lock(m_mutex);
    settleLocked(state);
    if (!provisional) {
        if (keeps && m_cache != nullptr) {
            m_cache->remember(begun.file, KnownVerdict::Clean);
        }
        return keeps;
    }
    if (begun.doubts != m_doubts) {
        m_doubted.push_back(file.path());
    } else {
        m_open.push_back({begun.file, keeps, file.path()});
    }
    return false;
}

bool VerdictMemory::isOpen() {
    const std::lock_guard lock(m_mutex);
    return !m_open.empty() || !m_doubted.empty();
}

std::vector<std::string> VerdictMemory::takeDoubted() {
    const EngineState state = m_engine.state();
    const std::lock_guard lock(m_mutex);
    settleLocked(state);
    return std::exchange(m_doubted, {});
}

void VerdictMemory::flush() {
    if (m_cache != nullptr) {
        static_cast<void>(m_cache->flush());
    }
}

} // namespace korvale::agent
