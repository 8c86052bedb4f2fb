"""Options that are one word of several."""
from __future__ import annotations

from collections.abc import Sequence

from ._errors import ArgumentError

REFERENCES = ("least-squares", "minimum-zone", "circumscribed", "inscribed")
WEIGHTS = ("least-squares", "huber", "tukey", "consensus")
RULES = ("even-odd", "non-zero", "positive", "outer")
JOINS = ("round", "mitre", "bevel")
ENDS = ("round", "flat", "square")


def choice(value: str, words: Sequence[str], name: str) -> int:
    """Return the number of a word; underscores are taken for hyphens."""
    word = str(value).replace("_", "-")
    if word not in words:
        raise ArgumentError(f"{name}: want {', '.join(map(repr, words[:-1]))} or {words[-1]!r}, got {value!r}")
    return words.index(word)
