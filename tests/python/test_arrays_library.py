"""Meshes and stress fields as numpy arrays, the GIL during long solves, and
the section library written from Python."""
import math
import struct
import threading
import time

import numpy as np
import pytest

import tessaline


def triangle_areas(nodes, triangles):
    p = nodes[triangles]
    return 0.5 * ((p[:, 1, 0] - p[:, 0, 0]) * (p[:, 2, 1] - p[:, 0, 1])
                  - (p[:, 2, 0] - p[:, 0, 0]) * (p[:, 1, 1] - p[:, 0, 1]))


def rectangle_torsion(width, height):
    """J and the largest shear stress per unit torque of a solid rectangle
    (Saint-Venant's series, half sides a >= b)."""
    a, b = max(width, height) / 2, min(width, height) / 2
    odd = range(1, 201, 2)
    j = (2 * a) * (2 * b) ** 3 / 3 * (
        1 - 192 * b / (math.pi ** 5 * a) * sum(math.tanh(n * math.pi * a / (2 * b)) / n ** 5
                                               for n in odd))
    slope = 2 * b - 16 * b / math.pi ** 2 * sum(1 / (n * n * math.cosh(n * math.pi * a / (2 * b)))
                                                for n in odd)
    return j, slope / j


def test_mesh_arrays_have_the_documented_shapes_and_cover_the_section():
    plate = tessaline.section("PL100x50")
    m = plate.mesh(400)
    assert isinstance(m, tessaline.Mesh)
    assert m.nodes.dtype == np.float64 and m.nodes.ndim == 2 and m.nodes.shape[1] == 2
    assert m.triangles.dtype == np.int32 and m.triangles.shape[1] == 3
    assert 200 < len(m.triangles) < 800
    assert m.triangles.min() == 0 and m.triangles.max() == len(m.nodes) - 1
    areas = triangle_areas(*m)
    assert areas.min() > 0  # counter-clockwise, none degenerate
    assert areas.sum() == pytest.approx(5000, rel=1e-12)
    # Curves are followed by chords: a circular hole's chords leave a little
    # more than the exact area.
    holed = tessaline.from_coordinates([(0, 0), (100, 0), (100, 50), (0, 50)],
                                       [[(40, 25, 1), (60, 25, 1)]])
    exact = tessaline.analyze(holed, torsion=False).area
    covered = triangle_areas(*tessaline.mesh(holed, 2000)).sum()
    assert exact < covered < exact * (1 + 1e-3)
    for bad in (5, 10 ** 7):
        with pytest.raises(tessaline.SectionError, match="elements"):
            plate.mesh(bad)


def test_torsion_stress_field_against_the_rectangles_closed_form():
    plate = tessaline.section("PL100x50")
    j, tau_per_torque = rectangle_torsion(100, 50)
    t = plate.torsion_stress(torque=1.0)
    assert isinstance(t, tessaline.TorsionStress)
    m = len(t.triangles)
    assert t.stress.shape == (m, 2) and t.stress.dtype == np.float64
    assert t.nodes.shape[1] == 2 and t.triangles.dtype == np.int32
    assert triangle_areas(t.nodes, t.triangles).sum() == pytest.approx(5000, rel=1e-12)
    assert t.j_lower <= j * (1 + 1e-9) and t.j_upper >= j * (1 - 1e-9)
    assert t.j == pytest.approx(j, rel=1e-3)
    assert t.max_stress == pytest.approx(tau_per_torque, rel=1e-3)
    # The centroids lie inside, off the boundary where the largest stress is.
    sizes = np.hypot(t.stress[:, 0], t.stress[:, 1])
    assert 0.93 * tau_per_torque < sizes.max() < tau_per_torque * (1 + 1e-3)
    # The stress grows with the torque; the field turns one way round the section.
    twice = tessaline.torsion_stress(plate, torque=2.0, gap=1e-2)
    assert twice.max_stress == pytest.approx(2 * tau_per_torque, rel=1e-2)
    for bad in (dict(torque=0), dict(torque=math.nan), dict(gap=0), dict(elements=1),
                dict(elements=1000, max_elements=500)):
        with pytest.raises(tessaline.SectionError):
            plate.torsion_stress(**bad)


