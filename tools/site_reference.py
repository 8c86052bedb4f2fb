"""Writes reference pages, one a header, from Doxygen's XML: what tools/make_docs shows through Sphinx.

    write_reference(xml folder, checkout, folder for the pages, figures) -> {name: (page, anchor)}

Doxygen reads the headers and warns; the pages are made here, as Markdown, since a page shall read as the header does:
in its order, under its banners ("// ---- Queries (region_queries.cpp) ---"), a run of overloads in one block with the
comment above them. (breathe was tried: of the same headers it needs 52 s of processor time and cannot read 15
declarations of C++20.)
"""
import os
import re
import textwrap
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass, field

FIELDS = re.compile(r"(?:^|(?<=\s))(Throws|Cost|Remembers|Threads|Memory|Source):\s+")
BANNER = re.compile(r"^\s*// ---- (.+?)(?: -+)?\s*$")
SPECIAL = re.compile(r"([\\`*_\[\]<>#|~$^])")


@dataclass
class Entry:
    """A class, function, alias, enumeration, constant or data member."""
    kind: str
    name: str        # within its scope
    scope: str       # the classes around it, "" at file level
    header: str
    line: int
    signature: str
    text: str        # Markdown
    brief: str       # the first sentence, Markdown
    values: list = field(default_factory=list)   # of an enumeration: (signature, text)
    members: list = field(default_factory=list)  # of a class

    @property
    def full(self):
        return f"{self.scope}::{self.name}" if self.scope else self.name


# ---- Text ----------------------------------------------------------------------------------------------------------

def escaped(text):
    """Plain text, for Markdown."""
    return SPECIAL.sub(r"\\\1", text)


def inline(node):
    """The text of a paragraph as Markdown, lists in it left out."""
    out = [escaped(node.text or "")]
    for child in node:
        inner = "".join(child.itertext())
        if child.tag == "computeroutput":
            out.append(f"`{inner}`" if inner.strip() else "")
        elif child.tag == "ulink":
            out.append(f"<{child.get('url')}>")
        elif child.tag in ("emphasis", "bold"):
            out.append(f"*{escaped(inner)}*")
        elif child.tag in ("ndash", "mdash"):
            out.append("–" if child.tag == "ndash" else "—")
        elif child.tag not in BLOCKS:
            out.append(inline(child))
        out.append(escaped(child.tail or ""))
    return re.sub(r"\s+", " ", "".join(out)).strip()


BLOCKS = ("itemizedlist", "orderedlist", "verbatim", "programlisting", "preformatted")


def with_fields(text):
    """The text, and behind it "Throws: …" and its like in paragraphs of their own."""
    parts = FIELDS.split(text)
    found = [parts[0].strip()] + [f"**{name}:** {words.strip()}" for name, words in zip(parts[1::2], parts[2::2])]
    return [one for one in found if one]


def code_of(node):
    """The text of a block of code."""
    if node.tag == "programlisting":
        return "\n".join("".join(" " if part.tag == "sp" else (part.text or "") for part in line.iter())
                         for line in node.iter("codeline"))
    return "".join(node.itertext()).strip("\n")


def paragraphs(node):
    """The Markdown paragraphs of a description."""
    out = []
    for para in node.iter("para") if node.tag == "listitem" else node.findall("para"):
        blocks = [child for child in para if child.tag in BLOCKS]
        if not blocks:
            out += with_fields(inline(para))
            continue
        head = ElementTree.Element("para")
        head.text = para.text
        for child in para:
            if child.tag not in BLOCKS:
                head.append(child)
                continue
            out += with_fields(inline(head))
            out += listed(child) if "list" in child.tag and child.tag != "programlisting" else [f"```\n{code_of(child)}\n```"]
            head = ElementTree.Element("para")
            head.text = child.tail
        out += with_fields(inline(head))
    return out


def listed(node):
    """The Markdown of a list; fields that Doxygen glued to its last item come out of it."""
    items, behind = [], []
    for count, item in enumerate(node.findall("listitem"), 1):
        first, *others = [one for para in item.findall("para") for one in with_fields(inline(para))] or [""]
        items.append(f"{f'{count}.' if node.tag == 'orderedlist' else '-'} {first}")
        behind += others
    return ["\n".join(items)] + behind


def described(node):
    """(brief, whole text) of a compound or member."""
    brief = paragraphs(node.find("briefdescription")) if node.find("briefdescription") is not None else []
    detail = paragraphs(node.find("detaileddescription")) if node.find("detaileddescription") is not None else []
    return (brief[0] if brief else detail[0] if detail else ""), "\n\n".join(brief + detail)


