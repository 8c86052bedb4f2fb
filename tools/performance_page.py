#!/usr/bin/env python3
"""Makes docs/performance.md from the results of the benchmarks.

    tools/performance_page.py [folder of results] [docs folder]

Reads every *.json that Google Benchmark wrote into build/bench/results. A benchmark is named
`<workload>/<party>/<n>`: `ours` is the library, `plain` the algorithm step by step, any other party a
peer, perhaps with a way of asking it, as in `cgal_exact`. Times are CPU times per item, from
items_per_second; of repeated runs the median stands. Workloads named `adversary_<shape>_<operation>`
`small_<operation>` and `many_<question>` go into tables of their own; `memory/ours/<n>` gives bytes as counters.

The page is written from these numbers alone, its words from performance_words.py; performance_plots.py
draws one SVG for each workload.
"""
import glob
import json
import math
import os
import statistics
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import performance_words as words  # noqa: E402

OURS = "ours"
PLAIN = "plain"


class Results:
    """All times in nanoseconds an item: times[workload][party][n]."""

    def __init__(self):
        self.times = {}
        self.counters = {}
        self.skipped = []
        self.context = {}

    def parties(self, workload):
        return self.times.get(workload, {})

    def peers(self, workload):
        return {party: rows for party, rows in self.parties(workload).items()
                if party not in (OURS, PLAIN) and not party.startswith(words.NOT_A_PEER)}

    def time(self, workload, party, n):
        return self.parties(workload).get(party, {}).get(n)

    def best_peer(self, workload, n):
        """Returns (time, party) of the fastest peer, or None."""
        found = [(rows[n], party) for party, rows in self.peers(workload).items() if n in rows]
        return min(found) if found else None

    def sizes(self, workload):
        return sorted({n for rows in self.parties(workload).values() for n in rows})


def split_name(name):
    """Returns (workload, party, n), or None for a benchmark that is named otherwise."""
    parts = name.split("/")
    if len(parts) < 3 or not parts[2].isdigit():
        return None
    return parts[0], parts[1], int(parts[2])


def nanoseconds(entry):
    """Returns the CPU time an item takes, or of the whole round where items were not counted."""
    if entry.get("items_per_second"):
        return 1e9 / entry["items_per_second"]
    return entry["cpu_time"] * {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}[entry["time_unit"]]


NOT_COUNTERS = {"family_index", "per_family_instance_index", "repetitions", "repetition_index", "threads",
                "iterations", "real_time", "cpu_time", "items_per_second", "bytes_per_second"}


def read(folder):
    results = Results()
    runs = {}
    for path in sorted(glob.glob(os.path.join(folder, "*.json"))):
        with open(path, encoding="utf-8") as file:
            report = json.load(file)
        results.context = report["context"]
        for entry in report["benchmarks"]:
            key = split_name(entry["name"])
            if key is None or entry.get("run_type", "iteration") != "iteration":
                continue
            if entry.get("error_occurred"):
                results.skipped.append((entry["name"], entry.get("error_message", "")))
                continue
            runs.setdefault(key, []).append(nanoseconds(entry))
            counters = {name: value for name, value in entry.items()
                        if isinstance(value, (int, float)) and name not in NOT_COUNTERS}
            results.counters[key] = counters
    for (workload, party, n), times in runs.items():
        rows = results.times.setdefault(workload, {}).setdefault(party, {})
        rows[n] = statistics.median(times)
    return results


def growth(rows, least=1000):
    """Returns the exponent of the time an item over n, from a straight line through the logarithms."""
    points = [(math.log(n), math.log(t)) for n, t in rows.items() if n >= least and t > 0]
    if len(points) < 2:
        return None
    mean_x = sum(x for x, _ in points) / len(points)
    mean_y = sum(y for _, y in points) / len(points)
    return (sum((x - mean_x) * (y - mean_y) for x, y in points) /
            sum((x - mean_x) ** 2 for x, _ in points))


# ---- Text -------------------------------------------------------------------------------------------


