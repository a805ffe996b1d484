#!/usr/bin/python3
"""Writes the workbooks that the workbook reader's and the importer's tests read.

Run with Debian's /usr/bin/python3 (it has openpyxl and xlsxwriter):

    /usr/bin/python3 scripts/make-test-workbooks.py [OUTPUT_FOLDER]

The default output folder is tests/data/xlsx. The files are committed; run the script again
only when a test needs a new or different workbook. Two real producers write the ordinary
workbooks (openpyxl and xlsxwriter); the damaged and hostile ones are put together with
Python's zipfile from hand-written parts.
"""

import datetime
import io
import os
import struct
import sys
import zipfile

import openpyxl
import xlsxwriter

OUT = sys.argv[1] if len(sys.argv) > 1 else os.path.join(
    os.path.dirname(os.path.abspath(__file__)), "..", "tests", "data", "xlsx")

# Fixed document properties, so that running the script again gives the same cell data.
CREATED = datetime.datetime(2024, 1, 2, 3, 4, 5)


def path(name):
    return os.path.join(OUT, name)


# --- The cell-value workbook --------------------------------------------------------------
#
# Sheet "Values" (the second sheet; the first is "Summary"), one case per row: column A names
# the case, column B holds the value. The tests know the row numbers and the expected texts.

def openpyxl_values():
    wb = openpyxl.Workbook()
    summary = wb.active
    summary.title = "Summary"
    summary["A1"] = "not this sheet"
    ws = wb.create_sheet("Values")
    wb.create_sheet("Sheet1")["A1"] = "sheet one"
    wb.create_sheet("Ünïcødé — 電気")["B2"] = "unicode sheet"
    cases = [
        ("case", "value"),
        ("shared or inline string", "Motor 3 kW"),
        ("string with blanks", "  padded  "),
        ("integer", 1),
        ("decimal", 12.7),
        ("tenth", 0.1),
        ("sum of floats", 0.1 + 0.2),
        ("third", 1 / 3),
        ("fifteen digits", 123456789012345),
        ("large", 1e20),
        ("small", 1e-10),
        ("negative", -5.5),
        ("hundred thousand", 100000),
        ("two to the 53", 2 ** 53),
        ("true", True),
        ("false", False),
        ("error", "#N/A"),
        ("formula number", "=2*3"),
        ("formula text", '="a"&"b"'),
        ("date custom format", datetime.date(2024, 3, 15)),
        ("date built-in 14", datetime.date(2024, 3, 15)),
        ("date dd/mm/yyyy", datetime.date(1999, 12, 31)),
        ("date and time", datetime.datetime(2024, 3, 15, 18, 30)),
        ("early date", datetime.date(1900, 1, 15)),
        ("two decimals format", 3.14159),
        ("rich text", "Bold and italic"),
        ("unicode", "Ünïcødé – 電気"),
        ("empty value", None),
    ]
    for row, (name, value) in enumerate(cases, start=1):
        ws.cell(row=row, column=1, value=name)
        if value is not None:
            ws.cell(row=row, column=2, value=value)
    ws["B21"].number_format = "mm-dd-yy"  # built-in format 14
    ws["B22"].number_format = "dd/mm/yyyy"
    ws["B23"].number_format = "yyyy-mm-dd hh:mm"
    ws["B25"].number_format = "0.00"
    # Row 29 is left out; row 30 has gaps between its columns.
    ws["A30"] = "gaps"
    ws["D30"] = "d"
    ws["F30"] = "f"
    ws["AB30"] = "ab"
    ws["A31"] = "percent"
    ws["B31"] = 0.25
    ws["B31"].number_format = "0%"
    ws["A32"] = "escape-like text"
    ws["B32"] = "_x0041_"
    ws["A40"] = "last"
    wb.properties.created = CREATED
    wb.properties.modified = CREATED
    wb.save(path("openpyxl-values.xlsx"))


