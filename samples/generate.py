#!/usr/bin/env python3
"""Writes the pages and PDFs of the sample disc or of the sample workshop computer. The same input gives the same bytes."""
import argparse

from manualkit.computer import write_computer
from manualkit.sources import write_sources


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    commands = parser.add_subparsers(dest="command", required=True)
    sources = commands.add_parser("sources", help="what disc.txt makes the sample disc of")
    sources.add_argument("root", help="folder that takes the manuals, the earlier edition and the manager's manual")
    computer = commands.add_parser("computer", help="manuals that are installed already")
    computer.add_argument("folder", help="folder that holds the installed manuals")
    computer.add_argument("rows", help="SQL file for their catalogue rows")
    arguments = parser.parse_args()
    if arguments.command == "sources":
        write_sources(arguments.root)
    else:
        write_computer(arguments.folder, arguments.rows)


if __name__ == "__main__":
    main()
