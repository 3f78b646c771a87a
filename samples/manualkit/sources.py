"""Writes the sources of the sample disc, which `disc.txt` describes: pages and PDFs."""
from pathlib import Path

from .handbook import handbook_pdf
from .manager import ENGLISH, JAPANESE, manager_pdf
from .manuals import DISC, INSTALLED
from .pages import manual_files


def write(path, content):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)


def write_files(folder, files):
    for name, content in files.items():
        write(folder / name, content)


def write_sources(root):
    """manuals/: a folder or a PDF each; earlier/: the edition that a comparison set is made against; manager/."""
    root = Path(root)
    for manual in DISC:
        if manual.pdf:
            write(root / f"manuals/{manual.folder}.pdf", handbook_pdf(manual))
        else:
            write_files(root / "manuals" / manual.folder, manual_files(manual))
    compared = [manual.publication for manual in DISC if manual.compared]
    for manual in INSTALLED:
        if manual.publication in compared:
            write_files(root / "earlier" / manual.folder, manual_files(manual))
    write(root / "manager/ManualManager_EN.pdf", manager_pdf(ENGLISH))
    write(root / "manager/ManualManager_JP.pdf", manager_pdf(JAPANESE))
