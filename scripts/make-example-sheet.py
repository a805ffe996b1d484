#!/usr/bin/python3
"""Writes examples/sheets/example.xlsx, the item list of a small pump and fan starter panel.

Run with /usr/bin/python3 (it needs openpyxl):  /usr/bin/python3 scripts/make-example-sheet.py
Layout of "Sheet1": a title block in rows 1-10, the column titles in row 11, one item per row from
row 12. The column titles are the field names of examples/settings/example.cfa (read from it), plus
two columns the settings do not list (QTY, REMARKS), which the import leaves alone.

After writing, the script checks every row against the example standard: it loads
examples/standard/schema.sql and data.sql into an in-memory SQLite database, builds the import's
component statement for the row exactly as the import does and requires one to three matching
components. LIKE is made case-sensitive for the check, as it is on PostgreSQL.
"""

import io
import os
import re
import sqlite3
import sys
import zipfile

import openpyxl
from openpyxl.styles import Alignment, Border, Font, PatternFill, Side

TOP = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SHEET_PATH = os.path.join(TOP, "examples", "sheets", "example.xlsx")
SETTINGS_PATH = os.path.join(TOP, "examples", "settings", "example.cfa")
STANDARD_DIR = os.path.join(TOP, "examples", "standard")
HEADER_ROW = 11

COLUMNS = ["ITEM", "TAG", "DESCRIPTION", "TYPE", "MANUFACTURER", "ORDER_NO", "QTY", "SECTION",
           "PROJECT", "REMARKS"]
PROJECT = "Pump station PS-01"

# ITEM, TAG, DESCRIPTION, TYPE, MANUFACTURER, ORDER_NO, QTY, SECTION, REMARKS; and the keys of the
# components the row must match.
ROWS = [
    (1, "-F1", "Main circuit breaker", "MCB", "NORDWERK", "MCB3-C32", 1, "Power supply", "",
     ["1014"]),
    (2, "-F2", "Control circuit breaker", "MCB", "NORDWERK", "MCB1-C06", 1, "Power supply", "",
     ["1001"]),
    (3, "-T1", "Control power supply 24 V DC", "POWER_SUPPLY", "VOLTREX", "PS-24", 1,
     "Power supply", "2.5 A or 5 A", ["2001", "2002"]),
    (4, "-Q1", "Pump motor protection", "MPCB", "NORDWERK", "MPS-0040", 1, "Pump P1", "",
     ["1102"]),
    (5, "-K1", "Pump contactor", "CONTACTOR", "NORDWERK", "CT09", 1, "Pump P1",
     "coil voltage to be confirmed", ["1201", "1202"]),
    (6, "-M1", "Pump motor 1.5 kW", "MOTOR", "MOTORIA", "MO-3-150", 1, "Pump P1", "", ["1602"]),
    (7, "-Q2", "Fan motor protection", "MPCB", "", "MPS-0100", 1, "Fan F1", "", ["1103"]),
    (8, "-K2", "Fan contactor", "CONTACTOR", "NORDWERK", "D24", 1, "Fan F1", "24 V DC coil",
     ["1201", "1203"]),
    (9, "-M2", "Fan motor 4 kW", "MOTOR", "MOTORIA", "MO-3-400", 1, "Fan F1", "", ["1603"]),
    (None, "-X9", "Spare terminals", "TERMINAL", "KLEMMTEC", "FT-2.5", 10, "Control",
     "not ordered: no item number", None),
    (10, "-S0", "Emergency stop", "EMERGENCY_STOP", "SIGNALUX", "", 1, "Control", "",
     ["1703"]),
    (11, "-S1", "Pump start", "PUSHBUTTON", "SIGNALUX", "PB-10", 1, "Control", "", ["1701"]),
    (12, "-S2", "Pump stop", "PUSHBUTTON", "SIGNALUX", "PB-01", 1, "Control", "", ["1702"]),
    (13, "-S3", "Fan hand/off/auto", "SELECTOR", "SIGNALUX", "SS3", 1, "Control", "", ["1902"]),
    (14, "-H1", "Pump running", "PILOT_LAMP", "SIGNALUX", "PL-GN", 1, "Control", "", ["1801"]),
    (15, "-H2", "Fault", "PILOT_LAMP", "SIGNALUX", "PL-RD", 1, "Control", "", ["1802"]),
    (16, "-K3", "Fault relay", "RELAY", "NORDWERK", "RL2", 1, "Control", "",
     ["1401", "1402"]),
    (17, "-X1", "Control terminals", "TERMINAL", "KLEMMTEC", "FT-2.5", 12, "Control", "",
     ["1501"]),
    (18, "-X2", "Earth terminals", "TERMINAL", "KLEMMTEC", "2.5", 4, "Control", "",
     ["1501", "1503"]),
]

TITLE_BLOCK = [
    ("Bill of materials", None),
    ("Project", PROJECT),
    ("Customer", "Municipal water works"),
    ("Panel", "PS01 motor control centre MCC1"),
    ("Drawing no.", "PS01-MCC1-BOM"),
    ("Revision", "B"),
    ("Date", "2024-03-18"),
    ("Drawn by", "A. Engineer"),
    ("Standard", "IEC"),
    ("Note", "Rows without an item number are not imported."),
]


def settings_fields(path):
    """Field rows of a .cfa: lines 8 onwards, each cell followed by ';'."""
    with open(path, "rb") as f:
        lines = f.read().decode("ascii").split("\r\n")
    fields = []
    for line in lines[7:]:
        cells = [c for c in line.split(";") if c != ""]
        if cells:
            fields.append((cells[0].strip(), cells[2] if len(cells) > 2 else ""))
    return fields


