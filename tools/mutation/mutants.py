"""Finds the places in C++ sources where one decision can be flipped.

The sources are read as tokens, not parsed: clang-format's blanks tell a comparison from a template's bracket. What a
wrong guess yields does not compile, and another mutant takes its place.
"""
from dataclasses import dataclass
from itertools import zip_longest
import random
import re

SWAPPED = {
    "comparison": {"==": "!=", "!=": "=="},
    "boundary": {"<": "<=", "<=": "<", ">": ">=", ">=": ">"},
    "logical": {"&&": "||", "||": "&&"},
}
KINDS = (*SWAPPED, "constant", "text", "return", "call", "assignment", "order", "branch")

TOKEN = re.compile(r"""
    (?P<skip>\s+|//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\n\\]|\\.)*)
  | (?P<raw>(?:L|u8)?R"(?P<mark>[^(]*)\(.*?\)(?P=mark)")
  | (?P<text>(?:L|u8)?"(?:[^"\\\n]|\\.)*")
  | (?P<letter>L?'(?:[^'\\\n]|\\.)+')
  | (?P<number>\d(?:['.\w]|(?<=[eE])[+-])*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<operator><=>|<<=|>>=|\.\.\.|->|::|\+\+|--|<<|[-+*/%&|^!=<>]=|&&|\|\||.)
""", re.VERBOSE | re.DOTALL | re.MULTILINE)

# A brace after one of these begins statements; after anything else it begins a type, a namespace or a value.
BEFORE_CODE = {")", "else", "try", "do", ";", "{", "}", ":", "const", "noexcept", "override", "mutable", "]"}
# The texts of these are for people, and next to these the order of calls seldom matters.
TOLD = {"throw", "Write", "Trapped", "SetContext", "FailRun", "Failure", "Succeeds", "static_assert",
        "PauseSeconds", "PauseBetweenSteps"}
# In a statement without what its brackets hold: what stands before an assignment, and what no call or target has.
STEP = re.compile(r"(.*?)(?:(?:^| )([-+|&]?=|\+\+|--)(?: .*)?)?")
NO_STEP = re.compile(r"^(return|throw|while|using|delete|assert|case|default|break|continue)\b|"
                     r"\w \w|(?<!-)[>&*] \w|[^\w ()\[\].:<>?{}-]")


@dataclass(frozen=True)
class Mutant:
    file: str  # below the root
    kind: str
    start: int
    end: int
    replacement: str
    line: int
    before: str  # the lines as they are, blanks folded
    after: str
    name: str = ""
    windows: str = ""  # the Windows tests that can see it, when no native test can

    @property
    def room(self):
        return self.file.rpartition("/")[0]

    def apply(self, content):
        return content[:self.start] + self.replacement + content[self.end:]


def make_mutant(file, content, kind, start, end, replacement, **more):
    first = content.rfind("\n", 0, start) + 1
    last = content.find("\n", end)
    before, after = (" ".join(f"{content[first:start]}{text}{content[end:last]}".split())
                     for text in (content[start:end], replacement))
    return Mutant(file, kind, start, end, replacement, content.count("\n", 0, start) + 1, before, after, **more)


