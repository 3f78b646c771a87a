"""Finds the places in C++ sources where one decision can be flipped.

The sources are read as tokens, not parsed: clang-format's blanks tell a comparison from a template's bracket. What a
wrong guess yields does not compile, and is then replaced by another mutant.
"""
from dataclasses import dataclass
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
  | (?P<raw>(?:L|u8|u|U)?R"(?P<mark>[^(]*)\(.*?\)(?P=mark)")
  | (?P<text>(?:L|u8|u|U)?"(?:[^"\\\n]|\\.)*")
  | (?P<letter>(?:L|u8|u|U)?'(?:[^'\\\n]|\\.)+')
  | (?P<number>\d(?:['.\w]|(?<=[eE])[+-])*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<operator><=>|<<=|>>=|\.\.\.|->|::|\+\+|--|<<|[-+*/%&|^!=<>]=|&&|\|\||.)
""", re.VERBOSE | re.DOTALL | re.MULTILINE)

OPENING = {"(": ")", "[": "]", "{": "}"}
# A brace after one of these begins statements; after anything else it begins a type, a namespace or a value.
BEFORE_CODE = {")", "else", "try", "do", ";", "{", "}", ":", "const", "noexcept", "override", "mutable", "]"}
NO_CALL = {"return", "throw", "if", "for", "while", "do", "switch", "case", "default", "break", "continue", "using",
           "delete", "co_return", "else", "try", "catch", "goto", "assert", "static_assert", "typedef", "friend"}
# Texts of these are for people; the tests hold them only where it matters.
TOLD = {"throw", "Write", "Trapped", "SetContext", "FailRun", "Failure", "Succeeds", "static_assert"}


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int
    end: int


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


def fold(text):
    return " ".join(text.split())


def make_mutant(file, content, kind, start, end, replacement, **more):
    first = content.rfind("\n", 0, start) + 1
    last = content.find("\n", end)
    last = len(content) if last < 0 else last
    return Mutant(file, kind, start, end, replacement, content.count("\n", 0, start) + 1, fold(content[first:last]),
                  fold(content[first:start] + replacement + content[end:last]), **more)


class Source:
    """One file's tokens, its brackets and its statements."""

    def __init__(self, file, content):
        self.file, self.content = file, content
        self.tokens = [Token(found.lastgroup if found.lastgroup != "mark" else "raw", found.group(), *found.span())
                       for found in TOKEN.finditer(content) if not found["skip"]]
        self.match = {}  # of an opening bracket's index: its partner's
        self.code = []  # of each token: whether it stands directly, or anywhere, between a body's braces
        stack = []
        for index, token in enumerate(self.tokens):
            if token.text in ("}", ")", "]") and stack:
                self.match[stack.pop()[0]] = index
            self.code.append((bool(stack) and stack[-1][1], any(is_code for _, is_code in stack)))
            if token.text in OPENING:
                stack.append((index, token.text == "{" and self._begins_code(index)))

    def _begins_code(self, index):
        return index > 0 and self.tokens[index - 1].text in BEFORE_CODE

    def text(self, index):
        return self.tokens[index].text if 0 <= index < len(self.tokens) else ""

    def mutant(self, kind, first, last, replacement):
        return make_mutant(self.file, self.content, kind, self.tokens[first].start, self.tokens[last].end, replacement)

    def span(self, first, last):
        return self.content[self.tokens[first].start:self.tokens[last].end]

    def has_blanks(self, index):
        token = self.tokens[index]
        return self.content[token.start - 1].isspace() and self.content[token.end:token.end + 1].isspace()

    def is_told(self, index):
        """Whether the statement around a text only tells somebody something."""
        first = last = index
        while first > 0 and self.text(first - 1) not in (";", "{", "}"):
            first -= 1
        while last + 1 < len(self.tokens) and self.text(last + 1) not in (";", "{", "}"):
            last += 1
        return any(token.text in TOLD for token in self.tokens[first:last])

    def statement(self, first):
        """The index of a simple statement's semicolon, None when it is none."""
        index = first
        while index < len(self.tokens) and self.text(index) != ";":
            if self.text(index) in ("}", ")", "]") or (self.text(index) == "{" and self._begins_code(index)):
                return None
            index = self.match.get(index, index) + 1
        return index

    def surface(self, first, last):
        """The tokens from first up to last, without what stands in brackets."""
        index = first
        while index < last:
            yield self.tokens[index]
            closing = self.match.get(index)
            if closing is not None:
                yield self.tokens[closing]
            index = index + 1 if closing is None else closing + 1

    def form(self, first, end):
        """'call', 'assignment' or '' for other statements. Two words side by side make a declaration."""
        if self.span(first, end).startswith("(void)"):
            first += 3
        surface = list(self.surface(first, end))
        if len(surface) < 2 or surface[0].text in NO_CALL:
            return ""
        texts = [token.text for token in surface]
        for index, text in enumerate(texts):
            if text in ("=", "+=", "-=", "|=", "&=", "++", "--"):
                return "assignment"
            is_named = index > 0 and surface[index].kind == "word"
            if (is_named and (surface[index - 1].kind == "word" or texts[index - 1] in (">", "&", "*"))) or \
                    (surface[index].kind == "operator" and text not in "()[].->::<>?:{}"):
                return ""
        return "call" if texts[-1] == ")" else ""


def operator_mutants(source, index):
    token = source.tokens[index]
    if source.text(index - 1) == "operator":
        return
    for kind, swapped in SWAPPED.items():
        if token.text in swapped and source.has_blanks(index):
            yield source.mutant(kind, index, index, swapped[token.text])
    if token.text == "!":
        yield source.mutant("logical", index, index, "")


def constant_mutants(source, index):
    token = source.tokens[index]
    if token.text in ("true", "false"):
        yield source.mutant("constant", index, index, "false" if token.text == "true" else "true")
    elif token.kind == "number":
        following = str(int(token.text) + 1) if re.fullmatch("0|[1-9][0-9]*", token.text) else f"({token.text} + 1)"
        yield source.mutant("constant", index, index, following)
    elif token.kind == "letter":
        yield source.mutant("constant", index, index, f"({token.text} + 1)")
    elif token.kind == "text" and not re.search(r"\s", token.text) and not source.is_told(index):
        yield source.mutant("text", index, index, token.text[:-1] + 'x"')


def statement_mutants(source, first):
    end = source.statement(first)
    if end is None:
        return
    form = source.form(first, end)
    if form:
        yield source.mutant(form, first, end, ";")
    if form == "call" and (after := source.statement(end + 1)) and source.form(end + 1, after) == "call":
        one, two = source.span(first, end), source.span(end + 1, after)
        if one != two and not any(token.text in TOLD for token in source.tokens[first:after]):
            between = source.content[source.tokens[end].end:source.tokens[end + 1].start]
            yield source.mutant("order", first, after, two + between + one)
    if source.text(first) == "return" and end > first + 1 and source.text(first + 1) not in ("true", "false", "{"):
        yield source.mutant("return", first, end, "return {};")


def branch_mutants(source, index):
    word = source.text(index)
    body = index + 1
    if word in ("if", "catch"):
        body += source.text(body) == "constexpr"
        body = source.match.get(body, len(source.tokens)) + 1
    elif word != "else":
        return
    if source.text(body) == "{" and source.match[body] > body + 1:
        yield source.mutant("branch", body, source.match[body], "{}")


def find_mutants(file, content):
    """All mutants of a source, in its order. Of a header only what stands in bodies."""
    source = Source(file, content)
    for index, (directly, within) in enumerate(source.code):
        if file.endswith(".h") and not within:
            continue
        yield from operator_mutants(source, index)
        yield from constant_mutants(source, index)
        if directly and source.text(index - 1) in (";", "{", "}"):
            yield from statement_mutants(source, index)
        if within:
            yield from branch_mutants(source, index)


def draw(mutants, seed):
    """All of them in the order in which they are to be tried: the rooms by turns, within a room the kinds by turns."""
    chance = random.Random(seed)
    rooms = {}
    for mutant in mutants:
        rooms.setdefault(mutant.room, {}).setdefault(mutant.kind, []).append(mutant)
    turns = []
    for room in sorted(rooms):
        kinds = [rooms[room][kind] for kind in KINDS if kind in rooms[room]]
        chance.shuffle(kinds)
        for kind in kinds:
            chance.shuffle(kind)
        turns.append([kind[turn] for turn in range(max(map(len, kinds))) for kind in kinds if turn < len(kind)])
    return [room[turn] for turn in range(max(map(len, turns), default=0)) for room in turns if turn < len(room)]