def xlsxwriter_values(name, options, vba=False):
    wb = xlsxwriter.Workbook(path(name), options)
    wb.set_properties({"created": CREATED})
    wb.add_worksheet("Summary").write("A1", "not this sheet")
    ws = wb.add_worksheet("Values")
    bold = wb.add_format({"bold": True})
    italic = wb.add_format({"italic": True})
    iso = wb.add_format({"num_format": "yyyy-mm-dd"})
    builtin14 = wb.add_format({"num_format": 14})
    dmy = wb.add_format({"num_format": "dd/mm/yyyy"})
    datetime_format = wb.add_format({"num_format": "yyyy-mm-dd hh:mm"})
    two_decimals = wb.add_format({"num_format": "0.00"})
    percent = wb.add_format({"num_format": "0%"})

    # In constant-memory mode rows must be written in order, which this does.
    ws.write_row(0, 0, ["case", "value"])
    ws.write_row(1, 0, ["shared or inline string", "Motor 3 kW"])
    ws.write_row(2, 0, ["string with blanks", "  padded  "])
    numbers = [("integer", 1), ("decimal", 12.7), ("tenth", 0.1), ("sum of floats", 0.1 + 0.2),
               ("third", 1 / 3), ("fifteen digits", 123456789012345), ("large", 1e20),
               ("small", 1e-10), ("negative", -5.5), ("hundred thousand", 100000),
               ("two to the 53", 2 ** 53)]
    for offset, (label, value) in enumerate(numbers):
        ws.write_string(3 + offset, 0, label)
        ws.write_number(3 + offset, 1, value)
    ws.write_string(14, 0, "true")
    ws.write_boolean(14, 1, True)
    ws.write_string(15, 0, "false")
    ws.write_boolean(15, 1, False)
    ws.write_string(16, 0, "error")
    ws.write_formula(16, 1, "=NA()", None, "#N/A")
    ws.write_string(17, 0, "formula number")
    ws.write_formula(17, 1, "=2*3", None, 6)
    ws.write_string(18, 0, "formula text")
    ws.write_formula(18, 1, '="a"&"b"', None, "ab")
    ws.write_string(19, 0, "date custom format")
    ws.write_datetime(19, 1, datetime.date(2024, 3, 15), iso)
    ws.write_string(20, 0, "date built-in 14")
    ws.write_datetime(20, 1, datetime.date(2024, 3, 15), builtin14)
    ws.write_string(21, 0, "date dd/mm/yyyy")
    ws.write_datetime(21, 1, datetime.date(1999, 12, 31), dmy)
    ws.write_string(22, 0, "date and time")
    ws.write_datetime(22, 1, datetime.datetime(2024, 3, 15, 18, 30), datetime_format)
    ws.write_string(23, 0, "early date")
    ws.write_datetime(23, 1, datetime.date(1900, 1, 15), iso)
    ws.write_string(24, 0, "two decimals format")
    ws.write_number(24, 1, 3.14159, two_decimals)
    ws.write_string(25, 0, "rich text")
    ws.write_rich_string(25, 1, bold, "Bold", " and ", italic, "italic")
    ws.write_string(26, 0, "unicode")
    ws.write_string(26, 1, "Ünïcødé – 電気")
    ws.write_string(27, 0, "empty value")
    ws.write_string(29, 0, "gaps")
    ws.write_string(29, 3, "d")
    ws.write_string(29, 5, "f")
    ws.write_string(29, 27, "ab")
    ws.write_string(30, 0, "percent")
    ws.write_number(30, 1, 0.25, percent)
    ws.write_string(31, 0, "escape-like text")
    ws.write_string(31, 1, "_x0041_")
    ws.write_string(32, 0, "control character")
    ws.write_string(32, 1, "a\x07b")
    ws.write_string(39, 0, "last")
    wb.add_worksheet("Sheet1").write("A1", "sheet one")
    wb.add_worksheet("Ünïcødé — 電気").write("B2", "unicode sheet")
    if vba:
        # The reader does not run macros; a placeholder part is enough to make the package a
        # macro-enabled workbook with the content type of an .xlsm file.
        wb.add_vba_project(io.BytesIO(b"placeholder, not a real macro project"), True)
    wb.close()


# --- Workbooks laid out like the insertion template -----------------------------------------
#
# Row 11 holds the column titles, the data starts in row 12, and rows 1 to 10 hold notes
# (one of them a title that is not in row 11).

