#pragma once

#include "fakes/RecordingRowBatch.h"
#include "tables/CustHeaderView.h"
#include "tables/RememberedSelections.h"
#include "tables/ThreatsTableView.h"

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <functional>

namespace korvale {

/// A table of that controller's kind in a window on the offscreen screen.
template <class Controller>
class TableOnScreen {
public:
    using Attach = void (Controller::*)(ThreatsTableView*);

    TableOnScreen(Attach attach, RememberedSelections& selections)
        : table(selections), m_attach(attach) {}

    /// Builds the view for the controller, as the window does when it is first shown.
    void show(QSize size = {800, 400}) {
        view = std::make_unique<ThreatsTableView>();
        (table.*m_attach)(view.get());
        table.awakeFromNib();
        view->resize(size);
        view->show();
        view->activateWindow();
        view->setFocus();
        paint();
    }

    void load(RowBatchPtr rows) {
        table.loadData(std::move(rows));
        table.updateView();
        paint();
    }

    /// Paints what is due now.
    void paint() { image = view->grab().toImage(); }

    void clickRow(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        const QRect cell = view->visualRect(view->model()->index(row, 0));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, modifiers, cell.center());
    }

    void clickTitle(int column) {
        QHeaderView* header = view->horizontalHeader();
        const int x = header->sectionViewportPosition(column) + header->sectionSize(column) / 2;
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(x, header->height() / 2));
    }

    void pressCopy(Qt::KeyboardModifiers more = Qt::NoModifier) {
        QTest::keyClick(view.get(), Qt::Key_C, Qt::ControlModifier | more);
    }

    [[nodiscard]] QString cell(int row, int column) const {
        const CellView* found = view->visibleCell(row, column);
        return found != nullptr ? found->text() : QStringLiteral("<out of sight>");
    }

    Controller table;
    std::unique_ptr<ThreatsTableView> view;
    QImage image;

private:
    Attach m_attach;
};

inline QString clipboard() {
    return QApplication::clipboard()->text();
}
inline void setClipboard(const QString& text) {
    QApplication::clipboard()->setText(text);
}

} // namespace korvale
