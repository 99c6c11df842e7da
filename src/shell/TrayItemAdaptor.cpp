#include "shell/TrayItemAdaptor.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QGuiApplication>
#include <QMetaClassInfo>

namespace korvale {
namespace {

constexpr const char* interfaceInfo = "D-Bus Interface";

QDBusAbstractAdaptor* adaptorOf(const QObject& item) {
    const auto adaptors =
        item.findChildren<QDBusAbstractAdaptor*>(QString(), Qt::FindDirectChildrenOnly);
    for (QDBusAbstractAdaptor* adaptor : adaptors) {
        const QMetaObject* type = adaptor->metaObject();
        const QMetaClassInfo info = type->classInfo(type->indexOfClassInfo(interfaceInfo));
        if (qstrcmp(info.value(), "org.kde.StatusNotifierItem") == 0) {
            return adaptor;
        }
    }
    return nullptr;
}

/// The toolkit gives every item a connection of its own, numbered by process and item.
QObject* newestItem() {
    static int number = 0;
    const auto itemOn = [](int candidate) {
        const QDBusConnection connection(QStringLiteral("org.kde.StatusNotifierItem-%1-%2")
                                             .arg(QCoreApplication::applicationPid())
                                             .arg(candidate));
        return connection.isConnected()
                   ? connection.objectRegisteredAt(QStringLiteral("/StatusNotifierItem"))
                   : nullptr;
    };
    static constexpr int mostUnused = 4; // numbers that the toolkit may have spent on itself
    for (int candidate = number + 1; candidate <= number + mostUnused; ++candidate) {
        if (QObject* item = itemOn(candidate)) {
            number = candidate;
            return item;
        }
    }
    return nullptr;
}

} // namespace

TrayItemAdaptor* TrayItemAdaptor::takeOverNewest() {
    QObject* item = newestItem();
    QDBusAbstractAdaptor* toolkits = item != nullptr ? adaptorOf(*item) : nullptr;
    return toolkits != nullptr ? new TrayItemAdaptor(item, toolkits) : nullptr;
}

/// Of two adaptors with one interface the bus library uses the one that came last.
TrayItemAdaptor::TrayItemAdaptor(QObject* item, QDBusAbstractAdaptor* toolkits)
    : QDBusAbstractAdaptor(item), m_toolkits(toolkits) {
    qDBusRegisterMetaType<TrayPicture>();
    qDBusRegisterMetaType<QList<TrayPicture>>();
    qDBusRegisterMetaType<TrayToolTip>();
}

QString TrayItemAdaptor::title() {
    return QGuiApplication::applicationDisplayName();
}

QDBusObjectPath TrayItemAdaptor::menu() const {
    return m_toolkits ? m_toolkits->property("Menu").value<QDBusObjectPath>()
                      : QDBusObjectPath(QStringLiteral("/"));
}

QString TrayItemAdaptor::toolkitText(const char* property) const {
    return m_toolkits ? m_toolkits->property(property).toString() : QString();
}

void TrayItemAdaptor::setPicture(const QIcon& picture) {
    m_picture = picture;
    m_pictures.clear();
    Q_EMIT NewIcon();
}

QList<TrayPicture> TrayItemAdaptor::pictures() const {
    if (m_pictures.isEmpty()) {
        m_pictures = trayPictures(m_picture);
    }
    return m_pictures;
}

void TrayItemAdaptor::setToolTip(const QString& text) {
    m_toolTip = text;
    Q_EMIT NewToolTip();
}

void TrayItemAdaptor::ProvideXdgActivationToken(const QString& token) {
    qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8()); // the toolkit takes it, once
}

void TrayItemAdaptor::ContextMenu(int x, int y) {
    if (m_toolkits) {
        QMetaObject::invokeMethod(m_toolkits, "ContextMenu", Q_ARG(int, x), Q_ARG(int, y));
    }
}

void TrayItemAdaptor::Activate(int x, int y) {
    if (m_toolkits) {
        QMetaObject::invokeMethod(m_toolkits, "Activate", Q_ARG(int, x), Q_ARG(int, y));
    }
}

} // namespace korvale
