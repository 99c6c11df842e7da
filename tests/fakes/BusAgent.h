#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <optional>
#include <vector>

namespace korvale {

/// A process on the bus, as the bus sees it, that may or may not own the agent's name. Lives in the
/// thread that makes it.
class BusAgent final : public QDBusVirtualObject {
public:
    /// What to answer; no value: never.
    using Answer = std::function<std::optional<QDBusMessage>(const QDBusMessage&)>;

    explicit BusAgent(const QString& address)
        : m_bus(QDBusConnection::connectToBus(address, nextName())) {
        m_bus.registerVirtualObject(QStringLiteral("/com/korvale/agent_server"), this);
    }
    ~BusAgent() override { die(); }
    BusAgent(const BusAgent&) = delete;
    BusAgent& operator=(const BusAgent&) = delete;

    bool takeName() { return m_bus.registerService(QStringLiteral("com.korvale.agent_server")); }
    bool releaseName() {
        return m_bus.unregisterService(QStringLiteral("com.korvale.agent_server"));
    }
    [[nodiscard]] bool isConnected() const { return m_bus.isConnected(); }
    [[nodiscard]] QString uniqueName() const { return m_bus.baseService(); }
    /// Leaves the bus as a killed process does: without a word.
    void die() {
        const QString name = m_bus.name();
        m_bus = QDBusConnection(QString()); // the connection closes with its last copy
        QDBusConnection::disconnectFromBus(name);
    }

    /// By its full name: interface, dot, signal.
    void post(const QString& name, const QVariantList& arguments = {},
              const QString& path = QStringLiteral("/com/korvale/agent_server")) {
        const qsizetype dot = name.lastIndexOf(u'.');
        QDBusMessage signal = QDBusMessage::createSignal(path, name.left(dot), name.mid(dot + 1));
        signal.setArguments(arguments);
        m_bus.send(signal);
    }
    void postMessage(const QVariantMap& envelope) {
        post(QStringLiteral("com.korvale.agent_server.Message"), {envelope});
    }
    /// What only the bus itself may say.
    void postOwnerChange(const QString& name, const QString& from, const QString& to) {
        QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/DBus"),
                                                         QStringLiteral("org.freedesktop.DBus"),
                                                         QStringLiteral("NameOwnerChanged"));
        signal << name << from << to;
        m_bus.send(signal);
    }
    /// A reply to one of `requests`, later than by `answer`.
    void reply(const QDBusMessage& message) { (void)m_bus.send(message); }
    /// Returns once the bus has dealt with everything posted so far.
    void flush() { (void)m_bus.interface()->isServiceRegistered(QStringLiteral("none.such")); }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        requests.push_back(message);
        if (const std::optional<QDBusMessage> reply = answer(message)) {
            (void)bus.send(*reply);
        }
        return true;
    }

    std::vector<QDBusMessage> requests;
    Answer answer = [](const QDBusMessage& request) {
        return request.createReply(QVariantMap{{QStringLiteral("<DATA>"), QByteArray("{}")}});
    };

private:
    static QString nextName() {
        static int count = 0;
        return QStringLiteral("bus-agent-%1").arg(++count);
    }

    QDBusConnection m_bus;
};

/// An envelope with these bytes.
inline QVariantMap envelopeWith(const QByteArray& data) {
    return {{QStringLiteral("<DATA>"), data}};
}

} // namespace korvale
