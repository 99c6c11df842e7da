#pragma once

#include "core/base/AppState.h"
#include "core/base/Displays.h"

#include <QIcon>
#include <QObject>
#include <QString>

#include <optional>

namespace korvale {

class Resources;

/// The program's status item: its colour, pictures and tooltip, whether or not a tray shows them
/// (TrayIcon does, where there is one). Main thread.
class StatusItem : public QObject, public IconDisplay {
    Q_OBJECT

public:
    /// Follows the appearance that `resources` knows. Both outlive the object.
    StatusItem(AppState& state, const Resources& resources, QObject* parent = nullptr);

    /// At launch: the item with the product's name as its tooltip, before any colour.
    void create();

    /// The one way to another colour. A driver that is not connected is red whatever is asked for,
    /// except while the agent does not run.
    void setIconDispColor(IconColor color) override;
    /// Asks for the present colour again, so that the pictures of a new appearance are taken.
    void setCurrentIconDispColor();

    /// The picture in the tray: the alternate one while the menu is open.
    [[nodiscard]] QIcon shownPicture() const { return m_isMenuOpen ? m_alternate : m_picture; }
    [[nodiscard]] const QString& toolTip() const { return m_toolTip; }
    /// Index (Resources::getImage) of the title bar's picture; none until the colour first changes.
    [[nodiscard]] std::optional<int> titleBarImage() const { return m_titleBarImage; }

    void setMenuOpen(bool isOpen);

    /// Whether any tray shows the item. True until a desktop turns out to have none.
    [[nodiscard]] bool isTrayAvailable() const { return m_isTrayAvailable; }
    void setTrayAvailable(bool isAvailable);

Q_SIGNALS:
    /// The tray is to be told, whether or not the picture is another one.
    void shownPictureSet();
    void toolTipChanged();
    void titleBarPictureChanged(int imageIndex);
    void trayAvailabilityChanged(bool isAvailable);

private:
    [[nodiscard]] IconColor resultingColor(IconColor requested) const;
    void setPictures(const QIcon& picture, const QIcon& alternate);
    void setToolTip(const QString& text);

    AppState& m_state;
    const Resources& m_resources;
    QIcon m_picture;
    QIcon m_alternate;
    QString m_toolTip;
    std::optional<int> m_titleBarImage;
    bool m_isMenuOpen = false;
    bool m_isTrayAvailable = true;
};

} // namespace korvale
