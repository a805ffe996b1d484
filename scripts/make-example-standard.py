#!/usr/bin/python3
"""Writes examples/standard/data.sql, the rows of the example standard "IEC".

Run with /usr/bin/python3 from anywhere:  /usr/bin/python3 scripts/make-example-standard.py
The table layout is examples/standard/schema.sql (written by hand). After writing, the script loads
schema and data into an in-memory SQLite database and checks the data: every key is unique, every
block file exists, every property is in the dictionary, every association names known components
and the associations hold no cycle.
"""

import os
import sqlite3
import sys

TOP = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
STANDARD_DIR = os.path.join(TOP, "examples", "standard")
BLOCKS_DIR = os.path.join(TOP, "examples", "network", "DADOS", "IEC", "BLOCOS")
STANDARD = "IEC"

# Distances in drawing units (mm) added before and after a symbol when symbols are laid out along
# a row: the left part of the symbol and its device tag (written right-aligned left of the
# symbol) must fit in GAP_BEFORE, its right part in GAP_AFTER.
BLOCK_GAPS = {
    "MCB_1P": (15, 5),
    "MCB_3P": (15, 25),
    "MPCB_3P": (15, 25),
    "CONTACTOR_3P": (10, 45),
    "AUX_NO": (10, 5),
    "AUX_NC": (10, 8),
    "AUX_1NO1NC": (10, 18),
    "RELAY_COIL": (10, 10),
    "TERMINAL": (8, 7),
    "TERMINAL_PE": (8, 12),
    "TERMINAL_FUSE": (8, 7),
    "MOTOR_3PH": (10, 30),
    "PB_NO": (20, 5),
    "PB_NC": (20, 8),
    "PB_ESTOP": (20, 8),
    "LAMP": (10, 10),
    "SELECTOR_2POS": (20, 5),
    "SELECTOR_3POS": (20, 15),
    "PSU": (10, 25),
}

# Palette folders: key, parent, order, English, Portuguese (Brazil).
FOLDERS = [
    ("9100", "0", 1, "Circuit protection", "Proteção de circuitos"),
    ("9110", "9100", 1, "Miniature circuit breakers", "Minidisjuntores"),
    ("9120", "9100", 2, "Motor protection circuit breakers", "Disjuntores-motor"),
    ("9200", "0", 2, "Switching devices", "Dispositivos de manobra"),
    ("9210", "9200", 1, "Contactors", "Contatores"),
    ("9220", "9200", 2, "Auxiliary contact blocks", "Blocos de contatos auxiliares"),
    ("9230", "9200", 3, "Control relays", "Relés auxiliares"),
    ("9300", "0", 3, "Terminals", "Bornes"),
    ("9400", "0", 4, "Motors", "Motores"),
    ("9500", "0", 5, "Control and signalling", "Comando e sinalização"),
    ("9510", "9500", 1, "Push buttons", "Botões"),
    ("9520", "9500", 2, "Pilot lamps", "Sinaleiros"),
    ("9530", "9500", 3, "Selector switches", "Chaves seletoras"),
    ("9600", "0", 6, "Power supplies", "Fontes de alimentação"),
]

# Field dictionary: property name and its description.
DICTIONARY = [
    ("DEVICE_TYPE", "Kind of device (MCB, CONTACTOR, MOTOR...)"),
    ("MANUFACTURER", "Manufacturer"),
    ("PART_NUMBER", "Manufacturer's order number"),
    ("RATED_CURRENT", "Rated current in A"),
    ("RATED_VOLTAGE", "Rated voltage in V"),
    ("POLES", "Number of main poles"),
    ("TRIP_CURVE", "Tripping characteristic"),
    ("BREAKING_CAPACITY", "Rated short-circuit breaking capacity in kA"),
    ("SETTING_RANGE", "Overload release setting range in A"),
    ("COIL_VOLTAGE", "Coil voltage"),
    ("CONTACTS", "Contact arrangement (NO, NC, CO)"),
    ("CROSS_SECTION", "Conductor cross-section in mm2"),
    ("FUSE_SIZE", "Fuse link size"),
    ("POWER", "Rated power in kW"),
    ("COLOR", "Colour"),
    ("POSITIONS", "Number of switch positions"),
    ("INPUT_VOLTAGE", "Input voltage"),
    ("OUTPUT_VOLTAGE", "Output voltage"),
    ("OUTPUT_CURRENT", "Output current in A"),
    ("GAP_BEFORE", "Layout distance before the symbol in mm"),
    ("GAP_AFTER", "Layout distance after the symbol in mm"),
]


