"""Printers of gdb for the classes of gxshape.

Installed under share/gdb/auto-load beside the path of libvelstd, gdb loads this by itself where that place is on its
list (/usr/share/gdb/auto-load is; `add-auto-load-safe-path` and `set debug-file-directory` widen it).  By hand:

    (gdb) source gxshape_gdb.py
    (gdb) print region
    $1 = region of 4 points, 1 hole, label 0 = {outline = {[0] = (0, 0), ...}, holes = {...}}

Compilers leave the layout of classes with virtual functions to the library's own debug information.  Where that is
not installed, compile with -g -femit-class-debug-always (g++) or -g -fstandalone-debug (clang++).
"""
import gdb
import gdb.printing


# ---- Reading values ----------------------------------------------------------------------------------

def number(value):
    """Text of a double: the fewest digits that read back as the same one."""
    text = repr(float(value))
    return text[:-2] if text.endswith(".0") else text


def point(value):
    return f"({number(value['x_'])}, {number(value['y_'])})"


def members(vector):
    """The elements of a std::vector, of either standard library."""
    fields = [field.name for field in vector.type.strip_typedefs().fields()]
    if "__begin_" in fields:
        at, end = vector["__begin_"], vector["__end_"]
    else:
        at, end = vector["_M_impl"]["_M_start"], vector["_M_impl"]["_M_finish"]
    for i in range(int(end - at)):
        yield (at + i).dereference()


def count(what, number_of):
    return f"{number_of} {what}{'' if number_of == 1 else 's'}"


def base(value, name):
    """The part of an object that is of that class, a virtual base too."""
    return value.cast(gdb.lookup_type(name))


def derives(of, name):
    """Tells whether a class is that one or derives from it; a cast between strangers would just be made."""
    of = of.strip_typedefs().unqualified()
    return of.name == name or any(derives(field.type, name) for field in of.fields() if field.is_base_class)


def state_of(contour):
    return base(contour, "gxContour")["state_"]


# ---- Values of a few numbers ---------------------------------------------------------------------------

def angle(unit):
    return lambda value: f"{number(value['value_'])} {unit}"


def pair(value):
    return f"({value['x_']}, {value['y_']})"


def matrix(value):
    return (f"[{number(value['m00_'])} {number(value['m01_'])}; "
            f"{number(value['m10_'])} {number(value['m11_'])}]")


def xform(value):
    xx, xy, yy, tx, ty, yx = (number(value["stored_"][i]) for i in range(6))
    return f"[{xx} {xy}; {yx} {yy}] + ({tx}, {ty})"


def rect(value):
    return f"[{point(value['origin_'])}, {point(value['corner_'])}]"


def line(value):
    return f"through {point(value['point_'])} along {point(value['direction_'])}"


def segment(value):
    return f"{point(value['p1_'])} to {point(value['p2_'])}"


def circle(value):
    return f"circle at {point(value['center_'])}, radius {number(value['radius_'])}"


def ellipse(value):
    geom = value["geom_"]
    return (f"ellipse at {point(geom['center'])}, radii {point(geom['radii'])}, "
            f"rotation {number(geom['rotation']['value_'])}")


def eighth(value):
    return f"{int(value['units_'])}/256 turn"


def edgelet(value):
    return (f"{point(value['position_'])}, magnitude {int(value['magnitude_'])}, "
            f"angle {eighth(value['angle_'])}")


def colour(value):
    return "#%02x%02x%02x" % (int(value["red_"]), int(value["green_"]), int(value["blue_"]))


def rigid(value):
    return f"rotation by {number(value['angle_']['value_'])} deg, then {point(value['translation_'])}"


def budget(value):
    limit = int(value["limit_"])
    return f"{int(value['spent_'])} steps spent of {'any number' if limit == 2 ** 64 - 1 else limit}"


def fit(what):
    return lambda value: (f"{what(value[what.__name__ + '_'])}, residual {number(value['residual_'])}, "
                          f"{count('point', len(list(members(value['ignored_']))))} left out")


class Line:
    """Prints a value as one line."""

    def __init__(self, value, text):
        self._value, self._text = value, text

    def to_string(self):
        return self._text(self._value)


# ---- Shapes: a line, and the parts below it --------------------------------------------------------------

class Shape:
    """Prints a line, and lists behind it."""

    def __init__(self, value):
        self._value = value

    def children(self):
        for name, items in self.parts():
            for i, item in enumerate(items):
                yield f"{name}[{i}]", item


class Contour(Shape):
    what = "contour"

    def parts(self):
        yield "", members(state_of(self._value)["points"])

    def to_string(self):
        state = state_of(self._value)
        points = count("point", len(list(members(state["points"]))))
        return f"{'closed' if state['closed'] else 'open'} {self.what} of {points}, label {int(state['label'])}"


