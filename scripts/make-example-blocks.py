#!/usr/bin/python3
"""Writes the block drawings of the example standard "IEC" as DXF files.

Run with /usr/bin/python3 (it needs ezdxf):  /usr/bin/python3 scripts/make-example-blocks.py
Output: examples/network/DADOS/IEC/BLOCOS/NAME.dxf, one file per block. The component table names
a block as NAME (the host asks for NAME.dwg; the reference host reads NAME.dxf beside it).

Symbols follow the IEC 60617 drawing conventions on a 5 mm grid: circuits run from top to bottom,
the insertion base point (0,0) is the symbol's first connection point (its top terminal), poles
of multi-pole devices are 10 mm apart to the right of it. Every symbol carries the attribute
definitions that the example settings fill (ITEM, TAG, FUNCTION) and the component data
(DESCRICAO, MANUFACTURER, PART_NUMBER and the device's own ratings). TITLEBLOCK_A3 is the A3
drawing frame with its title block; its base point is the frame's lower left corner.

Every file is read back with ezdxf and checked before the script reports success. The files are
written with fixed metadata, so that running the script again gives the same bytes.
"""

import os
import sys

import ezdxf
from ezdxf import bbox

TOP = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
OUT_DIR = os.path.join(TOP, "examples", "network", "DADOS", "IEC", "BLOCOS")

TEXT_HEIGHT = 2.5
SMALL_TEXT = 1.8
POLE_PITCH = 10.0

# Attribute definitions every symbol has: the item's data and the component's data.
ITEM_TAGS = ["ITEM", "TAG", "FUNCTION"]
COMPONENT_TAGS = ["DESCRICAO", "MANUFACTURER", "PART_NUMBER"]


class Symbol:
    """Collects the entities of one block drawing in its model space."""

    def __init__(self, name, description):
        self.name = name
        self.doc = ezdxf.new("R2000", setup=["linetypes"])
        self.doc.header["$INSBASE"] = (0, 0, 0)
        self.doc.header["$INSUNITS"] = 4  # millimetres
        self.doc.header["$MEASUREMENT"] = 1
        self.msp = self.doc.modelspace()
        self.description = description
        self.attributes = []  # tags in definition order
        self.connections = [(0.0, 0.0)]

    # Geometry ------------------------------------------------------------------------------
    def line(self, p1, p2, dashed=False):
        attribs = {"layer": "0"}
        if dashed:
            attribs["linetype"] = "DASHED"
            attribs["ltscale"] = 0.25
        self.msp.add_line(p1, p2, dxfattribs=attribs)

    def polyline(self, points, closed=False):
        self.msp.add_lwpolyline(points, close=closed, dxfattribs={"layer": "0"})

    def rect(self, x1, y1, x2, y2):
        self.polyline([(x1, y1), (x2, y1), (x2, y2), (x1, y2)], closed=True)

    def circle(self, center, radius):
        self.msp.add_circle(center, radius, dxfattribs={"layer": "0"})

    def arc(self, center, radius, start, end):
        self.msp.add_arc(center, radius, start, end, dxfattribs={"layer": "0"})

    def text(self, content, insert, height=SMALL_TEXT, align="LEFT", rotation=0.0):
        entity = self.msp.add_text(content, dxfattribs={"layer": "0", "height": height,
                                                       "rotation": rotation})
        entity.set_placement(insert, align=_alignment(align))

    def attdef(self, tag, insert, height=SMALL_TEXT, invisible=False, default="", prompt=None,
               align="LEFT"):
        entity = self.msp.add_attdef(tag, insert, default, height=height,
                                     dxfattribs={"layer": "0", "prompt": prompt or tag})
        entity.set_placement(insert, align=_alignment(align))
        if invisible:
            entity.dxf.flags = 1
        self.attributes.append(tag)

    def connection(self, point):
        self.connections.append(point)

    # Standard attribute set ----------------------------------------------------------------
    def standard_attributes(self, left, top, ratings=()):
        """The device tag and ratings beside the symbol's left edge, the data tags hidden."""
        self.attdef("TAG", (left, top - 3), height=TEXT_HEIGHT, align="RIGHT")
        y = top - 6
        for tag in ratings:
            self.attdef(tag, (left, y), align="RIGHT")
            y -= 2.5
        hidden_y = top - 30
        for tag in ["ITEM", "FUNCTION"] + COMPONENT_TAGS:
            self.attdef(tag, (left, hidden_y), invisible=True, align="RIGHT")
            hidden_y -= 2.5

    # Output ---------------------------------------------------------------------------------
    def save(self, out_dir):
        path = os.path.join(out_dir, self.name + ".dxf")
        self.doc.saveas(path)
        return path


