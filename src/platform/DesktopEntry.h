#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvale {

/// What the program wants to know of an application's desktop entry (Desktop Entry Specification).
struct DesktopEntry {
    QString name;        ///< in the user's language where it has one
    std::string program; ///< first word of "Exec": a path, or a name to look up in PATH
    bool isShown = true; ///< in menus: "NoDisplay" is not set
};

/// The entry in `content`; no value when it is not an application's, is hidden, or lacks "Name" or
/// "Exec". `languages` are the keys to look for between brackets, the most wanted first.
[[nodiscard]] std::optional<DesktopEntry>
parseDesktopEntry(std::string_view content, const std::vector<QByteArray>& languages);

/// False when no line of `content` is an "Exec" whose first word `isWanted`: then parseDesktopEntry
/// gives no entry with such a program. Much cheaper than that, as hardly a line is looked into.
[[nodiscard]] bool mayStart(std::string_view content,
                            const std::function<bool(std::string_view)>& isWanted);

} // namespace korvale