def component(key, folder, block, explode, maker, part, current, voltage, width, en, pt, kind,
              **props):
    return {
        "key": key, "folder": folder, "block": block, "explode": explode, "maker": maker,
        "part": part, "current": current, "voltage": voltage, "width": width, "en": en, "pt": pt,
        "kind": kind, "props": props,
    }


NW, KT, MO, SX, VX = "NORDWERK", "KLEMMTEC", "MOTORIA", "SIGNALUX", "VOLTREX"

COMPONENTS = [
    # Miniature circuit breakers, characteristic C.
    component("1001", "9110", "MCB_1P", "N", NW, "NW-MCB1-C06", "6", "230", 18,
              "Miniature circuit breaker 1P C6 A", "Minidisjuntor 1P C6 A", "MCB",
              RATED_CURRENT="6", POLES="1", TRIP_CURVE="C", BREAKING_CAPACITY="6"),
    component("1002", "9110", "MCB_1P", "N", NW, "NW-MCB1-C10", "10", "230", 18,
              "Miniature circuit breaker 1P C10 A", "Minidisjuntor 1P C10 A", "MCB",
              RATED_CURRENT="10", POLES="1", TRIP_CURVE="C", BREAKING_CAPACITY="6"),
    component("1003", "9110", "MCB_1P", "N", NW, "NW-MCB1-C16", "16", "230", 18,
              "Miniature circuit breaker 1P C16 A", "Minidisjuntor 1P C16 A", "MCB",
              RATED_CURRENT="16", POLES="1", TRIP_CURVE="C", BREAKING_CAPACITY="6"),
    component("1004", "9110", "MCB_1P", "N", NW, "NW-MCB1-C20", "20", "230", 18,
              "Miniature circuit breaker 1P C20 A", "Minidisjuntor 1P C20 A", "MCB",
              RATED_CURRENT="20", POLES="1", TRIP_CURVE="C", BREAKING_CAPACITY="6"),
    component("1011", "9110", "MCB_3P", "N", NW, "NW-MCB3-C10", "10", "400", 54,
              "Miniature circuit breaker 3P C10 A", "Minidisjuntor 3P C10 A", "MCB",
              RATED_CURRENT="10", POLES="3", TRIP_CURVE="C", BREAKING_CAPACITY="10"),
    component("1012", "9110", "MCB_3P", "N", NW, "NW-MCB3-C16", "16", "400", 54,
              "Miniature circuit breaker 3P C16 A", "Minidisjuntor 3P C16 A", "MCB",
              RATED_CURRENT="16", POLES="3", TRIP_CURVE="C", BREAKING_CAPACITY="10"),
    component("1013", "9110", "MCB_3P", "N", NW, "NW-MCB3-C25", "25", "400", 54,
              "Miniature circuit breaker 3P C25 A", "Minidisjuntor 3P C25 A", "MCB",
              RATED_CURRENT="25", POLES="3", TRIP_CURVE="C", BREAKING_CAPACITY="10"),
    component("1014", "9110", "MCB_3P", "N", NW, "NW-MCB3-C32", "32", "400", 54,
              "Miniature circuit breaker 3P C32 A", "Minidisjuntor 3P C32 A", "MCB",
              RATED_CURRENT="32", POLES="3", TRIP_CURVE="C", BREAKING_CAPACITY="10"),
    # Motor protection circuit breakers with adjustable overload release.
    component("1101", "9120", "MPCB_3P", "N", NW, "NW-MPS-0016", "1.6", "400", 45,
              "Motor protection breaker 1-1.6 A", "Disjuntor-motor 1-1,6 A", "MPCB",
              RATED_CURRENT="1.6", SETTING_RANGE="1-1.6", POLES="3"),
    component("1102", "9120", "MPCB_3P", "N", NW, "NW-MPS-0040", "4", "400", 45,
              "Motor protection breaker 2.5-4 A", "Disjuntor-motor 2,5-4 A", "MPCB",
              RATED_CURRENT="4", SETTING_RANGE="2.5-4", POLES="3"),
    component("1103", "9120", "MPCB_3P", "S", NW, "NW-MPS-0100", "10", "400", 45,
              "Motor protection breaker 6-10 A", "Disjuntor-motor 6-10 A", "MPCB",
              RATED_CURRENT="10", SETTING_RANGE="6-10", POLES="3"),
    component("1104", "9120", "MPCB_3P", "S", NW, "NW-MPS-0140", "14", "400", 45,
              "Motor protection breaker 9-14 A", "Disjuntor-motor 9-14 A", "MPCB",
              RATED_CURRENT="14", SETTING_RANGE="9-14", POLES="3"),
    # Contactors: three main poles and the coil.
    component("1201", "9210", "CONTACTOR_3P", "S", NW, "NW-CT09-D24", "9", "400", 45,
              "Contactor 9 A, coil 24 V DC", "Contator 9 A, bobina 24 Vcc", "CONTACTOR",
              RATED_CURRENT="9", COIL_VOLTAGE="24 V DC", POLES="3"),
    component("1202", "9210", "CONTACTOR_3P", "N", NW, "NW-CT09-A230", "9", "400", 45,
              "Contactor 9 A, coil 230 V AC", "Contator 9 A, bobina 230 Vca", "CONTACTOR",
              RATED_CURRENT="9", COIL_VOLTAGE="230 V AC", POLES="3"),
    component("1203", "9210", "CONTACTOR_3P", "N", NW, "NW-CT12-D24", "12", "400", 45,
              "Contactor 12 A, coil 24 V DC", "Contator 12 A, bobina 24 Vcc", "CONTACTOR",
              RATED_CURRENT="12", COIL_VOLTAGE="24 V DC", POLES="3"),
    component("1204", "9210", "CONTACTOR_3P", "S", NW, "NW-CT18-A230", "18", "400", 45,
              "Contactor 18 A, coil 230 V AC", "Contator 18 A, bobina 230 Vca", "CONTACTOR",
              RATED_CURRENT="18", COIL_VOLTAGE="230 V AC", POLES="3"),
    # Auxiliary contact blocks for the contactors.
    component("1301", "9220", "AUX_NO", "N", NW, "NW-AUX-10", "6", "230", 9,
              "Auxiliary contact 1 NO", "Contato auxiliar 1 NA", "AUX_CONTACT",
              CONTACTS="1NO", RATED_CURRENT="6"),
    component("1302", "9220", "AUX_NC", "N", NW, "NW-AUX-01", "6", "230", 9,
              "Auxiliary contact 1 NC", "Contato auxiliar 1 NF", "AUX_CONTACT",
              CONTACTS="1NC", RATED_CURRENT="6"),
    component("1303", "9220", "AUX_1NO1NC", "N", NW, "NW-AUX-11", "6", "230", 9,
              "Auxiliary contact block 1 NO + 1 NC", "Bloco de contatos auxiliares 1 NA + 1 NF",
              "AUX_CONTACT", CONTACTS="1NO+1NC", RATED_CURRENT="6"),
    # Control relays.
    component("1401", "9230", "RELAY_COIL", "N", NW, "NW-RL2-D24", "8", "250", 16,
              "Control relay 2 CO, coil 24 V DC", "Relé auxiliar 2 reversíveis, bobina 24 Vcc",
              "RELAY", COIL_VOLTAGE="24 V DC", CONTACTS="2CO", RATED_CURRENT="8"),
    component("1402", "9230", "RELAY_COIL", "N", NW, "NW-RL2-A230", "8", "250", 16,
              "Control relay 2 CO, coil 230 V AC", "Relé auxiliar 2 reversíveis, bobina 230 Vca",
              "RELAY", COIL_VOLTAGE="230 V AC", CONTACTS="2CO", RATED_CURRENT="8"),
    component("1403", "9230", "RELAY_COIL", "N", NW, "NW-RL4-D24", "6", "250", 27,
              "Control relay 4 CO, coil 24 V DC", "Relé auxiliar 4 reversíveis, bobina 24 Vcc",
              "RELAY", COIL_VOLTAGE="24 V DC", CONTACTS="4CO", RATED_CURRENT="6"),
    # Terminals.
    component("1501", "9300", "TERMINAL", "N", KT, "KT-FT-2.5", "24", "800", 5,
              "Feed-through terminal 2.5 mm2, grey", "Borne de passagem 2,5 mm2, cinza",
              "TERMINAL", CROSS_SECTION="2.5", RATED_CURRENT="24", COLOR="GREY"),
    component("1502", "9300", "TERMINAL", "N", KT, "KT-FT-4", "32", "800", 6,
              "Feed-through terminal 4 mm2, grey", "Borne de passagem 4 mm2, cinza",
              "TERMINAL", CROSS_SECTION="4", RATED_CURRENT="32", COLOR="GREY"),
    component("1503", "9300", "TERMINAL_PE", "N", KT, "KT-PE-2.5", None, None, 5,
              "Protective earth terminal 2.5 mm2", "Borne de aterramento 2,5 mm2",
              "TERMINAL", CROSS_SECTION="2.5", COLOR="GREEN-YELLOW"),
    component("1504", "9300", "TERMINAL_FUSE", "N", KT, "KT-FU-5X20", "6.3", "250", 8,
              "Fuse terminal for 5x20 fuse links", "Borne fusível para fusíveis 5x20",
              "TERMINAL", CROSS_SECTION="4", FUSE_SIZE="5x20", RATED_CURRENT="6.3",
              COLOR="BLACK"),
    # Three-phase induction motors, 400 V.
    component("1601", "9400", "MOTOR_3PH", "S", MO, "MO-3-037", "1.1", "400", None,
              "Three-phase motor 0.37 kW", "Motor trifásico 0,37 kW", "MOTOR",
              POWER="0.37", RATED_CURRENT="1.1", RATED_VOLTAGE="400"),
    component("1602", "9400", "MOTOR_3PH", "S", MO, "MO-3-150", "3.4", "400", None,
              "Three-phase motor 1.5 kW", "Motor trifásico 1,5 kW", "MOTOR",
              POWER="1.5", RATED_CURRENT="3.4", RATED_VOLTAGE="400"),
    component("1603", "9400", "MOTOR_3PH", "S", MO, "MO-3-400", "8.2", "400", None,
              "Three-phase motor 4 kW", "Motor trifásico 4 kW", "MOTOR",
              POWER="4", RATED_CURRENT="8.2", RATED_VOLTAGE="400"),
    # Push buttons (22 mm).
    component("1701", "9510", "PB_NO", "N", SX, "SX-PB-10-GN", "10", "240", None,
              "Push button 1 NO, green", "Botão pulsador 1 NA, verde", "PUSHBUTTON",
              CONTACTS="1NO", COLOR="GREEN"),
    component("1702", "9510", "PB_NC", "N", SX, "SX-PB-01-RD", "10", "240", None,
              "Push button 1 NC, red", "Botão pulsador 1 NF, vermelho", "PUSHBUTTON",
              CONTACTS="1NC", COLOR="RED"),
    component("1703", "9510", "PB_ESTOP", "N", SX, "SX-ES-01", "10", "240", None,
              "Emergency stop push button 1 NC", "Botão de emergência 1 NF",
              "EMERGENCY_STOP", CONTACTS="1NC", COLOR="RED"),
    # Pilot lamps, LED 24 V.
    component("1801", "9520", "LAMP", "N", SX, "SX-PL-GN-24", None, "24", None,
              "Pilot lamp 24 V, green", "Sinaleiro 24 V, verde", "PILOT_LAMP",
              COLOR="GREEN", RATED_VOLTAGE="24"),
    component("1802", "9520", "LAMP", "N", SX, "SX-PL-RD-24", None, "24", None,
              "Pilot lamp 24 V, red", "Sinaleiro 24 V, vermelho", "PILOT_LAMP",
              COLOR="RED", RATED_VOLTAGE="24"),
    component("1803", "9520", "LAMP", "N", SX, "SX-PL-AM-24", None, "24", None,
              "Pilot lamp 24 V, amber", "Sinaleiro 24 V, âmbar", "PILOT_LAMP",
              COLOR="AMBER", RATED_VOLTAGE="24"),
    component("1804", "9520", "LAMP", "N", SX, "SX-PL-WH-24", None, "24", None,
              "Pilot lamp 24 V, white", "Sinaleiro 24 V, branco", "PILOT_LAMP",
              COLOR="WHITE", RATED_VOLTAGE="24"),
    # Selector switches.
    component("1901", "9530", "SELECTOR_2POS", "N", SX, "SX-SS2-10", "10", "240", None,
              "Selector switch 2 positions, 1 NO", "Chave seletora 2 posições, 1 NA",
              "SELECTOR", POSITIONS="2", CONTACTS="1NO"),
    component("1902", "9530", "SELECTOR_3POS", "N", SX, "SX-SS3-20", "10", "240", None,
              "Selector switch 3 positions, 2 NO", "Chave seletora 3 posições, 2 NA",
              "SELECTOR", POSITIONS="3", CONTACTS="2NO"),
    # Power supplies for the 24 V DC control circuit.
    component("2001", "9600", "PSU", "S", VX, "VX-PS-24-2.5", "2.5", "24", 36,
              "Power supply 230 V AC / 24 V DC, 2.5 A", "Fonte 230 Vca / 24 Vcc, 2,5 A",
              "POWER_SUPPLY", INPUT_VOLTAGE="230 V AC", OUTPUT_VOLTAGE="24 V DC",
              OUTPUT_CURRENT="2.5"),
    component("2002", "9600", "PSU", "N", VX, "VX-PS-24-5", "5", "24", 54,
              "Power supply 230 V AC / 24 V DC, 5 A", "Fonte 230 Vca / 24 Vcc, 5 A",
              "POWER_SUPPLY", INPUT_VOLTAGE="230 V AC", OUTPUT_VOLTAGE="24 V DC",
              OUTPUT_CURRENT="5"),
]

