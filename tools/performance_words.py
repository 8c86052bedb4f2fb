"""The words of docs/performance.md: titles, stories and reasons. The numbers come from the benchmarks."""
from collections import namedtuple

Workload = namedtuple("Workload", "title item story why", defaults=("",))

# A party of these beginnings is shown and is no rival: it does less than the workload asks.
NOT_A_PEER = ("copy", "floor")

PARTIES = {
    "ours": "**gxshape**", "plain": "plain scan", "geos": "GEOS", "boost": "Boost.Geometry", "cgal": "CGAL",
    "opencv": "OpenCV", "polyclipping": "polyclipping", "nanoflann": "nanoflann", "cereal": "cereal",
}


def party(key):
    """Returns the name to print: boost_serialization is not a way of asking Boost.Geometry."""
    if key == "boost_serialization":
        return "Boost.Serialization"
    name, _, way = key.partition("_")
    return PARTIES.get(name, name) + (f" ({way.replace('_', ' ')})" if way else "")


HEAD = """# Performance

How long the operations take, beside GEOS, Boost.Geometry, CGAL, OpenCV, polyclipping and nanoflann, and
beside the plain scan: the same algorithm step by step, which the tests hold every fast form to, bit by bit.

    make bench

installs the peers, runs every program of `bench/`, and makes this page and its pictures from their results
(`tools/performance_page.py build/bench/results docs`). All parties get the same input in the same run, each
through its best interface, prepared where it has one; each program's opening comment says which, and checks
before it times that the parties agree on the answer. Times are CPU times of one thread, on {machine}
where the last program began. The machine is a shared one, and with a load above 2 its times are up to three times those of
an idle one: look at ratios, not at the third digit.

The outline is what an edge finder gives for a smooth part: n points about one pixel apart, uneven and noisy.
"Growth" is the exponent g of n^g that the time of one item follows from n = 1,000 on: 0 for a cost per point
or query that does not depend on the size of the outline. "Peer / ours" above 1 says how many times faster
than the best peer, "plain / ours" than the plain scan."""

MEMORY = """Bytes a vertex that a contour of n points holds beside its points (16 bytes each), the allocator's
overhead included, after each kind of question was asked of a fresh one; `all` after all of them."""

ADVERSARY = """Shapes made to defeat an index: a regular polygon, points on a line, a comb, a spiral, all points
equal, one vertex at 1e12, one vertex not a number, and a tangle in which everything crosses everything. One
call on a fresh shape, what has to be built included; the largest quotient of all sizes. Above 2, in bold,
an operation would be more than twice as slow as the plain scan."""

SMALL = """One call on a fresh smooth outline of n points, beside the plain scan. In bold: slower by more than 5 %."""

MANY_HEAD = """Coins, countries, glyphs and uneven rings of 5 to 120 points, 52 on average, each from a vector of bare points
to the answer, as a program does that sees every shape once: making the shape and what it remembers, and
throwing both away, is in the time. Wall-clock times an outline; the parties take turns, pass by pass, and each keeps the
best of seven passes. "In one call" are `gfAreasMany`, `gfMeasureMany`, `gfHullsMany` and `gfLocateMany` over one
array of points and offsets. The ellipse is fitted to every tenth outline.

    build/bench/bin/small_outlines_benchmark"""

RATIOS = """How many times faster than the best peer that answers the same question, at each size; in bold where a peer is
faster. The times themselves stand under "Other times"."""

RATIO_REASONS = """- **Hausdorff**, few points: the peers look at vertices alone; ours is exact along the edges, with both places, and
  looks them up in an index that few points do not pay for.
- **Simplify**: ours begins a closed outline at its farthest pair, which has to be found first, so that the start vertex does
  not matter.
- **Moments**: to third order, with sums that keep what rounding takes away.
- **Circle**, few points: which points support the circle is decided exactly.
- **Descriptors, describe each**: all columns with widths, hull and their places, where the peer computes the few that it has.
- **Inscribed**, few points, and **overlay** of few points: what a call sets up shows.
- **Repair turns, equal set, clustered set**: the described repairs, which ask each candidate edge or pair by itself;
  `gfRepair` and `gfUnion` are the rows of the overlay."""

# The questions of that group, and why a peer is faster where one is.
MANY = {
    "make": ("Make the shape", "level: one allocation, and beside the points an empty memory of some hundred bytes. "
             "The peer's points have half the bytes."),
    "area_centre": ("Area and centre", "half of it is the making. The centres of the triangles are quotients, added in a stated "
                    "order, so that the bits are the same on every machine; the peer adds products in one pass."),
    "measures": ("Area, centre, length, box, moments",
                 "every measure is a pass of its own with a memory of its own."),
    "hull": ("Convex hull", ""),
    "inside_one": ("One point inside", "the box, the circle around the first point and the shape itself are made first; the scan is a fifth "
                   "of the time. The peer answers in single precision."),
    "inside_ten": ("Ten points inside", "what is made for the first point still shows at ten."),
    "self_intersection": ("Self-intersection", ""),
    "ellipse": ("Fitted ellipse",
                "another fit: the least sum of true distances, some 25 trials with every point in each, where the peers solve one "
                "algebraic system. Half of these outlines are no ellipses, and leave the size so open that "
                "rival starts are tried."),
    "store": ("Store", "an archive is a frame with versions and a checksum over all its bytes, made anew for each outline; the "
              "peer writes one block into a stream."),
    "load": ("Load", "as with storing; the checksum is verified, and counts are held against what is left."),
}

# Where the benchmark has no n = 10,000 or 100,000.
SUMMARY_SIZES = {"self_intersecting_set": 20000, "self_intersecting_set_pairs": 20000}

