"""The one-line faults that tools/mutate.py seeds: which there are in a text of C++, and which are taken.

A fault is found on the code of one line alone: comments, the insides of strings and preprocessor
lines are passed over. What is found leans on the layout that clang-format gives to this code: an
operator of two operands has spaces around it, a template's brackets have none. A fault that does
not compile costs a second and is said apart, so the patterns may be generous.
"""
import random
import re
from dataclasses import dataclass


@dataclass(frozen=True, order=True)
class Fault:
    """One changed line. `line` counts from 1; `column` is where the change begins."""
    path: str
    line: int
    column: int
    kind: str
    before: str
    after: str

    def diff(self):
        return (f"--- {self.path}\n+++ {self.path}\n@@ line {self.line}: {self.kind} @@\n"
                f"-{self.before}\n+{self.after}")


# ---- Code without its comments -------------------------------------------------------------------

TOKENS = re.compile(r"""
    (?P<comment> //[^\n]* | /\*.*?\*/ )
  | (?P<raw> R"(?P<mark>[^()\s\\]{0,16})\(.*?\)(?P=mark)" )
  | (?P<string> "(?:\\.|[^"\\\n])*" )
  | (?P<letter> (?<![0-9A-Za-z_])'(?:\\.|[^'\\\n])+' )
  | (?P<directive> ^[ \t]*\#(?:\\\n|[^\n])* )
""", re.VERBOSE | re.DOTALL | re.MULTILINE)


def _blank(text):
    return re.sub(r"[^\n]", " ", text)


def code_lines(text):
    """The lines of a source text with comments, directives and the insides of literals blanked out.

    Every character stays at its place.
    """
    def blanked(found):
        whole = found.group(0)
        if found.lastgroup in ("comment", "directive"):
            return _blank(whole)
        return whole[0] + _blank(whole[1:-1]) + whole[-1]
    return TOKENS.sub(blanked, text).split("\n")


# Lines that only say how much memory is wanted: no answer depends on them.
IDLE = re.compile(r"\.(?:reserve|shrink_to_fit)\(")

# ---- Faults inside a line ------------------------------------------------------------------------

def _between(operator):
    """The operator as one of two operands: a space before, a space or the line's end behind."""
    return r"(?<= )" + re.escape(operator) + r"(?= |$)"


EXCHANGED = [
    # kind, pattern, what stands there instead
    ("comparison off by one", _between("<"), "<="), ("comparison off by one", _between("<="), "<"),
    ("comparison off by one", _between(">"), ">="), ("comparison off by one", _between(">="), ">"),
    ("comparison flipped", _between("<"), ">"), ("comparison flipped", _between("<="), ">="),
    ("comparison flipped", _between(">"), "<"), ("comparison flipped", _between(">="), "<="),
    ("comparison flipped", _between("=="), "!="), ("comparison flipped", _between("!="), "=="),
    ("sign", _between("+"), "-"), ("sign", _between("-"), "+"),
    ("sign", _between("+="), "-="), ("sign", _between("-="), "+="),
    ("sign", r"(?<=[(=,] )-(?=[\w(])|(?<=\()-(?=[\w(])|(?<=return )-(?=[\w(])", ""),
    ("factor", _between("*"), "/"), ("factor", _between("/"), "*"),
    ("factor", _between("*="), "/="), ("factor", _between("/="), "*="), ("factor", _between("%"), "/"),
    ("and, or", _between("&&"), "||"), ("and, or", _between("||"), "&&"),
    ("bits", _between("&"), "|"), ("bits", _between("|"), "&"),
    ("bits", _between("<<"), ">>"), ("bits", _between(">>"), "<<"),
    ("condition negated", r"!(?=[\w(:])", ""),
    ("count", r"\+\+", "--"), ("count", r"--", "++"),
    ("flag", r"\btrue\b", "false"), ("flag", r"\bfalse\b", "true"),
    ("extreme", r"(?<=std::)min(?=\()", "max"), ("extreme", r"(?<=std::)max(?=\()", "min"),
    ("extreme", r"\blower_bound\b", "upper_bound"), ("extreme", r"\bupper_bound\b", "lower_bound"),
    ("rounding", r"(?<=std::)floor(?=\()", "ceil"), ("rounding", r"(?<=std::)ceil(?=\()", "floor"),
    ("absolute value dropped", r"std::f?abs(?=\()", ""),
    ("coordinate", r"(?<=\.)x(?=\(\))", "y"), ("coordinate", r"(?<=\.)y(?=\(\))", "x"),
    ("end", r"\.begin(?=\(\))", ".end"), ("end", r"\.front(?=\(\))", ".back"),
    ("end", r"\.back(?=\(\))", ".front"),
    ("off by one", r"\.size\(\)", ".size() - 1"),
    ("off by one", r"(?<=\w) [+-] 1\b(?![.'])", ""),
    ("loop", r"\bbreak;", "continue;"), ("loop", r"\bcontinue;", "break;"),
    ("arguments exchanged", r"(?<=[\w>]\()([\w.]+), ([\w.]+)(?=[,)])", r"\2, \1"),
]
EXCHANGED = [(kind, re.compile(pattern), instead) for kind, pattern, instead in EXCHANGED]

