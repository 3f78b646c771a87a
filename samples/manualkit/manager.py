"""The manual of the manual manager: one page, whose field shows which version of the manager is installed."""
import textwrap

from .handbook import LEFT, NAVY, ORANGE, RIGHT
from .pdf import HEIGHT, WIDTH, PdfDocument

VERSION_FIELD = "ver_mam_man"
SECTIONS = (
    (
        "Find a manual",
        "The list shows every manual of the library. Choose a model and a year above the list, or type the first "
        "letters of a publication.",
    ),
    (
        "Open a manual",
        "Double-click a row. Manuals with pages open in the viewer, manuals in one document in the program that opens "
        "PDF files on this computer.",
    ),
    (
        "Keep the library current",
        "Close the manual manager before you install the manuals of a new disc. The installation replaces older "
        "editions and keeps everything else.",
    ),
)


def manager_pdf():
    document = PdfDocument("Vantor manual manager")
    page = document.add_page("Vantor manual manager")
    page.box(0, HEIGHT - 200, WIDTH, 200, NAVY)
    page.box(0, HEIGHT - 206, WIDTH, 6, ORANGE)
    page.text(LEFT, HEIGHT - 110, "Vantor", 40, True, 1)
    page.text(LEFT, HEIGHT - 150, "Manual manager", 24, False, 1)
    page.text(LEFT, HEIGHT - 250, "Installed version:", 12)
    page.field(LEFT + 110, HEIGHT - 256, 120, 20, VERSION_FIELD)
    y = HEIGHT - 310
    for title, text in SECTIONS:
        page.text(LEFT, y, title, 16, True)
        page.line((LEFT, y - 8), (RIGHT, y - 8))
        y -= 30
        for line in textwrap.wrap(text, 92):
            page.text(LEFT, y, line)
            y -= 15
        y -= 25
    return document.bytes()
