#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace korvale {

/// What one desktop notification said.
struct NotificationRecord {
    qint64 when = 0; ///< milliseconds since 1970, UTC
    QString title;
    QString subtitle; ///< empty for none
    QString message;
    QString link;            ///< empty, or one that may be opened
    bool isHeldBack = false; ///< it was not shown: the user or the policy wants none

    friend bool operator==(const NotificationRecord&, const NotificationRecord&) = default;
};

using NotificationRecords = QList<NotificationRecord>; ///< the oldest first

/// A file of more bytes is none of this program's.
inline constexpr qint64 largestNotificationFile = qint64{1} << 20;

/// Leaves the last 200, and of those the last ones that have 128 Ki characters (UTF-16 units)
/// together; of a longer text than is ever shown its beginning, and no link that is longer.
void keepLast(NotificationRecords& records);

/// What has been kept is at most `largestNotificationFile` bytes long.
[[nodiscard]] QByteArray toJson(const NotificationRecords& records);

/// None when `json` is not what toJson() writes: one record that makes no sense is enough. Links
/// that may not be opened are taken away.
[[nodiscard]] std::optional<NotificationRecords> notificationRecords(const QByteArray& json);

} // namespace korvale
