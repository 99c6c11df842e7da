#pragma once

#include "tables/TableOrder.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QThreadPool>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace korvale {

/// What the details window remembers of its looks from one run to the next.
struct WindowPlacement {
    QByteArray geometry;                    ///< of QWidget::saveGeometry; empty: none
    QString platform;                       ///< the toolkit's platform that `geometry` is of
    QMap<QString, QList<int>> columnWidths; ///< by table, from the first column on
    QMap<QString, TableOrder> orders;       ///< by table; none where nothing was changed

    friend bool operator==(const WindowPlacement&, const WindowPlacement&) = default;
};

/// Gives `window` a place and a size of QWidget::saveGeometry. It is in sight afterwards, whatever
/// the numbers are; where they put it nowhere, it has the size it had, in the middle of its screen.
void restoreInSight(QWidget& window, const QByteArray& geometry);

/// Keeps a WindowPlacement in a small JSON file of the user's configuration. Main thread; writing
/// happens on a thread of its own that ends with it, so that a slow disk never holds up the window.
class WindowMemory {
public:
    /// `path`: the file; its folder is made when needed.
    explicit WindowMemory(QString path);
    /// Waits for a write under way.
    ~WindowMemory();
    WindowMemory(const WindowMemory&) = delete;
    WindowMemory& operator=(const WindowMemory&) = delete;

    /// The file under the user's configuration folder.
    [[nodiscard]] static QString userPath();

    /// What was remembered last; whatever is missing or damaged in the file is left empty.
    [[nodiscard]] WindowPlacement load();

    /// Writes `placement`, unless it is what was written or read last. A failure is not reported:
    /// the window then opens as it did before.
    void save(const WindowPlacement& placement);

private:
    QString m_path;
    WindowPlacement m_last;
    QThreadPool m_writer;
};

} // namespace korvale
