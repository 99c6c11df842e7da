#include "shell/TrayPicture.h"

#include <QImage>
#include <QPixmap>
#include <QtEndian>

namespace korvale {

QDBusArgument& operator<<(QDBusArgument& argument, const TrayPicture& picture) {
    argument.beginStructure();
    argument << picture.width << picture.height << picture.data;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, TrayPicture& picture) {
    argument.beginStructure();
    argument >> picture.width >> picture.height >> picture.data;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const TrayToolTip& toolTip) {
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.pictures << toolTip.title << toolTip.description;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, TrayToolTip& toolTip) {
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.pictures >> toolTip.title >> toolTip.description;
    argument.endStructure();
    return argument;
}

QList<TrayPicture> trayPictures(const QIcon& icon) {
    QList<TrayPicture> pictures;
    for (const QSize& size : icon.availableSizes()) {
        // 4 bytes a pixel, so that rows follow each other without a gap.
        const QImage image =
            icon.pixmap(size, 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
        TrayPicture picture{image.width(), image.height(),
                            QByteArray(image.sizeInBytes(), Qt::Uninitialized)};
        qToBigEndian<quint32>(image.constBits(), image.sizeInBytes() / qsizetype(sizeof(quint32)),
                              picture.data.data());
        pictures.append(picture);
    }
    return pictures;
}

} // namespace korvale
