#pragma once

#include "fakes/PrivateSessionBus.h"

#include <QDBusVirtualObject>

#include <functional>
#include <utility>
#include <vector>

namespace korvale::fakes {

/// A service on a private bus, on a connection of its own, that keeps every call it gets and
/// answers as told.
class FakeBusService final : public QDBusVirtualObject {
public:
    /// The reply to a call; a message of type Invalid leaves it without one.
    using Answer = std::function<QDBusMessage(const QDBusMessage& call)>;

    FakeBusService(PrivateSessionBus& bus, QString name, QString path, QString interface)
        : m_connection(bus.connect()),
          m_name(std::move(name)),
          m_path(std::move(path)),
          m_interface(std::move(interface)) {
        m_connection.registerVirtualObject(m_path, this, QDBusConnection::SubPath);
    }
    ~FakeBusService() override { m_connection.unregisterObject(m_path); }

    /// Appears on the bus, or goes from it.
    void appear() { EXPECT_TRUE(m_connection.registerService(m_name)); }
    void vanish() { EXPECT_TRUE(m_connection.unregisterService(m_name)); }

    /// Emits as whoever this is, whether or not it owns the name; returns when the bus has it.
    void emitSignal(const QString& member, const QVariantList& arguments) {
        auto signal = QDBusMessage::createSignal(m_path, m_interface, member);
        signal.setArguments(arguments);
        EXPECT_TRUE(m_connection.send(signal));
        PrivateSessionBus::flush(m_connection);
    }

    /// Sends a reply that `answer` has held back.
    void reply(const QDBusMessage& late) { EXPECT_TRUE(m_connection.send(late)); }

    [[nodiscard]] std::vector<QDBusMessage> callsOf(const QString& member) const {
        std::vector<QDBusMessage> found;
        for (const QDBusMessage& call : calls) {
            if (call.member() == member) {
                found.push_back(call);
            }
        }
        return found;
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override {
        calls.push_back(call);
        const QDBusMessage reply = answer ? answer(call) : call.createReply();
        if (reply.type() != QDBusMessage::InvalidMessage) {
            connection.send(reply);
        }
        return true;
    }

    Answer answer;
    std::vector<QDBusMessage> calls;

private:
    QDBusConnection m_connection;
    QString m_name;
    QString m_path;
    QString m_interface;
};

} // namespace korvale::fakes
