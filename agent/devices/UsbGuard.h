#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <optional>
#include <string>

namespace korvale::agent {

/// Hears from USBGuard, where it runs, which devices it refuses. Main thread; never waits.
class UsbGuard : public QObject {
    Q_OBJECT
public:
    explicit UsbGuard(QObject* parent = nullptr) : QObject(parent) {}

    /// The bus to hear on from now on, again after it was lost.
    void use(const QDBusConnection& bus);

Q_SIGNALS:
    /// The device at that port ("1-2") may not be used; or it may.
    void decided(const std::string& port, bool blocked);

private Q_SLOTS:
    void onPolicyApplied(const QDBusMessage& message);

private:
    std::optional<QDBusConnection> m_bus;
};

/// The port in a rule of USBGuard (`… via-port "1-2" …`); empty: there is none.
[[nodiscard]] std::string portOfRule(const std::string& rule);

} // namespace korvale::agent
