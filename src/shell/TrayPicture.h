#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QIcon>
#include <QList>
#include <QString>

namespace korvale {

/// One size of a picture as a StatusNotifierItem carries it, the structure (iiay).
struct TrayPicture {
    int width = 0;   ///< pixels
    int height = 0;  ///< pixels
    QByteArray data; ///< straight ARGB, 8 bits each, in network order, row by row
};

/// A StatusNotifierItem's tooltip, the structure (sa(iiay)ss).
struct TrayToolTip {
    QString iconName;
    QList<TrayPicture> pictures;
    QString title;
    QString description;
};

QDBusArgument& operator<<(QDBusArgument& argument, const TrayPicture& picture);
const QDBusArgument& operator>>(const QDBusArgument& argument, TrayPicture& picture);
QDBusArgument& operator<<(QDBusArgument& argument, const TrayToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, TrayToolTip& toolTip);

/// Every size that `icon` has ready.
[[nodiscard]] QList<TrayPicture> trayPictures(const QIcon& icon);

} // namespace korvale

Q_DECLARE_METATYPE(korvale::TrayPicture)
Q_DECLARE_METATYPE(korvale::TrayToolTip)
