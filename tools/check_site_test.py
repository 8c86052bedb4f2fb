#!/usr/bin/env python3
"""Tests of check_site.py: which links of a small site are wrong."""
import os
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from check_site import check  # noqa: E402


class CheckTest(unittest.TestCase):
    def wrong(self, body, **files):
        with tempfile.TemporaryDirectory() as folder:
            for name, text in {"index.html": body, **files}.items():
                path = os.path.join(folder, name.replace("__", "/"))
                os.makedirs(os.path.dirname(path), exist_ok=True)
                with open(path, "w", encoding="utf-8") as file:
                    file.write(text)
            return check(folder)[2]

    def test_links_that_lead_somewhere_are_right(self):
        self.assertEqual(self.wrong('<a id="x"></a><a href="#x">a</a><a href="sub/a.html#y">b</a><img src="p.png">',
                                    **{"sub__a.html": '<p id="y"><a href="../index.html">up</a></p>', "p.png": ""}), [])

    def test_a_missing_file_and_a_missing_id_are_found(self):
        self.assertEqual(self.wrong('<a href="no.html">a</a>'), ["index.html: no.html leads to no file"])
        self.assertEqual(self.wrong('<a href="#no">a</a>'), ["index.html: #no leads to no id"])
        self.assertEqual(self.wrong('<a href="a.html#no">a</a>', **{"a.html": ""}), ["index.html: a.html#no leads to no id"])

    def test_pictures_sheets_and_scripts_are_followed_too(self):
        self.assertEqual(len(self.wrong('<img src="a.png"><script src="b.js"></script><link rel="stylesheet" href="c.css">'
                                        '<iframe src="d.html"></iframe>')), 4)

    def test_nothing_is_loaded_from_outside_though_a_link_may_lead_there(self):
        self.assertEqual(self.wrong('<a href="https://example.org/a">a</a><link rel="prev" href="no.html">'), [])
        self.assertEqual(self.wrong('<script src="https://example.org/a.js"></script>'),
                         ["index.html: loads https://example.org/a.js from outside"])

    def test_a_picture_written_into_the_page_is_no_request(self):
        self.assertEqual(self.wrong('<img src="data:image/gif;base64,AAAA">'), [])

    def test_a_path_from_a_servers_root_or_out_of_the_site_is_wrong(self):
        self.assertEqual(self.wrong('<link rel="stylesheet" href="/a.css">'), ["index.html: /a.css is named from a server's root"])
        self.assertEqual(self.wrong('<a href="../x.html">a</a>'), ["index.html: ../x.html leads out of the site"])

    def test_escaped_names_are_read(self):
        self.assertEqual(self.wrong('<a href="a%20b.html#%C3%A4">a</a>', **{"a b.html": '<p id="ä">'}), [])

    def test_pages_of_other_programs_are_left_alone_and_pages_are_counted(self):
        self.assertEqual(self.wrong("", **{"_static__draw__index.html": '<a href="no.html">a</a>'}), [])


if __name__ == "__main__":
    unittest.main()
