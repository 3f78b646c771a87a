"""Turns a manual into its files: HTML pages, drawings and a style sheet."""
from html import escape
from urllib.parse import quote

from .pictures import DRAWINGS
from .text import TEXTS, read_chapters

WORDS = {
    "EN": {
        "contents": "Contents",
        "edition": "Edition",
        "publication": "Publication",
        "warning": "Warning",
        "tools": "Tools",
        "values": "Values",
        "steps": "Procedure",
        "back": "Previous",
        "next": "Next",
        "changed": "new in this edition",
        "kind": "Workshop manual",
        "issued": "Issued",
        "notice": "For trained technicians only.",
    },
    "JA": {
        "contents": "目次",
        "edition": "版",
        "publication": "資料番号",
        "warning": "警告",
        "tools": "工具",
        "values": "整備基準",
        "steps": "作業手順",
        "back": "前へ",
        "next": "次へ",
        "changed": "この版で追加",
        "kind": "整備解説書",
        "issued": "発行",
        "notice": "整備士の方を対象としています。",
    },
}


class ManualPages:
    """The files of one manual below its folder, by relative path with forward slashes."""

    def __init__(self, manual):
        self.manual = manual
        self.words = WORDS[manual.language]
        self.chapters = read_chapters(manual.text, manual.version, manual.torque, manual.chapters)
        self.files = {}
        self.turns = [(chapter, page) for chapter in self.chapters for page in (None, *chapter.pages)]

    def build(self):
        self.add("index.html", self.entrance())
        self.add("contents/style.css", (TEXTS / "style.css").read_text().replace("ACCENT", self.manual.look.accent))
        self.add("contents/index.html", self.overview())
        for place, (chapter, page) in enumerate(self.turns):
            self.add("contents/" + self.address(chapter, page), self.page(place, chapter, page))
        return self.files

    def add(self, name, text):
        self.files[name] = text.encode("utf-8")

    def address(self, chapter, page=None):
        if self.manual.native_names:
            return f"{chapter.title}/{page.title if page else '目次'}.html"
        return f"{chapter.name}/{page.name if page else 'index'}.html"

    def link(self, chapter, page=None):
        return quote(self.address(chapter, page))

    def frame(self, title, up, here, body):
        manual, words = self.manual, self.words
        side = "".join(
            f'<a href="{up}{self.link(chapter)}"{" class=here" if chapter is here else ""}>'
            f"{escape(chapter.title)}</a>\n"
            for chapter in self.chapters
        )
        return (
            f'<!DOCTYPE html>\n<html lang="{manual.language.lower()}">\n<head>\n<meta charset="utf-8">\n'
            f'<title>{escape(title)} - {manual.title}</title>\n<link rel="stylesheet" href="{up}style.css">\n'
            "</head>\n<body>\n"
            f'<div class="bar"><span>{manual.publication}</span><b>Vantor {manual.title}</b> &nbsp; '
            f'<a href="{up}index.html">{words["contents"]}</a></div>\n<div class="side">\n{side}</div>\n'
            f'<div class="main">\n<h1>{escape(title)}</h1>\n{body}</div>\n</body>\n</html>\n'
        )

    def entrance(self):
        return (
            '<!DOCTYPE html>\n<html>\n<head>\n<meta charset="utf-8">\n'
            '<meta http-equiv="refresh" content="0; url=contents/index.html">\n'
            f"<title>Vantor {self.manual.title}</title>\n</head>\n"
            f'<body><a href="contents/index.html">Vantor {self.manual.title}</a></body>\n</html>\n'
        )

    def overview(self):
        manual, words = self.manual, self.words
        rows = "".join(
            f'<tr><td>{number}</td><td><a href="{self.link(chapter)}"><b>{escape(chapter.title)}</b></a><br>'
            + " &nbsp;|&nbsp; ".join(
                f'<a href="{self.link(chapter, page)}">{escape(page.title)}</a>' for page in chapter.pages
            )
            + "</td></tr>\n"
            for number, chapter in enumerate(self.chapters, 1)
        )
        body = (
            f'<table><tr><td>{words["publication"]}</td><td class="value">{manual.publication}</td></tr>'
            f'<tr><td>{words["edition"]}</td><td class="value">{manual.version}</td></tr>'
            f'<tr><td>{words["issued"]}</td><td class="value">{manual.issued}</td></tr></table>\n'
            f'<h2>{words["contents"]}</h2>\n<table class="chapters">\n{rows}</table>\n'
            f'<p class="tools">{words["notice"]}</p>\n'
        )
        return self.frame(f'{words["kind"]} {manual.title}', "", None, body)

    def page(self, place, chapter, page):
        body = self.items((page or chapter).items)
        if not page:
            body += (
                "<table>\n"
                + "".join(
                    f'<tr><td><a href="../{self.link(chapter, other)}">{escape(other.title)}</a></td></tr>\n'
                    for other in chapter.pages
                )
                + "</table>\n"
            )
        return self.frame((page or chapter).title, "../", chapter, body + self.turn(place))

    def turn(self, place):
        links = ""
        for step, css in ((-1, "back"), (1, "next")):
            if 0 <= place + step < len(self.turns):
                links += f'<a class="{css}" href="../{self.link(*self.turns[place + step])}">{self.words[css]}</a>\n'
        return f'<div class="turn">{links}</div>\n'

    def items(self, items):
        """Runs of steps become a list, runs of values a table; the rest stands for itself."""
        body, open_kind = "", ""
        ends = {"step": "</ol>\n", "value": "</table>\n"}
        starts = {
            "step": f'<h2>{self.words["steps"]}</h2>\n<ol>\n',
            "value": f'<h2>{self.words["values"]}</h2>\n<table>\n',
        }
        for item in items:
            if item.kind != open_kind:
                body += ends.get(open_kind, "") + starts.get(item.kind, "")
                open_kind = item.kind
            body += getattr(self, "show_" + item.kind)(item)
        return body + ends.get(open_kind, "")

    def changed(self, item):
        new = item.edition == self.manual.version
        return f'<span class="changed">{self.words["changed"]}</span>' if new else ""

    def show_paragraph(self, item):
        return f"<p>{escape(item.text)}{self.changed(item)}</p>\n"

    def show_warning(self, item):
        return f'<div class="warning"><b>{self.words["warning"]}</b>{escape(item.text)}</div>\n'

    def show_tools(self, item):
        return f'<p class="tools"><b>{self.words["tools"]}:</b> {escape(item.text)}</p>\n'

    def show_step(self, item):
        return f"<li>{escape(item.text)}{self.changed(item)}</li>\n"

    def show_value(self, item):
        name, value = item.text.split(" | ")
        return f'<tr><td>{escape(name)}{self.changed(item)}</td><td class="value">{escape(value)}</td></tr>\n'

    def show_picture(self, item):
        name, _, legend = item.text.partition(" | ")
        self.add(f"contents/images/{name}.svg", DRAWINGS[name](self.manual.look))
        parts = [part.strip() for part in legend.split(";")]
        lines = "".join(f"<li>{number} {escape(part)}</li>" for number, part in enumerate(parts, 1))
        caption = f"<ol>{lines}</ol>" if len(parts) > 1 else f"<figcaption>{escape(legend)}</figcaption>"
        return f'<figure><img src="../images/{name}.svg" alt="">{caption}</figure>\n'


def manual_files(manual):
    return ManualPages(manual).build()
