"""The PDF manual: the diagnosis handbook, one chapter a page behind a title page."""
import textwrap

from .pdf import HEIGHT, WIDTH, PdfDocument
from .text import read_chapters

NAVY = (0.08, 0.16, 0.24)
ORANGE = (0.85, 0.33, 0.12)
PALE = (0.95, 0.96, 0.97)
LEFT = 60
RIGHT = WIDTH - 60


def title_page(document, manual, chapters):
    page = document.add_page("Contents")
    page.box(0, HEIGHT - 300, WIDTH, 300, NAVY)
    page.box(0, HEIGHT - 306, WIDTH, 6, ORANGE)
    page.text(LEFT, HEIGHT - 150, "Vantor", 40, True, 1)
    page.text(LEFT, HEIGHT - 190, "Diagnosis handbook", 24, False, 1)
    page.text(
        LEFT,
        HEIGHT - 225,
        f"All models from 2016 on   |   {manual.publication}   |   Edition {manual.version}",
        12,
        False,
        0.8,
    )
    page.text(LEFT, HEIGHT - 360, "Contents", 16, True)
    for row, chapter in enumerate(chapters):
        y = HEIGHT - 392 - row * 24
        page.text(LEFT, y, chapter.title, 12)
        page.text(RIGHT - 14, y, str(row + 2), 12)
        page.line((LEFT, y - 7), (RIGHT, y - 7))
    page.text(LEFT, 60, f"Issued {manual.issued}. For trained technicians only.", 9, False, 0.4)


def network_picture(page, y):
    """Five control units on a bus that ends in two resistors."""
    for row, name in ((y - 54, "CAN high"), (y - 66, "CAN low")):
        page.line((LEFT + 20, row), (RIGHT - 20, row), width=2, grey=0.2)
        page.text(LEFT + 30, row + 3, name, 7)
    for x in (LEFT + 12, RIGHT - 28):
        page.box(x, y - 74, 16, 28, ORANGE)
        page.text(x - 8, y - 86, "120 ohms", 7)
    for place, name in enumerate(("Engine", "Gateway", "Brakes", "Steering", "Body")):
        x = LEFT + 52 + place * 80
        up = place % 2 == 0
        page.box(x, y - 34 if up else y - 118, 66, 28, PALE)
        page.frame(x, y - 34 if up else y - 118, 66, 28)
        page.text(x + 12, y - 24 if up else y - 108, name, 9, True)
        page.line((x + 30, y - 34 if up else y - 90), (x + 30, y - 54), width=1.4, grey=0.2)
        page.line((x + 38, y - 34 if up else y - 90), (x + 38, y - 66), width=1.4, grey=0.2)


class ChapterPage:
    """Fills one page from the top."""

    def __init__(self, document, manual, chapter):
        self.page = document.add_page(chapter.title)
        number = len(document.pages)
        self.page.box(0, HEIGHT - 46, WIDTH, 46, NAVY)
        self.page.text(LEFT, HEIGHT - 29, "Diagnosis handbook", 11, True, 1)
        self.page.text(RIGHT - 50, HEIGHT - 29, manual.publication, 10, False, 0.8)
        self.page.text(LEFT, HEIGHT - 90, chapter.title, 20, True)
        self.page.line((LEFT, 46), (RIGHT, 46))
        self.page.text(WIDTH // 2 - 4, 30, str(number), 9, False, 0.4)
        self.y = HEIGHT - 122
        self.steps = self.rows = 0

    def lines(self, text, indent=0, bold=False):
        for line in textwrap.wrap(text, 92 - indent // 5):
            self.page.text(LEFT + indent, self.y, line, 10, bold)
            self.y -= 15

    def start_group(self):
        self.y -= 12
        self.rows = 0

    def show_paragraph(self, text):
        self.lines(text)

    def show_step(self, text):
        self.steps += 1
        self.page.text(LEFT, self.y, f"{self.steps}.", 10, True)
        self.lines(text, 20)
        self.y -= 4

    def show_warning(self, text):
        height = 15 * len(textwrap.wrap(text, 86)) + 14
        self.y -= 6
        self.page.box(LEFT, self.y - height + 16, RIGHT - LEFT, height, (0.99, 0.93, 0.91))
        self.page.box(LEFT, self.y - height + 16, 5, height, ORANGE)
        self.lines(text, 16, True)
        self.y -= 16

    def show_value(self, text):
        columns = text.split(" | ")
        if self.rows == 0:
            self.page.box(LEFT, self.y - 6, RIGHT - LEFT, 20, (0.87, 0.9, 0.93))
        for x, column in zip((LEFT + 8, LEFT + 110, LEFT + 290), columns):
            self.page.text(x, self.y, column, 9, self.rows == 0 or x == LEFT + 8)
        self.rows += 1
        self.y -= 22
        self.page.line((LEFT, self.y + 14), (RIGHT, self.y + 14), width=0.6)

    def show_picture(self, text):
        network_picture(self.page, self.y - 10)
        self.y -= 140


def handbook_pdf(manual):
    chapters = read_chapters("diagnosis.en.txt", manual.version, 1)
    document = PdfDocument("Vantor diagnosis handbook")
    title_page(document, manual, chapters)
    for chapter in chapters:
        sheet = ChapterPage(document, manual, chapter)
        for before, item in zip((None, *chapter.items), chapter.items):
            if before and before.kind != item.kind:
                sheet.start_group()
            getattr(sheet, "show_" + item.kind)(item.text)
    return document.bytes()