def write_sheet():
    book = openpyxl.Workbook()
    sheet = book.active
    sheet.title = "Sheet1"
    bold = Font(bold=True)
    sheet["A1"] = TITLE_BLOCK[0][0]
    sheet["A1"].font = Font(bold=True, size=14)
    for row, (label, value) in enumerate(TITLE_BLOCK[1:], start=2):
        sheet.cell(row=row, column=1, value=label).font = bold
        sheet.cell(row=row, column=2, value=value)
    thin = Side(style="thin")
    for column, title in enumerate(COLUMNS, start=1):
        cell = sheet.cell(row=HEADER_ROW, column=column, value=title)
        cell.font = bold
        cell.fill = PatternFill("solid", fgColor="D9D9D9")
        cell.border = Border(bottom=thin)
        cell.alignment = Alignment(horizontal="center")
    for offset, row in enumerate(ROWS, start=1):
        item, tag, descr, kind, maker, order, qty, section, remarks, _ = row
        values = [item, tag, descr, kind, maker, order, qty, section, PROJECT, remarks]
        for column, value in enumerate(values, start=1):
            if value not in (None, ""):
                sheet.cell(row=HEADER_ROW + offset, column=column, value=value)
    for column, width in zip("ABCDEFGHIJ", (8, 8, 30, 16, 14, 14, 6, 14, 20, 30)):
        sheet.column_dimensions[column].width = width
    sheet.freeze_panes = "A12"
    os.makedirs(os.path.dirname(SHEET_PATH), exist_ok=True)
    buffer = io.BytesIO()
    book.save(buffer)
    with open(SHEET_PATH, "wb") as f:
        f.write(reproducible(buffer.getvalue()))


def reproducible(xlsx):
    """The workbook with fixed time stamps, so that writing it again gives the same bytes."""
    fixed = "2024-03-18T00:00:00Z"
    source = zipfile.ZipFile(io.BytesIO(xlsx))
    out = io.BytesIO()
    with zipfile.ZipFile(out, "w", zipfile.ZIP_DEFLATED) as target:
        for info in source.infolist():
            data = source.read(info.filename)
            if info.filename == "docProps/core.xml":
                data = re.sub(rb"(<dcterms:(created|modified)[^>]*>)[^<]*", rb"\g<1>" +
                              fixed.encode(), data)
            entry = zipfile.ZipInfo(info.filename, date_time=(2024, 3, 18, 0, 0, 0))
            entry.compress_type = zipfile.ZIP_DEFLATED
            target.writestr(entry, data)
    return out.getvalue()


def component_statement(conditions):
    """The import's statement for one row, with the language bound by the caller."""
    return ("SELECT MENU_KEY, MENU_DESCR FROM BDMENUS WHERE MENU_KEY_LANG = :lang and MENU_KEY in"
            " ( select LTRIM(RTRIM(ITEM_KEY)) from CUSTOM_PROPERTIES where "
            + " or ".join(conditions)
            + " GROUP BY ITEM_KEY HAVING COUNT(DISTINCT tag) = %d )" % len(conditions)
            + " ORDER BY MENU_KEY")


def row_conditions(fields, values):
    conditions = []
    for (title, search), value in zip(fields, values):
        prop = search.strip()
        if not prop:
            continue
        if "=" not in prop:
            conditions.append("( LTRIM(RTRIM(TAG))='%s' and LTRIM(RTRIM(VALUE)) like '%%%s%%' )"
                              % (prop.upper(), value))
        elif value:
            conditions.append("( LTRIM(RTRIM(TAG))='%s' and LTRIM(RTRIM(VALUE)) = '%s' )"
                              % (prop.upper().replace("=", ""), value))
    return conditions


def check_sheet(fields):
    errors = []
    book = openpyxl.load_workbook(SHEET_PATH)
    if "Sheet1" not in book.sheetnames:
        return ["no sheet \"Sheet1\""]
    sheet = book["Sheet1"]
    titles = [c.value for c in sheet[HEADER_ROW]]
    for title, _ in fields:
        if title not in titles:
            errors.append("column %s of the settings is not in row %d" % (title, HEADER_ROW))
    if errors:
        return errors

    db = sqlite3.connect(":memory:")
    for name in ("schema.sql", "data.sql"):
        with open(os.path.join(STANDARD_DIR, name), encoding="utf-8") as f:
            db.executescript(f.read())
    db.execute("PRAGMA case_sensitive_like = ON")
    read = 0
    for offset, expected in enumerate(r[-1] for r in ROWS):
        row = HEADER_ROW + 1 + offset
        values = []
        for title, _ in fields:
            value = sheet.cell(row=row, column=titles.index(title) + 1).value
            values.append("" if value is None else str(value))
        if values[0] == "":
            if expected is not None:
                errors.append("row %d has no item number" % row)
            continue
        read += 1
        statement = component_statement(row_conditions(fields, values))
        keys = [k for k, _ in db.execute(statement, {"lang": "1"})]
        if keys != expected:
            errors.append("row %d matches %r, expected %r" % (row, keys, expected))
        if not 1 <= len(keys) <= 3:
            errors.append("row %d matches %d components" % (row, len(keys)))
    if not 10 <= read <= 20:
        errors.append("%d rows are read" % read)
    return errors


def main():
    fields = settings_fields(SETTINGS_PATH)
    write_sheet()
    errors = check_sheet(fields)
    for error in errors:
        print("make-example-sheet: %s: %s" % (SHEET_PATH, error), file=sys.stderr)
    if errors:
        return 1
    print("make-example-sheet: %s written and checked against the example standard" % SHEET_PATH)
    return 0


if __name__ == "__main__":
    sys.exit(main())
