#!/usr/bin/python3
"""Reads a drawing written by kvhost with ezdxf and prints what it holds as JSON: the page
layers in file order and every INSERT of model space with its layer, block and attributes."""
import json
import sys

import ezdxf


def main(path):
    document = ezdxf.readfile(path)
    layers = [layer.dxf.name for layer in document.layers if "$" in layer.dxf.name]
    inserts = []
    for entity in document.modelspace():
        if entity.dxftype() != "INSERT":
            continue
        inserts.append({
            "layer": entity.dxf.layer,
            "block": entity.dxf.name,
            "attributes": {a.dxf.tag: a.dxf.text for a in entity.attribs},
        })
    json.dump({"layers": layers, "inserts": inserts}, sys.stdout)


if __name__ == "__main__":
    main(sys.argv[1])
