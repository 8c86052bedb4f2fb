#!/usr/bin/env python3
"""Lists what archives hold. Written from docs/archive.md alone, without the library.

    read_archive.py FILE...            every object, field by field
    read_archive.py --bytes FILE...    the same with the bytes and their places
    read_archive.py --flat FILE...     one line a frame, numbers as their bits (for comparisons)

A class that is not the library's own can be described, for example as a sequence of handles:

    read_archive.py --class 'ShapeList=handles' FILE

where the fields, separated by commas, are any of version, u8, bool, u16, u32, i32, f64, point, points,
edgelets, handle and handles.

Ends with 1 where a file is no archive, or is damaged.
"""

import argparse
import struct
import sys

MAGIC = bytes([0x89, 0x47, 0x58, 0x41, 0x0D, 0x0A, 0x1A, 0x0A])
FORMAT = 1
MASK = (1 << 64) - 1
FACTOR = 0xD6E8FEB86659FD93
LANES = (0x243F6A8885A308D3, 0x13198A2E03707344, 0xA4093822299F31D0, 0x082EFA98EC4E6C89)


class ArchiveError(Exception):
    """What is wrong with an archive."""


def step(lane, word):
    product = ((lane ^ word) * FACTOR) & MASK
    return ((product << 29) | (product >> 35)) & MASK


def checksum(data):
    padded = data + bytes(-len(data) % 32)
    a, b, c, d = LANES
    for w0, w1, w2, w3 in struct.iter_unpack("<4Q", padded):
        a, b, c, d = step(a, w0), step(b, w1), step(c, w2), step(d, w3)
    total = len(data)
    for lane in (a, b, c, d):
        total = step(total, lane)
    total ^= total >> 32
    total = (total * FACTOR) & MASK
    return total ^ (total >> 29)


class Record:
    """One object: its class and its fields, in order."""

    def __init__(self, number, name, offset):
        self.number, self.name, self.offset = number, name, offset
        self.fields = []  # (label, value, offset, size)

    def __getitem__(self, label):
        return next(value for name, value, _, _ in self.fields if name == label)


class Null:
    """A handle that holds nothing."""


