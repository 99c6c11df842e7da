#pragma once

#include <QDBusVirtualObject>

#include <vector>

namespace korvale::agent {

class BusInterface;

/// The agent's object on the bus: hands each call to the interface it is for. A call that names no
/// interface goes to the first. Virtual, so that replies of any signature can be sent.
class AgentObject : public QDBusVirtualObject {
    Q_OBJECT
public:
    /// The interfaces must outlive this object.
    explicit AgentObject(std::vector<BusInterface*> interfaces, QObject* parent = nullptr);

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    [[nodiscard]] QString introspect(const QString& path) const override;

private:
    std::vector<BusInterface*> m_interfaces;
};

} // namespace korvale::agent
