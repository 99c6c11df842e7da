#!/usr/bin/python3
"""./dev bench: measures the program against its baselines and prints the tables.

Fails only when an instruction count misses its goal: time depends on the machine, counts do not.
"""
import argparse
import datetime
import os
import pathlib
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
PROJECT = HERE.parent
GROUPS = ("batch", "tables", "start", "rest", "window", "answers", "sessions", "package",
          "agent")


def arguments():
    parser = argparse.ArgumentParser(prog="./dev bench", description=__doc__.split("\n", 1)[0])
    parser.add_argument("--build", default="build-bench", help="build folder with the benchmarks")
    parser.add_argument("--only", action="append", choices=GROUPS, metavar="GROUP",
                        help="measure only this group (may be repeated): " + ", ".join(GROUPS))
    parser.add_argument("--plot", action="store_true", help="draw docs/performance-*.svg and write docs/performance.md's tables anew")
    parser.add_argument("--quick", action="store_true", help="fewer repetitions, shorter waits")
    return parser.parse_args()


def on_desktop(names, binaries, folder, quick, take):
    # Imported here: batches and tables are measured without any desktop.
    from desktop_session import DesktopSession
    import answer_measures
    import desktop_measures
    import session_measures

    measures = {"start": desktop_measures.start, "rest": desktop_measures.rest,
                "window": desktop_measures.window, "answers": answer_measures.answers,
                "sessions": session_measures.sessions, "package": desktop_measures.package}
    with DesktopSession() as session:
        bench = desktop_measures.Bench(session, binaries, folder, quick)
        for name in names:
            take(measures[name](bench))
        bench.watch.close()


def measure_agent(options, binaries, folder, take):
    import agent_measures
    import watch_measures

    reason = agent_measures.missing() or watch_measures.missing()
    if not reason:
        take(agent_measures.agent(binaries, folder, options.quick))
        take(watch_measures.watch(binaries, folder, options.quick))
    elif options.only:
        sys.exit(f"bench: {reason}.")
    else:
        print(f"\nthe agent is left out: {reason}.")


def main():
    options = arguments()
    build = (PROJECT / options.build).resolve()
    binaries = build / "bin"
    os.environ["KORVALE_BINARIES"] = str(binaries)
    sys.path[:0] = [str(HERE), str(PROJECT / "tests" / "desktop")]
    import batch_measures
    import report

    about = {"commit": report.commit(PROJECT), "machine": report.machine(),
             "date": datetime.date.today().isoformat()}
    print(f"commit {about['commit']}, {about['machine']}")
    names = [name for name in GROUPS if not options.only or name in options.only]
    figures = []

    def take(result):
        figures.extend(result[0])
        report.print_figures(result[0])
        report.keep(build / "bench.json", result[0], about, result[1])

    repetitions = 3 if options.quick else 7
    with tempfile.TemporaryDirectory(prefix="korvale-bench-") as name:
        folder = pathlib.Path(name)
        if "batch" in names:
            take(batch_measures.batch(binaries, folder, repetitions))
        if "tables" in names:
            take(batch_measures.tables(binaries, folder, repetitions))
        if "agent" in names:
            measure_agent(options, binaries, folder, take)
        desktop = [one for one in names if one not in ("batch", "tables", "agent")]
        if desktop:
            on_desktop(desktop, binaries, folder, options.quick, take)
    if options.plot:
        import plots
        plots.draw(build / "bench.json", PROJECT / "docs")
        report.write_tables(build / "bench.json", PROJECT / "docs" / "performance.md")

    goals = [figure for figure in figures if figure.verdict != "-"]
    missed = [figure for figure in goals if not figure.reached]
    print(f"\n{len(goals) - len(missed)} of {len(goals)} goals reached")
    broken = [figure.what for figure in missed if figure.gate]
    if broken:
        sys.exit("a gate is broken: " + "; ".join(broken))


if __name__ == "__main__":
    main()
