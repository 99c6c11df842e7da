"""A batch of file threats and the tables, measured by the benchmark programs and by callgrind."""
import json
import math
import os
import pathlib
import re
import subprocess

from report import Figure

GROUP = "A batch of N records, against simdjson's DOM parse alone (D) and the plain way (Q)"
TABLES = "The tables"
RECORDS = (1_000, 10_000, 100_000, 1_000_000)


def medians(program, repetitions, filtered=""):
    """CPU time in milliseconds of every benchmark: the median of interleaved repetitions."""
    scale = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}
    done = subprocess.run(
        [str(program), f"--benchmark_repetitions={repetitions}", "--benchmark_format=json",
         "--benchmark_enable_random_interleaving=true", "--benchmark_report_aggregates_only=true",
         "--benchmark_min_time=0.05", f"--benchmark_filter={filtered}"],
        check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    found = {}
    for line in json.loads(done.stdout)["benchmarks"]:
        if line.get("error_occurred"):
            raise RuntimeError(f"{line['name']}: {line['error_message']}")
        if line.get("aggregate_name") == "median":
            found[re.sub(r"/iterations:\d+", "", line["run_name"])] = (
                line["cpu_time"] * scale[line["time_unit"]])
    return found


def milliseconds(value):
    return f"{value:.3g} ms" if value < 1000 else f"{value:.0f} ms"


def against(what, value, baseline, goal, limit, **more):
    return Figure(GROUP, what, milliseconds(value), milliseconds(baseline), value / baseline, goal,
                  limit, **more)


def times(binaries, repetitions):
    taken = medians(binaries / "korvale-bench-lists", repetitions)
    limits = {1_000: math.inf, 10_000: 3.0, 100_000: 3.0, 1_000_000: 3.5}
    figures = []
    for count in RECORDS:
        figures.append(against(f"unchanged, N = {count:,}", taken[f"batchUnchanged/{count}"],
                               taken[f"domParseWarm/{count}"], "≤ 0.4 D", 0.4))
    for count, limit in limits.items():
        for name, first, dom in (("changed, first", "batchFirst", "domParse"),
                                 ("changed, again", "batchChanged", "domParseWarm")):
            figures.append(against(f"{name}, N = {count:,}", taken[f"{first}/{count}"],
                                   taken[f"{dom}/{count}"],
                                   "none of its own" if math.isinf(limit) else f"≤ {limit:g} D",
                                   limit))
    plain = taken["plainWay/100000"]
    for name, own, limit in (("first", "batchFirst", 25), ("again", "batchChanged", 50)):
        value = taken[f"{own}/100000"]
        figures.append(Figure(GROUP, f"faster than Q, {name}, N = 100,000", milliseconds(value),
                              milliseconds(plain), plain / value, f"≥ {limit} times", limit,
                              at_least=True))
    few, many = taken["newEvents/10000"], taken["newEvents/1000000"]
    figures.append(Figure(GROUP, "1,000 new events, 1,000,000 remembered against 10,000",
                          milliseconds(many), milliseconds(few), many / few, "≤ 3", 3.0))
    return figures, taken


def instructions(command, folder):
    """Instructions of a whole run under callgrind."""
    output = pathlib.Path(folder) / "callgrind.batch"
    subprocess.run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={output}", *command],
                   check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return int(re.search(r"^(?:summary|totals): (\d+)", output.read_text(errors="replace"),
                         re.MULTILINE).group(1))


def instruction_gate(binaries, folder):
    program = str(binaries / "korvale-bench-batch")
    data = str(pathlib.Path(folder) / "list.log")
    subprocess.run([program, "--mode=generate", "--repeat=10000", data], check=True)

    def counts(mode):
        none, first, second = (instructions(
            [program, f"--mode={mode}", f"--repeat={repeat}", data], folder) for repeat in range(3))
        return first - none, second - first

    figures = []
    for name, own, dom in zip(("first", "again"), counts("batch"), counts("dom")):
        figures.append(Figure(
            GROUP, f"instructions, changed, {name}, N = 10,000", f"{own / 1e6:.2f} M",
            f"{dom / 1e6:.2f} M", own / dom, "≤ 2.2 D", 2.2, gate=True))
    return figures


def memory(binaries, folder):
    program = str(binaries / "korvale-bench-batch")
    figures = []
    for count in (100_000, 1_000_000):
        data = str(pathlib.Path(folder) / "list.log")
        subprocess.run([program, "--mode=generate", f"--repeat={count}", data], check=True)
        done = subprocess.run([program, "--mode=memory", data], check=True, text=True,
                              stdout=subprocess.PIPE)
        peak, size = (int(word) for word in re.findall(r"_kB (\d+)", done.stdout))
        figures.append(Figure(GROUP, f"peak memory of two batches, N = {count:,}",
                              f"{peak / 1024:.1f} MiB", f"file {size / 1024:.1f} MiB", peak / size,
                              "≤ 3 files", 3.0))
        os.unlink(data)
    return figures


def batch(binaries, folder, repetitions):
    figures, taken = times(binaries, repetitions)
    return figures + instruction_gate(binaries, folder) + memory(binaries, folder), {"batch": taken}


def export(binaries, folder):
    """How far the peak of the process is above what it held before, by number of rows."""
    figures = []
    for count in (100_000, 1_000_000):
        done = subprocess.run([str(binaries / "korvale-bench-export"), str(count), str(folder / "export")],
                              check=True, text=True, stdout=subprocess.PIPE)
        growth, size, taken = (int(word) for word in re.findall(r"(\d+)", done.stdout))
        os.unlink(folder / "export")
        figures.append(Figure(TABLES, f"memory that an export of {count:,} rows takes",
                              f"{growth / 1024:.1f} MiB", f"{size >> 20} MiB in {taken} ms", growth / 1024,
                              "≤ 2 MiB", 2.0))
    return figures


def tables(binaries, folder, repetitions):
    taken = medians(binaries / "korvale-bench-tables", repetitions)
    few, screen = taken["ResetAndFirstPaint/1000"], taken["PaintOneScreen"]
    figures = []
    for count in (100_000, 1_000_000):
        value = taken[f"ResetAndFirstPaint/{count}"]
        figures.append(Figure(TABLES, f"reset and first paint, {count:,} rows against 1,000",
                              milliseconds(value), milliseconds(few), value / few, "≤ 1.2", 1.2))
    for column in ("File", "Category", "Found", "ID"):
        value = taken[f"SortRows/{column}/100000"]
        figures.append(Figure(TABLES, f"sort of 100,000 rows by {column} against one screen",
                              milliseconds(value), milliseconds(screen), value / screen, "≤ 100",
                              100.0))
    for typed, count, most in (("Anew", 100_000, 10.0), ("Word", 100_000, 10.0),
                               ("Anew", 1_000_000, 100.0)):
        value = taken[f"FindKeystroke/{typed}/{count}"]
        what = "looking through all" if typed == "Anew" else "of a word, mean"
        figures.append(Figure(TABLES, f"find: a keystroke {what}, {count:,} rows, against one screen",
                              milliseconds(value), milliseconds(screen), value / screen,
                              f"≤ {most:.0f}", most))
    few, many = taken["FirstOpening/1000"], taken["FirstOpening/100000"]
    figures.append(Figure(TABLES, "a table opened with 100,000 rows against 1,000",
                          milliseconds(many), milliseconds(few), many / few, "≤ 1.25", 1.25))
    return figures + export(binaries, folder), {"tables": taken}
