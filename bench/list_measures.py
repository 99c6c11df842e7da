"""What a batch of file threats costs, as ratios against simdjson's DOM parse and the plain way."""
import json
import pathlib
import re
import subprocess
import tempfile

SIZES = (1_000, 10_000, 100_000, 1_000_000)
GATED_SIZE = 10_000
INSTRUCTION_GATE = 2.2


def generate(build, records, folder):
    """The deterministic list of `records` in `folder`."""
    path = pathlib.Path(folder) / f"{records}.log"
    subprocess.run([build / "bin/korvale-bench-batch", "--mode=generate", f"--repeat={records}",
                    path], check=True)
    return path


def times(build, minimum="0.5"):
    """Milliseconds of processor time by benchmark and size: {("domParse", 1000): 0.06, ...}."""
    run = subprocess.run([build / "bin/korvale-bench-lists", "--benchmark_format=json",
                          f"--benchmark_min_time={minimum}"],
                         check=True, capture_output=True, text=True)
    result = {}
    for entry in json.loads(run.stdout)["benchmarks"]:
        name, size = entry["name"].split("/")[:2]
        result[name, int(size)] = entry["cpu_time"]
    return result


def instructions(build, mode, path):
    """Of one pass in a running program: the difference of six passes and one."""
    def total(repeat):
        run = subprocess.run(["valgrind", "--tool=callgrind",
                              f"--callgrind-out-file={path}.callgrind",
                              build / "bin/korvale-bench-batch", f"--mode={mode}",
                              f"--repeat={repeat}", path],
                             check=True, capture_output=True, text=True)
        return int(re.search(r"Collected : (\d+)", run.stderr).group(1))
    return (total(6) - total(1)) // 5


def peak_memory(build, path):
    """The peak over the idle program, as a multiple of the file, while old rows give way to new."""
    run = subprocess.run([build / "bin/korvale-bench-batch", "--mode=memory", path],
                         check=True, capture_output=True, text=True)
    return float(run.stdout.split("ratio")[1])


def measure(build):
    """Rows of (what, goal, figure); a goal is the largest ratio wanted, or the smallest where it is
    written with a minus sign. The row that is a gate comes first."""
    build = pathlib.Path(build).resolve()
    rows = []
    with tempfile.TemporaryDirectory() as folder:
        lists = {size: generate(build, size, folder) for size in SIZES}
        gated = lists[GATED_SIZE]
        rows.append((f"changed list of {GATED_SIZE:,}: instructions / D", INSTRUCTION_GATE,
                     instructions(build, "batch", gated) / instructions(build, "dom", gated)))
        for size in SIZES[1:]:
            rows.append((f"changed list of {size:,}: peak memory / file", 3.0,
                         peak_memory(build, lists[size])))
    time = times(build)
    for size in SIZES:
        rows.append((f"unchanged list of {size:,} / D", 0.4,
                     time["batchUnchanged", size] / time["domParse", size]))
    for size in SIZES[1:]:
        baseline = time["domParse", size]
        warm = time["domParseWarm", size]
        goal = 3.5 if size == 1_000_000 else 3.0
        rows.append((f"changed list of {size:,} / D", goal, time["batchChanged", size] / baseline))
        rows.append((f"changed list of {size:,} / D with a kept parser", goal,
                     time["batchChanged", size] / warm))
    plain = time["plainWay", 100_000]
    rows.append(("Q / first batch of 100,000", -25.0, plain / time["batchFirst", 100_000]))
    rows.append(("Q / later batch of 100,000", -50.0, plain / time["batchChanged", 100_000]))
    rows.append(("1,000 new events, 1,000,000 remembered / 10,000 remembered", 3.0,
                 time["newEvents", 1_000_000] / time["newEvents", 10_000]))
    return rows


if __name__ == "__main__":
    import sys
    for what, goal, figure in measure(sys.argv[1] if len(sys.argv) > 1 else "build-bench"):
        reached = figure >= -goal if goal < 0 else figure <= goal
        print(f"{what:65} {figure:7.2f}  goal {'>=' if goal < 0 else '<='} {abs(goal):g}"
              f"{'' if reached else '  MISSED'}")
