#pragma once

#include "shell/TrayPicture.h"

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QIcon>
#include <QPointer>
#include <QString>

namespace korvale {

/// org.kde.StatusNotifierItem in place of the toolkit's own, which gives the name of the executable
/// for both Id and Title. Everything that is not ours to say, its menu above all, is asked of the
/// toolkit's. Main thread.
class TrayItemAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconThemePath READ none)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(QList<korvale::TrayPicture> IconPixmap READ pictures)
    Q_PROPERTY(QString IconAccessibleDesc READ toolTipText)
    Q_PROPERTY(QString OverlayIconName READ none)
    Q_PROPERTY(QList<korvale::TrayPicture> OverlayIconPixmap READ noPictures)
    Q_PROPERTY(QString AttentionIconName READ none)
    Q_PROPERTY(QList<korvale::TrayPicture> AttentionIconPixmap READ noPictures)
    Q_PROPERTY(QString AttentionMovieName READ none)
    Q_PROPERTY(korvale::TrayToolTip ToolTip READ toolTip)

public:
    /// Takes the place of the adaptor of the toolkit's newest item on the session bus, which owns
    /// it from then on; null when the toolkit has made none. The item keeps working then, under the
    /// toolkit's title.
    static TrayItemAdaptor* takeOverNewest();

    void setPicture(const QIcon& picture);
    void setToolTip(const QString& text);

    [[nodiscard]] QString category() const { return toolkitText("Category"); }
    [[nodiscard]] QString id() const { return toolkitText("Id"); }
    [[nodiscard]] static QString title();
    [[nodiscard]] QString status() const { return toolkitText("Status"); }
    [[nodiscard]] static int windowId() { return 0; }
    [[nodiscard]] QDBusObjectPath menu() const;
    [[nodiscard]] static bool itemIsMenu() { return false; }
    [[nodiscard]] QString iconName() const { return toolkitText("IconName"); }
    [[nodiscard]] QList<TrayPicture> pictures() const;
    [[nodiscard]] TrayToolTip toolTip() const { return {{}, {}, m_toolTip, {}}; }
    /// What GNOME's extension has read aloud; it asks for it with each picture.
    [[nodiscard]] QString toolTipText() const { return m_toolTip; }
    [[nodiscard]] static QString none() { return {}; }
    [[nodiscard]] static QList<TrayPicture> noPictures() { return {}; }

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names are the interface's
    void ProvideXdgActivationToken(const QString& token);
    void ContextMenu(int x, int y);
    void Activate(int x, int y);
    void SecondaryActivate(int /*x*/, int /*y*/) {}
    void Scroll(int /*delta*/, const QString& /*orientation*/) {}

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewAttentionIcon();
    void NewOverlayIcon();
    void NewMenu();
    void NewToolTip();
    void NewStatus(const QString& status);
    // NOLINTEND(readability-identifier-naming)

private:
    TrayItemAdaptor(QObject* item, QDBusAbstractAdaptor* toolkits);
    [[nodiscard]] QString toolkitText(const char* property) const;

    QPointer<QDBusAbstractAdaptor> m_toolkits;
    QIcon m_picture;
    mutable QList<TrayPicture> m_pictures; ///< of it, once somebody has asked
    QString m_toolTip;
};

} // namespace korvale
