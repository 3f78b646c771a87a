#!/usr/bin/env python3
"""Writes the generated part of the sample disc or of the sample workshop computer. The same input gives the same bytes."""
import argparse
from pathlib import Path

from manualkit.computer import write_computer
from manualkit.disc import write_disc

START_PAGE = Path(__file__).resolve().parent.parent / "disc" / "index.html"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    commands = parser.add_subparsers(dest="command", required=True)
    disc = commands.add_parser("disc", help="manuals, start page and manual information files")
    disc.add_argument("root", help="root folder of the disc")
    computer = commands.add_parser("computer", help="manuals that are installed already")
    computer.add_argument("folder", help="folder that holds the installed manuals")
    computer.add_argument("rows", help="SQL file for their catalogue rows")
    arguments = parser.parse_args()
    if arguments.command == "disc":
        write_disc(arguments.root, START_PAGE)
    else:
        write_computer(arguments.folder, arguments.rows)


if __name__ == "__main__":
    main()
