#pragma once

#include "tables/ExportFile.h"

#include <QObject>
#include <QThreadPool>

#include <atomic>
#include <optional>
#include <span>

QT_BEGIN_NAMESPACE
class QDBusConnection;
class QWidget;
class QUrl;
QT_END_NAMESPACE

namespace korvale {

class ExportLine;
class SaveChooser;
class ThreatsTableController;

/// Writes rows of a table to a file that the person chooses: asks which rows and in which form,
/// then where, and has a thread write them, telling how far it is. One at a time. The rows are
/// those of the moment when they were asked for, whatever the agent says meanwhile. Main thread.
class TableExport final : public QObject {
    Q_OBJECT

public:
    /// `strip`: where lines about it go; it outlives the object.
    explicit TableExport(QWidget& strip, QObject* parent = nullptr);
    /// Ends an export under way and waits for its thread.
    ~TableExport() override;

    /// Offers the forms in a menu below `button`. While an export is under way the focus goes to
    /// what ends it instead. `sessionBus`: where the portal is, or nullptr.
    void offer(const ThreatsTableController& table, QWidget& button,
               const QDBusConnection* sessionBus);

    /// The form that a file's name asks for; `chosen` when its suffix is neither.
    [[nodiscard]] static ExportFormat formatOf(const QString& path, ExportFormat chosen);

private:
    /// What is to be written.
    struct Order {
        RowSnapshot rows;
        std::span<const ExportField> fields;
        ExportFormat format = ExportFormat::Csv;
    };

    void ask(Order order, const QString& name, const QDBusConnection* sessionBus);
    void placeDecided(const QUrl& place);
    void start(const QString& path);
    void finish(const ExportResult& result);
    void showResult(ExportResult::Outcome outcome, const QString& reason);
    ExportLine& line();

    QWidget& m_strip;
    SaveChooser* m_chooser = nullptr; ///< a child, like the line of the strip; made when first used
    ExportLine* m_line = nullptr;
    std::optional<Order> m_order;
    QString m_place; ///< as it is called in sentences
    bool m_isRunning = false;
    std::atomic<bool> m_isCancelled = false;
    QThreadPool m_worker;
};

} // namespace korvale