# Associated components: owner, associated, quantity text. A quantity of 0 places the associated
# component's own block. 1603 -> 1104 -> 1204 -> 1303 is a chain three associations deep.
ASSOCIATIONS = [
    ("1201", "1301", "2"),    # a contactor brings two auxiliary contacts
    ("1204", "1303", "1,0"),  # one auxiliary block, and its block drawn beside the contactor
    ("1103", "1303", "0"),    # the breaker's auxiliary block, drawn as its own block
    ("1104", "1204", "1"),    # breaker and contactor form a starter
    ("1601", "1501", "3"),    # a motor brings a terminal block of three terminals...
    ("1601", "1503", "1"),    # ...and a protective earth terminal
    ("1602", "1501", "3"),
    ("1602", "1503", "1"),
    ("1603", "1502", "3"),
    ("1603", "1503", "1"),
    ("1603", "1104", "1"),    # the 4 kW motor brings its starter
    ("2001", "1504", "0"),    # the power supply's fuse terminal, drawn as its own block
]

# Drawing-layout properties (ITEM_TYPE 2), commercial (1), everything else electrical (0).
COMMERCIAL_TAGS = {"MANUFACTURER", "PART_NUMBER"}
LAYOUT_TAGS = {"GAP_BEFORE", "GAP_AFTER"}


