"""Reads the manuals' texts.

A line's first character says what it is: "#" chapter, "##" page, "picture" a drawing and its legend, ":" a paragraph,
"!" a warning, "*" tools, "-" a step, "=" a value ("name | value"). "@4 " before a line: it came with edition 4.
"{24}" is a torque, which each model scales a little.
"""
from dataclasses import dataclass, field
from pathlib import Path
import re

TEXTS = Path(__file__).resolve().parent.parent / "text"
KINDS = {"!": "warning", "*": "tools", "-": "step", "=": "value", ":": "paragraph"}


@dataclass
class Item:
    kind: str
    text: str
    edition: int = 0  # the edition that brought the line; 0 for the first


@dataclass
class Page:
    name: str
    title: str
    items: list = field(default_factory=list)


@dataclass
class Chapter:
    name: str
    title: str
    pages: list = field(default_factory=list)
    items: list = field(default_factory=list)


def scale_torques(line, factor):
    return re.sub(r"\{(\d+)\}", lambda match: str(round(int(match[1]) * factor)), line)


def read_item(line, edition):
    if line.startswith("picture "):
        return Item("picture", line[8:], edition)
    kind = KINDS.get(line[0])
    if not kind:
        raise ValueError(f"line of no known kind: {line}")
    return Item(kind, line[1:].strip(), edition)


def read_chapters(name, edition, factor, wanted=()):
    """The chapters of one text file as they stand in an edition; only the wanted ones when any are named."""
    chapters = []
    for line in (TEXTS / name).read_text(encoding="utf-8").splitlines():
        if not line.strip():
            continue
        since, line = re.match(r"(?:@(\d+) )?(.*)", scale_torques(line, factor)).groups()
        if line.startswith("#"):
            page_or_chapter, title = (part.strip() for part in line.lstrip("# ").split("|"))
            if line.startswith("##"):
                chapters[-1].pages.append(Page(page_or_chapter, title))
            else:
                chapters.append(Chapter(page_or_chapter, title))
        elif int(since or 0) <= edition:
            owner = chapters[-1].pages[-1] if chapters[-1].pages else chapters[-1]
            owner.items.append(read_item(line, int(since or 0)))
    return [chapter for chapter in chapters if not wanted or chapter.name in wanted]
