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
from typing import Iterable, List, NamedTuple, Optional, Sequence

import numpy as np

from . import _tessaline
from ._tessaline import Section, SectionError

__all__ = ["Section", "SectionError", "Result", "Mesh", "TorsionStress", "Library", "section",
           "from_designation", "from_file", "from_library", "from_dxf", "from_coordinates",
           "analyze", "mesh", "torsion_stress", "draw", "RESULT_FIELDS"]

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


class Mesh(NamedTuple):
    """A finite-element split of a section into linear triangles.

    ``nodes``: float64 array of shape (n, 2), the (x, y) of each node in mm.
    ``triangles``: int32 array of shape (m, 3), each row three row numbers
    of ``nodes``, counter-clockwise (positive area).
    """
    nodes: np.ndarray
    triangles: np.ndarray


class TorsionStress(NamedTuple):
    """The torsion shear stress of a section, one value per triangle.

    ``nodes`` (n, 2) float64 and ``triangles`` (m, 3) int32 are the last
    mesh of the refinement, as in :class:`Mesh`; ``stress`` is a float64
    array of shape (m, 2): the shear stresses (tau_x, tau_y) at each
    triangle's centroid for the torque (N/mm^2 for a torque in N mm); its
    size is
    ``np.hypot(stress[:, 0], stress[:, 1])``. ``max_stress`` is the largest
    size sampled at every node of every element (the centroids miss the
    boundary, where it lies); ``j``, ``j_lower`` and ``j_upper`` the torsion
    constant and its bounds (mm^4).
    """
    nodes: np.ndarray
    triangles: np.ndarray
    stress: np.ndarray
    max_stress: float
    j: float
    j_lower: float
    j_upper: float


def mesh(section: Section, elements: int = 2000) -> Mesh:
    """The mesher's split of the section into about ``elements`` (10 to
    200 000) triangles: nodes (n, 2) float64 and triangles (m, 3) int32. Arcs
    and circles are followed by chords, so where the section has curves the
    mesh's area differs a little from its exact area. The GIL is released
    while the mesher runs. Also ``section.mesh(elements)``."""
    return Mesh(*section._mesh(int(elements)))


def torsion_stress(section: Section, torque: float = 1.0, gap: float = 1e-3,
                   elements: int = 2000, max_elements: int = 200000) -> TorsionStress:
    """The torsion shear-stress field for ``torque`` (N mm gives N/mm^2):
    the torsion analysis starts from about ``elements / 4`` triangles and
    refines where the stress changes until the bounds of J are within
    ``gap`` of each other or ``max_elements`` is reached. Returns the last
    mesh with (tau_x, tau_y) per triangle, shape (m, 2); see
    :class:`TorsionStress`. The GIL is released while it runs. Also
    ``section.torsion_stress(...)``."""
    return TorsionStress(*section._torsion_stress(float(torque), float(gap), int(elements),
                                                  int(max_elements)))


Section.mesh = mesh
Section.torsion_stress = torsion_stress


class Library:
    """A section library file (.slb): read its sections, and add, replace
    and remove them through the safe path, which changes the file whole or
    leaves it as it was (a library holds at most 5000 sections).

    ``Library("deflib.slb")`` finds the default library as the program
    does; ``create=True`` makes an empty library when the file does not
    exist. Failures raise :class:`SectionError` with the program's message
    (``"lib.slb: no section 'HEB900' in the library"``).
    """

    def __init__(self, path, create: bool = False):
        self._lib = _tessaline._Library(os.fspath(path), bool(create))

    @property
    def path(self) -> str:
        """The file the library was opened from."""
        return self._lib.path

    @property
    def description(self) -> str:
        return self._lib.description

    def __len__(self) -> int:
        return len(self._lib)

    def __contains__(self, name: str) -> bool:
        return name in self._lib.names()

    def names(self) -> List[str]:
        """The section names, in the library's order."""
        return self._lib.names()

    def get(self, name: str) -> Section:
        """The section named ``name`` (or numbered ``"N"``, from 1)."""
        return self._lib.get(str(name))

    def add(self, section: Section, name: Optional[str] = None, replace: bool = False) -> None:
        """Adds the section under ``name`` (1 to 39 characters; the
        section's own name by default). A name already in the library is an
        error unless ``replace`` is set, which replaces that section."""
        self._lib.add(section, "" if name is None else str(name), bool(replace))

    def replace(self, section: Section, name: Optional[str] = None) -> None:
        """Adds the section, replacing the one of the same name."""
        self.add(section, name, replace=True)

    def remove(self, name: str) -> None:
        """Removes the section named ``name`` (or numbered ``"N"``)."""
        self._lib.remove(str(name))
