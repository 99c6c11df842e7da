#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace korvale {

/// The value of `key` in a file of shell-like KEY=VALUE lines (os-release(5), machine-info(5)):
/// the last assignment counts, one pair of quotes and backslashes inside are undone, and a '#' line
/// is a comment. No file, no such key or an empty value is no value.
[[nodiscard]] std::optional<QString> assignedValue(const QString& path, const QByteArray& key);

/// The same in a file's content.
[[nodiscard]] std::optional<QString> assignedValueIn(const QByteArray& content,
                                                     const QByteArray& key);

} // namespace korvale
