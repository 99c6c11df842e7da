#include "shell/TableExport.h"

#include "core/base/TextFormat.h"
#include "platform/CountText.h"
#include "platform/SafeText.h"
#include "platform/Texts.h"
#include "shell/ExportLine.h"
#include "shell/SaveChooser.h"
#include "tables/ThreatsTableController.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QLayout>
#include <QMenu>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace korvale {
namespace {

using Outcome = ExportResult::Outcome;

constexpr int silentMs = 500; ///< what is done by then needs no progress
constexpr int progressEveryMs = 100;

QString rowCount(const RowSnapshot& rows) {
    return countText(static_cast<std::int64_t>(rows.size()));
}

const char* textOf(Outcome outcome) {
    switch (outcome) {
    case Outcome::Written:
        return "HPS_ExportDone";
    case Outcome::Cancelled:
        return "HPS_ExportCancelled";
    case Outcome::NoFile:
        return "HPS_ExportNoFile";
    case Outcome::NoRoom:
        return "HPS_ExportNoRoom";
    case Outcome::Failed:
        break;
    }
    return "HPS_ExportFailed";
}

} // namespace

TableExport::TableExport(QWidget& strip, QObject* parent) : QObject(parent), m_strip(strip) {
    m_worker.setMaxThreadCount(1);
    m_worker.setExpiryTimeout(0);
}

TableExport::~TableExport() {
    m_isCancelled = true;
    m_worker.waitForDone();
}

ExportFormat TableExport::formatOf(const QString& path, ExportFormat chosen) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("csv")) {
        return ExportFormat::Csv;
    }
    return suffix == QLatin1String("json") ? ExportFormat::Json : chosen;
}

void TableExport::offer(const ThreatsTableController& table, QWidget& button,
                        const QDBusConnection* sessionBus) {
    if (m_isRunning) {
        m_line->show();
        m_line->focusButton();
        return;
    }
    auto* menu = new QMenu(&button);
    connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
    menu->setPalette(m_strip.window()->palette());
    for (const bool selectedOnly : {false, true}) {
        const RowSnapshot rows = table.snapshot(selectedOnly);
        for (const ExportFormat format : {ExportFormat::Csv, ExportFormat::Json}) {
            const bool isCsv = format == ExportFormat::Csv;
            const QString label = formatText(
                localizedText(selectedOnly ? "HPS_ExportSelected" : "HPS_ExportShown"),
                {rowCount(rows), isCsv ? QStringLiteral("CSV") : QStringLiteral("JSON")});
            const QString name = QLatin1String(table.description().exportName) +
                                 (isCsv ? QLatin1String(".csv") : QLatin1String(".json"));
            QAction* action = menu->addAction(label);
            action->setEnabled(!selectedOnly || rows.size() > 0);
            connect(action, &QAction::triggered, this,
                    [=, this, fields = table.description().exportFields] {
                        ask({rows, fields, format}, name, sessionBus);
                    });
        }
    }
    menu->popup(button.mapToGlobal(button.rect().bottomLeft()));
    menu->setActiveAction(menu->actions().constFirst());
}

void TableExport::ask(Order order, const QString& name, const QDBusConnection* sessionBus) {
    if (m_isRunning) {
        return;
    }
    m_order = std::move(order);
    if (m_chooser == nullptr) {
        m_chooser = new SaveChooser(*m_strip.window(), this);
        connect(m_chooser, &SaveChooser::decided, this, &TableExport::placeDecided);
    }
    m_chooser->ask(sessionBus, name);
}

void TableExport::placeDecided(const QUrl& place) {
    if (place.isEmpty() || !m_order) {
        m_order.reset(); // the rows need not be kept
        return;
    }
    m_place = singleLineText(place.isLocalFile() ? place.toLocalFile() : place.toDisplayString());
    if (!place.isLocalFile()) {
        m_order.reset();
        showResult(Outcome::NoFile, {});
        return;
    }
    start(place.toLocalFile());
}

void TableExport::start(const QString& path) {
    m_order->format = formatOf(path, m_order->format);
    m_isRunning = true;
    m_isCancelled = false;
    line().hide();
    line().setProgress(0);
    QTimer::singleShot(silentMs, this, [this] {
        if (m_isRunning) {
            line().showRunning(formatText(localizedText("HPS_ExportRuns"), {m_place}));
        }
    });
    // The order stays as it is until the thread has said that it is done.
    m_worker.start([this, path, &order = std::as_const(*m_order)] {
        QElapsedTimer sinceTold;
        sinceTold.start();
        const auto goOn = [&](std::size_t done) {
            if (sinceTold.elapsed() >= progressEveryMs) {
                sinceTold.restart();
                const auto percent =
                    static_cast<int>(done * 100 / std::max<std::size_t>(1, order.rows.size()));
                QMetaObject::invokeMethod(this, [this, percent] { line().setProgress(percent); });
            }
            return !m_isCancelled;
        };
        const ExportResult result = writeRows(order.rows, order.fields, order.format, path, goOn);
        QMetaObject::invokeMethod(this, [this, result] { finish(result); });
    });
}

void TableExport::finish(const ExportResult& result) {
    m_isRunning = false;
    showResult(result.outcome, result.reason);
    m_order.reset();
}

void TableExport::showResult(Outcome outcome, const QString& reason) {
    const QString detail = outcome == Outcome::Written ? rowCount(m_order->rows) : reason;
    line().showResult(formatText(localizedText(textOf(outcome)), {m_place, detail}));
}

ExportLine& TableExport::line() {
    if (m_line == nullptr) {
        m_line = new ExportLine(&m_strip);
        m_strip.layout()->addWidget(m_line);
        connect(m_line, &ExportLine::cancelled, this, [this] { m_isCancelled = true; });
    }
    return *m_line;
}

} // namespace korvale
