"""Draws docs/performance-*.svg from what ./dev bench kept."""
import json

import matplotlib

matplotlib.use("svg")
import matplotlib.pyplot as plt  # noqa: E402  (after the choice of the backend)

# Text stays text, and the same figures give the same files.
plt.rcParams.update({"svg.fonttype": "none", "svg.hashsalt": "korvale",
                     "font.family": "sans-serif"})

REACHED, MISSED, NEUTRAL = "#2e7d32", "#c62828", "#546e7a"


def save(figure, folder, name, caption):
    figure.text(0.01, -0.08, caption, fontsize=6, color="#555555")
    figure.savefig(folder / f"performance-{name}.svg", bbox_inches="tight",
                   metadata={"Date": None, "Creator": "./dev bench --plot"})
    plt.close(figure)


def caption_of(lines):
    made = sorted({f"{line['commit']} ({line['date']})" for line in lines})
    return "commit " + ", ".join(made)


def share_of_goal(line):
    """1 is the goal, less is better, whichever way the goal points."""
    if line["limit"] == 0:
        return 0.0 if line["ratio"] == 0 else 2.0
    share = line["ratio"] / line["limit"]
    return 1 / share if line["at_least"] else share


def draw_goals(lines, folder):
    lines = [line for line in lines if line["limit"] != float("inf")][::-1]
    figure, axes = plt.subplots(figsize=(9, 0.24 * len(lines) + 1))
    shares = [share_of_goal(line) for line in lines]
    axes.barh(range(len(lines)), shares, height=0.62,
              color=[REACHED if share <= 1 else MISSED for share in shares])
    axes.axvline(1, color="black", linewidth=1)
    axes.set_yticks(range(len(lines)), [line["what"] for line in lines], fontsize=7)
    axes.set_xlabel("share of the goal (at most 1 is reached)", fontsize=8)
    axes.set_xlim(0, max(1.2, min(max(shares), 3) * 1.05))
    axes.margins(y=0.01)
    save(figure, folder, "goals", caption_of(lines))


def draw_batch(taken, lines, folder):
    names = {"plainWay": "the plain way (Q)", "batchFirst": "changed, first",
             "batchChanged": "changed, again", "domParse": "DOM parse, first (D)",
             "domParseWarm": "DOM parse, again (D)", "batchUnchanged": "unchanged"}
    figure, axes = plt.subplots(figsize=(6.5, 4.2))
    for key, label in names.items():
        points = sorted((int(name.split("/")[1]), value) for name, value in taken.items()
                        if name.split("/")[0] == key)
        style = "--" if key in ("domParse", "domParseWarm", "plainWay") else "-"
        axes.plot(*zip(*points), style, marker="o", markersize=3, label=label)
    axes.set(xscale="log", yscale="log", xlabel="records in the list", ylabel="CPU time, ms")
    axes.grid(alpha=0.3)
    axes.legend(fontsize=7)
    save(figure, folder, "batch", caption_of(lines))


def draw_start(lines, folder):
    parts = [line for line in lines if line["goal"] == "≤ 1.5 F"]
    figure, axes = plt.subplots(figsize=(6.5, 2.2))
    places = range(len(parts))
    axes.barh([place + 0.2 for place in places], [1] * len(parts), 0.36, color=NEUTRAL,
              label="minimal tray program (F)")
    axes.barh([place - 0.2 for place in places], [line["ratio"] for line in parts], 0.36,
              color=REACHED, label="korvale-ui")
    for place, line in enumerate(parts):
        axes.text(1.01, place + 0.2, line["baseline"], va="center", fontsize=7)
        axes.text(line["ratio"] + 0.01, place - 0.2, line["value"], va="center", fontsize=7)
    axes.axvline(1.5, color="black", linewidth=1)
    axes.set_yticks(places, [line["what"] for line in parts], fontsize=8)
    axes.set_xlim(0, 1.8)
    axes.set_xlabel("start to tray item, F = 1, goal 1.5", fontsize=8)
    axes.legend(fontsize=7, loc="center left", bbox_to_anchor=(1.0, 0.5))
    save(figure, folder, "start", caption_of(parts))


def draw(kept, folder):
    data = json.loads(kept.read_text())
    lines = data["figures"]
    draw_goals(lines, folder)
    if "batch" in data["series"]:
        draw_batch(data["series"]["batch"],
                   [line for line in lines if line["group"].startswith("A batch")], folder)
    if any(line["goal"] == "≤ 1.5 F" for line in lines):
        draw_start(lines, folder)
