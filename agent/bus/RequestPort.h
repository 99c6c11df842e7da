#pragma once

#include "agent/bus/BusInterface.h"

namespace korvale::agent {

class RequestHandler;

/// The interface "com.korvale.agent_server": takes requests out of their envelope and hands them
/// on. What is no envelope gets an error reply.
class RequestPort : public BusInterface {
public:
    /// Bytes under "<DATA>" that are looked at; a longer request is answered with an error.
    static constexpr qsizetype kLongestRequest = qsizetype{1} << 20;

    /// `handler` must outlive this object.
    explicit RequestPort(RequestHandler& handler) : m_handler(handler) {}

    [[nodiscard]] QString interfaceName() const override;
    [[nodiscard]] QString introspection() const override;
    bool handle(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    RequestHandler& m_handler;
};

} // namespace korvale::agent
