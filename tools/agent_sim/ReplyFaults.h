#pragma once

#include <QByteArray>
#include <QDBusMessage>
#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace korvale::sim {

/// Makes one malformed reply to `request`.
using FaultyReply = QDBusMessage (*)(const QDBusMessage& request);

/// How replies differ from what the agent would say.
struct ReplyFaults {
    bool hang = false; ///< requests are accepted and never answered
    FaultyReply malformed = nullptr;
    QHash<QString, QByteArray> replaced; ///< by command: the bytes under "<DATA>"
    int delayMilliseconds = 0;

    void clear() { *this = ReplyFaults(); }
};

/// The maker of that kind ("bad-json"); null for an unknown kind.
[[nodiscard]] FaultyReply faultyReply(const QString& kind);
[[nodiscard]] QStringList faultyReplyKinds();

} // namespace korvale::sim
