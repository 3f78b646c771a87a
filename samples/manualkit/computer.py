"""Writes what the workshop's computer already has: the installed manuals' folders and their catalogue rows."""
from datetime import datetime, timedelta
from pathlib import Path

from .manuals import INSTALLED
from .pages import manual_files
from .sources import write_files

LIBRARY = "C:\\Vantor Manuals"
FIRST_INSTALLATION = datetime(2022, 12, 5, 9, 30, 0)


def quoted(value):
    return "'" + str(value).replace("'", "''") + "'"


def catalogue_rows():
    """SQL that records the installed manuals, a few weeks apart."""
    statements = ["BEGIN;"]
    for number, manual in enumerate(INSTALLED):
        installed = FIRST_INSTALLATION + timedelta(days=23 * number, hours=number)
        row = (
            manual.publication,
            manual.model,
            manual.model_id,
            manual.version,
            manual.year,
            manual.kind,
            manual.country,
            manual.language,
            1,
            "workshop",
            installed.strftime("%Y-%m-%d %H:%M:%S"),
            f"{LIBRARY}\\{manual.folder}",
            0,
            "",
        )
        statements.append(f"INSERT INTO M_manage VALUES ({', '.join(map(quoted, row))});")
        statements.append(f"INSERT INTO M_type VALUES ({quoted(manual.publication)}, {quoted(int(manual.pdf))});")
    return "\n".join(statements + ["COMMIT;"]) + "\n"


def write_computer(folder, rows):
    """`folder` is what the computer sees as LIBRARY; `rows` the file that takes the SQL."""
    for manual in INSTALLED:
        write_files(Path(folder) / manual.folder, manual_files(manual))
    Path(rows).write_text(catalogue_rows(), encoding="utf-8")
