#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>
#include <string_view>

namespace korvale {

// The one way from bytes of others to a text. U+FEFF in front is a character like any other.

/// The text that `bytes` encode; no value when they are not valid UTF-8. Empty bytes are the empty
/// text, never a null one.
[[nodiscard]] std::optional<QString> textFromUtf8(QByteArrayView bytes);

/// The text of bytes that are known to be valid UTF-8.
[[nodiscard]] QString utf8Text(std::string_view valid);

} // namespace korvale