NUMBER = re.compile(r"(?<![\w.'<])(?P<digits>\d[\d']*)(?P<rest>(?:\.\d*)?(?:[eE][-+]?\d+)?)(?P<suffix>[uUlLfF]*)(?![\w.'])")


def _nudged(found):
    """A whole number one up and one down; any other number half as much again, and two thirds."""
    digits, rest, suffix = found.group("digits").replace("'", ""), found.group("rest"), found.group("suffix")
    if not rest:
        if len(digits) > 1 and digits[0] == "0":
            return []
        value = int(digits)
        return [f"{value + 1}{suffix}"] + ([f"{value - 1}{suffix}"] if value > 0 else [])
    value = float(digits + rest)
    if value == 0:
        return ["1.0" + suffix]
    return [f"{value * 1.5!r}{suffix}", f"{value / 1.5!r}{suffix}"]


def _inside_line(code):
    """(column, length, kind, instead) of the faults that change a piece of a line."""
    for kind, pattern, instead in EXCHANGED:
        for found in pattern.finditer(code):
            yield found.start(), len(found.group(0)), kind, found.expand(instead)
    for found in NUMBER.finditer(code):
        for instead in _nudged(found):
            yield found.start(), len(found.group(0)), "constant nudged", instead


# ---- Faults of a whole statement -----------------------------------------------------------------

STATEMENT = re.compile(r"""
    (?: [\w:.()\[\]*<>]|->|,\ )+ (?:\ (?:=|[-+*/%|&^]=|<<=|>>=)\ .+)? ;   # an assignment or a call
  | (?:\+\+|--) .+ ;
  | throw\b .* ; | break; | continue; | return; | delete\ .+ ;
  | if\ \( .+ \)\ .* ;
""", re.VERBOSE)
NOT_DELETED = re.compile(r"static_assert\b|assert\(|public:|private:|protected:|default:|case\b")
STATEMENT_BEFORE = re.compile(r"([;{}):]|\belse)$")
CONDITION = re.compile(r"^(?P<head>(?:\} )?(?:else )?(?:if|while) (?:constexpr )?)\((?P<inner>.*)\)(?P<tail>(?: [^()]*| .*;)?)$")
RETURN = re.compile(r"^return (?P<value>[^;{]+);$")
LOOKS_TRUE_OR_FALSE = re.compile(r" (?:<|<=|>|>=|==|!=|&&|\|\|) |^!|\.empty\(\)$|^is[A-Z]")


def _balanced(text):
    depth = 0
    for letter in text:
        depth += {"(": 1, "{": 1, "[": 1, ")": -1, "}": -1, "]": -1}.get(letter, 0)
        if depth < 0:
            return False
    return depth == 0


def _whole_statement(code, before):
    """(kind, instead) of the faults that change a whole line; `before` is the code line before it."""
    bare = code.strip()
    begins = not before or STATEMENT_BEFORE.search(before)
    if begins and _balanced(bare) and STATEMENT.fullmatch(bare) and not NOT_DELETED.match(bare):
        yield "statement deleted", ";"
    condition = CONDITION.match(bare)
    if condition and _balanced(condition.group("inner")):
        yield "condition negated", f"{condition.group('head')}(!({condition.group('inner')})){condition.group('tail')}"
    result = RETURN.match(bare)
    if result and _balanced(bare):
        value = result.group("value")
        if LOOKS_TRUE_OR_FALSE.search(value):
            yield "return negated", f"return !({value});"
        elif value not in ("true", "false", "*this", "{}"):
            yield "nothing returned", "return {};"


# ---- All faults of a text, and those that are taken -------------------------------------------------

def faults(path, text, lines=None):
    """Every fault of a text, in the order of the lines; `lines`, a set of numbers, leaves out others."""
    found, before = set(), ""
    originals = text.split("\n")
    for number, (original, code) in enumerate(zip(originals, code_lines(text)), start=1):
        bare = code.rstrip()
        if bare.strip() and (lines is None or number in lines) and not IDLE.search(bare):
            indent = len(bare) - len(bare.lstrip())
            for column, length, kind, instead in _inside_line(bare):
                after = original[:column] + instead + original[column + length:]
                found.add(Fault(path, number, column, kind, original, after))
            for kind, instead in _whole_statement(bare, before):
                after = original[:indent] + _with_literals(instead, bare.strip(), original[indent:len(bare)])
                found.add(Fault(path, number, indent, kind, original, after))
        before = bare.strip() or before
    return sorted(fault for fault in found if fault.after != fault.before)


def _with_literals(instead, code, original):
    """`instead`, made of code whose strings were blanked, with the strings of the original line."""
    blanked = re.findall(r"\"[^\"]*\"|'[^']*'", code)
    for text in blanked:
        at = code.find(text)
        instead = instead.replace(text, original[at:at + len(text)], 1)
    return instead


def chosen(all_faults, count, seed):
    """`count` of the faults (0: all), drawn by `seed`, a line twice only where no other line is left."""
    if count == 0:
        return sorted(all_faults)
    drawn = sorted(all_faults)
    random.Random(seed).shuffle(drawn)
    first, again, seen = [], [], set()
    for fault in drawn:
        (again if (fault.path, fault.line) in seen else first).append(fault)
        seen.add((fault.path, fault.line))
    return sorted((first + again)[:count])
