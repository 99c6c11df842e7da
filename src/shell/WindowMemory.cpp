#include "shell/WindowMemory.h"

#include "platform/PrivateFile.h"
#include "platform/SmallFile.h"
#include "platform/XdgFolders.h"

#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScreen>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace korvale {
namespace {

constexpr qint64 largestFile = 65536;
constexpr int widestColumn = 10000;
constexpr int narrowestColumn = 8;

constexpr QLatin1String geometryKey{"geometry"};
constexpr QLatin1String platformKey{"platform"};
constexpr QLatin1String columnsKey{"columns"};
constexpr QLatin1String ordersKey{"orders"};
constexpr QLatin1String sortKey{"sort"};
constexpr qsizetype mostColumns = 16;
constexpr qsizetype longestName = 16;

/// Widths of one table; none at all when one of them makes no sense.
QList<int> columnWidths(const QJsonArray& array) {
    QList<int> widths;
    for (const QJsonValueConstRef value : array) {
        const int width = value.toInt();
        if (width < narrowestColumn || width > widestColumn) {
            return {};
        }
        widths.append(width);
    }
    return widths;
}

/// Names of columns; none at all when one of them makes no sense. Which columns there are the table
/// knows.
QStringList columnNames(const QJsonArray& array) {
    QStringList names;
    for (const QJsonValueConstRef value : array) {
        names << value.toString();
        if (names.size() > mostColumns || names.constLast().isEmpty() ||
            names.constLast().size() > longestName) {
            return {};
        }
    }
    return names;
}

WindowPlacement placementFrom(const QJsonObject& object) {
    WindowPlacement placement;
    placement.geometry = QByteArray::fromBase64(object[geometryKey].toString().toLatin1());
    placement.platform = object[platformKey].toString();
    const QJsonObject columns = object[columnsKey].toObject();
    for (auto table = columns.begin(); table != columns.end(); ++table) {
        if (const QList<int> widths = columnWidths(table.value().toArray()); !widths.isEmpty()) {
            placement.columnWidths.insert(table.key(), widths);
        }
    }
    const QJsonObject orders = object[ordersKey].toObject();
    for (auto table = orders.begin(); table != orders.end(); ++table) {
        const QJsonObject order = table.value().toObject();
        const TableOrder names{columnNames(order[columnsKey].toArray()),
                               columnNames(order[sortKey].toArray())};
        if (names != TableOrder()) {
            placement.orders.insert(table.key(), names);
        }
    }
    return placement;
}

QJsonObject ordersJson(const QMap<QString, TableOrder>& orders) {
    QJsonObject object;
    for (auto table = orders.begin(); table != orders.end(); ++table) {
        object.insert(table.key(),
                      QJsonObject{{columnsKey, QJsonArray::fromStringList(table.value().columns)},
                                  {sortKey, QJsonArray::fromStringList(table.value().sort)}});
    }
    return object;
}

QByteArray toJson(const WindowPlacement& placement) {
    QJsonObject columns;
    for (auto table = placement.columnWidths.begin(); table != placement.columnWidths.end();
         ++table) {
        QJsonArray widths;
        for (const int width : table.value()) {
            widths.append(width);
        }
        columns.insert(table.key(), widths);
    }
    return QJsonDocument(
               QJsonObject{{geometryKey, QString::fromLatin1(placement.geometry.toBase64())},
                           {platformKey, placement.platform},
                           {columnsKey, columns},
                           {ordersKey, ordersJson(placement.orders)}})
        .toJson();
}

} // namespace

void restoreInSight(QWidget& window, const QByteArray& geometry) {
    const QSize size = window.size();
    window.restoreGeometry(geometry);
    // The toolkit brings back what stands beyond the edge, but reckons wrongly with the greatest
    // numbers.
    const QList<QScreen*> screens = QGuiApplication::screens();
    const bool isInSight =
        std::any_of(screens.begin(), screens.end(), [&window](const QScreen* screen) {
            return screen->geometry().intersects(window.geometry());
        });
    if (!isInSight) {
        QRect place(QPoint(), size);
        place.moveCenter(window.screen()->availableGeometry().center());
        window.setGeometry(place);
    }
}

WindowMemory::WindowMemory(QString path) : m_path(std::move(path)) {
    m_writer.setMaxThreadCount(1); // two writes never overtake each other
    m_writer.setExpiryTimeout(0);
}

WindowMemory::~WindowMemory() {
    m_writer.waitForDone();
}

QString WindowMemory::userPath() {
    return userConfigFolder() + QLatin1String("/Korvale/KorvaleUI-window.json");
}

WindowPlacement WindowMemory::load() {
    const auto content = readSmallFile(m_path, largestFile);
    m_last = placementFrom(QJsonDocument::fromJson(content.value_or(QByteArray())).object());
    return m_last;
}

void WindowMemory::save(const WindowPlacement& placement) {
    if (placement == m_last) {
        return;
    }
    m_last = placement;
    m_writer.start(
        [path = m_path, content = toJson(placement)] { (void)writePrivateFile(path, content); });
}

} // namespace korvale
