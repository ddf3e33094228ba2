// Nearest-element queries: which element of an objects array lies nearest to
// a world point, for picking and snapping.
//
// Every search is a linear scan in array order with no tolerance of its own:
// the caller compares the returned distance with its aperture. The first
// element that qualifies sets the best; a later one replaces it only when
// strictly nearer, so of equally near elements the lower index wins.
// World millimetres; "SQ" functions give squared distances, the others plain
// ones. An array pointer may be null (no element). Elements that cannot be
// locked, or whose type does not fit the search, are passed over.
#pragma once

#include <cstdint>

#include "tessaline/export.h"
#include "tessaline/model/element.h"

// ---- Per-kind searches: the element's index, or -1 when none qualifies.
// Where there is an out distance it gets the best distance, 0.0 when none
// qualified (a null pointer is allowed). -----------------------------------

// Segments (type 2): the nearer of the two end points.
TESSALINE_API int Get_Nearest_Segment_End(const Objects_Array_Type* array, double x, double y,
                                          double* distance);
// Circles (type 4): distance to the circle (its radius for the centre).
TESSALINE_API int Get_Nearest_Circle(const Objects_Array_Type* array, double x, double y,
                                     double* distance);
// As Get_Nearest_Circle, passing over the circle whose handle is `excluded`.
TESSALINE_API int Get_Nearest_Circle_Besides1(const Objects_Array_Type* array, double x, double y,
                                              double* distance, HGLOBAL excluded);
// Construction lines: segments whose attribute bit 0x01 is clear, measured to
// the infinite line through their ends. An ordinary segment is never the
// answer, even when the point lies on it.
TESSALINE_API int Get_Nearest_Line(const Objects_Array_Type* array, double x, double y);
TESSALINE_API int Get_Nearest_Line_Besides1(const Objects_Array_Type* array, double x, double y,
                                            HGLOBAL excluded);
// Segments of either kind, squared distance: an ordinary segment (bit 0x01
// set) to its bounded piece, a construction line to its infinite line.
TESSALINE_API int Get_Nearest_Segment(const Objects_Array_Type* array, double x, double y,
                                      double* sq_distance);
// Arcs (type 5): distance to the arc between its angles.
TESSALINE_API int Get_Nearest_Arc(const Objects_Array_Type* array, double x, double y);

// ---- Over every kind -------------------------------------------------------

// Squared distance from (x, y) to one element, by its type:
//   1 point      to the point;
//   2 segment    to the bounded segment when bit 0x01 is set, else to the
//                infinite line through its ends;
//   3 polyline   to the nearest of its pieces (node i to node i + 1; a lower
//                piece wins a tie); a polyline of one node to that node;
//   4 circle     to the circle (the kernel's rule: r itself, not r^2, for the
//                centre);
//   5 arc        to the arc between its angles (r for the centre);
//   6 spline     to the curve as Draw_Element strokes it, a chain of chords
//                through the moment-form cubic of each piece at whole steps of
//                the accumulated chord length (kSpline_Pick_Strokes strokes a
//                piece on average); *part := the number of the nearest piece
//                (node i to node i + 1), a lower piece winning a tie.
// Only a spline writes *part (null allowed). -1.0 when the element has no
// distance: a handle that does not lock, another type code, a polyline or
// spline without nodes.
TESSALINE_API double SQDist_Element_Point(HGLOBAL h, double x, double y, int* part);

// Average number of chords a spline piece is measured with by
// SQDist_Element_Point: the sampling step is the spline's whole chord length
// over kSpline_Pick_Strokes times its piece count.
inline constexpr int kSpline_Pick_Strokes = 32;

// The element with the smallest SQDist_Element_Point over the whole array;
// lower index on a tie. Returns its handle with *index, *part (the piece of
// a polyline or spline, 0 for the other kinds) and *sq_distance. No element
// with a distance: handle 0, *index = -1, *part = -1, *sq_distance = -1.0.
// Any out pointer may be null.
TESSALINE_API HGLOBAL SQNearest_Element_Point(const Objects_Array_Type* array, double x, double y,
                                              int* index, int* part, double* sq_distance);

// ---- Layered searches ------------------------------------------------------
//
// A set of layers is a C array of objects arrays, one per layer; `layer`
// indexes both sets, which must hold at least layer + 1 arrays (a negative
// layer, or a null set, finds nothing there). Each runs its single-array
// search on layer `layer` of the second set and of the first set and returns
// the nearer element's handle: the first set's when both are equally near
// (the first set wins ties), 0 when neither set has one. The out distance is
// written only when an element is returned.

// Circles, squared distance to the circle.
TESSALINE_API HGLOBAL SQNearest_Circle_Point_In_Layer(const Objects_Array_Type* first,
                                                      const Objects_Array_Type* second, int layer,
                                                      double x, double y, double* sq_distance);
TESSALINE_API HGLOBAL SQNearest_Cir_P_In_Layer_Bes1(const Objects_Array_Type* first,
                                                    const Objects_Array_Type* second, int layer,
                                                    double x, double y, HGLOBAL excluded,
                                                    double* sq_distance);
// Nodes: points, segment ends, polyline and spline nodes, arc end points
// (Get_El_Node_Coord_by_Handle's nodes; circles have none). Squared
// distance; *node_x, *node_y := the nearest node (lower index, then lower
// node number, on a tie).
TESSALINE_API HGLOBAL SQNearest_El_Node_Point_In_Layer(const Objects_Array_Type* first,
                                                       const Objects_Array_Type* second, int layer,
                                                       double x, double y, double* node_x,
                                                       double* node_y, double* sq_distance);
// As SQNearest_El_Node_Point_In_Layer, with the centres of circles and arcs
// counted as nodes too (an arc's centre comes after its two ends).
TESSALINE_API HGLOBAL SQNear_El_Node_Point_In_Layer(const Objects_Array_Type* first,
                                                    const Objects_Array_Type* second, int layer,
                                                    double x, double y, double* node_x,
                                                    double* node_y, double* sq_distance);
// Point elements (type 1), plain distance.
TESSALINE_API HGLOBAL Nearest_Point_Point_In_Layer(const Objects_Array_Type* first,
                                                   const Objects_Array_Type* second, int layer,
                                                   double x, double y, double* distance);
TESSALINE_API HGLOBAL Nearest_Point_P_In_Layer_Bes1(const Objects_Array_Type* first,
                                                    const Objects_Array_Type* second, int layer,
                                                    double x, double y, HGLOBAL excluded,
                                                    double* distance);
