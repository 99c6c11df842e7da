#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace korvale {

/// What the program wants to know of an application's desktop entry (Desktop Entry Specification).
struct DesktopEntry {
    QString name;        ///< in the user's language where it has one
    QByteArray program;  ///< first word of "Exec": a path, or a name to look up in PATH
    bool isShown = true; ///< in menus: "NoDisplay" is not set
};

/// The entry in `content`; no value when it is not an application's, is hidden, or lacks "Name" or
/// "Exec". `languages` are the keys to look for between brackets, the most wanted first.
[[nodiscard]] std::optional<DesktopEntry>
parseDesktopEntry(const QByteArray& content, const std::vector<QByteArray>& languages);

} // namespace korvale
