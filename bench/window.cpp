// korvale-bench-window ROWS: opens the details window with ROWS rows in each table, hides it, opens
// it again, and prints the two opening times in milliseconds and how much private memory the window
// and its tables hold after being hidden, in KiB.
#include "fakes/RecordingRowBatch.h"
#include "shell/MainWindow.h"
#include "shell/Translations.h"
#include "shell/WindowParts.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QWindow>

#include <cstdio>
#include <cstdlib>

namespace korvale {
namespace {

/// Milliseconds from asking for the window until it has painted itself.
double openingTime(MainWindowController& controller) {
    QElapsedTimer timer;
    timer.start();
    controller.showDetails();
    MainWindow& window = *controller.window();
    while (!window.windowHandle()->isExposed()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    window.repaint();
    return static_cast<double>(timer.nsecsElapsed()) * 1e-6;
}

long privateDirtyKib() {
    QFile file(QStringLiteral("/proc/self/smaps_rollup"));
    if (!file.open(QIODevice::ReadOnly)) {
        return -1;
    }
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith("Private_Dirty:")) {
            return line.mid(line.indexOf(':') + 1).trimmed().split(' ').first().toLong();
        }
    }
    return -1;
}

void settle() {
    for (int turn = 0; turn < 20; ++turn) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
}

void measure(std::size_t rowsPerTable) {
    WindowParts parts;
    parts.resources.initialize();
    const QTemporaryDir folder; // for what the window remembers
    MainWindowController controller(parts.context(folder.filePath(QStringLiteral("window.json"))));
    const long before = privateDirtyKib();
    const auto rows = numberedRows(rowsPerTable, QStringLiteral("/home/ada/Documents/file-"));
    for (TableFeed* table : std::initializer_list<TableFeed*>{
             &parts.fileThreats, &parts.processThreats, &parts.events, &parts.externalDevices}) {
        table->loadData(rows);
    }
    const double first = openingTime(controller);
    controller.window()->close();
    settle();
    const double again = openingTime(controller);
    controller.window()->close();
    settle();
    std::printf("first %.3f again %.3f private %ld\n", first, again, privateDirtyKib() - before);
}

} // namespace
} // namespace korvale

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (argc != 2) {
        std::fputs("usage: korvale-bench-window ROWS\n", stderr);
        return 2;
    }
    const korvale::Translations translations;
    korvale::measure(std::strtoul(argv[1], nullptr, 10));
    return 0;
}
