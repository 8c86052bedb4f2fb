#!/usr/bin/env python3
"""Follows every link, picture, sheet and script of the pages under a folder, without a network:

    tools/check_site.py build/docs/html

A link within the folder has to lead to a file, and behind # to something with that id; nothing that a page loads may come
from outside. Links out of the folder (https) are left alone, for they are followed by a reader's click and by nothing else.
Ends with 1 where something is wrong.
"""
import os
import sys
from html.parser import HTMLParser
from urllib.parse import unquote, urlsplit

LOADED = {"img": "src", "script": "src", "iframe": "src", "source": "src", "object": "data", "embed": "src"}
SHEETS = ("stylesheet", "icon", "preload", "shortcut icon")


class Page(HTMLParser):
    """What a page links to, what it loads, and its ids."""

    def __init__(self, text):
        super().__init__()
        self.links, self.loads, self.ids = [], [], set()
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        found = dict(attrs)
        if found.get("id"):
            self.ids.add(found["id"])
        if tag == "a" and found.get("name"):
            self.ids.add(found["name"])
        if tag == "a" and found.get("href"):
            self.links.append(found["href"])
        if tag == "link" and found.get("rel") in SHEETS:
            self.loads.append(found.get("href"))
        if tag in LOADED and found.get(LOADED[tag]):
            self.loads.append(found[LOADED[tag]])


def wrong_link(link, path, folder, pages, loaded):
    """What is wrong with a link of the page at `path`; None where nothing is."""
    parts = urlsplit(link)
    if parts.scheme == "data":
        return None
    if parts.scheme or parts.netloc:
        return f"loads {link} from outside" if loaded else None
    if parts.path.startswith("/"):
        return f"{link} is named from a server's root"
    target = os.path.normpath(os.path.join(os.path.dirname(path), unquote(parts.path))) if parts.path else path
    if target.startswith(".."):
        return f"{link} leads out of the site"
    if not os.path.isfile(os.path.join(folder, target)):
        return f"{link} leads to no file"
    if parts.fragment and target in pages and unquote(parts.fragment) not in pages[target].ids:
        return f"{link} leads to no id"
    return None


def check(folder):
    """(pages, links followed, what is wrong) of a folder."""
    pages = {}
    for inside, _, names in os.walk(folder):
        for name in names:
            path = os.path.relpath(os.path.join(inside, name), folder)
            # _static holds other programs' pages, which are whole by themselves.
            if name.endswith(".html") and not path.startswith("_static"):
                with open(os.path.join(folder, path), encoding="utf-8") as file:
                    pages[path] = Page(file.read())
    wrong, count = [], 0
    for path, page in sorted(pages.items()):
        for link, loaded in [(link, False) for link in page.links] + [(link, True) for link in page.loads]:
            count += 1
            said = wrong_link(link, path, folder, pages, loaded)
            if said:
                wrong.append(f"{path}: {said}")
    return len(pages), count, wrong


def main():
    count, links, wrong = check(sys.argv[1])
    print(*wrong, sep="\n", end="\n" if wrong else "")
    print(f"{count} pages, {links} links and files, {len(wrong)} wrong")
    return 1 if wrong or not count else 0


if __name__ == "__main__":
    sys.exit(main())
