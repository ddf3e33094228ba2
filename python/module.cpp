// The compiled part of the Python module: sections, their analysis and
// pictures, over the program's own library of pieces. The Python package
// (python/tessaline/) wraps it in Pythonic names and a result record.
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <tuple>

#include "analysis.h"
#include "dxf.h"
#include "library_file.h"
#include "picture.h"
#include "section.h"

namespace py = pybind11;
using namespace tessaline::app;

namespace {

// A section shared with Python. The analysis changes the section's
// records, so one thread at a time works on it; different sections are
// analysed in parallel with the GIL released.
struct Py_Section {
  std::unique_ptr<Section> section;
  std::mutex busy;
};

// Errors carry the program's one-line messages.
struct Section_Error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

std::shared_ptr<Py_Section> Wrap(std::unique_ptr<Section> s) {
  auto p = std::make_shared<Py_Section>();
  p->section = std::move(s);
  return p;
}

std::shared_ptr<Py_Section> From_Source(const std::string& source) {
  std::string error;
  std::unique_ptr<Section> s;
  {
    py::gil_scoped_release release;
    s = Resolve_Section(source, &error);
  }
  if (!s) throw Section_Error(error);
  return Wrap(std::move(s));
}

std::vector<std::shared_ptr<Py_Section>> From_Dxf(const std::string& path) {
  std::string error;
  std::vector<std::unique_ptr<Section>> all;
  {
    py::gil_scoped_release release;
    all = Resolve_Sections(path, &error);
  }
  if (all.empty()) throw Section_Error(error);
  std::vector<std::shared_ptr<Py_Section>> out;
  for (auto& s : all) out.push_back(Wrap(std::move(s)));
  return out;
}

// Appends one closed polygon given as rows (x, y) or (x, y, bulge), the
// bulge making the edge to the next row an arc.
void Add_Ring(py::array_t<double, py::array::c_style | py::array::forcecast> a, Outline* o,
              const char* what) {
  if (a.ndim() != 2 || (a.shape(1) != 2 && a.shape(1) != 3))
    throw Section_Error(std::string(what) + ": expected rows of (x, y) or (x, y, bulge)");
  if (a.shape(0) < 3 && !(a.shape(0) == 2 && a.shape(1) == 3))
    throw Section_Error(std::string(what) + ": a closed outline needs at least 3 points");
  if (a.shape(0) > 10000000) throw Section_Error(std::string(what) + ": too many points");
  auto r = a.unchecked<2>();
  py::ssize_t n = a.shape(0);
  bool bulges = a.shape(1) == 3;
  for (py::ssize_t i = 0; i < n; ++i) {
    py::ssize_t j = (i + 1) % n;
    for (py::ssize_t k = 0; k < a.shape(1); ++k)
      if (!std::isfinite(r(i, k)))
        throw Section_Error(std::string(what) + ": a value is not finite");
    if (r(i, 0) == r(j, 0) && r(i, 1) == r(j, 1))
      throw Section_Error(std::string(what) + ": two consecutive points coincide");
    o->pieces.push_back(Bulge_Piece(r(i, 0), r(i, 1), r(j, 0), r(j, 1), bulges ? r(i, 2) : 0));
  }
}

std::shared_ptr<Py_Section> From_Coordinates(py::object outline, py::list holes,
                                             const std::string& name) {
  Outline o;
  using Array = py::array_t<double, py::array::c_style | py::array::forcecast>;
  Add_Ring(outline.cast<Array>(), &o, "outline");
  for (py::handle h : holes) Add_Ring(h.cast<Array>(), &o, "hole");
  std::string error;
  std::unique_ptr<Section> s;
  {
    py::gil_scoped_release release;
    s = Section_From_Outline(o, name, &error);
  }
  if (!s) throw Section_Error(name + ": " + error);
  return Wrap(std::move(s));
}

py::object Analyze(Py_Section& p, bool torsion, double gap) {
  if (!(gap >= 1e-12 && gap <= 0.5)) throw Section_Error("gap: expected a value in [1e-12, 0.5]");
  Analyze_Options options;
  options.torsion = torsion;
  options.gap = gap;
  Section_Result r;
  std::string error;
  bool ok;
  {
    py::gil_scoped_release release;
    std::lock_guard<std::mutex> lock(p.busy);
    ok = Analyze_Section(*p.section, options, &r, &error);
  }
  if (!ok) throw Section_Error(p.section->name + ": " + error);
  // The program's JSON object itself, read back by Python: the same keys
  // and, digit for digit, the same numbers (null where the analysis could
  // not give a value).
  return py::module_::import("json").attr("loads")(Result_Json(r).dump());
}

void Draw(Py_Section& p, const std::string& path, int width, int height, bool mesh,
          bool torsion_stress, int elements) {
  if (width < 16 || height < 16 || width > 10000 || height > 10000)
    throw Section_Error("size: expected 16 to 10000 pixels a side");
  if (elements < 10 || elements > 200000) throw Section_Error("elements: expected 10 to 200000");
  Picture_Options o;
  o.width = width, o.height = height, o.mesh = mesh, o.torsion_stress = torsion_stress;
  o.elements = elements;
  std::string error;
  bool ok;
  {
    py::gil_scoped_release release;
    std::lock_guard<std::mutex> lock(p.busy);
    Analyze_Options options;
    options.torsion = false;
    Section_Result r;
    ok = Analyze_Section(*p.section, options, &r, &error) &&
         Write_Section_Picture(*p.section, r, o, path, &error);
  }
  if (!ok) throw Section_Error(path + ": " + error);
}

// The drawing's pieces as an (n, 8) array: kind (0 segment, 1 arc,
// 2 circle), x1, y1, x2, y2 (arc: counter-clockwise start and end), xc, yc, r.
py::array_t<double> Pieces(Py_Section& p) {
  std::lock_guard<std::mutex> lock(p.busy);
  const Objects_Array_Type& a = p.section->drawing;
  std::vector<double> rows;
  for (int i = 0; i < a.count; ++i) {
    HGLOBAL h = Get_Element_Handle_by_Index(const_cast<Objects_Array_Type*>(&a), i);
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0, xc = 0, yc = 0, r = 0;
    double a1 = 0, a2 = 0, kind;
    switch (Get_Element_Type_by_Handle(h)) {
      case EL_SEGMENT:
        kind = 0;
        Get_Segment_Coord_by_Handle(h, &x1, &y1, &x2, &y2);
        break;
      case EL_ARC:
        kind = 1;
        Get_Arc_Param(h, &x1, &y1, &x2, &y2, &xc, &yc, &r, &a1, &a2);
        break;
      case EL_CIRCLE:
        kind = 2;
        Get_Circle_Param_by_Handle(h, &xc, &yc, &r);
        break;
      default:
        continue;
    }
    rows.insert(rows.end(), {kind, x1, y1, x2, y2, xc, yc, r});
  }
  py::array_t<double> out({static_cast<py::ssize_t>(rows.size() / 8), py::ssize_t{8}});
  std::copy(rows.begin(), rows.end(), out.mutable_data());
  return out;
}

// Owns a split's blocks.
struct Split_Blocks {
  FE_Split split{};
  Split_Blocks() = default;
  Split_Blocks(const Split_Blocks&) = delete;
  Split_Blocks& operator=(const Split_Blocks&) = delete;
  ~Split_Blocks() { Free_FE_Split(&split); }
};

// The mesher's split of the section at about `elements` triangles. Called
// with the section locked and the GIL released.
bool Split(Py_Section& p, int elements, Split_Blocks* m, std::string* error) {
  surface_geometry g{};
  if (!Calc_Exact_Surface_Param(&p.section->surface, &g) || !(g.area > 0)) {
    *error = "the section cannot be integrated";
    return false;
  }
  if (!Split_Surface_By_Mesher(&p.section->surface, &m->split, &m->split.node_count,
                               &m->split.triangles, &m->split.triangle_count, nullptr,
                               Element_Size(g.area, elements)) ||
      m->split.triangle_count <= 0) {
    *error = "the section could not be split into elements";
    return false;
  }
  return true;
}

// The split's nodes as (n, 2) float64 and its triangles as (m, 3) int32.
std::pair<py::array_t<double>, py::array_t<int32_t>> Mesh_Arrays(const FE_Split& split) {
  py::ssize_t n = split.node_count, m = split.triangle_count;
  py::array_t<double> nodes({n, py::ssize_t{2}});
  py::array_t<int32_t> triangles({m, py::ssize_t{3}});
  const auto* points = static_cast<const FEPOINT*>(GlobalLock(split.nodes));
  const auto* tri = static_cast<const FE3Ang*>(GlobalLock(split.triangles));
  if (!points || !tri) {
    if (points) GlobalUnlock(split.nodes);
    if (tri) GlobalUnlock(split.triangles);
    throw Section_Error("the split's blocks cannot be read");
  }
  double* xy = nodes.mutable_data();
  for (py::ssize_t i = 0; i < n; ++i) xy[2 * i] = points[i].x, xy[2 * i + 1] = points[i].y;
  std::memcpy(triangles.mutable_data(), tri, static_cast<size_t>(m) * sizeof(FE3Ang));
  GlobalUnlock(split.nodes);
  GlobalUnlock(split.triangles);
  return {nodes, triangles};
}

py::tuple Section_Mesh(Py_Section& p, int elements) {
  if (elements < 10 || elements > 200000) throw Section_Error("elements: expected 10 to 200000");
  Split_Blocks m;
  std::string error;
  bool ok;
  {
    py::gil_scoped_release release;
    std::lock_guard<std::mutex> lock(p.busy);
    ok = Split(p, elements, &m, &error);
  }
  if (!ok) throw Section_Error(p.section->name + ": " + error);
  auto [nodes, triangles] = Mesh_Arrays(m.split);
  return py::make_tuple(nodes, triangles);
}

// The torsion analysis refined from a split of about elements / 4
// triangles to a bound gap of `gap` (budget `max_elements`): its last
// mesh, the shear stresses (tau_x, tau_y) per triangle for the torque,
// the largest stress sampled at every element node, J and its bounds.
py::tuple Torsion_Stress(Py_Section& p, double torque, double gap, int elements, int max_elements) {
  if (!(std::isfinite(torque) && torque != 0))
    throw Section_Error("torque: expected a finite value other than 0");
  if (!(gap >= 1e-9 && gap <= 0.5)) throw Section_Error("gap: expected a value in [1e-9, 0.5]");
  if (elements < 10 || elements > 200000) throw Section_Error("elements: expected 10 to 200000");
  if (max_elements < elements || max_elements > 2000000)
    throw Section_Error("max_elements: expected elements to 2000000");
  Split_Blocks m;
  Torsion_Warping_Result t{};
  std::string error;
  bool ok;
  {
    py::gil_scoped_release release;
    std::lock_guard<std::mutex> lock(p.busy);
    ok = Split(p, std::max(10, elements / 4), &m, &error);
    if (ok) {
      Torsion_Warping_Options options{gap, max_elements, torque};
      ok = Calc_Torsion_Warping_On_Split(&p.section->surface, &m.split, &options, &t) !=
           TORSION_WARPING_FAILED;
      if (!ok) error = "the torsion analysis failed";
    }
  }
  if (!ok) throw Section_Error(p.section->name + ": " + error);
  auto [nodes, triangles] = Mesh_Arrays(m.split);
  py::ssize_t count = m.split.triangle_count;
  py::array_t<double> stress({count, py::ssize_t{2}});
  const auto* tx = static_cast<const double*>(GlobalLock(m.split.tau_x));
  const auto* ty = static_cast<const double*>(GlobalLock(m.split.tau_y));
  if (tx && ty) {
    double* out = stress.mutable_data();
    for (py::ssize_t i = 0; i < count; ++i) out[2 * i] = tx[i], out[2 * i + 1] = ty[i];
  }
  if (tx) GlobalUnlock(m.split.tau_x);
  if (ty) GlobalUnlock(m.split.tau_y);
  if (!tx || !ty) throw Section_Error(p.section->name + ": the torsion stresses are missing");
  return py::make_tuple(nodes, triangles, stress, t.max_shear_stress, t.J, t.J_lower, t.J_upper);
}

// A section library opened from Python, changed only through the safe
// path (a change happens whole or leaves the file as it was). Calls hold
// the GIL: they are file operations of a few milliseconds.
struct Py_Library {
  std::string path;
  Library lib;
};

std::unique_ptr<Py_Library> Open_Library(const std::string& path, bool create) {
  auto l = std::make_unique<Py_Library>();
  l->path = Library_Path(path);
  std::string error;
  if (!l->lib.Open(l->path, create, &error)) throw Section_Error(l->path + ": " + error);
  return l;
}

int Library_Index(Py_Library& l, const std::string& name) {
  std::string error;
  int index = l.lib.Find(name, &error);
  if (index < 0) throw Section_Error(l.path + ": " + error);
  return index;
}

std::shared_ptr<Py_Section> Library_Get(Py_Library& l, const std::string& name) {
  std::string error;
  auto s = l.lib.Get(Library_Index(l, name), &error);
  if (!s) throw Section_Error(l.path + ": " + error);
  return Wrap(std::move(s));
}

// Adds the section (under `name` when given), or replaces the one of that
// name with `replace`.
void Library_Add(Py_Library& l, Py_Section& p, const std::string& name, bool replace) {
  std::lock_guard<std::mutex> lock(p.busy);
  std::string error, own = p.section->name;
  if (!name.empty()) p.section->name = name;
  bool ok = l.lib.Add(*p.section, replace, &error);
  p.section->name = own;
  if (!ok) throw Section_Error(l.path + ": " + error);
}

void Library_Remove(Py_Library& l, const std::string& name) {
  std::string error;
  if (!l.lib.Remove(Library_Index(l, name), &error)) throw Section_Error(l.path + ": " + error);
}

}  // namespace