TARGETS = """The plain scan of segments has its edges, lines and boxes made beforehand, as a contour keeps them: one
comparison of boxes an edge, below a nanosecond. A short segment cannot be answered in a thousandth of that: its
few crossings alone, computed and checked, take longer."""

WORKLOADS = {
    "area_and_centre": Workload(
        "Area and centre of mass", "point",
        "The area and the centre of mass of a closed outline, both, of a shape that remembers neither.",
        why="the additions keep a stated order, so that the bits are the same on every machine: each "
            "waits for the one before. Of few points, what a fresh region keeps beside them shows."),
    "second_moments": Workload(
        "Second moments", "point",
        "The matrix of second moments of the area inside a closed outline.",
        why="level."),
    "length": Workload("Length", "point", "The length of a closed outline: one square root an edge.",
        why="level from 16 points on; below, entering the answer into the memory of a fresh contour shows."),
    "turned_rectangle": Workload(
        "Enclosing rectangle in a turned frame", "point",
        "The smallest rectangle along the axes of a frame that is turned against the picture.",
        why="of few points, the entry into the memory of answers by transform: two allocations."),
    "convex_hull": Workload("Convex hull", "point", "The convex hull of the vertices.",
        why="level at 8 points: the hull comes as a region of its own, with its memory."),
    "farthest_pair": Workload("Farthest pair", "point", "The two vertices farthest apart.",
        why="level: the hull is found first, also where the peer is given it by its own."),
    "containment": Workload(
        "Containment", "query",
        "Is a point inside? A million points over a square around the outline; the index is there already.",
        why="level at 8 and 16 points: the box and the circle around the first point are asked before the edges."),
    "containment_bulk": Workload(
        "Containment of many points", "query", "The same points in one call.",
        why="as with single points."),
    "containment_build": Workload(
        "Containment, the index", "edge",
        "What has to be made for those queries; ours made by, and timed with, n / 16 of them in one call.",
        why="of few points, what a grid needs beside its cells: the circle around the first point, "
            "the tables. It is made when rays have cost as much."),
    "nearest_point": Workload(
        "Nearest boundary point", "query",
        "The nearest point of the outline: half of the queries near it, half anywhere.",
        why="of few points, every distance that may be the smallest is taken as the scan takes it, "
            "with its rounding."),
    "nearest_point_build": Workload("Nearest boundary point, the index", "edge",
        "The index, and the answers to the first 4 questions: after as many ours has made its index, having scanned.",
        why="level."),
    "nearest_vertex": Workload("Nearest vertex", "query", "The nearest vertex, for the same points.", why="level."),
    "nearest_vertex_build": Workload("Nearest vertex, the index", "vertex", "The index, and the answers to the first 11 questions.",
        why="level."),
    "vertices_within": Workload(
        "Vertices within a tolerance", "query", "All vertices within one pixel of a point near the outline.",
        why="of few vertices all are looked at; of some hundred, a tree has few levels too. The answer is a list of "
            "its own, in the order of the cells."),
    "vertices_within_build": Workload("Vertices within a tolerance, the index", "vertex",
        "The index for a tolerance, and the answers to the first 17 questions.",
        why="up to 64 vertices there is none; beyond, as with single questions, which make most of it."),
    "segment_short": Workload(
        "Short segment against outline", "query", "All crossings of a segment of ten pixels near the outline.",
        why="of few edges, a scan. Each crossing is computed with cross products good to the last "
            "digits, then held against edge and segment with the tolerance, and all are put in order."),
    "segment_long": Workload(
        "Long segment against outline", "query", "All crossings of a segment across the whole outline.",
        why="as with short segments."),
    "segment_build": Workload("Segment against outline, the index", "edge", "Made once, before the first query.",
        why="of few edges, its allocations show."),
    "self_intersection": Workload(
        "Self-intersection test", "edge", "Does a fresh outline cross or touch itself? It does not.",
        why="of few edges; the index serves this one question and is thrown away."),
    "outline_outline": Workload(
        "Outline against outline", "call",
        "All crossings of two outlines of n points, the second turned and shifted a little.",
        why="as with segments."),
    "repair": Workload(
        "Repair", "point",
        "The outside of an outline of which every 20th point changed places with the next: about n / 75 small "
        "crossings. The peers unite what is wound around, which is "
        "another question with a similar answer."),
    "self_intersecting_set": Workload(
        "Self-intersection of a set of n regions", "call",
        "Do any of n regions of 182 points cross themselves or each other? Fresh regions, none crosses."),
    "self_intersecting_set_pairs": Workload(
        "Self-intersection of a set, the pairs alone", "call",
        "The same, every region knowing about itself already: which of n boxes meet.",
        why="the tree over the boxes is made anew each time; of few regions that shows."),
    "ellipse_fit": Workload(
        "Ellipse fit", "point",
        "An ellipse through n noisy points of a whole ellipse.",
        why="another fit. The peers' are algebraic: one pass and an eigenvalue. Ours minimises the true distances "
            "of the points and takes several passes; what that gains is in accuracy.md."),
    "store": Workload("Store", "point", "A contour into a fresh archive in memory.",
        why="the peers copy one block. An archive is a frame with versions and a checksum over all "
            "its bytes. Point by point, as cereal goes where it is not told that points are plain "
            "numbers, the peers take ten times as long (the row `each`)."),
    "load": Workload("Load", "point", "The contour back from the archive's bytes.",
        why="as with storing; the checksum is verified, and every count is held against what the "
            "archive holds before memory is taken."),
}