def _alignment(name):
    from ezdxf.enums import TextEntityAlignment
    return {
        "LEFT": TextEntityAlignment.LEFT,
        "RIGHT": TextEntityAlignment.RIGHT,
        "CENTER": TextEntityAlignment.CENTER,
        "MIDDLE_CENTER": TextEntityAlignment.MIDDLE_CENTER,
        "MIDDLE_LEFT": TextEntityAlignment.MIDDLE_LEFT,
    }[name]


# Contact elements: a pole between y=0 (top terminal) and y=-20 (bottom terminal) at x. ------------
def leads(s, x, top_end=-6.0, bottom_start=-14.0, bottom=-20.0):
    s.line((x, 0), (x, top_end))
    s.line((x, bottom_start), (x, bottom))
    s.connection((x, bottom))
    if x != 0:
        s.connection((x, 0))


def make_contact(s, x):
    """Normally open contact: the blade hinged at the lower lead, open towards the left."""
    leads(s, x)
    s.line((x, -14), (x - 3.5, -5.5))
    return (x - 1.75, -9.75)  # middle of the blade, where an actuator link attaches


def break_contact(s, x):
    """Normally closed contact: the blade rests against a stub to the right of the upper lead."""
    leads(s, x)
    s.line((x, -6), (x + 2.5, -6))
    s.line((x, -14), (x + 3.0, -5.2))
    return (x + 1.5, -9.6)


def breaker_mark(s, x):
    """Circuit-breaker function: a cross on the fixed contact."""
    s.line((x - 1, -5), (x + 1, -7))
    s.line((x - 1, -7), (x + 1, -5))


def contactor_mark(s, x):
    """Contactor function: a half circle on the fixed contact."""
    s.arc((x, -7), 1.0, 0, 180)


def link(s, points):
    """Mechanical link between contacts and their actuator, drawn dashed."""
    for a, b in zip(points, points[1:]):
        s.line(a, b, dashed=True)


def trip_unit(s, x_right, y, label):
    """Overcurrent release beside a breaker: a small box with its function letters."""
    s.rect(x_right - 5, y - 2, x_right, y + 2)
    s.text(label, (x_right - 2.5, y), height=1.5, align="MIDDLE_CENTER")


# The symbols ---------------------------------------------------------------------------------
def mcb(poles):
    s = Symbol("MCB_%dP" % poles, "Miniature circuit breaker, %d pole" % poles)
    mids = []
    for i in range(poles):
        x = i * POLE_PITCH
        mids.append(make_contact(s, x))
        breaker_mark(s, x)
    trip_unit(s, -7, -9.75, "I>")
    link(s, [(-7, -9.75)] + [mids[-1]])
    s.standard_attributes(-13, 0, ["RATED_CURRENT"])
    return s


def mpcb():
    s = Symbol("MPCB_3P", "Motor protection circuit breaker, 3 pole")
    mids = []
    for i in range(3):
        x = i * POLE_PITCH
        mids.append(make_contact(s, x))
        breaker_mark(s, x)
    # Thermal (overload) and magnetic (short-circuit) releases.
    trip_unit(s, -7, -7.5, "I>")
    trip_unit(s, -7, -12.0, "I>>")
    link(s, [(-7, -9.75), mids[-1]])
    s.standard_attributes(-13, 0, ["SETTING_RANGE"])
    return s


def coil(s, x, y_center, width=10.0, height=5.0, top=0.0, bottom=-20.0, label=True):
    s.rect(x - width / 2, y_center - height / 2, x + width / 2, y_center + height / 2)
    s.line((x, top), (x, y_center + height / 2))
    s.line((x, y_center - height / 2), (x, bottom))
    if label:
        s.text("A1", (x + 1, top - 3), height=1.5)
        s.text("A2", (x + 1, bottom + 1.5), height=1.5)


def contactor():
    s = Symbol("CONTACTOR_3P", "Contactor: three main contacts and the coil")
    mids = []
    for i in range(3):
        x = i * POLE_PITCH
        mids.append(make_contact(s, x))
        contactor_mark(s, x)
        s.text(str(2 * i + 1), (x + 1, -2.5), height=1.5)
        s.text(str(2 * i + 2), (x + 1, -19), height=1.5)
    coil_x = 35.0
    coil(s, coil_x, -10.0)
    s.connection((coil_x, 0))
    s.connection((coil_x, -20))
    link(s, [mids[0], (coil_x - 5, mids[0][1])])
    s.standard_attributes(-6, 0, ["RATED_CURRENT", "COIL_VOLTAGE"])
    return s