class Frame:
    """Reads one frame of `data`, which begins at `start`."""

    def __init__(self, data, start, own_classes):
        self.data, self.start, self.own_classes = data, start, own_classes
        self.objects, self.classes, self.complete = [], [], set()
        self.record = None
        header = data[start : start + 20]
        if header[:8] != MAGIC[: len(header[:8])]:
            raise ArchiveError(f"byte {start}: this is not an archive")
        if len(header) < 20:
            raise ArchiveError(f"byte {len(data)}: the header is cut off")
        version, length = struct.unpack("<IQ", header[8:])
        if version != FORMAT:
            raise ArchiveError(f"byte {start + 8}: format {version} is not known")
        self.payload_end = start + 20 + length
        self.end = self.payload_end + 8
        if self.end > len(data):
            raise ArchiveError(f"byte {len(data)}: {self.end - len(data)} bytes are missing")
        (written,) = struct.unpack("<Q", data[self.payload_end : self.end])
        if written != checksum(data[start : self.payload_end]):
            raise ArchiveError(f"byte {self.payload_end}: the checksum is wrong")
        self.at = start + 20
        self.root = self.reference()
        if self.root is Null:
            raise self.error("the frame holds no object")
        if self.at != self.payload_end:
            raise self.error("the frame goes on after its object")

    def error(self, text):
        return ArchiveError(f"byte {self.at}: {text}")

    # ---- Numbers

    def take(self, code):
        size = struct.calcsize("<" + code)
        if self.at + size > self.payload_end:
            raise self.error("the payload ends too early")
        (value,) = struct.unpack_from("<" + code, self.data, self.at)
        self.at += size
        return value

    def field(self, label, code):
        offset = self.at
        value = self.take(code)
        self.record.fields.append((label, value, offset, self.at - offset))
        return value

    def flag(self, label):
        value = self.field(label, "B")
        if value > 1:
            raise self.error(f"a flag of {value}")
        return bool(value)

    def version(self, label, *known):
        value = self.field(label, "B")
        if value not in known:
            raise self.error(f"{label} {value} is not known")
        return value

    def size(self, label):
        value = self.field(label, "i")
        if value < 0:
            raise self.error(f"{label} is negative")
        return value

    # ---- Sequences

    def count(self, least):
        if self.take("B") != 0:
            raise self.error("a sequence of an unknown version")
        count = self.take("I")
        if count * least > self.payload_end - self.at:
            raise self.error(f"a sequence of {count} elements does not fit")
        return count

    def sequence(self, label, code):
        offset = self.at
        size = struct.calcsize("<" + code)
        count = self.count(size)
        body = self.data[self.at : self.at + count * size]
        self.at += len(body)
        values = list(struct.iter_unpack("<" + code, body))
        self.record.fields.append((label, values, offset, self.at - offset))
        return values

    def handles(self, label):
        offset = self.at
        record, values = self.record, []
        entry = [label, values, offset, 5]
        index = len(record.fields)
        record.fields.append(None)
        for _ in range(self.count(4)):
            values.append(self.reference())
        self.record = record
        record.fields[index] = tuple(entry)
        return values

    # ---- Objects

    def handle(self, label):
        offset, record = self.at, self.record
        value = self.reference()
        self.record = record
        record.fields.append((label, value, offset, 4))
        return value

    def reference(self):
        offset = self.at
        number = self.take("I")
        if number == 0:
            return Null
        if number <= len(self.objects):
            if number not in self.complete:
                raise self.error(f"object {number} is still being read")
            return self.objects[number - 1]
        if number != len(self.objects) + 1:
            raise self.error(f"object {number} was not read yet")
        class_number = self.take("I")
        if class_number == len(self.classes) + 1:
            length = self.take("B")
            name = self.data[self.at : self.at + length].decode("latin-1")
            self.at += length
            self.classes.append(name)
        elif not 0 < class_number <= len(self.classes):
            raise self.error(f"class {class_number} was not named")
        made = Record(number, self.classes[class_number - 1], offset)
        made.head = self.at - offset
        self.objects.append(made)
        self.record = made
        self.read(made.name)
        self.complete.add(number)
        return made

    def read(self, name):
        if name in self.own_classes:
            for index, kind in enumerate(self.own_classes[name]):
                self.own_field(f"field {index + 1}", kind)
        elif name in READERS:
            READERS[name](self)
        else:
            raise self.error(f"the class {name!r} is not known; see --class")

    def own_field(self, label, kind):
        simple = {"version": "B", "u8": "B", "u16": "H", "u32": "I", "i32": "i", "f64": "d"}
        others = {"bool": self.flag, "point": self.point, "handle": self.handle, "handles": self.handles}
        lists = {"points": "2d", "edgelets": "2dHB"}
        if kind in simple:
            self.field(label, simple[kind])
        elif kind in others:
            others[kind](label)
        elif kind in lists:
            self.sequence(label, lists[kind])
        else:
            raise ArchiveError(f"there is no kind of field called {kind!r}")

    def point(self, label):
        offset = self.at
        value = (self.take("d"), self.take("d"))
        self.record.fields.append((label, value, offset, 16))


# ---- The records ------------------------------------------------------------------------------------


def read_contour(f):
    if f.version("contour version", 0, 1) == 0:
        f.version("base version", 0)
        f.sequence("points", "2d")
        f.field("meaningless", "B")
        f.size("cachedVectorSize")
        f.flag("closed")
    else:
        f.field("label", "I")
        f.flag("closed")
        f.sequence("points", "2d")
        f.size("cachedVectorSize")


def read_region(f):
    if f.version("region version", 0, 1) == 0:
        f.version("base version", 0)
        f.sequence("points", "2d")
        f.field("meaningless", "B")
        f.size("cachedVectorSize")
    else:
        read_contour(f)
        f.handles("holes")


def read_region_set(f):
    version = f.version("set version", 0, 1)
    f.handles("regions")
    if version > 0:
        f.size("cachedVectorSize")


def read_edgelet_contour(f):
    version = f.version("version", 0, 1)
    read_contour(f)
    f.sequence("edgelets", "2dHB")
    if version > 0:
        f.handle("transform")