# ---- Declarations --------------------------------------------------------------------------------------------------

def plain(node):
    """The text of a node without what Doxygen puts between template brackets."""
    text = re.sub(r"\s+", " ", "".join(node.itertext())).strip() if node is not None else ""
    return re.sub(r"< (.*?)", r"<\1", text).replace(" >", ">").replace(" &", "&").replace(" *", "*")


def wrapped(signature, width=76):
    """The signature, a parameter a line where it is longer than the width."""
    open_at, depth = signature.find("("), 0
    if len(signature) <= width or open_at < 0:
        return signature
    out = []
    for i, letter in enumerate(signature):
        depth += letter in "(<{" and not (letter == "<" and signature[i - 1] == "<")
        depth -= letter in ")>}" and signature[i - 1] != "-"
        out.append(letter)
        if letter == "," and depth == 1 and i > open_at:
            out.append("\n   ")
    return "".join(out)


def template(node):
    """template <…> of a declaration, or nothing."""
    found = node.find("templateparamlist")
    if found is None:
        return ""
    names = [" ".join(filter(None, (plain(p.find("type")), plain(p.find("declname")))))
             + (f" = {plain(p.find('defval'))}" if p.find("defval") is not None else "") for p in found.findall("param")]
    return f"template <{', '.join(names)}>\n"


def signature(node):
    """The declaration of a member."""
    kind, name = node.get("kind"), plain(node.find("name"))
    kept = plain(node.find("type"))
    for mark in ("VELSTD_API", "VELIP_API", "VELDISPC_API", "GXSHAPE_API", "GXSHAPE_IO_API", "GXSHAPE_CAIRO_API"):
        kept = kept.replace(mark, "").strip()
    if kind == "function":
        words = [word for word, flag in (("static", "static"), ("explicit", "explicit")) if node.get(flag) == "yes"]
        words += ["virtual"] if node.get("virt") != "non-virtual" and "override" not in plain(node.find("argsstring")) else []
        args = re.sub(r"([&*]) ?(?=\w)", r"\1 ", plain(node.find("argsstring")))
        args = re.sub(r"(\w) ?= ?(?=[\w{\"-])", r"\1 = ", args).replace("=default", " = default").replace("=delete", " = delete")
        return template(node) + wrapped(" ".join(filter(None, [*words, kept, name])) + re.sub(r"=0$", " = 0", args)) + ";"
    if kind == "friend":
        return wrapped(f"friend {kept} {name}{plain(node.find('argsstring'))}") + ";"
    if kind == "typedef":
        return template(node) + (f"using {name} = {kept};" if "(" not in kept else plain(node.find("definition")) + ";")
    if kind == "define":
        return f"#define {name}"
    if kind == "enum":
        return f"enum {'class ' if node.get('strong') == 'yes' else ''}{name}" + (f" : {kept}" if kept else "")
    start = plain(node.find("initializer"))
    return f"{kept} {name}{'' if not start else ' ' + start if start.startswith('=') else start};"


def entry(node, scope, path):
    """A member as an entry."""
    brief, text = described(node)
    values = [(plain(value.find("name")) + (f" {plain(value.find('initializer'))}" if value.find("initializer") is not None
                                            else ""), described(value)[1]) for value in node.findall("enumvalue")]
    return Entry(node.get("kind"), plain(node.find("name")), scope, path, int(node.find("location").get("line")),
                 signature(node), text, brief, values)


def public(section):
    return not re.search(r"^(private|protected)", section.get("kind"))


def compound(node, path):
    """A class or struct with its public members."""
    full = plain(node.find("compoundname"))
    scope, _, name = full.rpartition("::") if "<" not in full else ("", "", full)
    brief, text = described(node)
    bases = ", ".join(("public virtual " if base.get("virt") == "virtual" else "public ") + plain(base)
                      for base in node.findall("basecompoundref") if base.get("prot") == "public")
    made = Entry(node.get("kind"), name, scope, path, int(node.find("location").get("line")),
                 template(node) + f"{node.get('kind')} {name}" + (f" : {bases}" if bases else "") + ";", text, brief)
    made.members = [entry(member, full, path) for section in node.findall("sectiondef") if public(section)
                    for member in section.findall("memberdef") if member.get("prot") == "public"]
    return made


def location(node):
    found = node.find("location")
    return os.path.normpath(found.get("file")) if found is not None else ""


