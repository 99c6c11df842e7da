// The least a Qt 6 tray program can be: the baseline F of the whole-process measurements.
// With --window it also shows a plain window with one table, the baseline of the window's opening,
// and prints the two opening times in milliseconds.

#include <QApplication>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QIcon>
#include <QMenu>
#include <QPixmap>
#include <QStandardItemModel>
#include <QSystemTrayIcon>
#include <QTableView>
#include <QWindow>

#include <cstdio>
#include <cstring>

namespace {

/// Milliseconds until a window that was just asked for has painted itself.
double openingTime(QWidget& window) {
    QElapsedTimer timer;
    timer.start();
    window.show();
    while (!window.windowHandle()->isExposed()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    window.repaint();
    return static_cast<double>(timer.nsecsElapsed()) * 1e-6;
}

void measureWindow() {
    QWidget window;
    QHBoxLayout layout(&window);
    QTableView table;
    QStandardItemModel model(20, 4);
    for (int row = 0; row < 20; ++row) {
        for (int column = 0; column < 4; ++column) {
            model.setItem(row, column, new QStandardItem(QStringLiteral("cell")));
        }
    }
    table.setModel(&model);
    layout.addWidget(&table);
    window.resize(900, 560);
    const double first = openingTime(window);
    window.hide();
    QCoreApplication::processEvents();
    std::printf("first %.3f again %.3f\n", first, openingTime(window));
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (argc > 1 && std::strcmp(argv[1], "--window") == 0) {
        measureWindow();
        return 0;
    }
    QPixmap picture(22, 22);
    picture.fill(Qt::darkGreen);
    QMenu menu;
    QSystemTrayIcon item{QIcon(picture)};
    item.setContextMenu(&menu);
    item.show();
    return QApplication::exec();
}
