#!/usr/bin/python3
"""Writes the binary and the big files of the hostile-input corpus in tests/data/bad/.

    /usr/bin/python3 scripts/make-bad-inputs.py [OUTPUT_FOLDER]

The default output folder is tests/data/bad. The files are committed; run the script again only
when a case needs a new or different file. The small text files of the corpus are committed as
they are and are not written here. The output does not change from one run to the next: the
random bytes come from a fixed seed and the SQLite file is built with fixed contents.

docs/bad-input.md describes the corpus and its manifest.
"""

import os
import random
import sqlite3
import sys
import tempfile

TOP = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
OUT = sys.argv[1] if len(sys.argv) > 1 else os.path.join(TOP, "tests", "data", "bad")

RANDOM = random.Random(20240521)


def write(relative, data):
    path = os.path.join(OUT, relative)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as f:
        f.write(data)


def junk(size):
    """Bytes that are no text in any encoding: every byte value, NUL included."""
    return bytes(RANDOM.randrange(256) for _ in range(size))


def read(relative):
    with open(os.path.join(TOP, relative), "rb") as f:
        return f.read()


def crlf(lines):
    # Settings files separate their lines with CR LF and end without a line end.
    return "\r\n".join(lines).encode("ascii")


HEADER = ["GAP_BEFORE", "GAP_AFTER", "40,200", "10", "1", "380", "0"]


def settings_files():
    # Binary junk where the .cfa should be; the companions are fine.
    write("settings/junk.cfa", junk(700))
    # A field row in Latin-1, read with the settings encoding UTF-8: "Ç" and "Ã" as Latin-1
    # bytes are not UTF-8.
    write("settings/not-utf8.cfa",
          crlf(HEADER) + b"\r\n" + "DESCRIÇÃO;FUNÇÃO; ;S;".encode("latin-1"))
    # A field row longer than the reader's line buffer (511 characters): it would be cut into
    # pieces, each taken for a row of its own.
    write("settings/long-line.cfa", crlf(HEADER + ["TAG;" + "A" * 600 + "; ;S;"]))
    # A good .cfa whose block companion is binary junk.
    write("settings/junk-companion.cfa", crlf(HEADER + ["TAG;TAG; ;S;"]))
    write("settings/junk-companion.cfb", junk(300))
    for name in ("junk", "not-utf8", "long-line"):
        for extension in (".cfb", ".cfc"):
            write("settings/" + name + extension, b"")
    write("settings/junk-companion.cfc", b"")


def json_files():
    # Nested far deeper than any JSON reader should follow.
    deep = b"[" * 100000 + b"]" * 100000
    write("tree/deep-nesting.json", deep)
    write("settings-json/deep-nesting.json", b'{"main": ' + deep + b"}")


def dxf_files():
    drawing = read("tests/data/dxf/golden_small.dxf")
    block = read("examples/network/DADOS/IEC/BLOCOS/MCB_1P.dxf")
    # Cut in the middle of the ENTITIES section, halfway through a group.
    write("drawing/truncated.dxf", drawing[: len(drawing) * 2 // 3])
    write("drawing/binary.dxf", junk(4000))
    blocks = "network/{}/DADOS/IEC/BLOCOS/MCB_1P.dxf"
    write(blocks.format("truncated"), block[: len(block) // 2])
    write(blocks.format("binary"), junk(4000))


def database_files():
    write("database/binary.db", junk(8192))
    # A real SQLite database cut short after its first page: the header is right, the rest
    # is missing.
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "standard.db")
        connection = sqlite3.connect(path)
        connection.execute("PRAGMA page_size = 1024")
        connection.execute("CREATE TABLE BDKV (KV_KEY TEXT, KV_KEY_NOR TEXT, KV_DWG TEXT)")
        connection.executemany("INSERT INTO BDKV VALUES (?, 'IEC', ?)",
                               [(str(1000 + i), "BLOCK_%d" % i) for i in range(200)])
        connection.commit()
        connection.close()
        with open(path, "rb") as f:
            whole = f.read()
    write("database/truncated.db", whole[:1024 + 100])


def main():
    settings_files()
    json_files()
    dxf_files()
    database_files()


if __name__ == "__main__":
    main()