def aux_contact(name, kinds, description):
    s = Symbol(name, description)
    mids = []
    for i, kind in enumerate(kinds):
        x = i * POLE_PITCH
        mids.append(make_contact(s, x) if kind == "NO" else break_contact(s, x))
        numbers = ("13", "14") if kind == "NO" else ("21", "22")
        s.text(numbers[0], (x + 1, -2.5), height=1.5)
        s.text(numbers[1], (x + 1, -19), height=1.5)
    if len(mids) > 1:
        link(s, [mids[0], mids[-1]])
    s.standard_attributes(-5, 0, ["CONTACTS"])
    return s


def relay_coil():
    s = Symbol("RELAY_COIL", "Relay coil")
    coil(s, 0, -10.0)
    s.standard_attributes(-6, 0, ["COIL_VOLTAGE", "CONTACTS"])
    return s


def terminal():
    s = Symbol("TERMINAL", "Feed-through terminal")
    s.circle((0, -5), 1.25)
    s.line((0, 0), (0, -3.75))
    s.line((0, -6.25), (0, -10))
    s.connection((0, -10))
    s.standard_attributes(-2.5, 0, ["CROSS_SECTION"])
    return s


def terminal_pe():
    s = Symbol("TERMINAL_PE", "Protective earth terminal")
    s.circle((0, -5), 1.25)
    s.line((0, 0), (0, -3.75))
    s.line((0, -6.25), (0, -10))
    s.connection((0, -10))
    # Protective earth: the earth sign inside a circle, joined to the terminal.
    s.line((1.25, -5), (4.5, -5))
    s.line((4.5, -3), (4.5, -7))
    s.line((5.5, -3.7), (5.5, -6.3))
    s.line((6.5, -4.4), (6.5, -5.6))
    s.circle((5.5, -5), 3.0)
    s.standard_attributes(-2.5, 0, ["CROSS_SECTION"])
    return s


def terminal_fuse():
    s = Symbol("TERMINAL_FUSE", "Fuse terminal")
    s.circle((0, -2.5), 1.0)
    s.line((0, 0), (0, -1.5))
    s.line((0, -3.5), (0, -20))
    s.rect(-1.5, -14, 1.5, -6)  # the fuse link, the conductor drawn through it
    s.connection((0, -20))
    s.standard_attributes(-3, 0, ["FUSE_SIZE", "RATED_CURRENT"])
    return s


def motor():
    s = Symbol("MOTOR_3PH", "Three-phase induction motor")
    cx, cy, r = 10.0, -22.0, 8.0
    s.circle((cx, cy), r)
    # Three leads from the terminals U1, V1, W1 to the motor's outline.
    s.line((10, 0), (10, cy + r))
    for x, sign in ((0.0, -1), (20.0, 1)):
        s.line((x, 0), (x, -8))
        edge = (cx + sign * r * 0.7071, cy + r * 0.7071)
        s.line((x, -8), edge)
    for x, label in ((0, "U1"), (10, "V1"), (20, "W1")):
        s.text(label, (x + 1, -2.5), height=1.5)
        if x:
            s.connection((x, 0))
    s.text("M", (cx, cy + 1.8), height=5.0, align="MIDDLE_CENTER")
    s.text("3~", (cx, cy - 3.5), height=3.0, align="MIDDLE_CENTER")
    s.standard_attributes(-3, 0, ["POWER", "RATED_CURRENT"])
    return s


def push_actuator(s, attach, kind):
    """A push-button actuator left of the contact, linked to the blade."""
    x = -9.0
    y = attach[1]
    link(s, [(x, y), attach])
    if kind == "mushroom":
        # Emergency stop: mushroom head, and the latching (stay-put) notch.
        s.arc((x - 1.0, y), 2.5, 90, 270)
        s.line((x - 1.0, y + 2.5), (x - 1.0, y - 2.5))
        s.line((x, y), (x - 1.0, y))
        s.polyline([(x + 2.5, y - 1.5), (x + 3.5, y - 2.5), (x + 4.5, y - 1.5)])
    elif kind == "turn":
        # Selector: actuation by turning.
        s.polyline([(x - 2, y + 2), (x - 2, y), (x, y), (x, y - 2)])
    else:
        s.polyline([(x - 1.5, y + 2), (x, y + 2), (x, y - 2), (x - 1.5, y - 2)])