TEMPLATE_TITLES = ["ITEM", "DESCRIPTION", "CODE", "REF", "NOTE"]


def template_notes(write):
    write(1, 1, "Automatic insertion list")
    write(5, 2, "ELSEWHERE")
    for column, title in enumerate(TEMPLATE_TITLES, start=1):
        write(11, column, title)


def openpyxl_template(name, rows, sheet="Sheet1"):
    wb = openpyxl.Workbook()
    ws = wb.active
    ws.title = sheet

    def write(row, column, value):
        ws.cell(row=row, column=column, value=value)

    template_notes(write)
    for row, values in rows:
        for column, value in enumerate(values, start=1):
            if value is not None:
                write(row, column, value)
    wb.properties.created = CREATED
    wb.properties.modified = CREATED
    wb.save(path(name))


def xlsxwriter_template(name, rows):
    wb = xlsxwriter.Workbook(path(name))
    wb.set_properties({"created": CREATED})
    ws = wb.add_worksheet("Sheet1")

    def write(row, column, value):
        ws.write(row - 1, column - 1, value)

    template_notes(write)
    for row, values in rows:
        for column, value in enumerate(values, start=1):
            if value is not None:
                write(row, column, value)
    wb.close()


IMPORT_ROWS = [
    (12, [1, "Contactor", "K1", "3RT2015", None]),
    (13, [None, "no item number: skipped", "K2", "3RT2016", "x"]),
    (14, [2, 'Motor "big"', "M1", 12.7, "note"]),
    # row 15 is missing altogether
    (16, [3, "Lamp", None, "", None]),
    (17, [4, "  Blanks and Case kept  ", "k3", None, None]),
]


# --- Hand-made packages ----------------------------------------------------------------------

NS_MAIN = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
NS_REL = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
REL_TYPE = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/"
WORKBOOK_TYPE = "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml"
WORKSHEET_TYPE = "application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml"


def content_types(main_type=WORKBOOK_TYPE, main_part="/xl/workbook.xml"):
    return ('<?xml version="1.0" encoding="UTF-8"?>'
            '<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">'
            '<Default Extension="rels" '
            'ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
            '<Default Extension="xml" ContentType="application/xml"/>'
            f'<Override PartName="{main_part}" ContentType="{main_type}"/>'
            f'<Override PartName="/xl/worksheets/sheet1.xml" ContentType="{WORKSHEET_TYPE}"/>'
            '</Types>')


ROOT_RELS = ('<?xml version="1.0" encoding="UTF-8"?>'
             '<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">'
             f'<Relationship Id="rId1" Type="{REL_TYPE}officeDocument" Target="xl/workbook.xml"/>'
             '</Relationships>')


def workbook_xml(sheet_rel="rId1"):
    return ('<?xml version="1.0" encoding="UTF-8"?>'
            f'<workbook xmlns="{NS_MAIN}" xmlns:r="{NS_REL}"><sheets>'
            f'<sheet name="Sheet1" sheetId="1" r:id="{sheet_rel}"/>'
            '</sheets></workbook>')


def workbook_rels(sheet_target="worksheets/sheet1.xml", shared=True):
    text = ('<?xml version="1.0" encoding="UTF-8"?>'
            '<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">'
            f'<Relationship Id="rId1" Type="{REL_TYPE}worksheet" Target="{sheet_target}"/>')
    if shared:
        text += (f'<Relationship Id="rId2" Type="{REL_TYPE}sharedStrings" '
                 'Target="sharedStrings.xml"/>')
    return text + '</Relationships>'


def sheet_xml(rows_xml):
    return ('<?xml version="1.0" encoding="UTF-8"?>'
            f'<worksheet xmlns="{NS_MAIN}"><sheetData>{rows_xml}</sheetData></worksheet>')


SHARED = ('<?xml version="1.0" encoding="UTF-8"?>'
          f'<sst xmlns="{NS_MAIN}" count="2" uniqueCount="2147483647">'
          '<si><t>first</t></si><si><t>second</t></si></sst>')

GOOD_ROWS = '<row r="1"><c r="A1" t="s"><v>0</v></c><c r="B1"><v>42</v></c></row>'


