#pragma once

#include <QJsonObject>
#include <QString>

#include <string>

namespace korvale::agent {

/// An answer of the agent as text for a person. Whatever it holds, no name can forge a line or
/// steer a terminal.
[[nodiscard]] std::string renderAnswer(const QString& method, const QJsonObject& answer);

} // namespace korvale::agent
