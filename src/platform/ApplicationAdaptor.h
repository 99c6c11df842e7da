#pragma once

#include <QDBusAbstractAdaptor>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <functional>

namespace korvale {

/// org.freedesktop.Application (Desktop Entry Specification, "D-Bus Activation"). The program has
/// no documents: to be asked to open one is to be asked to show itself.
class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    /// A function and no signal, as an adaptor's signals go out on the bus.
    /// `action` is one of the desktop entry's, or whatever else the caller said; empty for none.
    using Activated = std::function<void(const QString& activationToken, const QString& action)>;

    ApplicationAdaptor(QObject* parent, Activated activated)
        : QDBusAbstractAdaptor(parent), m_activated(std::move(activated)) {}

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names are the interface's
    void Activate(const QVariantMap& platformData) { activate(platformData); }
    void Open(const QStringList& /*uris*/, const QVariantMap& platformData) {
        activate(platformData);
    }
    void ActivateAction(const QString& name, const QVariantList& /*parameter*/,
                        const QVariantMap& platformData) {
        activate(platformData, name);
    }
    // NOLINTEND(readability-identifier-naming)

private:
    void activate(const QVariantMap& platformData, const QString& action = {}) {
        const QString token = text(platformData, "activation-token");
        m_activated(token.isEmpty() ? text(platformData, "desktop-startup-id") : token, action);
    }
    /// Whoever calls may send anything.
    static QString text(const QVariantMap& data, const char* key) {
        const QVariant value = data.value(QString::fromLatin1(key));
        return value.metaType() == QMetaType::fromType<QString>() ? value.toString() : QString();
    }

    Activated m_activated;
};

} // namespace korvale
