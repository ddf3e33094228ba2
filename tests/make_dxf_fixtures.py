#!/usr/bin/python3
"""Writes the DXF drawings the DXF reader is tested on, with ezdxf (a writer
independent of the reader), into tests/data/dxf/. Run it again after a change:
    /usr/bin/python3 tests/make_dxf_fixtures.py
The C++ tests build the same sections from the numbers written here."""
import math
import os

import ezdxf

OUT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "data", "dxf")


def new(units=4):  # 4: millimetres, 1: inches
    doc = ezdxf.new("R2000", units=units)
    return doc, doc.modelspace()


def rect(msp, x0, y0, x1, y1, layer):
    pts = [(x0, y0), (x1, y0), (x1, y1), (x0, y1)]
    for a, b in zip(pts, pts[1:] + pts[:1]):
        msp.add_line(a, b, dxfattribs={"layer": layer})


def rounded_rect_lines(msp, x0, y0, x1, y1, r, layer):
    """Lines and ARCs: corner centres inset by r, arcs counter-clockwise."""
    att = {"layer": layer}
    msp.add_line((x0 + r, y0), (x1 - r, y0), dxfattribs=att)
    msp.add_line((x1, y0 + r), (x1, y1 - r), dxfattribs=att)
    msp.add_line((x1 - r, y1), (x0 + r, y1), dxfattribs=att)
    msp.add_line((x0, y1 - r), (x0, y0 + r), dxfattribs=att)
    msp.add_arc((x1 - r, y0 + r), r, 270, 0, dxfattribs=att)
    msp.add_arc((x1 - r, y1 - r), r, 0, 90, dxfattribs=att)
    msp.add_arc((x0 + r, y1 - r), r, 90, 180, dxfattribs=att)
    msp.add_arc((x0 + r, y0 + r), r, 180, 270, dxfattribs=att)


def entities():
    doc, msp = new()
    # 1: LINE outline with a CIRCLE hole
    rect(msp, 0, 0, 100, 50, "lines")
    msp.add_circle((50, 25), 10, dxfattribs={"layer": "lines"})
    # 2: LINE and ARC: rounded rectangle 80 x 40, r 8
    rounded_rect_lines(msp, 200, 0, 280, 40, 8, "arcs")
    # 3: LWPOLYLINE with bulges: the same rounded rectangle
    b = math.tan(math.pi / 8)  # a quarter circle
    x0, y0, x1, y1, r = 400, 0, 480, 40, 8
    pts = [(x0 + r, y0, 0, 0, 0), (x1 - r, y0, 0, 0, b), (x1, y0 + r, 0, 0, 0),
           (x1, y1 - r, 0, 0, b), (x1 - r, y1, 0, 0, 0), (x0 + r, y1, 0, 0, b),
           (x0, y1 - r, 0, 0, 0), (x0, y0 + r, 0, 0, b)]
    msp.add_lwpolyline(pts, format="xyseb", close=True, dxfattribs={"layer": "lwpoly"})
    # 4: old-style POLYLINE, a slot 100 long between the centres, 40 wide,
    # drawn clockwise so that its bulges are negative
    poly = msp.add_polyline2d([], dxfattribs={"layer": "poly"})
    poly.append_vertices([(600, 40), (700, 40), (700, 0), (600, 0)],
                         dxfattribs={"bulge": 0})
    verts = list(poly.vertices)
    verts[1].dxf.bulge = -1
    verts[3].dxf.bulge = -1
    poly.close(True)
    # 5: ELLIPSE with axis ratio 1: a round bar r 15
    msp.add_ellipse((850, 20), major_axis=(15, 0), ratio=1.0, dxfattribs={"layer": "ellipse"})
    # 6: a ring (square 100 with a square hole 60) and an island (square 20)
    rect(msp, 1000, 0, 1100, 100, "ring")
    rect(msp, 1020, 20, 1080, 80, "ring")
    rect(msp, 1040, 40, 1060, 60, "island")
    msp.add_text("not geometry", dxfattribs={"layer": "notes"}).set_placement((0, -20))
    doc.saveas(os.path.join(OUT, "entities.dxf"))


def blocks():
    doc, msp = new()
    blk = doc.blocks.new(name="PLATE", base_point=(10, 5))
    rect(blk, 0, 0, 40, 20, "0")
    blk.add_circle((20, 10), 5)
    msp.add_blockref("PLATE", (0, 0), dxfattribs={"xscale": 2, "yscale": 2, "rotation": 30,
                                                   "layer": "rotated"})
    msp.add_blockref("PLATE", (300, 0), dxfattribs={"xscale": -1.5, "yscale": 1.5,
                                                     "layer": "mirrored"})
    doc.saveas(os.path.join(OUT, "blocks.dxf"))


def inches():
    doc, msp = new(units=1)
    rect(msp, 0, 0, 4, 2, "inch")
    doc.saveas(os.path.join(OUT, "inches.dxf"))


def gaps():
    doc, msp = new()
    # The last line stops short of the first corner by 0.009 mm (joined) and
    # 0.011 mm (left open) with the default tolerance of 0.01 mm.
    for x0, gap, layer in ((0, 0.009, "near"), (200, 0.011, "far")):
        att = {"layer": layer}
        msp.add_line((x0, 0), (x0 + 100, 0), dxfattribs=att)
        msp.add_line((x0 + 100, 0), (x0 + 100, 50), dxfattribs=att)
        msp.add_line((x0 + 100, 50), (x0, 50), dxfattribs=att)
        msp.add_line((x0, 50), (x0, gap), dxfattribs=att)
    doc.saveas(os.path.join(OUT, "gaps.dxf"))


def open_outline():
    doc, msp = new()
    msp.add_line((0, 0), (100, 0))
    msp.add_line((100, 0), (100, 50))
    msp.add_line((100, 50), (0, 50))
    doc.saveas(os.path.join(OUT, "open.dxf"))


def refused():
    doc, msp = new()
    msp.add_spline([(0, 0), (50, 30), (100, 0), (50, -30)], dxfattribs={"layer": "curves"})
    msp.add_ellipse((300, 0), major_axis=(40, 0), ratio=0.5, dxfattribs={"layer": "curves"})
    doc.saveas(os.path.join(OUT, "refused.dxf"))


def corrupt():
    with open(os.path.join(OUT, "entities.dxf"), "rb") as f:
        text = f.read()
    # Cut in the middle of the entities, then bytes that are no group codes.
    cut = text.index(b"ENTITIES") + 400
    with open(os.path.join(OUT, "truncated.dxf"), "wb") as f:
        f.write(text[:cut] + b"\n10\n1e999999\n20\nnan\n0\nLWPOLYLINE\n90\n-7\n")
    with open(os.path.join(OUT, "corrupt.dxf"), "wb") as f:
        f.write(bytes((i * 37 + 11) % 256 for i in range(512)))


if __name__ == "__main__":
    os.makedirs(OUT, exist_ok=True)
    entities()
    blocks()
    inches()
    gaps()
    open_outline()
    refused()
    corrupt()