class EdgeContour(Contour):
    what = "edge-point contour"

    def parts(self):
        yield "", members(state_of(self._value)["points"])
        yield "data", members(self._value["edges_"]["data"])


class Region(Shape):
    what = "region"

    def parts(self):
        yield "", members(state_of(self._value)["points"])
        yield "holes", members(base(self._value, "gxRegion")["holes_"])

    def to_string(self):
        state = state_of(self._value)
        return (f"{self.what} of {count('point', len(list(members(state['points']))))}, "
                f"{count('hole', len(list(members(base(self._value, 'gxRegion')['holes_']))))}, "
                f"label {int(state['label'])}")


class EdgeRegion(Region):
    what = "edge-point region"


class RegionSet(Shape):
    what = "set"

    def parts(self):
        yield "", members(base(self._value, "gxRegionSet")["state_"]["regions"])

    def to_string(self):
        regions = len(list(members(base(self._value, "gxRegionSet")["state_"]["regions"])))
        return f"{self.what} of {count('region', regions)}"


class EdgeRegionSet(RegionSet):
    what = "edge-point set"


class Polygon(Shape):
    def parts(self):
        yield "", members(self._value["vertices_"])

    def to_string(self):
        rule = "even-odd" if int(self._value["fillMode_"]) == 0 else "non-zero"
        vertices = len(list(members(self._value["vertices_"])))
        return f"polygon of {vertices} {'vertex' if vertices == 1 else 'vertices'}, {rule}"


class Tablet(Shape):
    def parts(self):
        yield "", members(self._value["segments_"])

    def to_string(self):
        return f"tablet of {count('segment', len(list(members(self._value['segments_']))))}"


class Handle:
    """A handle, with the object that it refers to."""

    def __init__(self, value):
        self._value = value

    def to_string(self):
        if int(self._value["object_"]) == 0:
            return "null handle"
        return f"handle to {self._value['object_'].type.target().unqualified()}"

    def children(self):
        if int(self._value["object_"]) != 0:
            yield "object", self._value["object_"].dereference()


class Raised:
    """An exception of the library: its class, and its message where it has one."""

    def __init__(self, value):
        self._value = value

    def to_string(self):
        name = self._value.type.strip_typedefs().unqualified().name
        if not derives(self._value.type, "gxExceptionWithString"):
            return name
        text = base(self._value, "gxExceptionWithString")["text_"]["_M_ptr"]
        if int(text) == 0:
            return name
        start, size = text.dereference()["_M_dataplus"]["_M_p"], int(text.dereference()["_M_string_length"])
        return f"{name}: {''.join(chr(int(start[i])) for i in range(size))}"


LINES = {
    "gxVector<2>": point, "gxPoint": lambda v: point(v["position_"]), "gxRadian": angle("rad"),
    "gxDegree": angle("deg"), "gxMatrix<2>": matrix, "gxXform<2>": xform, "gxRect": rect, "gxLine": line,
    "gxLineSeg": segment, "gxCircle": circle, "gxEllipse": ellipse, "gxAngle8": eighth, "gxEdgelet": edgelet,
    "gxColor": colour, "gx2XformLinear": lambda v: xform(v["xform_"]), "gx2Rigid": rigid,
    "gxThreadID": lambda v: f"thread {int(v['number_'])}", "gxBudget": budget,
    "gxCircleFitResults": fit(circle), "gxEllipseFitResults": fit(ellipse),
}
SHAPES = {"gxContour": Contour, "gxRegion": Region, "gxRegionSet": RegionSet, "gxPolygon": Polygon,
          "gxContourT<gxEdgelet>": EdgeContour, "gxRegionT<gxEdgelet>": EdgeRegion,
          "gxRegionSetT<gxEdgelet>": EdgeRegionSet, "gxRecordingTablet": Tablet}
RAISED = ["gxBadPointer", "gxStopped", "gxMathError::Singular", "gxPel::BadWindow", "gxContourDefs::EmptyContour",
          "gxContourDefs::EmptyRegionSet", "gxContourDefs::BadParams", "gxContourDefs::RegionCannotBeSetOpen"]


def printers():
    made = gdb.printing.RegexpCollectionPrettyPrinter("gxshape")

    def add(name, make):
        made.add_printer(name, "^" + name + "$", make)

    for name, text in LINES.items():
        add(name, lambda value, text=text: Line(value, text))
    for name, make in SHAPES.items():
        add(name, make)
    for name in RAISED:
        add(name, Raised)
    made.add_printer("gxPair", "^gxPair<.*>$", lambda value: Line(value, pair))
    made.add_printer("gxPtrHandle", "^gxPtrHandle(_const)?<.*>$", Handle)
    return made


gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