def read(xml, root):
    """{header: its entries in the order of their lines}; paths from the checkout's root."""
    headers, classes = {}, []
    hidden = re.compile(r"(^|::)gx_(?!InertiaData)")
    for compound_node in ElementTree.parse(os.path.join(xml, "index.xml")).getroot():
        kind = compound_node.get("kind")
        if kind not in ("class", "struct", "file", "namespace"):
            continue
        node = ElementTree.parse(os.path.join(xml, compound_node.get("refid") + ".xml")).getroot()[0]
        path = os.path.relpath(os.path.join(root, location(node)), root)
        if kind in ("class", "struct"):
            if node.get("prot", "public") == "public" and not hidden.search(plain(node.find("compoundname"))):
                classes.append(compound(node, path))
            continue
        scope = plain(node.find("compoundname")) if kind == "namespace" else ""
        if kind == "file" and path.endswith(".h"):
            headers.setdefault(path, [])
        for member in node.iter("memberdef"):
            if (kind == "namespace") == (location(node) == "" or kind == "namespace"):
                at = os.path.relpath(os.path.join(root, location(member)), root)
                made = entry(member, scope, at)
                if made.kind != "define" or made.text:
                    headers.setdefault(at, []).append(made)
    whole = {one.full: one for one in classes}
    for one in classes:
        around = whole.get(one.scope)
        (around.members if around else headers.setdefault(one.header, [])).append(one)
    for entries in headers.values():
        kept = [one for one in entries if not hidden.search(one.full)]
        entries[:] = list({(one.full, one.signature, one.line): one for one in sorted(kept, key=lambda e: e.line)}.values())
    return {path: entries for path, entries in headers.items() if entries}


# ---- Pages ---------------------------------------------------------------------------------------------------------

def page_of(header):
    """The name of a header's page."""
    path = re.sub(r"^(base|include)/", "", header)
    return re.sub(r"\W+", "-", path.removesuffix(".h"))


def include_of(header):
    """How a header is included."""
    return re.sub(r"^(base|include)/", "", header)


def anchor_of(name):
    """The anchor of a name, which differs where the names do."""
    return re.sub(r"[^a-z0-9]+", "-", re.sub(r"([A-Z])", r"-\1", name.replace("::", "-at-").replace("~", "no-")).lower()).strip("-")


def opening(text):
    """The comment that a header opens with, as Markdown paragraphs."""
    lines = []
    for line in text.split("\n"):
        if not line.startswith("///"):
            break
        lines.append(line[3:])
    out, block = [], []
    for line in lines + [""]:
        if line.strip():
            block.append(line)
            continue
        if block and all(one.startswith("    ") for one in block):
            out.append("```\n" + textwrap.dedent("\n".join(block)) + "\n```")
        elif block:
            out.append(marked(block))
        block = []
    return out


def marked(block):
    """Lines of a comment as a Markdown paragraph or list; what stands in backticks stays."""
    text = "\n".join(one[1:] if one.startswith(" ") else one for one in block)
    text = "".join(part if part.startswith("`") else re.sub(r"([\\*_\[\]<>#|~$^])", r"\\\1", part)
                   for part in re.split(r"(`[^`]*`)", text))
    return re.sub(r"\n(?! *(?:-|\d+\.) )\s*", " ", text)


def banners(text):
    """[(line, title)] of the banners of a header."""
    return [(number, re.sub(r" \([^)]*\)$", "", found.group(1))) for number, line in enumerate(text.split("\n"), 1)
            if (found := BANNER.match(line))]


def runs(entries):
    """Entries in runs: overloads, and what shares the comment above it."""
    out = []
    for one in entries:
        last = out[-1][-1] if out else None
        same = last and last.kind == one.kind == "function" and one.text in (last.text, out[-1][0].brief)
        if same and (one.line - last.line < 6):
            out[-1].append(one)
        else:
            out.append([one])
    return out


