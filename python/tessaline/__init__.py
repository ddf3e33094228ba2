"""Cross-section properties, torsion and pictures from Python.

Make a section, analyse it, draw it::

    import tessaline
    s = tessaline.section("IPE300")            # a designation, a geometry file,
                                               # a library entry or "drawing.dxf:N"
    r = tessaline.analyze(s)                   # a Result: r.area, r.ixx, r.j, ...
    tessaline.draw(s, "ipe300.png")

Units are the drawing's: mm, mm^2, mm^3, mm^4, mm^6; angles in radians.
Every failure raises :class:`SectionError` (a ``ValueError``) with the
program's one-line message.
"""
from __future__ import annotations

import dataclasses
import math
import os
from typing import Iterable, List, Optional, Sequence

from . import _tessaline
from ._tessaline import Section, SectionError

__all__ = ["Section", "SectionError", "Result", "section", "from_designation", "from_file",
           "from_library", "from_dxf", "from_coordinates", "analyze", "draw", "RESULT_FIELDS"]

#: The result fields, in the order and with the names of ``tessaline analyze --json``.
RESULT_FIELDS = ("name", "area", "cx", "cy", "ixx", "iyy", "ixy", "i1", "i2", "angle", "ip",
                 "wx_top", "wx_bottom", "wy_left", "wy_right", "zx", "zy", "j", "j_lower",
                 "j_upper", "cw", "xs", "ys")


@dataclasses.dataclass(frozen=True)
class Result:
    """The analysis of one section, field for field the program's JSON object.

    Moments are about the centroid (``ixx`` is the integral of (y - cy)^2);
    ``angle`` is the principal angle in radians; ``wx_top`` ... ``wy_right``
    are elastic moduli, ``zx``, ``zy`` plastic moduli; ``j`` with its bounds
    ``j_lower`` and ``j_upper``, ``cw`` the warping constant and (``xs``,
    ``ys``) the shear centre. A value the analysis could not give (or left
    out with ``torsion=False``) is NaN.
    """
    name: str
    area: float
    cx: float
    cy: float
    ixx: float
    iyy: float
    ixy: float
    i1: float
    i2: float
    angle: float
    ip: float
    wx_top: float
    wx_bottom: float
    wy_left: float
    wy_right: float
    zx: float
    zy: float
    j: float
    j_lower: float
    j_upper: float
    cw: float
    xs: float
    ys: float
    extra: dict = dataclasses.field(default_factory=dict, compare=False, repr=False)

    def as_dict(self) -> dict:
        """The fields as a plain dict (NaN where the JSON has null)."""
        d = {f: getattr(self, f) for f in RESULT_FIELDS}
        d.update(self.extra)
        return d


def section(source: str) -> Section:
    """The section an argument of the program names: a designation
    (``"IPE300"``, ``"RHS200x100x8"``, ``"PL100x50"``), a geometry file
    (``"part.wgf"``), a library entry (``"deflib.slb:IPE300"``) or one section
    of a DXF drawing (``"drawing.dxf:2"``; a drawing of one section may be
    named alone)."""
    return _tessaline.from_source(os.fspath(source))


def from_designation(designation: str) -> Section:
    """A standard shape or plain shape by its designation, drawn with its
    fillets and radii."""
    return _tessaline.from_source(designation)


def from_file(path) -> Section:
    """The section kept in a geometry file."""
    path = os.fspath(path)
    if "/" not in path and os.sep not in path:
        path = os.path.join(".", path)  # never read as a designation
    return _tessaline.from_source(path)


def from_library(path, name: str) -> Section:
    """Entry ``name`` of the section library ``path``."""
    return _tessaline.from_source(f"{os.fspath(path)}:{name}")


def from_dxf(path) -> List[Section]:
    """Every section of a DXF drawing, in the order ``drawing.dxf:N`` numbers
    them (left to right, then bottom to top), each named after its layer and
    position. Raises SectionError when an outline does not close."""
    return _tessaline.from_dxf(os.fspath(path))


def from_coordinates(outline, holes: Iterable = (), name: str = "section") -> Section:
    """A section from its outline and holes, each a closed polygon given as
    a list or numpy array of rows ``(x, y)`` or ``(x, y, bulge)`` in mm. A
    bulge (the tangent of a quarter of the included angle, positive
    counter-clockwise) makes the edge to the next row a circular arc, as in
    DXF polylines: 1 is a half circle. The last row joins the first."""
    return _tessaline.from_coordinates(outline, list(holes), name)


def analyze(section: Section, torsion: bool = True, gap: float = 1e-6) -> Result:
    """Exact properties, plastic moduli and (with ``torsion``) J refined until
    its bounds are within ``gap`` of each other, Cw and the shear centre:
    the numbers ``tessaline analyze --json`` prints. The GIL is released
    while it runs."""
    d = _tessaline.analyze(section, torsion, gap)
    known = {k: d.pop(k, None) for k in RESULT_FIELDS}
    known = {k: math.nan if v is None else v for k, v in known.items()}
    return Result(**known, extra=d)


def draw(section: Section, path, width: int = 800, height: int = 600, mesh: bool = False,
         stress: Optional[str] = None, elements: int = 2000) -> None:
    """Writes a PNG picture of the section (whole or not at all): filled with
    its holes, centroid, principal axes and bounding-box dimensions; ``mesh``
    draws the finite-element split, ``stress="torsion"`` colours the section
    by its torsion shear stress."""
    if stress not in (None, "torsion"):
        raise SectionError(f"stress: expected None or 'torsion', not {stress!r}")
    _tessaline.draw(section, os.fspath(path), width, height, mesh, stress == "torsion", elements)
