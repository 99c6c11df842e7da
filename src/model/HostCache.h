#pragma once

#include "model/JsonParser.h"
#include "model/JsonValue.h"
#include "model/ListFile.h"
#include "model/UnreadableFiles.h"
#include "platform/UserDefaults.h"

#include <QString>

#include <cstdint>
#include <map>
#include <optional>

namespace korvale {

/// The single reader of the folder in which the agent leaves its state as JSON files, and the
/// keeper of the user's choice whether notifications are shown. The agent rewrites the files at any
/// time: each call reads what is on disk, and nothing is cached. A file that is missing, no regular
/// file, too large or not valid JSON is absent, silently. Main thread.
class HostCache {
public:
    /// Reads below KORVALE_SUPPORT_DIR, behind KORVALE_ROOT where that is set.
    explicit HostCache(UserDefaults& defaults);
    HostCache(UserDefaults& defaults, QString folder);

    [[nodiscard]] std::optional<JsonValue> readFile(const QString& name);

    /// The present files among those that the message mask names, under their keys.
    [[nodiscard]] std::map<QString, JsonValue> getLatest(std::uint32_t mask);

    /// As readFile, but a file that is there and cannot be read is a WARN line, once a change of
    /// it; `isUnreadable` says which it is when there is no value.
    [[nodiscard]] std::optional<JsonValue> readFile(const QString& name, bool& isUnreadable);

    /// The list `name`, compared with the one that `last` was remembered of. One that is there and
    /// cannot be read is Unreadable, and a WARN line once a change of it.
    [[nodiscard]] ListRead readList(const QString& name, const ListChecksum& last);

    /// Notifications are on only when the user has chosen so; else the policy decides.
    [[nodiscard]] bool isCurrentUserNotificationOn() const;
    [[nodiscard]] bool hasCurrentUserChangedNotification() const;
    /// What is false is removed, never stored as 0.
    void setCurrentUserNotification(bool on, bool changed);

private:
    [[nodiscard]] QString pathOf(const QString& name) const;
    void setFlag(const QString& key, bool value);

    UserDefaults& m_defaults;
    QString m_folder;
    JsonParser m_parser;
    UnreadableFiles m_unreadable;
};

} // namespace korvale
