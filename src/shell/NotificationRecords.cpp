#include "shell/NotificationRecords.h"

#include "platform/LinkOpener.h"
#include "platform/SafeText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace korvale {
namespace {

constexpr qsizetype mostRecords = 200;
constexpr qsizetype mostCharacters = qsizetype{128} << 10; ///< six bytes each, at worst
constexpr qsizetype longestText = longestShownText + 1;    ///< so that the cut shows
constexpr double lastMoment = 253402300800000.0;           ///< the year 10000

constexpr QLatin1String whenKey{"when"};
constexpr QLatin1String titleKey{"title"};
constexpr QLatin1String subtitleKey{"subtitle"};
constexpr QLatin1String messageKey{"message"};
constexpr QLatin1String linkKey{"link"};
constexpr QLatin1String heldBackKey{"heldBack"};

void shorten(NotificationRecord& record) {
    for (QString* text : {&record.title, &record.subtitle, &record.message}) {
        text->truncate(longestText);
    }
    if (record.link.size() > longestText) {
        record.link.clear(); // the beginning of an address is another address
    }
}

/// There are few different ones.
void shareTitles(NotificationRecord& record, const NotificationRecord& next) {
    if (record.title == next.title) {
        record.title = next.title;
    }
    if (record.subtitle == next.subtitle) {
        record.subtitle = next.subtitle;
    }
}

qsizetype charactersOf(const NotificationRecord& record) {
    return record.title.size() + record.subtitle.size() + record.message.size() +
           record.link.size();
}

std::optional<NotificationRecord> recordFrom(const QJsonValue& value) {
    const QJsonObject object = value.toObject();
    const double when = object[whenKey].toDouble(-1);
    for (const QLatin1String key : {titleKey, messageKey}) {
        if (object[key].toString().isEmpty()) {
            return std::nullopt;
        }
    }
    if (!(when >= 0 && when < lastMoment)) {
        return std::nullopt;
    }
    const QString link = object[linkKey].toString();
    return NotificationRecord{.when = static_cast<qint64>(when),
                              .title = object[titleKey].toString(),
                              .subtitle = object[subtitleKey].toString(),
                              .message = object[messageKey].toString(),
                              .link = isOpenableLink(link) ? link : QString(),
                              .isHeldBack = object[heldBackKey].toBool()};
}

} // namespace

void keepLast(NotificationRecords& records) {
    qsizetype first = records.size();
    qsizetype characters = 0;
    while (first > 0 && records.size() - first < mostRecords) {
        shorten(records[first - 1]);
        if (first < records.size()) {
            shareTitles(records[first - 1], records[first]);
        }
        characters += charactersOf(records[first - 1]);
        if (characters > mostCharacters) {
            break;
        }
        --first;
    }
    records.remove(0, first);
    records.squeeze(); // it will hardly be longer
}

QByteArray toJson(const NotificationRecords& records) {
    QByteArray json("[");
    for (const NotificationRecord& record : records) { // one by one, for the memory
        json += json.size() > 1 ? "," : "";
        json += QJsonDocument(QJsonObject{{whenKey, record.when},
                                          {titleKey, record.title},
                                          {subtitleKey, record.subtitle},
                                          {messageKey, record.message},
                                          {linkKey, record.link},
                                          {heldBackKey, record.isHeldBack}})
                    .toJson(QJsonDocument::Compact);
    }
    return json + ']';
}

std::optional<NotificationRecords> notificationRecords(const QByteArray& json) {
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray()) {
        return std::nullopt;
    }
    NotificationRecords records;
    const QJsonArray array = document.array();
    for (const QJsonValueConstRef value : array) {
        if (const auto record = recordFrom(value)) {
            records.append(*record);
        } else {
            return std::nullopt;
        }
    }
    keepLast(records);
    return records;
}

} // namespace korvale
