// A batch of file threats against simdjson's DOM parse alone and against the plain way.
#include "Batch.h"
#include "ListGenerator.h"
#include "PlainBatch.h"
#include "model/FileProcessEvents.h"
#include "model/RememberedLists.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <memory>
#include <simdjson.h>

namespace {

using korvale::bench::Batch;

QString folder() {
    static const QTemporaryDir directory;
    return directory.path();
}

/// The generated list of `records`, written when it is first needed.
QString listOf(std::int64_t records) {
    const QString name = QStringLiteral("%1.log").arg(records);
    QFile file(folder() + QLatin1Char('/') + name);
    if (!file.exists() && file.open(QIODevice::WriteOnly)) {
        const std::string list = korvale::bench::fileStateList({static_cast<std::size_t>(records)});
        file.write(list.data(), static_cast<qint64>(list.size()));
    }
    return name;
}

simdjson::padded_string textOf(const QString& name) {
    return simdjson::padded_string::load((folder() + QLatin1Char('/') + name).toStdString())
        .take_value();
}

void expect(benchmark::State& state, bool condition) {
    if (!condition) {
        state.SkipWithError("did not do what is measured");
    }
}

/// Baseline D: the parse of a text in memory, the parser's memory included.
void domParse(benchmark::State& state) {
    const simdjson::padded_string text = textOf(listOf(state.range(0)));
    for (auto iteration : state) {
        simdjson::dom::parser parser;
        expect(state, parser.parse(text).error() == simdjson::SUCCESS);
    }
}

/// The same with a parser that has its memory already.
void domParseWarm(benchmark::State& state) {
    const simdjson::padded_string text = textOf(listOf(state.range(0)));
    simdjson::dom::parser parser;
    for (auto iteration : state) {
        expect(state, parser.parse(text).error() == simdjson::SUCCESS);
    }
}

void batchUnchanged(benchmark::State& state) {
    const QString name = listOf(state.range(0));
    Batch batch(folder());
    expect(state, batch.run(name, true) == korvale::ListState::Changed);
    for (auto iteration : state) {
        expect(state, batch.run(name, false) == korvale::ListState::Unchanged);
    }
}

/// Batch after batch in one program; the previous rows are shown until the new ones come.
void batchChanged(benchmark::State& state) {
    const QString name = listOf(state.range(0));
    Batch batch(folder());
    for (auto iteration : state) {
        expect(state, batch.run(name, true) == korvale::ListState::Changed);
    }
}

/// The first batch of a program.
void batchFirst(benchmark::State& state) {
    const QString name = listOf(state.range(0));
    for (auto iteration : state) {
        Batch batch(folder());
        expect(state, batch.run(name, true) == korvale::ListState::Changed);
    }
}

/// Baseline Q.
void plainWay(benchmark::State& state) {
    const QString path = folder() + QLatin1Char('/') + listOf(state.range(0));
    for (auto iteration : state) {
        expect(state, !korvale::bench::plainBatch(path, true).isEmpty());
    }
}

/// 1,000 new events where `range` are remembered.
void newEvents(benchmark::State& state) {
    constexpr std::size_t perList = 1000;
    const auto events = [](std::size_t first) {
        const std::string text = korvale::bench::eventList(first, perList);
        return korvale::JsonValue::parse(
            QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    };
    korvale::RememberedEvents remembered;
    std::size_t next = 0;
    for (; next < static_cast<std::size_t>(state.range(0)); next += perList) {
        expect(state, korvale::newEventRows(*events(next), remembered)->size() == perList);
    }
    for (auto iteration : state) {
        state.PauseTiming();
        const auto list = events(next);
        next += perList;
        state.ResumeTiming();
        benchmark::DoNotOptimize(korvale::newEventRows(*list, remembered));
    }
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(1'000)->Arg(10'000)->Arg(100'000)->Arg(1'000'000);
    benchmark->Unit(benchmark::kMillisecond);
}

BENCHMARK(domParse)->Apply(sizes);
BENCHMARK(domParseWarm)->Apply(sizes);
BENCHMARK(batchUnchanged)->Apply(sizes);
BENCHMARK(batchChanged)->Apply(sizes);
BENCHMARK(batchFirst)->Apply(sizes);
BENCHMARK(plainWay)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(newEvents)->Arg(10'000)->Arg(1'000'000)->Iterations(50)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
