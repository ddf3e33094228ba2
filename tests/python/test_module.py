"""The tessaline Python module against the program it shares its code with."""
import gc
import json
import math
import os
import subprocess
import sys

import numpy as np
import pytest

import tessaline
from conftest import DXF, PROGRAM


def program_json(*args):
    out = subprocess.run([PROGRAM, "analyze", "--json", *args], check=True,
                         capture_output=True, text=True).stdout
    return json.loads(out)


def same(a, b):
    return (a is None and math.isnan(b)) or a == b


def test_analyze_equals_the_programs_json_exactly():
    for source in ("IPE200", "RHS200x100x8"):
        want = program_json(source)
        got = tessaline.analyze(tessaline.section(source)).as_dict()
        assert list(got)[:len(tessaline.RESULT_FIELDS)] == list(tessaline.RESULT_FIELDS)
        for key, value in want.items():
            assert key in got, key
            assert same(value, got[key]), (source, key, value, got[key])
    r = tessaline.analyze(tessaline.section("PL100x50"), torsion=False)
    assert math.isnan(r.j) and r.area == 5000


def test_every_way_of_making_a_section():
    plate = tessaline.analyze(tessaline.from_designation("PL100x50"), torsion=False)
    square = [[0, 0], [100, 0], [100, 50], [0, 50]]
    for outline in (square, np.array(square), np.array(square, dtype=np.int32)):
        r = tessaline.analyze(tessaline.from_coordinates(outline, name="p"), torsion=False)
        assert r.name == "p"
        for f in ("area", "ixx", "iyy", "zx", "zy"):
            assert getattr(r, f) == pytest.approx(getattr(plate, f), rel=1e-12)
    # A hole, and a bulge: a slot of two half circles r 10 and two edges 40 long.
    holed = tessaline.analyze(
        tessaline.from_coordinates(square, [[(40, 15), (60, 15), (60, 35), (40, 35)]]),
        torsion=False)
    assert holed.area == pytest.approx(5000 - 400, rel=1e-12)
    slot = tessaline.from_coordinates([(0, 0, 0), (40, 0, 1), (40, 20, 0), (0, 20, 1)])
    r = tessaline.analyze(slot, torsion=False)
    assert r.area == pytest.approx(40 * 20 + math.pi * 100, rel=1e-12)
    # DXF: every section of a drawing, and one of them by number.
    sections = tessaline.from_dxf(os.path.join(DXF, "entities.dxf"))
    assert len(sections) == 7 and sections[0].name == "lines@50,25"
    third = tessaline.section(os.path.join(DXF, "entities.dxf") + ":3")
    assert tessaline.analyze(third, torsion=False) == tessaline.analyze(sections[2], torsion=False)
    inch = tessaline.analyze(tessaline.section(os.path.join(DXF, "inches.dxf")), torsion=False)
    assert inch.area == pytest.approx(4 * 2 * 25.4 ** 2, rel=1e-12)
    with pytest.raises(tessaline.SectionError, match="no such file"):
        tessaline.from_file("missing.wgf")
    with pytest.raises(tessaline.SectionError, match="missing.slb"):
        tessaline.from_library("missing.slb", "IPE300")


def test_pieces_and_pictures(tmp_path):
    s = tessaline.from_designation("IPE200")
    pieces = s.pieces()
    assert pieces.dtype == np.float64 and pieces.ndim == 2 and pieces.shape[1] == 8
    assert pieces.shape[0] == 16  # 12 edges and 4 root fillets
    assert sorted(set(pieces[:, 0])) == [0.0, 1.0]
    png = tmp_path / "ipe.png"
    tessaline.draw(s, png, width=200, height=150)
    assert png.read_bytes()[:8] == b"\x89PNG\r\n\x1a\n"


def test_bad_input_raises_section_error_with_the_programs_message():
    assert issubclass(tessaline.SectionError, ValueError)
    with pytest.raises(tessaline.SectionError, match="IPE301: unknown designation"):
        tessaline.section("IPE301")
    bad = [
        [[0, 0], [1, 0]],                        # two points
        [[0, 0, 0, 0], [1, 0, 0, 0], [1, 1, 0, 0]],  # four columns
        [[0, 0], [1, math.nan], [1, 1]],         # not finite
        [[0, 0], [0, 0], [1, 1]],                # a repeated point
    ]
    for outline in bad:
        with pytest.raises(tessaline.SectionError):
            tessaline.from_coordinates(outline)
    with pytest.raises(tessaline.SectionError, match="open outline"):
        tessaline.from_dxf(os.path.join(DXF, "open.dxf"))
    with pytest.raises(tessaline.SectionError, match="not an ASCII DXF"):
        tessaline.from_dxf(os.path.join(DXF, "corrupt.dxf"))
    s = tessaline.section("PL10x5")
    with pytest.raises(tessaline.SectionError):
        tessaline.analyze(s, gap=0)
    with pytest.raises(tessaline.SectionError):
        tessaline.draw(s, "x.png", stress="bending")


def rss_kb():
    with open("/proc/self/statm") as f:
        return int(f.read().split()[1]) * os.sysconf("SC_PAGE_SIZE") // 1024


def test_references_and_memory_do_not_grow_over_ten_thousand_calls():
    s = tessaline.section("PL100x50")
    square = np.array([[0, 0], [10, 0], [10, 10], [0, 10]], dtype=float)
    for _ in range(200):  # warm up allocator pools
        tessaline.analyze(s, torsion=False)
        tessaline.from_coordinates(square).mesh(10)
    gc.collect()
    refs_s, refs_sq, before = sys.getrefcount(s), sys.getrefcount(square), rss_kb()
    for _ in range(10_000):
        tessaline.analyze(s, torsion=False)
        tessaline.from_coordinates(square).pieces()
        s.mesh(10)
    gc.collect()
    assert sys.getrefcount(s) == refs_s and sys.getrefcount(square) == refs_sq
    assert rss_kb() - before < 4096