def package(overrides=None, drop=()):
    parts = {
        "[Content_Types].xml": content_types(),
        "_rels/.rels": ROOT_RELS,
        "xl/workbook.xml": workbook_xml(),
        "xl/_rels/workbook.xml.rels": workbook_rels(),
        "xl/worksheets/sheet1.xml": sheet_xml(GOOD_ROWS),
        "xl/sharedStrings.xml": SHARED,
    }
    parts.update(overrides or {})
    for name in drop:
        del parts[name]
    return parts


def write_package(name, parts, compression=zipfile.ZIP_DEFLATED):
    with zipfile.ZipFile(path(name), "w", compression) as archive:
        for part, text in parts.items():
            data = text.encode("utf-8") if isinstance(text, str) else text
            info = zipfile.ZipInfo(part, date_time=(2024, 1, 2, 3, 4, 6))
            info.compress_type = compression
            archive.writestr(info, data)


def bomb_sheet(mebibytes):
    """A sheet whose XML is valid but consists almost only of blanks, with an empty element
    after each mebibyte so that no single run of text is long."""
    head = f'<?xml version="1.0" encoding="UTF-8"?><worksheet xmlns="{NS_MAIN}"><sheetData>'
    tail = '</sheetData></worksheet>'
    return head.encode() + (b" " * (1024 * 1024 - 4) + b"<x/>") * mebibytes + tail.encode()


def patch_uncompressed_size(name, part, size):
    """Makes the zip headers of `part` declare `size` uncompressed bytes, whatever it holds."""
    data = bytearray(open(path(name), "rb").read())
    encoded = part.encode()
    # Local file header: signature, then the uncompressed size at offset 22, name at 30.
    position = 0
    while True:
        position = data.find(b"PK\x03\x04", position)
        if position < 0:
            break
        name_length = struct.unpack_from("<H", data, position + 26)[0]
        if bytes(data[position + 30:position + 30 + name_length]) == encoded:
            struct.pack_into("<I", data, position + 22, size)
        position += 4
    # Central directory header: uncompressed size at offset 24, name at 46.
    position = 0
    while True:
        position = data.find(b"PK\x01\x02", position)
        if position < 0:
            break
        name_length = struct.unpack_from("<H", data, position + 28)[0]
        if bytes(data[position + 46:position + 46 + name_length]) == encoded:
            struct.pack_into("<I", data, position + 24, size)
        position += 4
    open(path(name), "wb").write(bytes(data))


