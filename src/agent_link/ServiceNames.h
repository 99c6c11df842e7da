#pragma once

namespace korvale {

/// The agent service on the system bus.
inline constexpr const char* serviceName = "com.korvale.agent_server";
inline constexpr const char* servicePath = "/com/korvale/agent_server";
inline constexpr const char* serviceInterface = "com.korvale.agent_server";
inline constexpr const char* requestMethod = "Request";
inline constexpr const char* messageSignal = "Message";
/// Signature of a request, a reply and an unsolicited message.
inline constexpr const char* envelopeSignature = "a{sv}";

} // namespace korvale
