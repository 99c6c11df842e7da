#include "model/EventList.h"

#include "model/HostCache.h"
#include "model/HostCacheFiles.h"
#include "model/StateVocabulary.h"
#include "model/Values.h"

#include <utility>

namespace korvale {

QString firstExploitTypeName(const JsonValue& events) {
    for (const JsonMember& record : events.members()) {
        if (record.value.isObject()) {
            const std::optional<QString> type = textOnly(record.value["ItemType"]);
            return type ? memdefTypeString(*type).value_or(QString()) : QString();
        }
    }
    return {};
}

const ListRead& EventList::read() {
    if (!m_read) {
        m_read = m_hostCache.readList(QLatin1String(HostCacheFile::fileProcessEvents),
                                      m_remembered.lastEventsCRC);
        if (m_read->state == ListState::Unchanged && !m_read->list.isNull()) {
            // The same members in another order: another one may be the first.
            m_remembered.lastEventsType = korvale::firstExploitTypeName(m_read->list);
        }
    }
    return *m_read;
}

QString EventList::firstExploitTypeName() {
    const ListRead& events = read();
    return events.state == ListState::Unchanged ? m_remembered.lastEventsType
                                                : korvale::firstExploitTypeName(events.list);
}

std::optional<JsonValue> EventList::takeChanged() {
    read();
    ListRead events = std::move(*m_read);
    m_read.reset();
    if (events.state == ListState::Unchanged) {
        m_remembered.lastEventsCRC = events.checksum; // it knows the present bytes
        return std::nullopt;
    }
    if (events.state != ListState::Changed) {
        return std::nullopt;
    }
    m_remembered.lastEventsCRC = events.checksum;
    m_remembered.lastEventsType = korvale::firstExploitTypeName(events.list);
    return std::move(events.list);
}

} // namespace korvale