def push_button(name, contact, actuator, description, ratings):
    s = Symbol(name, description)
    attach = make_contact(s, 0) if contact == "NO" else break_contact(s, 0)
    numbers = ("13", "14") if contact == "NO" else ("11", "12")
    s.text(numbers[0], (1, -2.5), height=1.5)
    s.text(numbers[1], (1, -19), height=1.5)
    push_actuator(s, attach, actuator)
    s.standard_attributes(-12.5, 0, ratings)
    return s


def selector(positions):
    s = Symbol("SELECTOR_%dPOS" % positions, "Selector switch, %d positions" % positions)
    mids = [make_contact(s, 0)]
    if positions == 3:
        mids.append(make_contact(s, POLE_PITCH))
    push_actuator(s, mids[0], "turn")
    if len(mids) > 1:
        link(s, [mids[0], mids[1]])
    # The switching positions above the actuator.
    labels = ["0", "1"] if positions == 2 else ["1", "0", "2"]
    for i, label in enumerate(labels):
        s.text(label, (-12 + 2.5 * i, -15), height=1.5)
    s.standard_attributes(-12.5, 0, ["CONTACTS"])
    return s


def lamp():
    s = Symbol("LAMP", "Pilot lamp")
    r = 4.0
    s.circle((0, -10), r)
    d = r * 0.7071
    s.line((-d, -10 - d), (d, -10 + d))
    s.line((-d, -10 + d), (d, -10 - d))
    s.line((0, 0), (0, -10 + r))
    s.line((0, -10 - r), (0, -20))
    s.text("X1", (1, -2.5), height=1.5)
    s.text("X2", (1, -19), height=1.5)
    s.connection((0, -20))
    s.standard_attributes(-5, 0, ["COLOR"])
    return s


def power_supply():
    s = Symbol("PSU", "Power supply, AC to DC")
    s.rect(-5, -20, 15, -5)
    s.line((-5, -20), (15, -5))
    s.text("~", (-3, -8.5), height=3.0)
    s.text("=", (9.5, -18.5), height=3.0)
    for x, top_label, bottom_label in ((0, "L", "+"), (10, "N", "-")):
        s.line((x, 0), (x, -5))
        s.line((x, -20), (x, -25))
        s.text(top_label, (x + 1, -2.5), height=1.5)
        s.text(bottom_label, (x + 1, -24), height=1.5)
        s.connection((x, -25))
        if x:
            s.connection((x, 0))
    s.standard_attributes(-6, 0, ["OUTPUT_VOLTAGE", "OUTPUT_CURRENT"])
    return s


def title_block():
    """A3 landscape frame (ISO 5457 margins) with the title block in the lower right corner."""
    s = Symbol("TITLEBLOCK_A3", "A3 drawing frame and title block")
    s.rect(0, 0, 420, 297)
    s.rect(20, 10, 410, 287)
    # Grid references along the top and left borders.
    for i in range(8):
        x = 20 + (390 / 8) * (i + 0.5)
        s.text(str(i + 1), (x, 289), height=TEXT_HEIGHT, align="CENTER")
        if i:
            s.line((20 + 390 / 8 * i, 287), (20 + 390 / 8 * i, 292))
    for i, letter in enumerate("ABCDEF"):
        y = 287 - (277 / 6) * (i + 0.5)
        s.text(letter, (15, y), height=TEXT_HEIGHT, align="MIDDLE_CENTER")
    # Title block: 180 x 40 mm, four rows.
    x0, y0, x1, y1 = 230, 10, 410, 50
    s.rect(x0, y0, x1, y1)
    for y in (20, 30, 40):
        s.line((x0, y), (x1, y))
    s.line((330, y0), (330, 20))
    s.line((370, y0), (370, 20))
    s.line((330, 40), (330, y1))
    labels = [("Project", x0 + 1, 47.5), ("Drawn by", 331, 47.5), ("Title", x0 + 1, 37.5),
              ("Drawing no.", x0 + 1, 27.5), ("Date", x0 + 1, 17.5), ("Page", 331, 17.5),
              ("of", 371, 17.5)]
    for label, x, y in labels:
        s.text(label, (x, y), height=1.5)
    s.connections = [(0, 0)]
    s.attdef("PROJECT", (x0 + 2, 42), height=3.5, prompt="Project")
    s.attdef("DRAWN_BY", (332, 42), height=2.5, prompt="Drawn by")
    s.attdef("PAGE_TITLE", (x0 + 2, 32), height=3.5, prompt="Page title")
    s.attdef("DRAWING_NO", (x0 + 2, 22), height=2.5, prompt="Drawing number")
    s.attdef("DATE", (x0 + 2, 12), height=2.5, prompt="Date")
    s.attdef("PAGE_NUMBER", (350, 12), height=3.5, prompt="Page number", align="CENTER")
    s.attdef("PAGE_COUNT", (390, 12), height=3.5, prompt="Page count", align="CENTER")
    return s


