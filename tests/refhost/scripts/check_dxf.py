#!/usr/bin/python3
"""Checks a DXF drawing written by the reference host with ezdxf, a DXF library independent of
the one that wrote it.

    /usr/bin/python3 check_dxf.py DRAWING.dxf EXPECTED.json

EXPECTED.json describes the drawing as the reference host holds it in memory:

    {"version": "AC1015",
     "current_layer": "PAGE$1",
     "layers": [{"name": "PAGE$1", "frozen": false,
                 "page": {"group": "PAGE", "group_index": 0, "page_index": 0, "title": "..."}}],
     "blocks": {"NAME": {"base": [x, y], "entities": {"LINE": 2, ...},
                         "attdefs": [{"tag": ..., "prompt": ..., "default": ..., "invisible": false}]}},
     "inserts": [{"block": ..., "layer": ..., "insert": [x, y, z], "rotation": r,
                  "attribs": [[tag, value], ...], "component_key": "...", "associated": [...]}],
     "variables": {"NAME": {"kind": 0, "boolean": false, "texts": [...]}}}

Exit status 0 when the file matches, 1 with one line per difference when it does not, 2 when
the file cannot be read at all.
"""
import json
import math
import sys

import ezdxf

PAGE_APP = "KVREF_PAGE"
# AutoCAD writes characters outside a file's code page as "\\U+XXXX"; ezdxf keeps the escape
# in the texts it reads and offers this function to decode it.
text = ezdxf.decode_dxf_unicode
REFERENCE_APP = "KVREF_REFERENCE"


class Checker:
    def __init__(self):
        self.problems = []

    def expect(self, condition, message):
        if not condition:
            self.problems.append(message)
        return condition

    def equal(self, actual, expected, what):
        return self.expect(actual == expected, f"{what}: found {actual!r}, expected {expected!r}")

    def near(self, actual, expected, what):
        ok = len(actual) == len(expected) and all(
            math.isclose(a, e, rel_tol=1e-9, abs_tol=1e-9) for a, e in zip(actual, expected))
        return self.expect(ok, f"{what}: found {list(actual)!r}, expected {list(expected)!r}")


def xdata_strings(tags, start):
    """Reads the strings of extended data from `start`: 1071 piece count, then 1000 pieces."""
    values = []
    index = start
    while index < len(tags):
        code, count = tags[index]
        if code != 1071:
            break
        pieces = tags[index + 1:index + 1 + count]
        values.append(text("".join(str(value) for _, value in pieces)))
        index += 1 + count
    return values, index


def record_strings(tags, index, count):
    """Reads `count` strings of a record from `index`: 91 piece count, then 1 pieces."""
    values = []
    for _ in range(count):
        code, pieces = tags[index]
        if code != 91:
            raise ValueError(f"group 91 expected, found {code}")
        values.append(text("".join(str(tags[index + 1 + k][1]) for k in range(pieces))))
        index += 1 + pieces
    return values, index


def check_layers(doc, expected, check):
    for layer in expected["layers"]:
        name = layer["name"]
        if not check.expect(doc.layers.has_entry(name), f"layer {name!r} is missing"):
            continue
        entry = doc.layers.get(name)
        check.equal(entry.is_frozen(), layer["frozen"], f"frozen state of layer {name!r}")
        page = layer.get("page")
        if page is None:
            continue
        if not check.expect(entry.has_xdata(PAGE_APP), f"layer {name!r} has no {PAGE_APP} data"):
            continue
        tags = [(tag.code, tag.value) for tag in entry.get_xdata(PAGE_APP)]
        check.equal(tags[:3], [(1070, 1), (1071, page["group_index"]), (1071, page["page_index"])],
                    f"page numbers of layer {name!r}")
        strings, _ = xdata_strings(tags, 3)
        check.equal(strings, [page["group"], page["title"]], f"group and title of page {name!r}")


def check_blocks(doc, expected, check):
    for name, block in expected["blocks"].items():
        definition = doc.blocks.get(name)
        if not check.expect(definition is not None, f"block {name!r} is missing"):
            continue
        base = definition.block.dxf.base_point
        check.near((base.x, base.y), block["base"], f"base point of block {name!r}")
        counts = {}
        for entity in definition:
            if entity.dxftype() != "ATTDEF":
                counts[entity.dxftype()] = counts.get(entity.dxftype(), 0) + 1
        check.equal(counts, block["entities"], f"entities of block {name!r}")
        attdefs = [{"tag": text(a.dxf.tag), "prompt": text(a.dxf.prompt), "default": text(a.dxf.text),
                    "invisible": a.is_invisible} for a in definition.query("ATTDEF")]
        check.equal(attdefs, block["attdefs"], f"attribute definitions of block {name!r}")


