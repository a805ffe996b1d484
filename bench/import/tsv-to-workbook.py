#!/usr/bin/python3
"""Writes a workbook in the layout of the insertion-list template from tab-separated text.

    /usr/bin/python3 bench/import/tsv-to-workbook.py OUT.xlsx < ROWS.tsv

The first line of the text holds the column titles, which go to row 11 of "Sheet1"; every further
line is one row from row 12 on. Cells that read as whole numbers are written as numbers. The
import benchmark (kv_bench_import) uses this to get its workbooks from a real spreadsheet writer.
"""

import sys

import xlsxwriter

HEADER_ROW = 11


def main():
    if len(sys.argv) != 2:
        print("usage: tsv-to-workbook.py OUT.xlsx < ROWS.tsv", file=sys.stderr)
        return 2
    workbook = xlsxwriter.Workbook(sys.argv[1], {"constant_memory": True})
    sheet = workbook.add_worksheet("Sheet1")
    sheet.write(0, 0, "Automatic insertion list (generated)")
    for offset, line in enumerate(sys.stdin.read().splitlines()):
        row = HEADER_ROW - 1 + offset
        for column, cell in enumerate(line.split("\t")):
            if offset > 0 and cell.isdigit():
                sheet.write_number(row, column, int(cell))
            elif cell:
                sheet.write_string(row, column, cell)
    workbook.close()
    return 0


if __name__ == "__main__":
    sys.exit(main())
