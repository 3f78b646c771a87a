"""The manual of the manual manager: one page, whose field shows which version of the manager is installed."""
import textwrap
from typing import NamedTuple

from .handbook import LEFT, NAVY, ORANGE, RIGHT
from .pdf import HEIGHT, WIDTH, PdfDocument

VERSION_FIELD = "ver_mam_man"


class Edition(NamedTuple):
    """The manual in one language: as much text as fits into a line, and what stands where."""

    title: str
    subtitle: str
    version: str
    line: int
    sections: tuple


ENGLISH = Edition(
    "Vantor manual manager",
    "Manual manager",
    "Installed version:",
    92,
    (
        (
            "Find a manual",
            "The list shows every manual of the library. Choose a model and a year above the list, or type the first "
            "letters of a publication.",
        ),
        (
            "Open a manual",
            "Double-click a row. Manuals with pages open in the viewer, manuals in one document in the program that "
            "opens PDF files on this computer.",
        ),
        (
            "Keep the library current",
            "Close the manual manager before you install the manuals of a new disc. The installation replaces older "
            "editions and keeps everything else.",
        ),
    ),
)
JAPANESE = Edition(
    "Vantor マニュアルマネージャー",
    "マニュアルマネージャー",
    "バージョン：",
    46,
    (
        (
            "マニュアルを探す",
            "一覧にはライブラリのすべてのマニュアルが表示されます。一覧の上で車種と年式を選ぶか、"
            "資料番号の先頭の文字を入力してください。",
        ),
        (
            "マニュアルを開く",
            "行をダブルクリックします。ページ形式のマニュアルはビューアーで、一つの文書になっているマニュアルは"
            "このコンピューターでPDFファイルを開くプログラムで表示されます。",
        ),
        (
            "ライブラリを最新に保つ",
            "新しいディスクのマニュアルをインストールする前に、マニュアルマネージャーを終了してください。"
            "インストールは古い版を置き換え、ほかのものはすべて残します。",
        ),
    ),
)


def manager_pdf(edition):
    document = PdfDocument(edition.title)
    page = document.add_page(edition.title)
    page.box(0, HEIGHT - 200, WIDTH, 200, NAVY)
    page.box(0, HEIGHT - 206, WIDTH, 6, ORANGE)
    page.text(LEFT, HEIGHT - 110, "Vantor", 40, True, 1)
    page.text(LEFT, HEIGHT - 150, edition.subtitle, 24, False, 1)
    page.text(LEFT, HEIGHT - 250, edition.version, 12)
    page.field(LEFT + 110, HEIGHT - 256, 120, 20, VERSION_FIELD)
    y = HEIGHT - 310
    for title, text in edition.sections:
        page.text(LEFT, y, title, 16, True)
        page.line((LEFT, y - 8), (RIGHT, y - 8))
        y -= 30
        for line in textwrap.wrap(text, edition.line):
            page.text(LEFT, y, line)
            y -= 15
        y -= 25
    return document.bytes()