class Source:
    """One file's tokens, its brackets and its statements."""

    def __init__(self, file, content):
        self.file, self.content = file, content
        self.tokens = [(found.lastgroup, found.group(), found.start(), found.end())
                       for found in TOKEN.finditer(content) if not found["skip"]]
        self.match = {}  # of an opening bracket's index: its partner's
        self.code = []  # of each token: whether it stands directly, and whether anywhere, between a body's braces
        self.statements, self.told = [], set()  # of each token: the number of its statement; those for people
        number, stack = 0, []
        for index, (_, text, _, _) in enumerate(self.tokens):
            if text in ("}", ")", "]") and stack:
                self.match[stack.pop()[0]] = index
            self.code.append((bool(stack) and stack[-1][1], any(is_code for _, is_code in stack)))
            if text in ("{", "(", "["):
                stack.append((index, self.begins_code(index)))
            number += text in (";", "{", "}")
            self.statements.append(number)
            if text in TOLD:
                self.told.add(number)

    def text(self, index):
        return self.tokens[index][1] if 0 <= index < len(self.tokens) else ""

    def span(self, first, last):
        return self.content[self.tokens[first][2]:self.tokens[last][3]]

    def mutant(self, kind, first, last, replacement):
        return make_mutant(self.file, self.content, kind, self.tokens[first][2], self.tokens[last][3], replacement)

    def begins_code(self, index):
        return self.text(index) == "{" and self.text(index - 1) in BEFORE_CODE

    def step(self, first):
        """The index of a simple statement's semicolon, and whether it is a "call", an "assignment" or something else."""
        index, surface = first, []
        while self.text(index) != ";":
            if self.text(index) in ("", "}", ")", "]") or self.begins_code(index):
                return first, ""
            surface.append(self.text(index))
            if index in self.match:
                index = self.match[index]
                surface.append(self.text(index))
            index += 1
        target, operator = STEP.fullmatch(" ".join(surface).removeprefix("( ) ")).groups()
        if NO_STEP.search(target):
            return index, "other"
        return index, "assignment" if operator else "call" if target.endswith(")") else "other"


def token_mutants(source, index):
    kind, text, start, end = source.tokens[index]
    if source.text(index - 1) == "operator":
        return
    for name, swapped in SWAPPED.items():
        if text in swapped and source.content[start - 1].isspace() and source.content[end].isspace():
            yield source.mutant(name, index, index, swapped[text])
    if text == "!":
        yield source.mutant("logical", index, index, "")
    elif text in ("true", "false"):
        yield source.mutant("constant", index, index, "false" if text == "true" else "true")
    elif kind in ("number", "letter"):
        following = str(int(text) + 1) if re.fullmatch("0|[1-9][0-9]*", text) else f"({text} + 1)"
        yield source.mutant("constant", index, index, following)
    elif kind == "text" and not re.search(r"\s", text) and source.statements[index] not in source.told:
        yield source.mutant("text", index, index, text.replace('"', '"x', 1))


def statement_mutants(source, first):
    end, form = source.step(first)
    if form in ("call", "assignment"):
        yield source.mutant(form, first, end, ";")
    if form == "call":
        last, next_form = source.step(end + 1)
        one, two = source.span(first, end), source.span(end + 1, last)
        if next_form == "call" and one != two and not source.told & set(source.statements[first:last]):
            between = source.content[source.tokens[end][3]:source.tokens[end + 1][2]]
            yield source.mutant("order", first, last, two + between + one)
    if form and source.text(first) == "return" and source.text(first + 1) not in ("true", "false", "{", "0", ";"):
        yield source.mutant("return", first, end, "return {};")


def branch_mutants(source, index):
    body = index + 1
    if source.text(index) in ("if", "catch"):
        body += source.text(body) == "constexpr"
        body = source.match.get(body, len(source.tokens)) + 1
    elif source.text(index) != "else":
        return
    if source.text(body) == "{" and source.match[body] > body + 1:
        yield source.mutant("branch", body, source.match[body], "{}")


def find_mutants(file, content):
    """All mutants of a source. Of a header only what stands in bodies."""
    source = Source(file, content)
    for index, (directly, within) in enumerate(source.code):
        if within or not file.endswith(".h"):
            yield from token_mutants(source, index)
        if within:
            yield from branch_mutants(source, index)
        if directly and source.text(index - 1) in (";", "{", "}"):
            yield from statement_mutants(source, index)


def take_turns(queues):
    return [mutant for turn in zip_longest(*queues) for mutant in turn if mutant is not None]


def draw(mutants, seed):
    """All of them in the order in which they are to be tried: the rooms by turns, within a room the kinds by turns."""
    chance = random.Random(seed)
    shuffled = chance.sample(mutants, len(mutants))
    kinds = chance.sample(KINDS, len(KINDS))
    rooms = sorted({mutant.room for mutant in mutants})
    return take_turns(take_turns([mutant for mutant in shuffled if (mutant.room, mutant.kind) == (room, kind)]
                                 for kind in kinds) for room in rooms)
