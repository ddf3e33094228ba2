// A host that passes garbage: stale and made-up handles, blocks that are not
// records, records whose counts and inner handles lie, arrays whose counts
// lie, extreme indexes. Every call must answer with a failure value or a
// bounded result; the sanitizer build turns any read or write outside a
// block into a failure here.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <random>
#include <vector>

#include "support/capture.h"
#include "support/surface.h"

namespace {

// A record whose fields are overwritten after construction.
HGLOBAL Corrupt(HGLOBAL h, void (*edit)(Element_Record&)) {
  edit(*static_cast<Element_Record*>(GlobalLock(h)));
  GlobalUnlock(h);
  return h;
}

}  // namespace

TEST(HostileHost, GarbageHandlesIndexesAndArraysNeverEscapeTheirBlocks) {
  Box_Capture boxes;  // guard boxes are expected; keep them off the terminal
  std::mt19937 rng(20261122);
  std::vector<HGLOBAL> blocks;  // every block made here, freed at the end
  const double xs[5] = {0, 10, 10, 0, 0}, ys[5] = {0, 0, 10, 10, 0};

  // Sound elements of every type.
  std::vector<HGLOBAL> pool = {Create_Point(1, 2),         Create_Line(0, 0, 10, 0),
                               Create_Polyline(5, xs, ys), Create_Circle(5, 5, 3),
                               Create_Arc(5, 5, 3, 0, 2),  Create_Spline(5, xs, ys, xs, ys)};
  Set_Arc_Ends(pool[4], 8, 5, 5 + 3 * std::cos(2.0), 5 + 3 * std::sin(2.0));
  // Records that lie: counts far beyond their blocks, inner handles that are
  // stale, made up, or another element's record.
  HGLOBAL freed = GlobalAlloc(GHND, 64);
  GlobalFree(freed);
  pool.push_back(
      Corrupt(Create_Polyline(2, xs, ys), [](Element_Record& r) { r.u.poly.n = INT_MAX; }));
  pool.push_back(Corrupt(Create_Spline(3, xs, ys, nullptr, nullptr),
                         [](Element_Record& r) { r.u.spline.n = 1 << 20; }));
  HGLOBAL lying_nodes = Create_Polyline(3, xs, ys);
  HGLOBAL lost_nodes = Corrupt(Create_Polyline(3, xs, ys), [](Element_Record& r) {
    r.u.poly.nodes = 0xDEAD0001;
    r.attr = 7;
  });
  pool.push_back(lost_nodes);
  pool.push_back(lying_nodes);
  HGLOBAL wrong_block = Create_Spline(4, xs, ys, nullptr, nullptr);
  {
    auto* r = static_cast<Element_Record*>(GlobalLock(wrong_block));
    r->u.spline.x = pool[0];  // a point record as the x block
    r->u.spline.n = 1000;
    GlobalUnlock(wrong_block);
  }
  pool.push_back(wrong_block);
  pool.push_back(Corrupt(Create_Line(0, 0, 1, 1), [](Element_Record& r) { r.type = 77; }));
  pool.push_back(Corrupt(Create_Line(0, 0, 1, 1), [](Element_Record& r) { r.type = -3; }));
  pool.push_back(GlobalAlloc(GHND, 12));  // a block too small to be a record
  pool.push_back(GlobalAlloc(GHND, 0));
  for (HGLOBAL h : pool) blocks.push_back(h);
  pool.insert(pool.end(), {HGLOBAL{0}, freed, HGLOBAL{0xFFFFFFFF}, HGLOBAL{0x00400001}});

  const int indexes[] = {0, 1, 2, 4, 5, 9, -1, -7, INT_MAX, INT_MIN, 1 << 20};
  auto pick = [&] { return pool[rng() % pool.size()]; };
  auto index = [&] { return indexes[rng() % std::size(indexes)]; };

  Surface canvas(64, 64);
  Coord_Syst cs{};
  cs.world = {-5, -5, 30, 30};
  cs.window = {0, 64, 64, -64};
  COLORREF colours[11];
  Set_Object_Colors(0, colours);

  for (int step = 0; step < 20000; ++step) {
    HGLOBAL h = pick();
    double x = 0, y = 0, a = 0, b = 0;
    switch (rng() % 14) {
      case 0:
        Get_Element_Type_by_Handle(h);
        Get_Element_Attribute(h);
        break;
      case 1:
        Set_Element_Select_Attribute(h, static_cast<int>(rng()));
        break;
      case 2:
        Set_Element_Active_Attribute(h, index(), 1);
        break;
      case 3:
        Set_Element_Edit_Attribute(h, index(), 1);
        break;
      case 4:
        Get_El_Node_Coord_by_Handle(h, index(), &x, &y);
        break;
      case 5:
        Set_Polyline_Node_Coord_by_Handle(h, index(), 1, 1);
        break;
      case 6:
        Set_Spline_Node_Coord_by_Handle(h, index(), 1, 1);
        break;
      case 7:
        Get_Parent(h, index());
        Write_Parent(h, pick(), index());
        break;
      case 8:
        Get_Element_Rect(h, &x, &y, &a, &b);
        break;
      case 9:
        Calc_Spline_Coef(h);
        break;
      case 10:
        Draw_Element(h, canvas.dc(), &cs, colours);
        break;
      case 11: {
        HGLOBAL copy = Create_Element_Copy(h);
        if (copy) Delete_Element(copy);  // a copy is built from bounded data
        break;
      }
      case 12:
        Cut_Parent_Link(h, pick());
        Get_Polyline_Node_Num(h);
        break;
      default: {
        // An array of random pool handles whose count may lie.
        Objects_Array_Type array = {};
        int n = 1 + static_cast<int>(rng() % 12);
        for (int i = 0; i < n; ++i) Add_Element_In_Array_by_Handle(&array, pick());
        if (rng() % 3 == 0) array.count = static_cast<int32_t>(rng() % 1000000);
        Contour_Type contour = {};
        Search_Contour(&array, pick(), &contour);
        Delete_El_Contour(&contour);
        Surface_Type surface = {};
        Make_Surface_From_Objects(&array, &surface);
        Is_Point_In_Surface(&surface, 5, 5);
        Delete_Surface(&surface);
        Draw_Objects(canvas.dc(), &cs, &array, colours);
        // A contour and a surface whose counts and blocks lie.
        Contour_Type lying_contour = {static_cast<int32_t>(rng() % 100),
                                      static_cast<int32_t>(rng() % 100), pick()};
        Is_Point_In_Contour(&lying_contour, 5, 5);
        Find_Contour_Direction(&lying_contour, 0, &x, &y);
        Surface_Type lying = {
            static_cast<int32_t>(rng() % 50), static_cast<int32_t>(rng() % 50), pick(),
            static_cast<int32_t>(rng() % 50), static_cast<int32_t>(rng() % 50), pick()};
        Is_Point_In_Surface(&lying, 5, 5);
        Get_Surface_Extern_Rect(&lying, &x, &y, &a, &b);
        Is_Surface_El(&lying, pick());
        CSurface_Segments segments;
        Make_Surface_Segments_Extended(&lying, &segments, 0, 0, 1);
        Get_Element_Handle_by_Index(&array, index());
        Get_Element_Index_by_Handle(&array, pick());
        Delete_Element_by_Index(&array, index());
        DeleteObjectsArray_Without_El_Deleting(&array);
        break;
      }
    }
  }
  for (HGLOBAL h : blocks) GlobalFree(h);
}

