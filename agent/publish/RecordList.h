#pragma once

#include <QByteArray>
#include <QHash>
#include <QJsonObject>
#include <QString>

#include <map>
#include <optional>

namespace korvale::agent {

/// Records by key, in the order in which they were added: the content of one list file. (A
/// QJsonObject would sort them by key.)
class RecordList {
public:
    enum class Order { OldestFirst, NewestFirst };

    /// Replaces the record of that key in its place, or adds it as the newest.
    void put(const QString& key, QJsonObject record);
    /// Makes it the newest record, also when the key is known.
    void putAsNewest(const QString& key, QJsonObject record);
    /// False when there is none.
    bool remove(const QString& key);
    /// Forgets the oldest records beyond that number.
    void keepNewest(qsizetype most);
    void clear();
    [[nodiscard]] std::optional<QJsonObject> find(const QString& key) const;
    [[nodiscard]] qsizetype size() const { return m_places.size(); }
    /// One compact JSON object whose members are the records.
    [[nodiscard]] QByteArray toJson(Order order) const;

private:
    struct Record {
        QString key;
        QJsonObject value;
    };

    std::map<qint64, Record> m_records;
    QHash<QString, qint64> m_places;
    qint64 m_nextPlace = 0;
};

/// `text` as a JSON text, quotes included.
[[nodiscard]] QByteArray quotedJson(const QString& text);

} // namespace korvale::agent
