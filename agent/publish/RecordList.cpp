#include "agent/publish/RecordList.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace korvale::agent {
namespace {

void appendMember(QByteArray& json, const QString& key, const QJsonObject& value) {
    if (json.size() > 1) {
        json += ',';
    }
    json += quotedJson(key) + ':' + QJsonDocument(value).toJson(QJsonDocument::Compact);
}

} // namespace

QByteArray quotedJson(const QString& text) {
    const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return list.mid(1, list.size() - 2);
}

void RecordList::put(const QString& key, QJsonObject record) {
    const auto place = m_places.constFind(key);
    if (place == m_places.constEnd()) {
        putAsNewest(key, std::move(record));
        return;
    }
    m_records[*place].value = std::move(record);
}

void RecordList::putAsNewest(const QString& key, QJsonObject record) {
    remove(key);
    m_records.emplace(m_nextPlace, Record{key, std::move(record)});
    m_places.insert(key, m_nextPlace++);
}

bool RecordList::remove(const QString& key) {
    const auto place = m_places.constFind(key);
    if (place == m_places.constEnd()) {
        return false;
    }
    m_records.erase(*place);
    m_places.erase(place);
    return true;
}

void RecordList::keepNewest(qsizetype most) {
    while (size() > most) {
        m_places.remove(m_records.begin()->second.key);
        m_records.erase(m_records.begin());
    }
}

void RecordList::clear() {
    m_records.clear();
    m_places.clear();
}

std::optional<QJsonObject> RecordList::find(const QString& key) const {
    const auto place = m_places.constFind(key);
    if (place == m_places.constEnd()) {
        return std::nullopt;
    }
    return m_records.at(*place).value;
}

QByteArray RecordList::toJson(Order order) const {
    QByteArray json("{");
    if (order == Order::OldestFirst) {
        for (const auto& [place, record] : m_records) {
            appendMember(json, record.key, record.value);
        }
    } else {
        for (auto entry = m_records.rbegin(); entry != m_records.rend(); ++entry) {
            appendMember(json, entry->second.key, entry->second.value);
        }
    }
    return json + '}';
}

} // namespace korvale::agent
