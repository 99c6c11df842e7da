#pragma once

#include <QByteArray>

#include <optional>

namespace korvale {

// Settings as "key=value" lines. Those of the section [General], and those above any title, count;
// of a key that stands there twice the last. Nothing but the text of a value is made of it.

/// The value of `key` in `settings`, without the quotes around it.
[[nodiscard]] std::optional<QByteArray> iniValue(const QByteArray& settings, const QByteArray& key);

/// The settings with another value of `key`, or without it; every other line stays as it is.
[[nodiscard]] QByteArray withIniValue(const QByteArray& settings, const QByteArray& key,
                                      const std::optional<QByteArray>& value);

} // namespace korvale