def all_symbols():
    return [
        mcb(1), mcb(3), mpcb(), contactor(),
        aux_contact("AUX_NO", ["NO"], "Auxiliary contact, normally open"),
        aux_contact("AUX_NC", ["NC"], "Auxiliary contact, normally closed"),
        aux_contact("AUX_1NO1NC", ["NO", "NC"], "Auxiliary contact block 1 NO + 1 NC"),
        relay_coil(), terminal(), terminal_pe(), terminal_fuse(), motor(),
        push_button("PB_NO", "NO", "push", "Push button, normally open", ["COLOR"]),
        push_button("PB_NC", "NC", "push", "Push button, normally closed", ["COLOR"]),
        push_button("PB_ESTOP", "NC", "mushroom", "Emergency stop", ["CONTACTS"]),
        lamp(), selector(2), selector(3), power_supply(), title_block(),
    ]


# Reading back ---------------------------------------------------------------------------------
def check_file(path, symbol):
    """Reads a written file with ezdxf and checks what the block must provide."""
    errors = []
    doc = ezdxf.readfile(path)
    auditor = doc.audit()
    if auditor.has_errors:
        errors.append("audit errors: %d" % len(auditor.errors))
    base = tuple(doc.header.get("$INSBASE", (None, None, None)))
    if base[:2] != (0, 0):
        errors.append("base point is %r, not (0,0)" % (base,))
    msp = doc.modelspace()
    tags = [e.dxf.tag for e in msp.query("ATTDEF")]
    if tags != symbol.attributes:
        errors.append("attribute definitions %r, expected %r" % (tags, symbol.attributes))
    if len(set(tags)) != len(tags):
        errors.append("an attribute tag is defined twice")
    geometry = msp.query("LINE LWPOLYLINE CIRCLE ARC")
    if len(geometry) < 2:
        errors.append("no geometry")
    # Every connection point, the base point first, is the end of a line of the symbol.
    ends = set()
    for line in msp.query("LINE"):
        for p in (line.dxf.start, line.dxf.end):
            ends.add((round(p.x, 3), round(p.y, 3)))
    for polyline in msp.query("LWPOLYLINE"):
        for p in polyline.get_points("xy"):
            ends.add((round(p[0], 3), round(p[1], 3)))
    for point in symbol.connections:
        if (round(point[0], 3), round(point[1], 3)) not in ends:
            errors.append("connection point %r is not on the geometry" % (point,))
    extents = bbox.extents(geometry)
    if not extents.has_data or not extents.inside((0, 0)):
        errors.append("base point outside the symbol's extents")
    if symbol.name != "TITLEBLOCK_A3":
        for tag in ITEM_TAGS + COMPONENT_TAGS:
            if tag not in tags:
                errors.append("attribute %s missing" % tag)
    return errors


def main():
    os.makedirs(OUT_DIR, exist_ok=True)
    ezdxf.options.write_fixed_meta_data_for_testing = True
    failures = 0
    symbols = all_symbols()
    for symbol in symbols:
        path = symbol.save(OUT_DIR)
        errors = check_file(path, symbol)
        for error in errors:
            print("make-example-blocks: %s: %s" % (path, error), file=sys.stderr)
        failures += bool(errors)
    expected = {s.name + ".dxf" for s in symbols}
    stale = sorted(f for f in os.listdir(OUT_DIR) if f.endswith(".dxf") and f not in expected)
    for name in stale:
        print("make-example-blocks: %s is not made by this script" % name, file=sys.stderr)
    if failures or stale:
        return 1
    print("make-example-blocks: %d block files written to %s and checked" % (len(symbols), OUT_DIR))
    return 0


if __name__ == "__main__":
    sys.exit(main())