def time_text(ns):
    if ns is None:
        return ""
    for limit, unit, factor in ((1e3, "ns", 1.0), (1e6, "µs", 1e3), (1e9, "ms", 1e6)):
        if ns < limit:
            return f"{ns / factor:.3g} {unit}"
    return f"{ns / 1e9:.3g} s" if ns < 1e12 else f"{ns / 1e9:,.0f} s"


def ratio_text(ratio):
    if ratio is None:
        return ""
    return f"{ratio:,.0f}" if ratio >= 100 else f"{ratio:.3g}"


def size_text(n):
    return f"{n:,}"


def table(head, rows):
    aligns = ["--"] + ["--:"] * (len(head) - 1)
    lines = ["| " + " | ".join(head) + " |", "|" + "|".join(aligns) + "|"]
    return lines + ["| " + " | ".join(row) + " |" for row in rows]


def workload_rows(results, n):
    """One row of the summary for each workload: time, growth, best peer, ratios."""
    rows = []
    for key, word in words.WORKLOADS.items():
        at = n if results.time(key, OURS, n) else words.SUMMARY_SIZES.get(key, n)
        ours = results.time(key, OURS, at)
        if ours is None:
            continue
        peer = results.best_peer(key, at)
        plain = results.time(key, PLAIN, at)
        exponent = growth(results.parties(key)[OURS])
        rows.append([
            f"[{word.title}](#{anchor(word.title)})" + ("" if at == n else f", n = {size_text(at)}"),
            f"{time_text(ours)} / {word.item}",
            f"{exponent:+.2f}" if exponent is not None else "",
            words.party(peer[1]) if peer else "",
            time_text(peer[0]) if peer else "",
            ratio_text(peer[0] / ours) if peer else "",
            ratio_text(plain / ours) if plain else "",
        ])
    return rows


def summary(results, n):
    head = ["workload", "ours", "growth", "best peer", "its time", "peer / ours", "plain / ours"]
    return table(head, workload_rows(results, n))


def anchor(title):
    kept = "".join(c for c in title.lower() if c.isalnum() or c in " -")
    return kept.replace(" ", "-")


def misses(results):
    """Returns (workload, n, ours, peer time, peer) wherever a peer is faster than ours."""
    found = []
    for key in words.WORKLOADS:
        for n in results.sizes(key):
            ours = results.time(key, OURS, n)
            peer = results.best_peer(key, n)
            if ours and peer and peer[0] < ours:
                found.append((key, n, ours, peer[0], peer[1]))
    return found


def misses_section(results):
    found = misses(results)
    rows = [row for key in words.WORKLOADS for row in results.sizes(key)
            if results.time(key, OURS, row) and results.best_peer(key, row)]
    lines = [f"In {len(rows) - len(found)} of {len(rows)} comparisons (a workload at a size) no peer is "
             "faster. The others:", ""]
    if not found:
        return [f"In all {len(rows)} comparisons (a workload at a size) no peer is faster."]
    lines += table(["workload", "n", "ours", "peer", "its time", "peer / ours"],
                   [[words.WORKLOADS[key].title, size_text(n), time_text(ours), words.party(party),
                     time_text(peer), ratio_text(peer / ours)] for key, n, ours, peer, party in found])
    lines.append("")
    for key in dict.fromkeys(key for key, *_ in found):
        if words.WORKLOADS[key].why:
            lines.append(f"- **{words.WORKLOADS[key].title}**: {words.WORKLOADS[key].why}")
    return lines


TARGETS = (("containment", 1000), ("nearest_point", 1000), ("segment_short", 1000),
           ("segment_long", 1000), ("self_intersection", 500))


def targets_section(results):
    rows = []
    for key, target in TARGETS:
        n = 100000
        ours, plain = results.time(key, OURS, n), results.time(key, PLAIN, n)
        if ours and plain:
            rows.append([words.WORKLOADS[key].title, time_text(plain), time_text(ours),
                         ratio_text(plain / ours), str(target),
                         "yes" if plain / ours >= target else "**no**"])
    return table(["workload", "plain", "ours", "plain / ours", "wanted", "met"], rows)