def sql_text(value):
    if value is None:
        return "NULL"
    if isinstance(value, int):
        return str(value)
    return "'" + value.replace("'", "''") + "'"


def insert(table, columns, values):
    return "INSERT INTO %s (%s) VALUES (%s);" % (
        table, ", ".join(columns), ", ".join(sql_text(v) for v in values))


def custom_properties(c):
    props = {"DEVICE_TYPE": c["kind"], "MANUFACTURER": c["maker"], "PART_NUMBER": c["part"]}
    props.update(c["props"])
    gap_before, gap_after = BLOCK_GAPS[c["block"]]
    props["GAP_BEFORE"] = str(gap_before)
    props["GAP_AFTER"] = str(gap_after)
    rows = []
    for tag, value in props.items():
        item_type = 2 if tag in LAYOUT_TAGS else 1 if tag in COMMERCIAL_TAGS else 0
        rows.append((c["key"], item_type, tag, value))
    return rows


def data_sql():
    out = ["-- Rows of the example electrical standard \"IEC\" (tables: schema.sql).",
           "-- Written by scripts/make-example-standard.py; edit the script, not this file.",
           ""]
    out.append("-- Field dictionary.")
    for field, descr in DICTIONARY:
        out.append(insert("BDDIC", ["DIC_FIELD", "DIC_DESCR"], [field, descr]))

    out += ["", "-- Palette folders, English (1) and Portuguese (2)."]
    for key, parent, order, en, pt in FOLDERS:
        for lang, text in (("1", en), ("2", pt)):
            out.append(insert("BDMENUS", ["MENU_KEY", "MENU_KEY_LANG", "MENU_DESCR",
                                          "MENU_PARENT", "MENU_KIND", "MENU_ORDER"],
                              [key, lang, text, parent, 0, order]))

    order_in_folder = {}
    for c in COMPONENTS:
        out += ["", "-- %s %s" % (c["key"], c["en"])]
        out.append(insert("BDKV", ["KV_KEY", "KV_KEY_NOR", "MENU_DESCR", "KV_DWG", "KV_EXPLODE",
                                   "KV_MANUFACTURER", "KV_CATALOG_NO", "KV_RATED_CURRENT",
                                   "KV_RATED_VOLTAGE", "KV_WIDTH_MM"],
                          [c["key"], STANDARD, c["en"], c["block"], c["explode"], c["maker"],
                           c["part"], c["current"], c["voltage"], c["width"]]))
        order = order_in_folder.get(c["folder"], 0) + 1
        order_in_folder[c["folder"]] = order
        for lang, text in (("1", c["en"]), ("2", c["pt"])):
            out.append(insert("BDMENUS", ["MENU_KEY", "MENU_KEY_LANG", "MENU_DESCR",
                                          "MENU_PARENT", "MENU_KIND", "MENU_ORDER"],
                              [c["key"], lang, text, c["folder"], 1, order]))
        for row in custom_properties(c):
            out.append(insert("CUSTOM_PROPERTIES", ["ITEM_KEY", "ITEM_TYPE", "TAG", "VALUE"],
                              list(row)))

    out += ["", "-- Associated components."]
    for a, b, qty in ASSOCIATIONS:
        out.append(insert("BDVINCL", ["VL_KEY_A", "VL_KEY_B", "VL_QTDE"], [a, b, qty]))
    return "\n".join(out) + "\n"