// ---- Editing, attached objects and nearest queries -------------------------

namespace {

// Sound elements of every kind, records that lie, blocks that are no
// records, and handles that name nothing; the blocks made are in `owned`.
std::vector<HGLOBAL> Editing_Pool(std::vector<HGLOBAL>& owned) {
  const double xs[5] = {0, 10, 10, 0, 0}, ys[5] = {0, 0, 10, 10, 0};
  std::vector<HGLOBAL> pool = {Create_Point(1, 2),         Create_Line(0, 0, 10, 0),
                               Create_Polyline(5, xs, ys), Create_Circle(5, 5, 3),
                               Create_Arc(5, 5, 3, 0, 2),  Create_Spline(5, xs, ys, xs, ys)};
  HGLOBAL aux = Create_Line(0, 5, 10, 5);
  Corrupt(aux, [](Element_Record& r) { r.attr = 0; });
  pool.push_back(aux);
  pool.push_back(
      Corrupt(Create_Polyline(2, xs, ys), [](Element_Record& r) { r.u.poly.n = INT_MAX; }));
  pool.push_back(Corrupt(Create_Spline(3, xs, ys, nullptr, nullptr),
                         [](Element_Record& r) { r.u.spline.n = 1 << 20; }));
  pool.push_back(Corrupt(Create_Polyline(3, xs, ys), [](Element_Record& r) {
    r.u.poly.nodes = 0xDEAD0001;
    r.attr = 7;
  }));
  pool.push_back(Corrupt(Create_Line(0, 0, 1, 1), [](Element_Record& r) {
    r.creation_type = 29;
    r.parent_count = 1 << 30;  // a list far shorter than it claims
  }));
  pool.push_back(Corrupt(Create_Circle(0, 0, NAN), [](Element_Record& r) { r.type = 77; }));
  pool.push_back(GlobalAlloc(GHND, 12));
  owned = pool;
  // A link list for the lying record, and parents among the pool.
  Corrupt(pool[11], [](Element_Record& r) { r.parents = GlobalAlloc(GHND, 8); });
  for (HGLOBAL h : {pool[0], pool[1], pool[3]}) {
    Write_Creation_Type(h, 5);
    Alloc_Parent(h, 2);
  }
  HGLOBAL freed = GlobalAlloc(GHND, 64);
  GlobalFree(freed);
  pool.insert(pool.end(), {HGLOBAL{0}, freed, HGLOBAL{0xFFFFFFFF}});
  return pool;
}

}  // namespace

