#!/usr/bin/python3
"""Writes the small block drawings used by the DXF reader tests into tests/data/dxf/.

The files are made with ezdxf, a DXF library independent of the one the reference host
uses, so the reader is tested against files it did not write itself. Run with Debian's
interpreter (/usr/bin/python3, which has ezdxf) and commit the result:

    /usr/bin/python3 tests/refhost/scripts/make_dxf_samples.py
"""
import os
import sys

import ezdxf

OUT = os.path.normpath(os.path.join(os.path.dirname(__file__), "..", "..", "data", "dxf"))


def save(doc, name):
    path = os.path.join(OUT, name)
    doc.saveas(path)
    print("wrote", path)


def symbol_r2000():
    """A contactor-like symbol in DXF R2000: every supported entity, three ATTDEFs."""
    doc = ezdxf.new("R2000")
    doc.header["$INSBASE"] = (5.0, 2.5, 0.0)
    msp = doc.modelspace()
    msp.add_line((0, 0), (10, 0))
    msp.add_line((10, 0), (10, 5))
    msp.add_circle((5, 2.5), 1.5)
    msp.add_arc((5, 5), 2.0, 0, 180)
    # Closed outline with one bulged (half-circle) segment.
    msp.add_lwpolyline([(0, 6, 0), (10, 6, 1.0), (10, 8, 0), (0, 8, 0)], format="xyb", close=True)
    msp.add_text("K", dxfattribs={"insert": (1, 1), "height": 2.0, "rotation": 0})
    msp.add_text("Motor \u00e7", dxfattribs={"insert": (1, -3), "height": 1.0, "rotation": 90})
    msp.add_attdef("TAG", (11, 4), "K?", dxfattribs={"prompt": "Tag", "height": 2.5})
    msp.add_attdef("DESCRICAO", (11, 1), "", dxfattribs={"prompt": "Description", "height": 1.8,
                                                          "rotation": 30})
    hidden = msp.add_attdef("CODIGO", (11, -2), "0000", dxfattribs={"prompt": "Code", "height": 1.0})
    hidden.is_invisible = True
    save(doc, "symbol_r2000.dxf")


def symbol_r2013():
    """A newer, UTF-8 encoded file with MTEXT, an old-style 2D POLYLINE and non-ASCII text."""
    doc = ezdxf.new("R2013")
    doc.header["$INSBASE"] = (0.0, 0.0, 0.0)
    msp = doc.modelspace()
    msp.add_polyline2d([(0, 0), (4, 0), (4, 4), (0, 4)], close=True)
    msp.add_mtext("A\u00e7\u00e3o\\PLinha 2", dxfattribs={"insert": (0, 10), "char_height": 1.0})
    msp.add_text("\u00c9tiqueta", dxfattribs={"insert": (0, -2), "height": 1.0})
    msp.add_attdef("TAG", (5, 5), "X1", dxfattribs={"prompt": "Tag \u00e9", "height": 2.0})
    save(doc, "symbol_r2013.dxf")


def symbol_nested():
    """Model space holding INSERTs of a nested block, a mirrored arc, a paper-space line and
    entities the reader does not support."""
    doc = ezdxf.new("R2000")
    pin = doc.blocks.new("PIN", base_point=(1, 0))
    pin.add_circle((1, 0), 0.5)
    pin.add_line((1, 0), (3, 0))
    msp = doc.modelspace()
    msp.add_blockref("PIN", (10, 0))
    msp.add_blockref("PIN", (0, 10), dxfattribs={"xscale": 2, "yscale": 2, "rotation": 90})
    # An arc drawn with the extrusion pointing down, as mirrored symbols often are.
    msp.add_arc((3, 0), 1.0, 0, 90, dxfattribs={"extrusion": (0, 0, -1)})
    msp.add_spline([(0, 0), (1, 2), (2, 0), (3, 2)])
    hatch = msp.add_hatch()
    hatch.paths.add_polyline_path([(0, 0), (1, 0), (1, 1)], is_closed=True)
    doc.layout("Layout1").add_line((0, 0), (100, 100))
    msp.add_attdef("TAG", (0, -5), "P?", dxfattribs={"height": 1.0})
    save(doc, "symbol_nested.dxf")


def drawing_foreign():
    """A project drawing from another program: pages as GROUP$N layers, a block with
    attributes, INSERTs with ATTRIBs."""
    doc = ezdxf.new("R2000")
    doc.layers.add("SHEET$2").freeze()
    doc.layers.add("TERM$1")
    doc.layers.add("SHEET$10")
    doc.layers.add("SHEET$1")
    doc.header["$CLAYER"] = "SHEET$1"
    relay = doc.blocks.new("RELAY", base_point=(0, 0))
    relay.add_lwpolyline([(0, 0), (10, 0), (10, 6), (0, 6)], close=True)
    relay.add_attdef("TAG", (0, 8), "K?", dxfattribs={"height": 2.0})
    relay.add_attdef("DESC", (0, -3), "", dxfattribs={"height": 1.5})
    msp = doc.modelspace()
    ref = msp.add_blockref("RELAY", (50, 20), dxfattribs={"layer": "SHEET$2", "rotation": 45})
    ref.add_auto_attribs({"TAG": "-K7", "DESC": "Rel\u00e9"})
    msp.add_blockref("RELAY", (0, 0), dxfattribs={"layer": "TERM$1"})
    save(doc, "drawing_foreign.dxf")


def main():
    os.makedirs(OUT, exist_ok=True)
    symbol_r2000()
    symbol_r2013()
    symbol_nested()
    drawing_foreign()
    return 0


if __name__ == "__main__":
    sys.exit(main())