PYBIND11_MODULE(_tessaline, m) {
  m.doc() = "Compiled core of the tessaline package; use the tessaline package instead.";
  py::register_exception<Section_Error>(m, "SectionError", PyExc_ValueError);
  py::class_<Py_Section, std::shared_ptr<Py_Section>>(m, "Section")
      .def_property_readonly("name", [](const Py_Section& p) { return p.section->name; })
      .def("pieces", &Pieces)
      .def("_mesh", &Section_Mesh, py::arg("elements"))
      .def("_torsion_stress", &Torsion_Stress, py::arg("torque"), py::arg("gap"),
           py::arg("elements"), py::arg("max_elements"));
  py::class_<Py_Library>(m, "_Library")
      .def(py::init(&Open_Library), py::arg("path"), py::arg("create"))
      .def_property_readonly("path", [](const Py_Library& l) { return l.path; })
      .def_property_readonly("description", [](const Py_Library& l) { return l.lib.Description(); })
      .def("__len__", [](const Py_Library& l) { return l.lib.Count(); })
      .def("names", [](Py_Library& l) { return l.lib.Names(); })
      .def("get", &Library_Get, py::arg("name"))
      .def("add", &Library_Add, py::arg("section"), py::arg("name"), py::arg("replace"))
      .def("remove", &Library_Remove, py::arg("name"));
  m.def("from_source", &From_Source, py::arg("source"));
  m.def("from_dxf", &From_Dxf, py::arg("path"));
  m.def("from_coordinates", &From_Coordinates, py::arg("outline"), py::arg("holes"),
        py::arg("name"));
  m.def("analyze", &Analyze, py::arg("section"), py::arg("torsion"), py::arg("gap"));
  m.def("draw", &Draw, py::arg("section"), py::arg("path"), py::arg("width"), py::arg("height"),
        py::arg("mesh"), py::arg("torsion_stress"), py::arg("elements"));
}