def other_thread_runs_during(call):
    """How often this thread woke while `call` ran in another one, and how
    long the call took: a call that kept the GIL leaves no wake-ups."""
    done = threading.Event()
    worker = threading.Thread(target=lambda: (call(), done.set()))
    start = time.perf_counter()
    worker.start()
    ticks = 0
    while not done.is_set():
        time.sleep(0.002)
        ticks += 1
    elapsed = time.perf_counter() - start
    worker.join()
    return ticks, elapsed


def test_the_gil_is_released_during_long_solves():
    ipe = tessaline.section("IPE300")
    for call in (lambda: tessaline.mesh(ipe, 100_000),
                 lambda: tessaline.torsion_stress(ipe, elements=20_000, gap=1e-6),
                 lambda: tessaline.analyze(ipe)):
        ticks, elapsed = other_thread_runs_during(call)
        if elapsed > 0.05:
            assert ticks >= 5, (ticks, elapsed)


def test_library_add_replace_remove_through_the_safe_path(tmp_path):
    path = tmp_path / "study.slb"
    with pytest.raises(tessaline.SectionError, match="study.slb: no such file"):
        tessaline.Library(path)
    lib = tessaline.Library(path, create=True)
    assert len(lib) == 0
    ipe = tessaline.section("IPE200")
    lib.add(ipe)
    lib.add(tessaline.section("PL100x50"), name="plate")
    assert lib.names() == ["IPE200", "plate"] and "plate" in lib
    assert ipe.name == "IPE200"  # the name given is the library's only
    with pytest.raises(tessaline.SectionError, match="already holds 'plate'"):
        lib.add(tessaline.section("PL10x5"), name="plate")
    lib.replace(tessaline.section("PL10x5"), name="plate")
    # Re-opened from the file: what was written, in place.
    again = tessaline.Library(path)
    assert again.names() == ["IPE200", "plate"]
    assert tessaline.analyze(again.get("plate"), torsion=False).area == pytest.approx(50)
    assert tessaline.analyze(again.get("1"), torsion=False).area == pytest.approx(
        tessaline.analyze(ipe, torsion=False).area, rel=1e-12)
    again.remove("IPE200")
    assert tessaline.Library(path).names() == ["plate"]
    for call, message in ((lambda: again.remove("IPE200"), "no section 'IPE200'"),
                          (lambda: again.get("HEB900"), "no section 'HEB900'"),
                          (lambda: again.add(ipe, name="x" * 40), "1 to 39 characters")):
        with pytest.raises(tessaline.SectionError, match=message):
            call()
    assert tessaline.Library(path).names() == ["plate"]
    text = tmp_path / "notes.slb"
    text.write_text("not a library\n" * 40)
    with pytest.raises(tessaline.SectionError, match="not a section library"):
        tessaline.Library(text)
    assert text.read_text() == "not a library\n" * 40


def test_library_refuses_a_5001st_section_and_stays_whole(tmp_path):
    path = tmp_path / "full.slb"
    lib = tessaline.Library(path, create=True)
    lib.add(tessaline.section("PL10x5"))
    # A full table: the header counts 5000 sections, every entry naming the
    # one block.
    data = bytearray(path.read_bytes())
    first = data[360:364]
    data[360:360 + 4 * 5000] = first * 5000
    data[306:308] = struct.pack("<H", 5000)
    path.write_bytes(bytes(data))
    full = tessaline.Library(path)
    assert len(full) == 5000
    with pytest.raises(tessaline.SectionError, match="5000"):
        full.add(tessaline.section("PL20x5"))
    assert path.read_bytes() == bytes(data)
    assert len(tessaline.Library(path)) == 5000
