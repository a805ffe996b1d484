#!/usr/bin/python3
"""Writes the workbooks that the item import's tests read (tests/data/xlsx/items-*.xlsx).

Run with Debian's /usr/bin/python3 (it has xlsxwriter):

    /usr/bin/python3 scripts/make-import-item-workbooks.py [OUTPUT_FOLDER]

Every workbook has the layout of the insertion-list template: a note in row 1, the column titles
in row 11 of "Sheet1", one item per row from row 12. A value of None leaves the cell out. The
files are committed; run the script again only when a test needs a new or different workbook.
"""

import datetime
import os
import sys
import zipfile

import xlsxwriter

OUT = sys.argv[1] if len(sys.argv) > 1 else os.path.join(
    os.path.dirname(os.path.abspath(__file__)), "..", "tests", "data", "xlsx")

CREATED = datetime.datetime(2024, 1, 2, 3, 4, 5)
HEADER_ROW = 11

WORKBOOKS = {
    # Two search fields on the same tag.
    "items-same-tag.xlsx": (["ITEM", "TYPE", "KIND"], [
        [1, "RELAY", "RELAY"],
    ]),
    # A search field left empty.
    "items-empty-cell.xlsx": (["ITEM", "TYPE", "MAKER"], [
        [1, "LAMP", None],
    ]),
    "items-maker.xlsx": (["ITEM", "TYPE", "MAKER"], [
        [1, "LAMP", "ACME"],
    ]),
    # One component per row, with layout gaps: the page fill across items.
    "items-models.xlsx": (["ITEM", "TAG", "MODEL"], [
        [1, "-M1", "M1"],
        [2, "-M2", "M2"],
        [3, "-M3", "M3"],
    ]),
    # Two components in one row, with layout gaps.
    "items-pumps.xlsx": (["ITEM", "TAG", "TYPE"], [
        [1, "-P1", "PUMP"],
    ]),
    "items-item-numbers.xlsx": (["ITEM", "TAG"], [
        [3, "-A"],
        [12.7, "-B"],
        [7, "-C"],
    ]),
    # No row has a value in the first listed column.
    "items-no-rows.xlsx": (["ITEM", "TAG"], [
        [None, "-A"],
        ["", "-B"],
    ]),
    # An apostrophe in a search cell breaks that row's statement.
    "items-apostrophe.xlsx": (["ITEM", "TAG", "TYPE", "MAKER"], [
        [1, "-H1", "LAMP", "O'NEIL"],
        [2, "-K1", "RELAY", "ACME"],
    ]),
    # A bit of everything: several matches, none, a skipped row.
    "items-mixed.xlsx": (["ITEM", "TAG", "DESCRIPTION", "TYPE", "MAKER", "VOLTAGE", "NOTE"], [
        [1, "-K1", "Relay 24", "RELAY", "ACME", "24", "first"],
        [2, "-K2", "Relays", "RELAY", None, None, None],
        [3, "-H1", "Lamps", "LAMP", None, None, "nothing has a voltage"],
        [None, "-X1", "no item number", "RELAY", "ACME", "24", "skipped"],
        [4, "-M1", "Motors", "MOTOR", None, None, None],
    ]),
}


def write_workbook(name, titles, rows):
    wb = xlsxwriter.Workbook(os.path.join(OUT, name))
    wb.set_properties({"created": CREATED})
    ws = wb.add_worksheet("Sheet1")
    ws.write(0, 0, "Automatic insertion list")
    for column, title in enumerate(titles):
        ws.write(HEADER_ROW - 1, column, title)
    for offset, values in enumerate(rows):
        for column, value in enumerate(values):
            if value is not None and value != "":
                ws.write(HEADER_ROW + offset, column, value)
    wb.close()


def normalise(name):
    """Rewrites the file with fixed entry times, so that running the script again gives the same
    bytes."""
    file_path = os.path.join(OUT, name)
    with zipfile.ZipFile(file_path) as archive:
        entries = [(info, archive.read(info)) for info in archive.infolist()]
    with zipfile.ZipFile(file_path, "w") as archive:
        for info, data in entries:
            fixed = zipfile.ZipInfo(info.filename, date_time=(2024, 1, 2, 3, 4, 6))
            fixed.compress_type = zipfile.ZIP_DEFLATED
            fixed.external_attr = info.external_attr
            archive.writestr(fixed, data)


def main():
    os.makedirs(OUT, exist_ok=True)
    for name, (titles, rows) in sorted(WORKBOOKS.items()):
        write_workbook(name, titles, rows)
        normalise(name)
    print("make-import-item-workbooks: %d workbooks written to %s" % (len(WORKBOOKS), OUT))
    return 0


if __name__ == "__main__":
    sys.exit(main())
