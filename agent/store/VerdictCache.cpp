#include "agent/store/VerdictCache.h"

#include "agent/store/Database.h"
#include "agent/store/Schema.h"
#include "agent/store/VerdictTable.h"

#include <unistd.h>

namespace korvale::agent {
namespace {

Database::Opening openDatabase(const std::string& path, std::unique_ptr<Database>& database,
                               std::string& error) {
    return Database::open(path, Database::Synchronous::Normal, kVerdictSchema, kVerdictVersion,
                          database, error);
}

} // namespace

std::unique_ptr<VerdictCache> VerdictCache::open(const std::string& path, std::string& error) {
    std::unique_ptr<Database> database;
    Database::Opening opening = openDatabase(path, database, error);
    if (opening == Database::Opening::Damaged) {
        for (const char* const tail : {"", "-wal", "-shm"}) {
            ::unlink((path + tail).c_str());
        }
        opening = openDatabase(path, database, error);
    }
    if (opening != Database::Opening::Opened) {
        return nullptr;
    }
    return std::unique_ptr<VerdictCache>(
        new VerdictCache(std::make_unique<VerdictTable>(std::move(database))));
}

VerdictCache::VerdictCache(std::unique_ptr<VerdictTable> table) : m_table(std::move(table)) {}

VerdictCache::~VerdictCache() {
    m_table->flush();
}

void VerdictCache::setSignatureKey(const std::string& key) {
    const std::lock_guard lock(m_mutex);
    m_table->setSignatureKey(key);
}

std::optional<KnownVerdict> VerdictCache::find(const FileIdentity& file) {
    const std::lock_guard lock(m_mutex);
    return m_table->find(file);
}

std::optional<KnownVerdict> VerdictCache::find(const FileIdentity& file, const std::string& key) {
    const std::lock_guard lock(m_mutex);
    return m_table->find(file, key);
}

void VerdictCache::remember(const FileIdentity& file, KnownVerdict verdict) {
    const std::lock_guard lock(m_mutex);
    m_table->put(file, verdict);
}

void VerdictCache::forget(const FileIdentity& file) {
    const std::lock_guard lock(m_mutex);
    m_table->remove(file);
}

bool VerdictCache::flush() {
    const std::lock_guard lock(m_mutex);
    return m_table->flush();
}

std::size_t VerdictCache::size() {
    const std::lock_guard lock(m_mutex);
    return m_table->size();
}

void VerdictCache::trim(std::size_t most) {
    const std::lock_guard lock(m_mutex);
    m_table->flush();
    if (m_table->size() <= most) {
        return;
    }
    m_table->removeOtherSignatures();
    if (m_table->size() > most) {
        m_table->removeAll();
    }
}

} // namespace korvale::agent