TEST(HostileHost, EditingAndNearestQueriesAnswerGarbageWithTheirFailureValues) {
  Box_Capture boxes;
  std::mt19937 rng(20261124);
  std::vector<HGLOBAL> owned;
  std::vector<HGLOBAL> pool = Editing_Pool(owned);
  auto pick = [&] { return pool[rng() % pool.size()]; };
  const int indexes[] = {0, 1, 3, 6, 11, -1, INT_MAX, INT_MIN, 1 << 20};
  std::vector<int> list(64);

  Surface canvas(64, 64);
  Coord_Syst views[3] = {};
  views[0].world = {-5, -5, 30, 30};
  views[0].window = {0, 64, 64, -64};
  views[1] = views[0];
  views[1].unused_a[0] = NAN;     // an aperture that is not a number
  views[2].world = {0, 0, 0, 0};  // a view of nothing: every scale divides by zero
  COLORREF colours[11];
  Set_Object_Colors(0, colours);

  for (int step = 0; step < 3000; ++step) {
    // Arrays of pool handles whose counts may lie, a list of indexes that
    // may name nothing, and a list count that may exceed the array.
    Objects_Array_Type a = {}, b = {}, out = {}, other = {};
    int n = static_cast<int>(rng() % 10);
    for (int i = 0; i < n; ++i) Add_Element_In_Array_by_Handle(&a, pick());
    for (int i = 0; i < 4; ++i) Add_Element_In_Array_by_Handle(&b, pick());
    if (rng() % 3 == 0) a.count = static_cast<int32_t>(rng() % 1000000);
    for (int& i : list) i = indexes[rng() % std::size(indexes)];
    int count = static_cast<int>(rng() % list.size());
    const Coord_Syst* cs = &views[rng() % 3];
    double x = 5, y = 5, d = 0;
    int index = 0, part = 0;
    switch (rng() % 6) {
      case 0:
        Select_Elements(canvas.dc(), &a, cs, x, y, colours);
        Unselect_All_Elements(&a, canvas.dc(), cs, colours);
        Get_Selected_Elem_Index(&a, list.data());
        break;
      case 1:
        Copy_ObjAr_by_Index(&a, &out, list.data(), count);
        Move_Objects(&a, 1, -1);
        Move_Objects_by_Index(&a, list.data(), count, -1, 1);
        Add_Objects_by_Selected_Attr(&out, &other, &a, static_cast<int>(rng()));
        break;
      case 2: {
        Create_Moved_iObjects(&a, cs, &out);
        Draw_iObjects_with_Disp(canvas.dc(), &out, static_cast<int32_t>(rng()), 3, colours[3]);
        DeleteiObjectsArray(&out);
        Draw_iObjects_with_Disp(canvas.dc(), &a, 0, 0, colours[3]);  // records are no copies
        break;
      }
      case 3:
        Do_Objects_Attach_Moving(&a, &b);
        Do_Objects_Attach_Moving(&b, &a);
        Change_All_Childs(pick(), pick(), static_cast<int>(rng()), &a, &b);
        Create_Same_Objects_With_Attach(&a, &out, static_cast<int>(rng()));
        Create_Analog_Attach(&a, &out, &out);
        Create_Analog_Attach(&b, &a, &out);
        DeleteObjectsArray(&out);
        break;
      case 4:
        Get_Nearest_Segment_End(&a, x, y, &d);
        Get_Nearest_Circle(&a, x, y, &d);
        Get_Nearest_Circle_Besides1(&a, x, y, &d, pick());
        Get_Nearest_Line(&a, x, y);
        Get_Nearest_Line_Besides1(&a, x, y, pick());
        Get_Nearest_Segment(&a, x, y, &d);
        Get_Nearest_Arc(&a, x, y);
        SQNearest_Element_Point(&a, x, y, &index, &part, &d);
        SQDist_Element_Point(pick(), x, y, &part);
        break;
      default: {
        Objects_Array_Type sets[2] = {a, b};
        int layer = indexes[rng() % 6] % 2;  // 0, 1 or -1
        SQNearest_Circle_Point_In_Layer(sets, sets + 1, layer % 1, x, y, &d);
        SQNearest_Cir_P_In_Layer_Bes1(sets, nullptr, layer, x, y, pick(), &d);
        SQNearest_El_Node_Point_In_Layer(sets, sets, layer, x, y, &x, &y, &d);
        SQNear_El_Node_Point_In_Layer(nullptr, sets, layer, x, y, &x, &y, &d);
        Nearest_Point_Point_In_Layer(sets, sets, layer, x, y, &d);
        Nearest_Point_P_In_Layer_Bes1(sets, sets, layer, x, y, pick(), &d);
        break;
      }
    }
    // Deleting takes elements out of the pool for good: now and then only.
    if (rng() % 50 == 0) Delete_Elements(&a, &b, &a);
    for (auto* arr : {&a, &b, &out, &other}) DeleteObjectsArray_Without_El_Deleting(arr);
  }
  for (HGLOBAL h : owned) {
    Delete_Element(h);
    GlobalFree(h);
  }
}
