"""Writes the manuals' side of the disc: one folder a manual, the manager's own manual, the start page's list, the
manual information files."""
from html import escape
import io
from pathlib import Path
import zipfile

from .handbook import handbook_pdf
from .manager import ENGLISH, JAPANESE, manager_pdf
from .manuals import DISC, INSTALLED
from .pages import manual_files

ZIP_TIME = (2023, 10, 2, 8, 0, 0)  # the same bytes from every run


def write(path, content):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)


def write_files(folder, files):
    for name, content in files.items():
        write(folder / name, content)


def car_info(manual):
    """The manual's description as an initialisation file; one with Japanese text is UTF-16 with a mark."""
    values = (
        ("Pub_No", manual.publication),
        ("Version", manual.version),
        ("Model_desc", manual.model),
        ("Model_ID", manual.model_id),
        ("Lang", manual.language),
        ("Ldup", 1),
        ("Year", manual.year),
        ("Kubun", manual.kind),
        ("Country", manual.country),
    )
    text = "[CAR_INFO]\r\n" + "".join(f"{key}={value}\r\n" for key, value in values)
    return text.encode("ascii") if text.isascii() else b"\xff\xfe" + text.encode("utf-16-le")


def archive(folder, files):
    """A ZIP file with one top-level folder."""
    buffer = io.BytesIO()
    with zipfile.ZipFile(buffer, "w", zipfile.ZIP_DEFLATED) as target:
        for name, content in files.items():
            entry = zipfile.ZipInfo(f"{folder}/{name}", ZIP_TIME)
            entry.compress_type = zipfile.ZIP_DEFLATED
            target.writestr(entry, content)
    return buffer.getvalue()


def comparison_set(manual, files):
    """The files below "contents" that differ from the edition before."""
    before = next(old for old in INSTALLED if old.publication == manual.publication)
    old_files = manual_files(before)
    return {
        name.removeprefix("contents/"): content
        for name, content in files.items()
        if name.startswith("contents/") and old_files.get(name) != content
    }


def pdf_page(manual):
    """The page that opens the PDF. With it an installed PDF manual has its contents page, as every manual has."""
    name = f"{manual.publication}.pdf"
    title = escape(manual.title)
    return (
        f'<!DOCTYPE html>\n<html lang="en">\n<head>\n<meta charset="utf-8">\n<title>{title}</title>\n'
        f'<meta http-equiv="refresh" content="0; url={name}">\n'
        "<style>body { font: 16px Arial, sans-serif; margin: 3em; color: #14293d; }</style>\n</head>\n<body>\n"
        f'<h1>{title}</h1>\n<p><a href="{name}">Open the manual (PDF)</a></p>\n</body>\n</html>\n'
    ).encode("utf-8")


def write_manual(root, manual):
    folder = root / manual.folder
    write(folder / "car_info.ci", car_info(manual))
    if manual.pdf:
        write(folder / "contents" / f"{manual.publication}.pdf", handbook_pdf(manual))
        write(folder / "contents/index.html", pdf_page(manual))
        return
    files = manual_files(manual)
    # The loose pages are for reading from the disc.
    write_files(folder, files)
    write(folder / "install/condense/manual.zip", archive(manual.folder, files))
    if manual.compared:
        write_files(folder / "install/compare", comparison_set(manual, files))


def page_of(manual):
    return (
        f"{manual.folder}/contents/{manual.publication}.pdf" if manual.pdf else f"{manual.folder}/contents/index.html"
    )


def manual_table():
    rows = "".join(
        f'      <tr><td class="title"><a href="{page_of(manual)}">{escape(manual.title)}</a>'
        f"<small>{escape(manual.kind)}</small></td>"
        f"<td>{manual.publication}</td><td>{manual.version}</td><td>{manual.language}</td><td>{manual.issued}</td>"
        f'<td><span class="form{" pdf" if manual.pdf else ""}">{"PDF" if manual.pdf else "HTML"}</span></td></tr>\n'
        for manual in DISC
    )
    return (
        "    <table>\n      <tr><th>Manual</th><th>Publication</th><th>Edition</th><th>Language</th>"
        "<th>Issued</th><th>Form</th></tr>\n" + rows + "    </table>\n"
    )


def manual_info(manuals):
    """One line a manual: model, kind, publication, folder, edition, issue. UTF-8 with a mark, for the folder names."""
    lines = (
        f"{manual.title},{manual.kind},{manual.publication},{manual.folder},{manual.version},{manual.issued}\r\n"
        for manual in manuals
    )
    return b"\xef\xbb\xbf" + "".join(lines).encode("utf-8")


def write_disc(root, start_page):
    """Everything on the disc that the manuals decide. `start_page` is the delivered index.html."""
    root = Path(root)
    for manual in DISC:
        write_manual(root, manual)
    page = Path(start_page).read_text(encoding="utf-8")
    write(root / "index.html", page.replace("<!-- manuals -->\n", manual_table()).encode("utf-8"))
    write(root / "programs/man_manager/ManualManager_EN.pdf", manager_pdf(ENGLISH))
    write(root / "programs/man_manager/ManualManager_JP.pdf", manager_pdf(JAPANESE))
    write(root / "programs/setup/man_info_do.ci", manual_info(DISC))
    write(root / "programs/setup/man_info_us.ci", manual_info(manual for manual in DISC if manual.language == "EN"))