def check_inserts(doc, expected, check):
    inserts = list(doc.modelspace().query("INSERT"))
    check.equal(len(inserts), len(expected["inserts"]), "number of INSERTs")
    for number, (insert, wanted) in enumerate(zip(inserts, expected["inserts"]), start=1):
        what = f"INSERT {number}"
        check.equal(insert.dxf.name, wanted["block"], f"block of {what}")
        check.equal(insert.dxf.layer, wanted["layer"], f"layer of {what}")
        point = insert.dxf.insert
        check.near((point.x, point.y, point.z), wanted["insert"], f"insertion point of {what}")
        check.near((insert.dxf.rotation,), (wanted["rotation"],), f"rotation of {what}")
        attribs = [[text(a.dxf.tag), text(a.dxf.text)] for a in insert.attribs]
        check.equal(attribs, wanted["attribs"], f"attributes of {what}")
        key = wanted.get("component_key", "")
        associated = wanted.get("associated", [])
        if key or associated:
            if check.expect(insert.has_xdata(REFERENCE_APP), f"{what} has no {REFERENCE_APP} data"):
                tags = [(tag.code, tag.value) for tag in insert.get_xdata(REFERENCE_APP)]
                check.equal(tags[0], (1070, 1), f"format of {what}")
                keys, index = xdata_strings(tags[:2 + tags[1][1]], 1)
                check.equal(keys, [key], f"component key of {what}")
                check.equal(tags[index] if index < len(tags) else None, (1071, len(associated)),
                            f"number of associated components of {what}")
                texts, _ = xdata_strings(tags, index + 1)
                check.equal(texts, associated, f"associated components of {what}")


def check_variables(doc, expected, check):
    variables = expected.get("variables", {})
    app = doc.rootdict.get("KVREF")
    if not check.expect(app is not None, "the KVREF dictionary is missing"):
        return
    dictionary = app.get("VARIABLES")
    if not check.expect(dictionary is not None, "the VARIABLES dictionary is missing"):
        return
    check.equal(sorted(dictionary.keys()), sorted(variables.keys()), "variable names")
    for name, wanted in variables.items():
        record = dictionary.get(name)
        if record is None:
            continue
        tags = [(tag.code, tag.value) for tag in record.tags]
        try:
            kind = dict(tags[:3])
            texts, _ = record_strings(tags, 3, tags[2][1])
        except (ValueError, IndexError, TypeError) as error:
            check.expect(False, f"record of variable {name!r} does not read: {error}")
            continue
        check.equal(kind.get(70), wanted["kind"], f"kind of variable {name!r}")
        check.equal(bool(kind.get(290)), wanted["boolean"], f"boolean of variable {name!r}")
        check.equal(texts, wanted["texts"], f"texts of variable {name!r}")


def main(argv):
    if len(argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    with open(argv[2], encoding="utf-8") as handle:
        expected = json.load(handle)
    try:
        doc = ezdxf.readfile(argv[1])
    except (IOError, ezdxf.DXFError) as error:
        print(f"{argv[1]}: ezdxf cannot read the file: {error}")
        return 2

    check = Checker()
    check.equal(doc.dxfversion, expected.get("version", "AC1015"), "DXF version")
    auditor = doc.audit()
    check.equal([f"{e.code}: {e.message}" for e in auditor.errors], [], "errors found by ezdxf's audit")
    if "current_layer" in expected:
        check.equal(doc.header.get("$CLAYER", "0"), expected["current_layer"], "current layer")
    check_layers(doc, expected, check)
    check_blocks(doc, expected, check)
    check_inserts(doc, expected, check)
    check_variables(doc, expected, check)
    for problem in check.problems:
        print(f"{argv[1]}: {problem}")
    if check.problems:
        return 1
    print(f"{argv[1]}: matches ({len(expected['layers'])} layers, {len(expected['blocks'])} blocks, "
          f"{len(expected['inserts'])} inserts, {len(expected.get('variables', {}))} variables)")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
