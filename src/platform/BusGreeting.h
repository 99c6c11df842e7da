#pragma once

#include <QByteArray>

namespace korvale {

/// Everything that a client of a message bus says until it has a unique name, in one go: its
/// credentials, the authentication protocol, and the call Hello.
[[nodiscard]] QByteArray busGreeting();

/// Whether `heard`, all that the bus has said so far, holds its last word on the greeting, be it a
/// welcome or a refusal.
[[nodiscard]] bool isGreetingAnswered(const QByteArray& heard);

} // namespace korvale
