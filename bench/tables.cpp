// What a table costs: reset and first paint by number of rows, one full screen, sorting.
#include "ListedThreats.h"
#include "tables/FileThreatsTable.h"

#include <QApplication>

#include <benchmark/benchmark.h>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace korvale {
namespace {

/// File threats as an agent reports them: made once, each text made anew when it is asked for.
class ThreatBatch final : public RowBatch {
public:
    explicit ThreatBatch(std::size_t size) {
        std::mt19937_64 random(7); // NOLINT: the same rows in every run
        static constexpr const char* folders[] = {"Downloads", "Documents", "r\u00e9sum\u00e9s",
                                                  "projekt-\u00fcbersicht"};
        static constexpr const char* names[] = {"invoice", "Setup", "\u8acb\u6c42\u66f8", "libhook",
                                                "Rechnung_M\u00e4rz"};
        m_rows.reserve(size);
        for (std::size_t i = 0; i < size; ++i) {
            Threat row;
            row.name = std::string(names[random() % 5]) + '_' + std::to_string(random() % 100'000) +
                       (random() % 2 == 0 ? ".exe" : ".pdf.scr");
            row.path = "/home/anna/" + std::string(folders[random() % 4]) +
                       "/2024/06/attachments/from-the-mail-client/" + row.name;
            row.category = random() % 4;
            for (int part = 0; part < 4; ++part) {
                char hex[17];
                std::snprintf(hex, sizeof hex, "%016llx",
                              static_cast<unsigned long long>(random()));
                row.id += hex;
            }
            m_rows.push_back(std::move(row));
        }
    }

    [[nodiscard]] std::size_t size() const override { return m_rows.size(); }

    [[nodiscard]] std::optional<QString> text(std::size_t index, RowKey key) const override {
        static constexpr const char* categories[] = {"Unsafe", "Abnormal", "Quarantined", "Waived"};
        const Threat& row = m_rows[index];
        switch (key) {
        case RowKey::File:
            return QString::fromStdString(row.name);
        case RowKey::FileToolTip:
            return QString::fromStdString(row.path);
        case RowKey::Category:
            return QString::fromLatin1(categories[row.category]);
        case RowKey::Found:
            return QString::number(index % 5 + 1);
        default:
            return QString::fromStdString(row.id);
        }
    }

private:
    struct Threat {
        std::string name;
        std::string path;
        std::string id;
        std::size_t category = 0;
    };
    std::vector<Threat> m_rows;
};

RowBatchPtr threats(std::size_t size) {
    static std::vector<RowBatchPtr> made;
    for (const RowBatchPtr& batch : made) {
        if (batch->size() == size) {
            return batch;
        }
    }
    made.push_back(std::make_shared<ThreatBatch>(size));
    return made.back();
}

/// A shown table of 1000 x 700 points: about thirty rows in sight.
struct Screen {
    Screen() : table(selections) {
        table.setFileThreatsTable(&view);
        table.awakeFromNib();
        view.resize(1000, 700);
        view.show();
        QApplication::processEvents();
    }
    RememberedSelections selections;
    FileThreatsTable table;
    ThreatsTableView view;
};

void ResetAndFirstPaint(benchmark::State& state) {
    const RowBatchPtr rows = threats(static_cast<std::size_t>(state.range(0)));
    Screen screen;
    for (auto _ : state) {
        screen.table.loadData(rows);
        screen.table.updateView();
        screen.view.viewport()->repaint();
    }
}
BENCHMARK(ResetAndFirstPaint)
    ->Arg(1'000)
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->Unit(benchmark::kMicrosecond);

void PaintOneScreen(benchmark::State& state) {
    Screen screen;
    screen.table.loadData(threats(1'000));
    screen.table.updateView();
    for (auto _ : state) {
        screen.view.viewport()->repaint();
    }
}
BENCHMARK(PaintOneScreen)->Unit(benchmark::kMicrosecond);

/// One text after the other is looked for; each is measured with its repaint.
void FindKeystroke(benchmark::State& state, const QStringList& texts) {
    static const RowBatchPtr few = bench::listedThreats(100'000);
    Screen screen;
    screen.table.loadData(state.range(0) == 100'000
                              ? few
                              : bench::listedThreats(static_cast<std::size_t>(state.range(0))));
    screen.table.updateView();
    qsizetype next = 0;
    for (auto _ : state) {
        screen.table.setFind(texts[next++ % texts.size()]);
        screen.view.viewport()->repaint();
    }
}
/// The worst: each time all rows are looked through, and most of them stay.
BENCHMARK_CAPTURE(FindKeystroke, Anew, {QStringLiteral("e"), QStringLiteral("a")})
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->Unit(benchmark::kMicrosecond);
/// A word is typed, letter after letter.
BENCHMARK_CAPTURE(FindKeystroke, Word,
                  {QStringLiteral("r"), QStringLiteral("re"), QStringLiteral("rep"),
                   QStringLiteral("repo"), QStringLiteral("repor"), QStringLiteral("report")})
    ->Arg(100'000)
    ->Unit(benchmark::kMicrosecond);

void SortRows(benchmark::State& state, RowKey key) {
    const RowBatchPtr rows = threats(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        RowList list(rows);
        list.sort({{key, true}});
        benchmark::DoNotOptimize(list);
    }
}
BENCHMARK_CAPTURE(SortRows, File, RowKey::File)->Arg(100'000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(SortRows, Category, RowKey::Category)
    ->Arg(100'000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(SortRows, Found, RowKey::Found)->Arg(100'000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(SortRows, ID, RowKey::Id)->Arg(100'000)->Unit(benchmark::kMicrosecond);

void FirstOpening(benchmark::State& state) {
    const RowBatchPtr rows = threats(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        RememberedSelections selections;
        FileThreatsTable table(selections);
        table.loadData(rows);
        ThreatsTableView view;
        table.setFileThreatsTable(&view);
        table.awakeFromNib();
        view.resize(1000, 700);
        view.show();
        QApplication::processEvents();
        view.viewport()->repaint();
    }
}
BENCHMARK(FirstOpening)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace korvale

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
