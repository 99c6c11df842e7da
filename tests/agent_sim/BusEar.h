#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

namespace korvale::sim {

/// Hears what the agent posts, as any process on the bus does. Signals stand under their full
/// names.
class BusEar : public QObject {
    Q_OBJECT
public:
    explicit BusEar(const QString& address);
    ~BusEar() override;

    [[nodiscard]] QDBusConnection bus() const { return QDBusConnection(m_name); }

    QStringList heard;
    QList<QDBusMessage> messages; ///< the unsolicited ones

private Q_SLOTS:
    void hear(const QDBusMessage& signal);

private:
    QString m_name;
};

} // namespace korvale::sim
