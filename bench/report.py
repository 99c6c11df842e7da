"""Figures with their goals, and how they are printed and kept."""
import dataclasses
import json
import math
import pathlib
import platform
import subprocess


@dataclasses.dataclass
class Figure:
    """One measured line. `ratio` is what the goal speaks of: `value` over the baseline's, or the
    value itself where the goal is absolute."""
    group: str
    what: str
    value: str
    baseline: str
    ratio: float
    goal: str
    limit: float
    at_least: bool = False  # the goal is a lower bound
    gate: bool = False      # missing it fails the whole run
    unit: str = ""          # of ratio, where the goal is absolute

    @property
    def reached(self):
        return self.ratio >= self.limit if self.at_least else self.ratio <= self.limit

    @property
    def verdict(self):
        if math.isinf(self.limit):
            return "-"
        return ("reached" if self.reached else "MISSED") + (" (gate)" if self.gate else "")

    def cells(self):
        return [self.what, self.value, self.baseline, f"{self.ratio:.3g}{self.unit}", self.goal,
                self.verdict]


HEADINGS = ["what", "measured", "baseline", "ratio", "goal", "verdict"]


def markdown_table(rows):
    """Lines of a table that reads well both as plain text and as Markdown."""
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    lines = ["| " + " | ".join(cell.ljust(width) for cell, width in zip(row, widths)) + " |"
             for row in rows]
    lines.insert(1, "| " + " | ".join("-" * width for width in widths) + " |")
    return lines


def print_figures(figures):
    for group in dict.fromkeys(figure.group for figure in figures):
        print(f"\n{group}\n")
        rows = [figure.cells() for figure in figures if figure.group == group]
        print("\n".join(markdown_table([HEADINGS, *rows])), flush=True)


def commit(project):
    """The commit that was measured; "+" behind it stands for uncommitted changes."""
    def git(*arguments):
        return subprocess.run(["git", "-C", str(project), *arguments], check=False, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout.strip()
    name = git("rev-parse", "--short", "HEAD") or "unknown"
    return name + ("+" if git("status", "--porcelain", "--untracked-files=no") else "")


def machine():
    model = "unknown processor"
    for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith("model name"):
            model = line.split(":", 1)[1].strip()
            break
    memory = int(pathlib.Path("/proc/meminfo").read_text().split()[1]) // (1 << 20)
    cores = pathlib.Path("/proc/cpuinfo").read_text().count("processor\t")
    load = pathlib.Path("/proc/loadavg").read_text().split()[0]
    return f"{cores} x {model}, {memory} GiB, Linux {platform.release()}, load {load} at the start"


def keep(path, figures, about, series):
    """Everything that was measured as JSON: what --plot draws. Groups that were not measured this
    time keep what they had."""
    earlier = json.loads(path.read_text()) if path.exists() else {}
    measured = {figure.group for figure in figures}
    kept = [line for line in earlier.get("figures", []) if line["group"] not in measured]
    kept += [{**dataclasses.asdict(figure), **about} for figure in figures]
    groups = list(dict.fromkeys(line["group"] for line in earlier.get("figures", []) + kept))
    kept.sort(key=lambda line: groups.index(line["group"]))  # each stays where it was
    data = {"figures": kept, "series": {**earlier.get("series", {}), **series}}
    path.write_text(json.dumps(data, indent=1) + "\n")


def write_tables(kept, document):
    """Replaces the part of the document between its two marks by the tables of what was kept."""
    start, end = "<!-- figures: written by ./dev bench --plot -->", "<!-- end of figures -->"
    lines = json.loads(kept.read_text())["figures"]
    text = []
    for group in dict.fromkeys(line["group"] for line in lines):
        mine = [line for line in lines if line["group"] == group]
        names = {field.name for field in dataclasses.fields(Figure)}
        rows = [Figure(**{name: line[name] for name in names}).cells() + [line["commit"]]
                for line in mine]
        text += [f"### {group}", "", *markdown_table([[*HEADINGS, "commit"], *rows]), ""]
    machines = sorted({f"{line['commit']}, {line['date']}: {line['machine']}" for line in lines})
    text += ["Measured at:", "", *(f"- {one}" for one in machines), ""]
    before, rest = document.read_text().split(start)
    document.write_text(before + start + "\n\n" + "\n".join(text) + end + rest.split(end)[1])
