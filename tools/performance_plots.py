"""Draws the times of one workload over n as an SVG file."""
import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as pyplot  # noqa: E402
from matplotlib.ticker import FuncFormatter  # noqa: E402

import performance_words as words  # noqa: E402

# Text stays text, and the same numbers give the same file.
matplotlib.rcParams["svg.fonttype"] = "none"
matplotlib.rcParams["svg.hashsalt"] = "gxshape"
matplotlib.rcParams["font.family"] = "sans-serif"

COLOURS = {"geos": "#2a7f62", "boost": "#b5651d", "cgal": "#7d4fa1", "opencv": "#c0392b",
           "polyclipping": "#8a8d00", "nanoflann": "#d4769a", "cereal": "#5d8aa8"}
STYLES = ["-", "--", ":"]


def tick(value, _):
    for limit, unit, factor in ((1e3, "ns", 1.0), (1e6, "µs", 1e3), (1e9, "ms", 1e6)):
        if value < limit:
            return f"{value / factor:g} {unit}"
    return f"{value / 1e9:g} s"


def style_of(party, ways):
    if party == "ours":
        return {"color": "#0b4f9c", "linewidth": 2.6, "marker": "o", "zorder": 5}
    if party == "plain":
        return {"color": "#777777", "linewidth": 1.4, "marker": "s", "linestyle": "--", "markersize": 4}
    name = party.partition("_")[0]
    way = ways.setdefault(name, []).__len__()
    ways[name].append(party)
    return {"color": COLOURS.get(name, "#444444"), "linewidth": 1.5, "marker": "o", "markersize": 4,
            "linestyle": STYLES[way % len(STYLES)]}


def draw(results, workload, path):
    word = words.WORKLOADS[workload]
    figure, axes = pyplot.subplots(figsize=(7.6, 4.2))
    parties = results.parties(workload)
    order = sorted(parties, key=lambda p: (p != "ours", p == "plain", p))
    ways = {}
    for party in order:
        rows = sorted(parties[party].items())
        label = words.party(party).replace("*", "")
        axes.plot([n for n, _ in rows], [t for _, t in rows], label=label, **style_of(party, ways))
    axes.set_xscale("log")
    axes.set_yscale("log")
    axes.set_xlabel("n")
    axes.set_ylabel(f"CPU time per {word.item}")
    axes.set_title(word.title, loc="left", fontweight="bold")
    axes.xaxis.set_major_formatter(FuncFormatter(lambda value, _: f"{value:,.0f}"))
    axes.yaxis.set_major_formatter(FuncFormatter(tick))
    axes.yaxis.set_minor_formatter(FuncFormatter(lambda *_: ""))
    axes.grid(True, which="major", color="#dddddd", linewidth=0.7)
    axes.spines[["top", "right"]].set_visible(False)
    axes.legend(frameon=False, fontsize=9, loc="center left", bbox_to_anchor=(1.0, 0.5))
    figure.savefig(path, bbox_inches="tight", metadata={"Date": None})
    pyplot.close(figure)
