#!/usr/bin/python3
"""Writes a workbook's parts as the text form that the workbook_parts fuzz target zips again:
each part as a line "== NAME" followed by the part's bytes. Used to make that target's seeds
from real workbooks:  xlsx-to-parts.py BOOK.xlsx > corpus/workbook_parts/BOOK.parts
Parts that the reader never opens (document properties, themes) are left out, which keeps the
seeds small and the fuzzer's changes on the parts that matter."""
import sys
import zipfile

UNREAD_PREFIXES = ("docProps/", "xl/theme/")


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: xlsx-to-parts.py WORKBOOK.xlsx > OUTPUT.parts")
    out = sys.stdout.buffer
    with zipfile.ZipFile(sys.argv[1]) as package:
        for info in package.infolist():
            if info.filename.startswith(UNREAD_PREFIXES):
                continue
            out.write(b"== " + info.filename.encode("utf-8") + b"\n")
            out.write(package.read(info))
            out.write(b"\n")


if __name__ == "__main__":
    main()