def read_edgelet_region(f):
    f.version("version", 0)
    read_region(f)


def read_edgelet_region_set(f):
    f.version("version", 0)
    read_region_set(f)
    f.handles("edgelet regions")


def read_exception(f):
    f.version("version", 0)
    f.version("base version", 0)


def numbers(*labels):
    def read(f):
        f.version("version", 0)
        for label in labels:
            if label.endswith("()"):
                f.point(label[:-2])
            else:
                f.field(label, "d")

    return read


READERS = {
    "gxContour": read_contour,
    "gxRegion": read_region,
    "gxRegionSet": read_region_set,
    "gxContourT<gxEdgelet>": read_edgelet_contour,
    "gxRegionT<gxEdgelet>": read_edgelet_region,
    "gxRegionSetT<gxEdgelet>": read_edgelet_region_set,
    "gxContourDefs::BadParams": read_exception,
    "gxContourDefs::EmptyContour": read_exception,
    "gxContourDefs::EmptyRegionSet": read_exception,
    "gxContourDefs::RegionCannotBeSetOpen": read_exception,
    "gxLine": numbers("point()", "direction()"),
    "gxLineSeg": numbers("p1()", "p2()"),
    "gxRect": numbers("origin()", "corner()", "size()"),
    "gxCircle": numbers("center()", "radius"),
    "gx2XformLinear": numbers("xx", "xy", "yx", "yy", "translation()"),
    "gx2Rigid": numbers("degrees", "translation()"),
}

REGIONS = ("gxRegion", "gxRegionT<gxEdgelet>")


# ---- The listing ------------------------------------------------------------------------------------


def shown(value):
    if isinstance(value, tuple):
        return "(" + ", ".join(shown(number) for number in value) + ")"
    return repr(value)


def list_elements(frame, label, values, offset, indent, with_bytes):
    most = 8
    print(f"{indent}{label}: {len(values)}")
    if values and not isinstance(values[0], tuple):  # objects
        for value in values:
            list_value(frame, "-", value, indent + "  ", with_bytes)
        return
    size = 19 if values and len(values[0]) == 4 else 16
    at = offset + 5
    for index, value in enumerate(values[:most]):
        start = at + index * size
        tail = f"   [{start}] {frame.data[start:start + size].hex(' ')}" if with_bytes else ""
        print(f"{indent}  {shown(value)}{tail}")
    if len(values) > most:
        print(f"{indent}  ... {len(values) - most} more")


def list_value(frame, label, value, indent, with_bytes):
    if value is Null:
        print(f"{indent}{label} null")
    elif id(value) in frame.listed:
        print(f"{indent}{label} object {value.number} again")
    else:
        print(f"{indent}{label} ", end="")
        list_object(frame, value, indent, with_bytes)


def list_object(frame, record, indent, with_bytes):
    frame.listed.add(id(record))
    head = frame.data[record.offset : record.offset + record.head].hex(" ")
    print(f"object {record.number}: {record.name}" + (f"   [{record.offset}] {head}" if with_bytes else ""))
    indent += "  "
    for label, value, offset, size in record.fields:
        if isinstance(value, list):
            if with_bytes:
                label = f"{label}   [{offset}] {frame.data[offset:offset + 5].hex(' ')}"
            list_elements(frame, label, value, offset, indent, with_bytes)
        elif value is Null or isinstance(value, Record):
            list_value(frame, label + ":", value, indent, with_bytes)
        else:
            tail = f"   [{offset}] {frame.data[offset:offset + size].hex(' ')}" if with_bytes else ""
            print(f"{indent}{label}: {shown(value)}{tail}")


def list_frame(frame, path, with_bytes):
    frame.listed = set()
    start, end = frame.start, frame.payload_end
    print(f"{path}, bytes {start} to {frame.end - 1}")
    if with_bytes:
        for label, first, last in (
            ("magic", start, start + 8),
            (f"format: {FORMAT}", start + 8, start + 12),
            (f"length of the payload: {end - start - 20}", start + 12, start + 20),
        ):
            print(f"  {label}   [{first}] {frame.data[first:last].hex(' ')}")
    print("  ", end="")
    list_object(frame, frame.root, "  ", with_bytes)
    if with_bytes:
        print(f"  checksum   [{end}] {frame.data[end:frame.end].hex(' ')}")


