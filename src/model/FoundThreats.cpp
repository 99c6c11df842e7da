#include "model/FoundThreats.h"

#include "model/FastHash.h"
#include "model/HostCache.h"
#include "model/HostCacheFiles.h"
#include "model/StateVocabulary.h"
#include "model/Values.h"

#include <QSet>

namespace korvale {
namespace {

JsonValue listOf(HostCache& hostCache, const char* file) {
    return hostCache.readFile(QLatin1String(file)).value_or(JsonValue());
}

/// Of all that makes a record another one.
std::uint64_t hashOf(const JsonValue& name, const JsonValue& record) {
    std::uint64_t hash = fastHash(name.utf8(), hashSeed());
    for (const char* member : {"State", "ID", "Event", "When"}) {
        hash = fastHash(valueText(record[member]).toStdString(), hash);
    }
    return hash;
}

bool isBelow(const QString& path, const QString& folder) {
    return folder.isEmpty() || folder == u"/" ||
           (path.startsWith(folder) && path.size() > folder.size() && path[folder.size()] == u'/');
}

/// An event that says that something bad came up.
bool isThreatEvent(const JsonValue& record) {
    const std::uint32_t event = unsigned32Value(record["Event"]);
    return textOnly(record["Category"]) == QStringLiteral("Threat") &&
           (event == EventBit::detected || event == EventBit::quarantined);
}

} // namespace

FoundThreats::FoundThreats(HostCache& hostCache) : m_hostCache(hostCache) {
    for (const char* file : {HostCacheFile::fileStates, HostCacheFile::fileProcessEvents}) {
        const JsonValue list = listOf(hostCache, file);
        for (const JsonMember& member : list.members()) {
            m_known.insert(hashOf(member.name, member.value));
        }
    }
}

bool FoundThreats::isNew(const JsonValue& name, const JsonValue& record) const {
    return !m_known.contains(hashOf(name, record));
}

std::vector<FoundThreat> FoundThreats::below(const QString& folder) const {
    using namespace FileStateBit;
    std::vector<FoundThreat> found;
    QSet<QString> decided;
    const JsonValue files = listOf(m_hostCache, HostCacheFile::fileStates);
    for (const auto& [name, record] : files.members()) {
        const QString path = valueText(name);
        const std::uint32_t state = unsigned32Value(record["State"]);
        if (!record.isObject() || !isBelow(path, folder)) {
            continue;
        }
        const bool isBad = (state & (unsafe | abnormal | quarantined)) != 0;
        const bool isOpen = (state & quarantined) == 0;
        if ((state & waived) != 0) {
            decided.insert(path);
        } else if (isBad && (isOpen || isNew(name, record))) {
            found.push_back({path, state});
            decided.insert(path);
        }
    }
    // What was taken before at the same path stands in the first list as it did.
    const JsonValue events = listOf(m_hostCache, HostCacheFile::fileProcessEvents);
    for (const auto& [name, record] : events.members()) {
        const QString path = textOnly(record["Path"]).value_or(QString());
        if (isThreatEvent(record) && isBelow(path, folder) && isNew(name, record) &&
            !decided.contains(path)) {
            found.push_back({path, unsigned32Value(record["State"])});
            decided.insert(path);
        }
    }
    return found;
}

} // namespace korvale
