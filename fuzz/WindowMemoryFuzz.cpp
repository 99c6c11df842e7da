// What the window remembers of its looks, and a window that takes it up.

#include "InputFiles.h"
#include "shell/WindowMemory.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>
#include <memory>

using namespace korvale;

namespace {

void startToolkit() {
    static int count = 1;
    static char name[] = "window_memory_fuzz";
    static char* arguments[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QApplication application(count, arguments);
}

} // namespace

const fuzz::Grammar& fuzz::targetGrammar() {
    return fuzz::json;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    startToolkit();
    static const fuzz::InputFolder folder;
    const QString path = folder.path(QStringLiteral("window.json"));
    folder.write(QStringLiteral("window.json"), fuzz::textOf(data, size));
    const WindowPlacement placement = WindowMemory(path).load();
    for (const QList<int>& widths : placement.columnWidths) {
        fuzz::require(std::all_of(widths.begin(), widths.end(),
                                  [](int width) { return width >= 8 && width <= 10000; }));
    }
    for (const TableOrder& order : placement.orders) {
        fuzz::require(order.columns.size() <= 16 && order.sort.size() <= 16);
    }
    fuzz::taken += placement == WindowPlacement() ? 0U : 1U;
    static QWidget window;
    window.setMinimumSize(300, 200);
    restoreInSight(window, placement.geometry);
    fuzz::require(window.width() >= 300 && window.height() >= 200);
    fuzz::require(window.geometry().intersects(window.screen()->geometry())); // never out of sight

    folder.remove(QStringLiteral("window.json"));
    auto writer = std::make_unique<WindowMemory>(path);
    writer->save(placement);
    writer.reset(); // has written
    fuzz::require(WindowMemory(path).load() == placement);
    return 0;
}
