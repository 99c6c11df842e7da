#pragma once

#include <QByteArray>
#include <QString>

namespace korvale {

/// A folder that somebody named at a terminal.
struct FolderToScan {
    QString path;    ///< absolute, without links; empty when there is a refusal
    QString refusal; ///< one sentence, safe for a terminal

    /// A path, or the URI of a file. The agent knows neither the present folder nor the links on
    /// the way, and names what it finds by where it is.
    [[nodiscard]] static FolderToScan named(const QByteArray& argument);
};

} // namespace korvale