def workload_section(results, key):
    word = words.WORKLOADS[key]
    parties = results.parties(key)
    order = [OURS] + sorted(p for p in parties if p not in (OURS, PLAIN)) + ([PLAIN] if PLAIN in parties else [])
    lines = [f"### {word.title}", "", word.story, "",
             f"![{word.title}: time over n](img/performance/{key}.svg)", ""]
    order = [party for party in order if party in parties]
    rows = [[size_text(n)] + [time_text(parties[party].get(n)) for party in order] for n in results.sizes(key)]
    exponents = [growth(parties[party]) for party in order]
    rows.append(["growth"] + [f"{exponent:+.2f}" if exponent is not None else "" for exponent in exponents])
    head = [f"n, time / {word.item}"] + [words.party(party) for party in order]
    return lines + table(head, rows) + [""]


def memory_section(results):
    rows = []
    names = []
    for (workload, party, n), counters in sorted(results.counters.items()):
        if (workload, party) != ("memory", OURS):
            continue
        names = names or list(counters)
        rows.append([size_text(n)] + [f"{counters.get(name, math.nan):.1f}" for name in names])
    return table(["n"] + [name.replace("_", " ") for name in names], rows) if rows else []


def prefixed(results, prefix):
    return {key[len(prefix):]: key for key in results.times if key.startswith(prefix)}


def worst(results, key):
    """Returns the largest ours / plain over all sizes, or None."""
    parties = results.parties(key)
    both = [parties[OURS][n] / parties[PLAIN][n] for n in parties.get(OURS, {})
            if n in parties.get(PLAIN, {})]
    return max(both) if both else None


def adversary_section(results):
    found = prefixed(results, "adversary_")
    shapes = list(dict.fromkeys(name.split("_", 1)[0] for name in found))
    operations = list(dict.fromkeys(name.split("_", 1)[1] for name in found))
    rows = []
    for operation in operations:
        row = [operation.replace("_", " ")]
        for shape in shapes:
            ratio = worst(results, found.get(f"{shape}_{operation}", ""))
            text = f"{ratio:.2g}" if ratio is not None else ""
            row.append(f"**{text}**" if ratio is not None and ratio > 2.0 else text)
        rows.append(row)
    return table(["ours / plain, at worst"] + shapes, rows) if rows else []


def small_section(results):
    found = prefixed(results, "small_")
    sizes = sorted({n for key in found.values() for n in results.sizes(key)})
    rows = []
    for name, key in found.items():
        row = [name.replace("_", " ")]
        for n in sizes:
            ours, plain = results.time(key, OURS, n), results.time(key, PLAIN, n)
            text = f"{ours / plain:.2f}" if ours and plain else ""
            row.append(f"**{text}**" if text and ours / plain > 1.05 else text)
        rows.append(row)
    return table(["ours / plain, n ="] + [size_text(n) for n in sizes], rows) if rows else []


def many_section(results):
    """The group of small outlines: a row for each question, and why a peer is faster where one is."""
    rows = []
    why = []
    for key, (title, reason) in words.MANY.items():
        parties = results.parties("many_" + key)
        if OURS not in parties:
            continue
        n = max(parties[OURS])
        ours = parties[OURS][n]
        together = parties.get("ours_many", {}).get(n)
        peer = min((times[n], party) for party, times in parties.items()
                   if not party.startswith(OURS) and n in times)
        rows.append([title, time_text(ours), time_text(together), words.party(peer[1]), time_text(peer[0]),
                     ratio_text(peer[0] / ours), ratio_text(peer[0] / together) if together else ""])
        if peer[0] < ours:
            why.append(f"- **{title}**: {reason}")
    head = ["question", "ours", "in one call", "best peer", "its time", "peer / ours", "peer / in one call"]
    return table(head, rows) + [""] + why if rows else []


def unnamed(results):
    """The workloads that have no title and no group of their own."""
    return [key for key in results.times
            if key not in words.WORKLOADS and not key.startswith(("adversary_", "small_", "many_")) and key != "memory"]


STANDARD_SIZES = {8, 16, 32, 64, 100, 128, 256, 1000, 10000, 100000, 1000000}


