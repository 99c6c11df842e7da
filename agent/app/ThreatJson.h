#pragma once

#include <QJsonObject>

#include <optional>
#include <string>

namespace korvale::agent {

struct Finding;

/// The members "path" (to be read) and "uri" (exact) of an answer.
void insertPath(QJsonObject& object, const std::string& path);
/// What "uri" or "path" of arguments names; nothing when there is neither, or no absolute path.
[[nodiscard]] std::optional<std::string> pathArgument(const QJsonObject& arguments);
/// A threat as the control interface tells it.
[[nodiscard]] QJsonObject threatObject(const Finding& finding);
/// `bytes` as text; what is no UTF-8 becomes U+FFFD.
[[nodiscard]] QString shownText(const std::string& bytes);

} // namespace korvale::agent
