#!/usr/bin/python3
"""Writes the example settings files examples/settings/example.cfa, .cfb and .cfc.

Run with /usr/bin/python3:  /usr/bin/python3 scripts/make-example-settings.py
The bytes follow the settings dialog's writer: lines separated (not terminated) by CR LF, every
cell followed by ";", an empty cell of the .cfa written as one blank, plain ASCII text.
"""

import os
import sys

TOP = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
OUT_DIR = os.path.join(TOP, "examples", "settings")

# The seven header lines of the .cfa, in file order.
HEADER = [
    "GAP_BEFORE",  # variable whose value is added to x before each symbol
    "GAP_AFTER",   # variable whose value is added to x after each symbol
    "40,200",      # start point of every page
    "10",          # width of a horizontal space
    "1",           # separator mode: automatic with a space after every symbol
    "380",         # page size: the x beyond which the import starts a new page
    "0",           # pagination: every page break creates a page
]

# Field rows: spreadsheet column, attribute or page variable, search property, shown.
# "=DEVICE_TYPE" asks for an exact match, the other two search properties for containment.
FIELDS = [
    ("ITEM", "ITEM", "", False),
    ("TAG", "TAG", "", True),
    ("DESCRIPTION", "FUNCTION", "", True),
    ("TYPE", "", "=DEVICE_TYPE", False),
    ("MANUFACTURER", "", "MANUFACTURER", False),
    ("ORDER_NO", "", "PART_NUMBER", False),
    ("SECTION", "PAGE_TITLE@TITLEBLOCK", "", False),
    ("PROJECT", "PROJECT@TITLEBLOCK", "", False),
]

# Blocks placed once on every page (.cfb): the A3 frame with its title block.
PAGE_BLOCKS = [("TITLEBLOCK_A3", "0,0", "0")]

# Components placed once on every page (.cfc): the protective earth terminal of the page.
PAGE_COMPONENTS = [("1503", "395,200", "0")]


def field_row(field, attribute, search, show):
    cells = [field, attribute, search, "S" if show else "N"]
    return "".join((cell.strip() or " ") + ";" for cell in cells)


def list_row(cells):
    return "".join(cell + ";" for cell in cells)


def write(path, lines):
    data = "\r\n".join(lines).encode("ascii")
    with open(path, "wb") as f:
        f.write(data)
    return data


def check(data, lines):
    errors = []
    if data.endswith(b"\r\n"):
        errors.append("ends with a line end")
    if b"\n" in data.replace(b"\r\n", b"") or b"\r" in data.replace(b"\r\n", b""):
        errors.append("holds a line end other than CR LF")
    read_back = data.decode("ascii").split("\r\n") if data else []
    if read_back != lines:
        errors.append("reads back as %r" % read_back)
    return errors


def main():
    os.makedirs(OUT_DIR, exist_ok=True)
    files = {
        "example.cfa": HEADER + [field_row(*f) for f in FIELDS],
        "example.cfb": [list_row(r) for r in PAGE_BLOCKS],
        "example.cfc": [list_row(r) for r in PAGE_COMPONENTS],
    }
    failed = False
    for name, lines in files.items():
        path = os.path.join(OUT_DIR, name)
        data = write(path, lines)
        with open(path, "rb") as f:
            errors = check(f.read(), lines)
        for error in errors:
            print("make-example-settings: %s: %s" % (path, error), file=sys.stderr)
        failed = failed or bool(errors)
    if not failed:
        print("make-example-settings: example.cfa, .cfb, .cfc written to %s" % OUT_DIR)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
