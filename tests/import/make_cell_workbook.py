#!/usr/bin/python3
"""Writes an insertion-list workbook whose column MAKER holds the given texts, one row each.

    /usr/bin/python3 tests/import/make_cell_workbook.py OUT.xlsx CELLS.json

CELLS.json is a JSON list of texts. The layout is the insertion-list template's: a note in row
1, the column titles ITEM and MAKER in row 11 of "Sheet1", one item per row from row 12 with
its number in ITEM. Every text is written as a text cell, whatever it looks like.
"""

import json
import sys

import xlsxwriter

out, cells_path = sys.argv[1], sys.argv[2]
with open(cells_path, encoding="utf-8") as f:
    cells = json.load(f)

book = xlsxwriter.Workbook(out)
sheet = book.add_worksheet("Sheet1")
sheet.write_string(0, 0, "Insertion list")
sheet.write_string(10, 0, "ITEM")
sheet.write_string(10, 1, "MAKER")
for i, text in enumerate(cells):
    sheet.write_number(11 + i, 0, i + 1)
    sheet.write_string(11 + i, 1, text)
book.close()