def hostile():
    with open(path("hostile-not-a-zip.xlsx"), "w") as f:
        f.write("This is a text file with the extension of a workbook.\n")
    open(path("hostile-empty.xlsx"), "wb").close()
    with open(path("hostile-legacy-xls.xlsx"), "wb") as f:
        f.write(b"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1" + b"\x00" * 504)
    whole = open(path("openpyxl-values.xlsx"), "rb").read()
    with open(path("hostile-truncated.xlsx"), "wb") as f:
        f.write(whole[: len(whole) * 6 // 10])

    write_package("hostile-no-content-types.xlsx",
                  package(drop=["[Content_Types].xml"]))
    write_package("hostile-word-document.xlsx", package({
        "[Content_Types].xml": content_types(
            "application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml")}))
    write_package("hostile-missing-workbook.xlsx", package(drop=["xl/workbook.xml"]))
    write_package("hostile-missing-sheet-part.xlsx", package(drop=["xl/worksheets/sheet1.xml"]))
    write_package("hostile-missing-shared-strings.xlsx", package(drop=["xl/sharedStrings.xml"]))
    write_package("hostile-dangling-relationship.xlsx",
                  package({"xl/workbook.xml": workbook_xml("rId9")}))
    write_package("hostile-sheet-is-workbook.xlsx",
                  package({"xl/_rels/workbook.xml.rels": workbook_rels("workbook.xml")}))
    write_package("hostile-target-outside.xlsx", package(
        {"xl/_rels/workbook.xml.rels": workbook_rels("../../../../etc/passwd")}))
    write_package("hostile-garbage-sheet.xlsx", package({
        "xl/worksheets/sheet1.xml":
            b'<?xml version="1.0"?><worksheet><sheetData><row r="1"><c r="A1"><v>1</v></c>'
            b'\x00\x01\x02 garbage \xff\xfe'}))
    write_package("hostile-garbage-workbook.xlsx", package({
        "xl/workbook.xml": bytes(range(256)) * 4}))
    laughs = ('<?xml version="1.0"?><!DOCTYPE worksheet [<!ENTITY a "aaaaaaaaaa">'
              + "".join(f'<!ENTITY {chr(98 + i)} "' + f"&{chr(97 + i)};" * 10 + '">'
                        for i in range(8))
              + f']><worksheet xmlns="{NS_MAIN}"><sheetData><row r="1"><c r="A1" t="str">'
              '<v>&i;</v></c></row></sheetData></worksheet>')
    write_package("hostile-entity-expansion.xlsx",
                  package({"xl/worksheets/sheet1.xml": laughs}))
    write_package("hostile-shared-string-index.xlsx", package({
        "xl/worksheets/sheet1.xml": sheet_xml('<row r="1"><c r="A1" t="s"><v>7</v></c></row>')}))
    write_package("hostile-row-beyond-limit.xlsx", package({
        "xl/worksheets/sheet1.xml": sheet_xml('<row r="2000000"><c><v>1</v></c></row>')}))
    write_package("hostile-column-beyond-limit.xlsx", package({
        "xl/worksheets/sheet1.xml": sheet_xml('<row r="1"><c r="XFE1"><v>1</v></c></row>')}))
    write_package("hostile-bad-cell-reference.xlsx", package({
        "xl/worksheets/sheet1.xml": sheet_xml('<row r="1"><c r="1A"><v>1</v></c></row>')}))
    write_package("hostile-rows-out-of-order.xlsx", package({
        "xl/worksheets/sheet1.xml": sheet_xml(
            '<row r="5"><c r="A5"><v>5</v></c></row><row r="3"><c r="A3"><v>3</v></c></row>')}))

    # Zip bombs: a sheet of 300 MiB of mostly blanks, compressed with bzip2 to a few hundred bytes.
    # The honest one declares its size; the lying one declares 1000 bytes, so only counting
    # the bytes as they come out can stop it.
    big = package({"xl/worksheets/sheet1.xml": bomb_sheet(300)})
    write_package("hostile-bomb.xlsx", big, zipfile.ZIP_BZIP2)
    write_package("hostile-bomb-lying.xlsx", big, zipfile.ZIP_BZIP2)
    patch_uncompressed_size("hostile-bomb-lying.xlsx", "xl/worksheets/sheet1.xml", 1000)
    # A deflated one of 8 MiB, small enough for the tests' own tighter limits.
    write_package("hostile-bomb-deflate.xlsx",
                  package({"xl/worksheets/sheet1.xml": bomb_sheet(8)}))
    patch_uncompressed_size("hostile-bomb-deflate.xlsx", "xl/worksheets/sheet1.xml", 1000)
    # Headers that declare 4 GiB for a small part.
    write_package("hostile-huge-declared-size.xlsx", package())
    patch_uncompressed_size("hostile-huge-declared-size.xlsx", "xl/worksheets/sheet1.xml",
                            0xFFFFFFF0)
    # Elements nested a million deep, and one text of 64 MiB.
    deep = sheet_xml('<row r="1"><c r="A1"><is>' + "<r>" * 1000000 + "</r>" * 1000000
                     + "</is></c></row>")
    write_package("hostile-deep-nesting.xlsx", package({"xl/worksheets/sheet1.xml": deep}))
    long_text = sheet_xml('<row r="1"><c r="A1" t="inlineStr"><is><t>' + "x" * (64 << 20)
                          + "</t></is></c></row>")
    write_package("hostile-long-text.xlsx", package({"xl/worksheets/sheet1.xml": long_text}),
                  zipfile.ZIP_BZIP2)
    # A template whose third data row is damaged: the reading stops there.
    damaged = ('<?xml version="1.0" encoding="UTF-8"?>'
               f'<worksheet xmlns="{NS_MAIN}"><dimension ref="A1:B13"/><sheetData>'
               '<row r="11"><c r="A11" t="s"><v>0</v></c><c r="B11" t="s"><v>1</v></c></row>'
               '<row r="12"><c r="A12"><v>1</v></c><c r="B12"><v>10</v></c></row>'
               '<row r="13"><c r="A13"><v>2</v></c><c r="B13" t="s"><v>99</v></c></row>'
               '</sheetData></worksheet>')
    titles = ('<?xml version="1.0" encoding="UTF-8"?>'
              f'<sst xmlns="{NS_MAIN}"><si><t>ITEM</t></si><si><t>CODE</t></si></sst>')
    write_package("import-damaged-row.xlsx", package({"xl/worksheets/sheet1.xml": damaged,
                                                      "xl/sharedStrings.xml": titles}))
    # Many tiny rows and cells, for the tests' tight cell and row limits.
    many = "".join(f'<row r="{r}">' + '<c><v>1</v></c>' * 10 + '</row>' for r in range(1, 201))
    write_package("many-cells.xlsx", package({"xl/worksheets/sheet1.xml": sheet_xml(many)}))
    # Many content types in a small package, for the tests' tight list limit.
    types = content_types().replace("</Types>", "".join(
        f'<Override PartName="/unused/part{i}.xml" ContentType="application/xml"/>'
        for i in range(50)) + "</Types>")
    write_package("many-content-types.xlsx", package({"[Content_Types].xml": types}))
    # A sheet whose dimension says "A1" however big it is, and rows and cells without "r".
    no_refs = ('<?xml version="1.0" encoding="UTF-8"?>'
               f'<worksheet xmlns="{NS_MAIN}"><dimension ref="A1"/><sheetData>'
               '<row><c><v>1</v></c><c t="s"><v>1</v></c></row>'
               '<row><c><v>2</v></c></row>'
               '<row r="7"><c r="C7"><v>7</v></c><c><v>8</v></c></row>'
               '</sheetData></worksheet>')
    write_package("no-references.xlsx", package({"xl/worksheets/sheet1.xml": no_refs}))


def normalise(name):
    """Rewrites a producer's file with fixed entry times and modification date, so that
    running the script again gives the same bytes."""
    with zipfile.ZipFile(path(name)) as archive:
        entries = [(info, archive.read(info)) for info in archive.infolist()]
    with zipfile.ZipFile(path(name), "w") as archive:
        for info, data in entries:
            if info.filename == "docProps/core.xml":
                text = data.decode("utf-8")
                start = text.find("<dcterms:modified")
                if start >= 0:
                    end = text.find("</dcterms:modified>", start)
                    text = (text[:start] + '<dcterms:modified xsi:type="dcterms:W3CDTF">'
                            '2024-01-02T03:04:05Z' + text[end:])
                data = text.encode("utf-8")
            fixed = zipfile.ZipInfo(info.filename, date_time=(2024, 1, 2, 3, 4, 6))
            fixed.compress_type = zipfile.ZIP_DEFLATED
            fixed.external_attr = info.external_attr
            archive.writestr(fixed, data)


def main():
    os.makedirs(OUT, exist_ok=True)
    openpyxl_values()
    xlsxwriter_values("xlsxwriter-values.xlsx", {})
    xlsxwriter_values("xlsxwriter-inline-values.xlsx", {"constant_memory": True})
    xlsxwriter_values("xlsxwriter-values.xlsm", {}, vba=True)
    openpyxl_template("import-openpyxl.xlsx", IMPORT_ROWS)
    xlsxwriter_template("import-xlsxwriter.xlsx", IMPORT_ROWS)
    openpyxl_template("import-no-sheet1.xlsx", IMPORT_ROWS, sheet="Data")
    openpyxl_template("import-header-only.xlsx", [])
    openpyxl_template("import-all-skipped.xlsx",
                      [(12, [None, "a", "b"]), (13, ["", "c", "d"])])
    for name in sorted(os.listdir(OUT)):
        if name.startswith(("openpyxl-", "xlsxwriter-", "import-")):
            normalise(name)
    hostile()


if __name__ == "__main__":
    main()
