#pragma once

#include "platform/NameOwner.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QUrl>

#include <vector>

namespace korvale {

/// The desktop portal's dialog for the place of a new file (org.freedesktop.portal.FileChooser),
/// used without ever waiting for it. What others than the portal that was asked send is not heard.
/// Main thread.
class PortalSaveDialog final : public QObject {
    Q_OBJECT

public:
    explicit PortalSaveDialog(const QDBusConnection& sessionBus, QObject* parent = nullptr);
    /// Takes a dialog away that is still open.
    ~PortalSaveDialog() override;

    /// Once. `parentWindow` as the portal names windows, or empty; `name` is offered for the file.
    void ask(const QString& parentWindow, const QString& title, const QString& name);

Q_SIGNALS:
    /// The person has chosen, or has not: empty. Also empty when the portal goes.
    void decided(const QUrl& place);
    /// There is no such portal, or it does not answer in time: the person was asked nothing.
    void missing();

private Q_SLOTS:
    void responded(const QDBusMessage& message);

private:
    void takeReply(const QDBusMessage& reply);
    void close();

    QDBusConnection m_bus;
    NameOwner m_owner;
    QString m_portal; ///< unique name of the one that was asked, once it has answered
    QString m_request;
    std::vector<QDBusMessage> m_early; ///< came before it was known whose answer counts
    bool m_isOpen = false;             ///< or may be
};

} // namespace korvale
