#pragma once

#include <QFileDialog>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>
#include <QWidget>

#include <memory>

QT_BEGIN_NAMESPACE
class QDBusConnection;
QT_END_NAMESPACE

namespace korvale {

class PortalSaveDialog;

/// Lets the person choose where a file is to be written, without holding up anything: the desktop
/// portal's dialog, or the toolkit's where there is none. Main thread.
class SaveChooser final : public QObject {
    Q_OBJECT

public:
    /// `window`: what the dialog belongs to and has its colours of.
    explicit SaveChooser(QWidget& window, QObject* parent = nullptr);
    ~SaveChooser() override;

    /// `name`: what is offered for the file, with its suffix. Without a session bus nullptr. A
    /// dialog that is open makes way.
    void ask(const QDBusConnection* sessionBus, const QString& name);

Q_SIGNALS:
    /// An empty place: none was chosen.
    void decided(const QUrl& place);

private:
    void askPortal(const QDBusConnection& sessionBus, const QString& name);
    void askHere(const QString& name);
    void finish(const QUrl& place);

    QWidget& m_window;
    std::unique_ptr<PortalSaveDialog> m_portal; ///< while open
    QPointer<QFileDialog> m_dialog;             ///< while open
};

} // namespace korvale
