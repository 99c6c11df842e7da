#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace korvale {

/// The text that `bytes` encode; no value when they are not valid UTF-8. Empty bytes are the empty
/// text.
[[nodiscard]] std::optional<QString> textFromUtf8(QByteArrayView bytes);

} // namespace korvale
