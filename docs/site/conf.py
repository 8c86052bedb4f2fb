"""How Sphinx shows the site; tools/make_docs runs it in build/docs/source, where tools/site_pages.py has put the pages."""
import json
import os
import re
import shutil

from docutils import nodes
from sphinx.transforms.post_transforms import SphinxPostTransform
from sphinx.util import logging

HERE = os.path.dirname(os.path.abspath(__file__))

project = "gxshape"
html_title = "gxshape"
extensions = ["myst_parser"]
exclude_patterns = ["files", "img", "_static"]
myst_heading_anchors = 6
# A page may begin below a heading of the second level; GitHub shows the same.
suppress_warnings = ["myst.header", "misc.highlighting_failure"]
highlight_language = "text"
nitpicky = True
html_theme = "furo"
html_static_path = ["_static"]
html_css_files = ["site.css"]
html_show_sourcelink = False
html_copy_source = False
html_show_copyright = False
html_theme_options = {"navigation_with_keys": True}
pygments_style = "tango"
pygments_dark_style = "monokai"

with open(os.path.join(HERE, "names.json"), encoding="utf-8") as file:
    NAMES = json.load(file)

# Pages written for the site may not name what there is not; other pages name internals too.
OWN = re.compile(r"(class|from|start)-|index|names|errors|limits|guarantees")
NAME = re.compile(r"gf[A-Z]\w*|gx[A-Z]\w*(::\w+)?")
LOGGER = logging.getLogger(__name__)


def place_of(text):
    """(page, anchor) of the name that a piece of code is; None where it is none."""
    text = re.sub(r"^(std::|::)", " ", text.strip())
    for word in (text, re.sub(r"^<(.*)>$", r"\1", text), re.sub(r"[({].*$", "", text), re.sub(r"^(?:const )?(\w+)[&*]*$", r"\1", text)):
        if word in NAMES:
            return NAMES[word]
    return None


class NamesLead(SphinxPostTransform):
    """Makes every piece of inline code that is a public name a link to its place in the reference."""
    default_priority = 700

    def run(self):
        if not hasattr(self.app.builder, "get_relative_uri"):
            return
        here = self.env.docname
        for node in list(self.document.findall(nodes.literal)):
            if isinstance(node.parent, (nodes.title, nodes.reference)):
                continue
            found = place_of(node.astext())
            if not found and OWN.match(here) and NAME.fullmatch(node.astext()):
                LOGGER.warning("no public name: %s", node.astext(), location=node)
            if not found or (found[0] == here and not found[1]):
                continue
            uri = self.app.builder.get_relative_uri(here, found[0]) if found[0] != here else ""
            reference = nodes.reference("", "", internal=True, refuri=uri + (f"#{found[1]}" if found[1] else ""))
            node.replace_self(reference)
            reference += node


def dark_where_asked(app, exception):
    """Gives the theme's dark colours to readers whose system is dark: Debian's sheet of it has lost that rule."""
    sheet = os.path.join(app.outdir, "_static", "styles", "furo.css")
    if exception or not os.path.exists(sheet):
        return
    with open(sheet, encoding="utf-8") as file:
        text = file.read()
    colours = re.search(r'body\[data-theme="dark"\] \{([^}]*--color-background-primary[^}]*)\}', text)
    if "prefers-color-scheme" in text or not colours:
        return
    with open(sheet, "a", encoding="utf-8") as file:
        file.write("@media screen and (prefers-color-scheme: dark) { body:not([data-theme=\"light\"]) {"
                   f"{colours.group(1)}}} }}\n")


def without_requests(app, exception):
    """Makes the theme ask for nothing outside of the site: Debian's names a sheet of the server it is on."""
    if exception or app.builder.format != "html":
        return
    sheet = "/usr/share/javascript/normalize.css/normalize.css"
    shutil.copy(sheet, os.path.join(app.outdir, "_static", "normalize.css"))
    for folder, _, found in os.walk(app.outdir):
        for name in found:
            path = os.path.join(folder, name)
            if name.endswith(".html") and "_static" not in folder:
                with open(path, encoding="utf-8") as file:
                    text = file.read()
                static = os.path.relpath(os.path.join(app.outdir, "_static"), folder)
                changed = text.replace("/javascript/normalize.css/normalize.css", static + "/normalize.css")
                changed = re.sub(r'href="(?:_static|(?:\.\./)+_static)/javascript/normalize.css/normalize.css"', f'href="{static}/normalize.css"', changed)
                if changed != text:
                    with open(path, "w", encoding="utf-8") as file:
                        file.write(changed)


def setup(app):
    app.add_post_transform(NamesLead)
    app.connect("build-finished", without_requests)
    app.connect("build-finished", dark_where_asked)
    return {"parallel_read_safe": True, "parallel_write_safe": True}
