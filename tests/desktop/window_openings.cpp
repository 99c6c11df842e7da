// Opens and closes a window with a title as often as told, and prints how many bytes of memory each
// opening has left behind.
#include "shell/WindowActivation.h"

#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <cstdio>
#include <cstdlib>
#include <malloc.h>

namespace {

void letPass(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

void openAndClose(QWidget& window) {
    korvale::bringToFront(window, {});
    letPass(20);
    window.close();
    letPass(5);
}

} // namespace

int main(int count, char** values) {
    const QApplication application(count, values);
    QApplication::setQuitOnLastWindowClosed(false);
    const int openings = count > 1 ? std::atoi(values[1]) : 100;
    QWidget window;
    window.setWindowTitle(QStringLiteral("opened again and again"));
    for (int warmUp = 0; warmUp < openings; ++warmUp) {
        openAndClose(window);
    }
    const auto before = static_cast<long>(::mallinfo2().uordblks);
    for (int opening = 0; opening < openings; ++opening) {
        openAndClose(window);
    }
    std::printf("%ld\n", (static_cast<long>(::mallinfo2().uordblks) - before) / openings);
    return 0;
}