def ratio_table(results, keys):
    sizes = sorted({n for key in keys for n in results.sizes(key)
                    if results.time(key, OURS, n) and results.best_peer(key, n)})
    rows = []
    for key in keys:
        row = [key.replace("_", " ")]
        for n in sizes:
            ours, peer = results.time(key, OURS, n), results.best_peer(key, n)
            text = ratio_text(peer[0] / ours) if ours and peer else ""
            row.append(f"**{text}**" if text and peer[0] < ours else text)
        rows.append(row)
    return table(["best peer / ours, n ="] + [size_text(n) for n in sizes], rows)


def ratios_section(results):
    """Gauges and overlay: how many times faster than the best peer, a row for each question, a column for each size;
    what is not counted in points of an outline has a table of its own."""
    keys = [key for key in unnamed(results) if OURS in results.parties(key) and results.peers(key)]
    others = [key for key in keys if not STANDARD_SIZES.issuperset(results.sizes(key))]
    lines = []
    for group in ([key for key in keys if key not in others], others):
        if group:
            lines += ratio_table(results, group) + [""]
    return lines


def others_section(results):
    """Rows of ours and peers that belong to no named workload."""
    rows = []
    for key in unnamed(results):
        parties = results.parties(key)
        for party, times in parties.items():
            rows.append([key.replace("_", " "), words.party(party)] +
                        [", ".join(f"{time_text(t)} ({size_text(n)})" for n, t in sorted(times.items()))])
    return table(["benchmark", "party", "times (n)"], rows) if rows else []


def machine(context):
    caches = ", ".join(f"L{c['level']} {c['type'].lower()} {c['size'] // 1024} KiB"
                       for c in context.get("caches", []))
    return (f"{context.get('num_cpus')} cores at {context.get('mhz_per_cpu')} MHz; {caches}; "
            f"{context.get('date', '')[:10]}, load average {max(context.get('load_avg') or [0.0]):.0f}")


def page(results):
    lines = [words.HEAD.format(machine=machine(results.context)), ""]
    for n in (100, 10000, 100000):
        lines += [f"## At n = {size_text(n)}", ""] + summary(results, n) + [""]
    lines += ["## Where a peer is faster", ""] + misses_section(results) + [""]
    lines += ["## Against the plain scan, n = 100,000", ""] + targets_section(results) + ["", words.TARGETS, ""]
    lines += ["## Memory", "", words.MEMORY, ""] + memory_section(results) + [""]
    lines += ["## Hard shapes", "", words.ADVERSARY, ""] + adversary_section(results) + [""]
    lines += ["## Few points", "", words.SMALL, ""] + small_section(results) + [""]
    lines += ["## Twenty thousand small outlines", "", words.MANY_HEAD, ""] + many_section(results) + [""]
    ratios = ratios_section(results)
    if ratios:
        lines += ["## Gauges and overlay", "", words.RATIOS, ""] + ratios + [words.RATIO_REASONS, ""]
    lines += ["## Workload by workload", ""]
    for key in words.WORKLOADS:
        if key in results.times:
            lines += workload_section(results, key)
    others = others_section(results)
    if others:
        lines += ["## Other times", ""] + others + [""]
    if results.skipped:
        lines += ["## Not compared", ""] + [f"- `{name}`: {why}" for name, why in results.skipped] + [""]
    return "\n".join(lines).rstrip() + "\n"


def main(arguments):
    folder = arguments[1] if len(arguments) > 1 else "build/bench/results"
    docs = arguments[2] if len(arguments) > 2 else "docs"
    results = read(folder)
    if not results.times:
        sys.exit(f"performance_page.py: no benchmark results in {folder}")
    import performance_plots  # needs matplotlib, which the tables do not
    pictures = os.path.join(docs, "img", "performance")
    os.makedirs(pictures, exist_ok=True)
    for key in words.WORKLOADS:
        if key in results.times:
            performance_plots.draw(results, key, os.path.join(pictures, f"{key}.svg"))
    target = os.path.join(docs, "performance.md")
    with open(target, "w", encoding="utf-8") as file:
        file.write(page(results))
    print(f"wrote {target}")


if __name__ == "__main__":
    main(sys.argv)
