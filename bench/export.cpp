// korvale-bench-export ROWS FILE: writes that many sorted file threats to FILE, and prints how far
// the peak of the process's memory rose above what it held before, in KiB, the size of the file in
// bytes, and the time it took in milliseconds.
#include "ListedThreats.h"
#include "tables/ExportFile.h"
#include "tables/FileThreatsTable.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <thread>

namespace korvale {
namespace {

/// A line of the process's status, in KiB.
long statusKib(const char* name) {
    QFile file(QStringLiteral("/proc/self/status"));
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : file.readAll().split('\n')) {
            if (line.startsWith(name)) {
                return line.mid(line.indexOf(':') + 1).trimmed().split(' ').first().toLong();
            }
        }
    }
    return -1;
}

void forgetPeak() {
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (!file.open(QIODevice::WriteOnly) || file.write("5") != 1) {
        std::abort();
    }
}

int measure(std::size_t records, const QString& path) {
    RememberedSelections selections;
    FileThreatsTable table(selections);
    ThreatsTableView view;
    table.setFileThreatsTable(&view);
    table.awakeFromNib();
    table.loadData(bench::listedThreats(records));
    view.sortByColumn(2);
    table.setFind(QStringLiteral("e"));
    ::malloc_trim(0);
    forgetPeak();
    const long before = statusKib("VmRSS");
    QElapsedTimer timer;
    timer.start();
    ExportResult result;
    const RowSnapshot rows = table.snapshot(false);
    std::thread worker([&] {
        result = writeRows(rows, table.description().exportFields, ExportFormat::Csv, path,
                           [](std::size_t) { return true; });
    });
    worker.join();
    std::printf("%ld KiB, %lld bytes, %lld ms\n", std::max(0L, statusKib("VmHWM") - before),
                static_cast<long long>(QFileInfo(path).size()),
                static_cast<long long>(timer.elapsed()));
    return result.outcome == ExportResult::Outcome::Written ? 0 : 1;
}

} // namespace
} // namespace korvale

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    if (argc != 3) {
        std::fputs("usage: korvale-bench-export ROWS FILE\n", stderr);
        return 2;
    }
    return korvale::measure(std::strtoul(argv[1], nullptr, 10), QString::fromLocal8Bit(argv[2]));
}