def find_cycle(edges):
    graph = {}
    for a, b in edges:
        graph.setdefault(a, []).append(b)
    state = {}

    def visit(node, path):
        state[node] = 1
        for nxt in graph.get(node, []):
            if state.get(nxt) == 1:
                return path[path.index(nxt):] + [nxt]
            if state.get(nxt) is None:
                found = visit(nxt, path + [nxt])
                if found:
                    return found
        state[node] = 2
        return None

    for start in sorted(graph):
        if state.get(start) is None:
            found = visit(start, [start])
            if found:
                return found
    return None


def check(schema, data):
    db = sqlite3.connect(":memory:")
    db.executescript(schema)
    db.executescript(data)
    errors = []

    def rows(sql):
        return db.execute(sql).fetchall()

    for (key, count) in rows("SELECT KV_KEY, COUNT(*) FROM BDKV GROUP BY KV_KEY HAVING COUNT(*) > 1"):
        errors.append("component key %s appears %d times" % (key, count))
    for (key, lang) in rows("SELECT MENU_KEY, MENU_KEY_LANG FROM BDMENUS "
                            "GROUP BY MENU_KEY, MENU_KEY_LANG HAVING COUNT(*) > 1"):
        errors.append("palette entry %s/%s appears twice" % (key, lang))
    for (key,) in rows("SELECT KV_KEY FROM BDKV WHERE KV_KEY NOT IN "
                       "(SELECT MENU_KEY FROM BDMENUS WHERE MENU_KEY_LANG = '2')"):
        errors.append("component %s has no Portuguese description" % key)
    for (key, parent) in rows("SELECT MENU_KEY, MENU_PARENT FROM BDMENUS WHERE MENU_PARENT <> '0' "
                              "AND MENU_PARENT NOT IN (SELECT MENU_KEY FROM BDMENUS "
                              "WHERE MENU_KIND = 0)"):
        errors.append("palette entry %s has unknown folder %s" % (key, parent))
    for (tag,) in rows("SELECT DISTINCT TAG FROM CUSTOM_PROPERTIES WHERE TAG NOT IN "
                       "(SELECT DIC_FIELD FROM BDDIC)"):
        errors.append("property %s is not in the dictionary" % tag)
    for (a, b) in rows("SELECT VL_KEY_A, VL_KEY_B FROM BDVINCL WHERE VL_KEY_A NOT IN "
                       "(SELECT KV_KEY FROM BDKV) OR VL_KEY_B NOT IN (SELECT KV_KEY FROM BDKV)"):
        errors.append("association %s -> %s names an unknown component" % (a, b))
    for (block,) in rows("SELECT DISTINCT KV_DWG FROM BDKV"):
        if block not in BLOCK_GAPS:
            errors.append("block %s has no layout gaps" % block)
        path = os.path.join(BLOCKS_DIR, block + ".dxf")
        if not os.path.isfile(path):
            errors.append("block file %s is missing (run make-example-blocks.py)" % path)
    cycle = find_cycle(rows("SELECT VL_KEY_A, VL_KEY_B FROM BDVINCL"))
    if cycle:
        errors.append("associations form a cycle: " + " -> ".join(cycle))
    # Component keys are all four digits, so no key is part of another.
    for (key,) in rows("SELECT MENU_KEY FROM BDMENUS"):
        if len(key) != 4 or not key.isdigit():
            errors.append("key %s is not four digits" % key)
    return errors


def main():
    with open(os.path.join(STANDARD_DIR, "schema.sql"), encoding="utf-8") as f:
        schema = f.read()
    data = data_sql()
    with open(os.path.join(STANDARD_DIR, "data.sql"), "w", encoding="utf-8", newline="\n") as f:
        f.write(data)
    errors = check(schema, data)
    for error in errors:
        print("make-example-standard: " + error, file=sys.stderr)
    if errors:
        return 1
    print("make-example-standard: %d components, %d associations written to %s"
          % (len(COMPONENTS), len(ASSOCIATIONS), os.path.join(STANDARD_DIR, "data.sql")))
    return 0


if __name__ == "__main__":
    sys.exit(main())