class Page:
    """The page of a header while it is written."""

    def __init__(self, header, root):
        with open(os.path.join(root, header), encoding="utf-8") as file:
            self.text = file.read()
        self.header, self.out, self.names = header, [], {}

    def target(self, name):
        """A target for the name, at its first place alone."""
        if name not in self.names:
            anchor, count = anchor_of(name), 1
            while anchor in self.names.values():  # operators, and names that differ in case alone
                anchor, count = f"{anchor_of(name)}-{count + 1}", count + 1
            self.names[name] = anchor
            self.out.append(f"({anchor})=")

    def data(self, one, first):
        """A data member, an item of a list; its name leads to the class."""
        self.names.setdefault(one.full, anchor_of(one.scope) if one.scope else anchor_of(one.full))
        self.out.append(("\n" if first else "") + f"- `{one.signature.removesuffix(';')}`: {one.text}".replace("\n\n", "\n\n  "))

    def entry(self, run):
        """A run of functions, or another entry without members of its own."""
        for one in run:
            self.target(one.full)
        self.out.append("```cpp\n" + "\n".join(one.signature for one in run) + "\n```\n")
        self.out.append(run[0].text + "\n")
        for one in run:
            self.out += [f"- `{value}`" + (f": {text}" if text else "") for value, text in one.values] + ([""] if one.values else [])

    def members(self, entries, marks, level):
        """Members in the order of their lines, under the header's banners."""
        entries, shown = sorted(entries, key=lambda one: one.line), None
        listed_before = False
        plain_ones = [one for one in entries if one.kind not in ("class", "struct")]
        for run in runs(plain_ones):
            title = next((words for line, words in reversed(marks) if line < run[0].line), None)
            if title and title != shown:
                self.out.append(f"\n{'#' * level} {escaped(title)}\n")
                shown, listed_before = title, False
            data = run[0].kind == "variable" and run[0].scope
            if listed_before and not data:
                self.out.append("")
            if data:
                self.data(run[0], not listed_before)
            else:
                self.entry(run)
            listed_before = bool(data)
        if listed_before:
            self.out.append("")
        for one in (one for one in entries if one.kind in ("class", "struct")):
            self.compound(one, level)

    def compound(self, one, level):
        """A class: its comment, its members."""
        self.target(one.full)
        self.out.append(f"{'#' * level} {escaped(one.full)}\n")
        self.out.append(f"```cpp\n{one.signature}\n```\n")
        self.out.append(one.text + "\n")
        inside = [one_ for one_ in one.members]
        last = max([member.line for member in inside], default=one.line)
        self.members(inside, [mark for mark in banners(self.text) if one.line < mark[0] <= last], level + 1)

    def whole(self, entries, figures):
        """The page."""
        self.out += [f"# {escaped(include_of(self.header))}\n", *[part + "\n" for part in opening(self.text)],
                     f"```cpp\n#include <{include_of(self.header)}>\n```\n"]
        for picture, words in figures:
            self.out.append(f"![{words}](../img/{picture})\n")
        classes = [one for one in entries if one.kind in ("class", "struct")]
        rest = [one for one in entries if one.kind not in ("class", "struct")]
        for one in classes:
            self.compound(one, 2)
        if rest:
            titles = {"function": "Functions", "enum": "Enumerations", "typedef": "Types", "variable": "Constants",
                      "define": "Macros"}
            for kind, title in titles.items():
                chosen = [one for one in rest if one.kind == kind]
                if chosen:
                    self.out.append(f"## {title}\n")
                    self.members(chosen, [], 3)
        return "\n".join(self.out)


ROOMS = [("cntr", "Contours, regions, sets"), ("gauge", "Gauges"), ("overlay", "Overlay"), ("ch_core", "Edge points"),
         ("velstd", "Points, transforms, handles, fits, archives"), ("velip", "Edge points, angles, pixels"),
         ("veldispc", "Colours and drawing surfaces"), ("gxshape/interop", "Neighbours"), ("io", "Files"),
         ("cairo", "Pictures")]


def index_page(headers):
    """The list of all headers, room by room, with the names of each."""
    out = ["# Reference\n", "Every public name, in the order of the headers. A name in backticks on any page of this site leads here.\n"]
    for room, title in ROOMS:
        out.append(f"## {title}\n")
        chosen = [path for path in headers if include_of(path).rsplit("/", 1)[0] == room]
        out.append("| Header | Names |\n|---|---|")
        for path in chosen:
            names = list(dict.fromkeys(one.name for one in headers[path] if not one.name.startswith("operator")))
            out.append(f"| [{escaped(os.path.basename(path))}]({page_of(path)}.md) | {', '.join(f'`{name}`' for name in names)} |")
        out.append("\n```{toctree}\n:hidden:\n:maxdepth: 1\n\n" + "\n".join(page_of(path) for path in chosen) + "\n```\n")
    return "\n".join(out)


def write_reference(xml, root, folder, figures):
    """Writes the pages; returns where the names are.  `figures`: {header: [(picture, words)]}."""
    headers = dict(sorted(read(xml, root).items()))
    os.makedirs(folder, exist_ok=True)
    names = {}
    for path, entries in headers.items():
        page = Page(path, root)
        text = page.whole(entries, figures.get(path, []))
        with open(os.path.join(folder, page_of(path) + ".md"), "w", encoding="utf-8") as file:
            file.write(text)
        for name, anchor in page.names.items():
            names.setdefault(name, ("reference/" + page_of(path), anchor))
    with open(os.path.join(folder, "index.md"), "w", encoding="utf-8") as file:
        file.write(index_page(headers))
    return names, headers