# ---- One line, for comparisons ----------------------------------------------------------------------


class Flat:
    """The loaded object in words: what the library's own tests print of theirs."""

    def __init__(self, record):
        self.words, self.seen = [], {}
        self.add(record)

    def number(self, value):
        # Bits, not digits: NaN and -0 count too. struct keeps the bits of a double that it unpacked.
        self.words.append(struct.pack(">d", value).hex())

    def point(self, value):
        self.number(value[0])
        self.number(value[1])

    def handle(self, value):
        if value is Null:
            self.words.append("null")
            return
        is_new = id(value) not in self.seen
        self.words.append("#" + str(self.seen.setdefault(id(value), len(self.seen))))
        if is_new:
            self.add(value)

    def handles(self, name, values, classes=None):
        self.words.append(name)
        for value in values:
            self.handle(value if classes is None or value is Null or value.name in classes else Null)
        self.words.append("end")

    def contour(self, record):
        labels = [label for label, _, _, _ in record.fields]
        closed = record["closed"] if "closed" in labels else False
        self.words += ["label", str(record["label"] if "label" in labels else 0), "closed" if closed else "open"]
        self.words += ["remembers", str(record["cachedVectorSize"]), "points"]
        for point in record["points"]:
            self.point(point)

    def add(self, record):
        name = record.name
        self.words.append(name)
        labels = [label for label, _, _, _ in record.fields]
        if name == "gxContour" or name == "gxContourT<gxEdgelet>" or name in REGIONS:
            self.contour(record)
        if name in REGIONS:
            self.handles("holes", record["holes"] if "holes" in labels else [], REGIONS)
        if name in ("gxContourT<gxEdgelet>", "gxRegionT<gxEdgelet>"):
            self.words.append("data")
            for x, y, magnitude, angle in record["edgelets"] if "edgelets" in labels else []:
                self.point((x, y))
                self.words += [str(magnitude), str(angle)]
            self.words.append("xform")
            self.handle(record["transform"] if "transform" in labels else Null)
        if name == "gxRegionT<gxEdgelet>":
            self.handles("holesT", [])
        if name in ("gxRegionSet", "gxRegionSetT<gxEdgelet>"):
            self.words.append(str(record["cachedVectorSize"] if "cachedVectorSize" in labels else 3))
            self.handles("regions", record["regions"], REGIONS)
        if name == "gxRegionSetT<gxEdgelet>":
            self.handles("regionsT", record["edgelet regions"], REGIONS[1:])
        if name == "gx2XformLinear":
            xx, xy, yx, yy = (record[label] for label in ("xx", "xy", "yx", "yy"))
            for value in (xx, xy, yy, *record["translation"], yx, xx * yy - xy * yx):
                self.number(value)
        elif READERS.get(name) and not name.startswith(("gxContour", "gxRegion")):
            for label, value, _, _ in record.fields[1:]:
                self.point(value) if isinstance(value, tuple) else self.number(value)
        if name not in READERS:
            for _, value, _, _ in record.fields:
                self.handles("shapes", value)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("files", nargs="+", metavar="FILE")
    parser.add_argument("--bytes", action="store_true", help="show the bytes of every field")
    parser.add_argument("--flat", action="store_true", help="one line a frame, numbers as bits")
    parser.add_argument("--class", dest="classes", action="append", default=[], metavar="NAME=FIELDS")
    arguments = parser.parse_args()
    own_classes = {}
    for text in arguments.classes:
        name, _, fields = text.rpartition("=")
        own_classes[name] = fields.split(",")

    sys.setrecursionlimit(20000)
    failed = False
    for path in arguments.files:
        try:
            with open(path, "rb") as file:
                data = file.read()
            at = 0
            while at < len(data) or at == 0:
                frame = Frame(data, at, own_classes)
                if arguments.flat:
                    print(path, *Flat(frame.root).words)
                else:
                    frame.listed = set()
                    list_frame(frame, path, arguments.bytes)
                at = frame.end
        except (ArchiveError, OSError) as error:
            print(f"{path}: {error}", file=sys.stderr)
            failed = True
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
