"""What a mutant is, and how a line of C++ is mutated."""

import hashlib
import pathlib
import re
from dataclasses import dataclass

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDERS = ("analysis", "driver", "html", "gui", "help")


@dataclass(frozen=True)
class Mutant:
    file: str    # relative to the root
    line: int    # from 1
    before: str  # the whole line
    after: str

    def key(self):
        """Identifies the mutant until its file changes."""
        digest = hashlib.sha256((ROOT / self.file).read_bytes()).hexdigest()
        return f"{self.file} {digest[:16]} {self.line} {self.after}"

    def __str__(self):
        return (f"{self.file}:{self.line}\n"
                f"    - {self.before.strip()}\n    + {self.after.strip()}")


# Comments, string and character literals, preprocessor directives.
NOT_CODE = re.compile(
    r'//[^\n]*|/\*.*?\*/|R"\(.*?\)"|"(?:\\.|[^"\\\n])*"|'
    r"(?<!\w)'(?:\\.|[^'\\\n])+'|^[ \t]*\#(?:\\\n|[^\n])*",
    re.DOTALL | re.MULTILINE)

SWAPS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==",
         "&&": "||", "||": "&&", "+": "-", "-": "+", "+=": "-=", "-=": "+=",
         "++": "--", "--": "++", "true": "false", "false": "true",
         "break": "continue", "continue": "break"}
SWAPPED = re.compile(
    r"(?<!\S)(?:[<>]=?|[=!]=|&&|\|\||[+-]=?)(?!\S)|\+\+|--|"
    r"\b(?:true|false|break|continue)\b")
NUMBER = re.compile(r"(?<![\w.])(\d+)(\.\d+)?(?![\w.])")
PARENTHESES = r"\([^()]*\)"
for _ in range(3):
    PARENTHESES = rf"\((?:[^()]|{PARENTHESES})*\)"
CONDITION = re.compile(rf"\b(?:if|while) ({PARENTHESES})")
RETURN = re.compile(r"\breturn (.+);")
# A statement that fills a line. Not a declaration, which begins with two words:
# without it nothing compiles.
STATEMENT = re.compile(
    r"\s*(?!\s|(?:return|break|continue|else|assertion_failed)\b|"
    r"(?!delete|new)[\w:]+(?:<.*>)?[*&]* [*&]*\w|"
    r"~|.*= (?:delete|default);)[^{}]*;\s*$")


def code_of(text):
    """The text with everything but code blanked; columns do not change."""
    def blank(match):
        keep = match[0][0] if match[0][0] in "\"'" else " "
        return keep + re.sub(r"[^\n]", " ", match[0][1:-1]) + keep
    return NOT_CODE.sub(blank, text)


def mutations(line, code, previous):
    """Yields the mutated forms of a line.

    code is the line in the result of code_of(), previous the code line before.
    """
    def replaced(start, end, new):
        return line[:start] + new + line[end:]

    for found in SWAPPED.finditer(code):
        yield replaced(*found.span(), SWAPS[found[0]])
    for found in NUMBER.finditer(code):
        for step in (1, -1):
            yield replaced(*found.span(1), str(int(found[1]) + step))
    for found in CONDITION.finditer(code):
        yield replaced(*found.span(1), f"(!{line[slice(*found.span(1))]})")
    if found := RETURN.search(code):
        value = line[slice(*found.span(1))]
        for other in ("{}", f"!({value})"):
            if value not in ("true", "false", other):
                yield replaced(*found.span(1), other)
    if (STATEMENT.match(code) and code.count("(") == code.count(")")
            and re.search(r"[;{}:)]$|\belse$", previous)):
        yield replaced(len(code) - len(code.lstrip()), len(line), ";")


def mutants_of(file, text, seed):
    """Yields a (rank, mutant) for every line that can be mutated. The seed and
    the line decide both; edits of other lines do not change them."""
    occurrences = {}
    previous = ";"
    for number, (line, code) in enumerate(
            zip(text.split("\n"), code_of(text).split("\n")), start=1):
        if not code.strip():
            continue
        found = list(mutations(line, code, previous))
        previous = code.rstrip()
        nth = occurrences[line] = occurrences.get(line, 0) + 1
        rank = hashlib.sha256(f"{seed}|{file}|{line}|{nth}".encode()).digest()
        if found:
            yield rank[1:], Mutant(file, number, line,
                                   found[rank[0] % len(found)])


def choose(seed, only=None):
    """The mutants of the program, or of some files, in order of rank."""
    files = only or [
        str(path.relative_to(ROOT)) for folder in FOLDERS
        for path in (ROOT / folder).iterdir() if path.suffix in (".cpp", ".h")]
    ranked = [pair for file in files
              for pair in mutants_of(file, (ROOT / file).read_text(), seed)]
    return [mutant for _, mutant in sorted(ranked, key=lambda pair: pair[0])]
