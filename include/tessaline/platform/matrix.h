// Small dense vectors and matrices: the stand-in of the in-house matrix
// library that the plane-stress element functions are written against.
// Indexes run from 0; a matrix is a list of rows, each row a dvect.
#pragma once

#include <cstddef>
#include <vector>

#include "tessaline/export.h"

class CProgressDlg;
class dmatrix;

class TESSALINE_API dvect {
 public:
  explicit dvect(int n = 0);

  int Size() const { return static_cast<int>(m_v.size()); }
  // Entry i; the caller keeps i inside 0 .. Size()-1.
  double& operator[](int i) { return m_v[static_cast<std::size_t>(i)]; }
  double operator[](int i) const { return m_v[static_cast<std::size_t>(i)]; }
  // Every entry set to v.
  void SetValue(double v);
  // this = m * v, resized to m's row count. 1 done; 0 (nothing changed)
  // when m's column count is not v's size.
  int MulMatrVect(const dmatrix& m, const dvect& v);

 private:
  std::vector<double> m_v;
};

class TESSALINE_API dmatrix {
 public:
  // rows x columns zeros (a negative count counts as 0). The progress
  // dialog is accepted for the interface's sake and never used.
  dmatrix(int rows, int columns, CProgressDlg* progress = nullptr);

  // Row and column counts into the pointers that are not null; returns the
  // number of entries.
  int Size(int* rows, int* columns) const;
  int Rows() const { return static_cast<int>(m_rows.size()); }
  int Columns() const { return m_columns; }
  // Every entry set to v.
  void SetValue(double v);
  // Row i as a vector; the caller keeps i inside 0 .. Rows()-1.
  dvect& operator[](int i) { return m_rows[static_cast<std::size_t>(i)]; }
  const dvect& operator[](int i) const { return m_rows[static_cast<std::size_t>(i)]; }
  dmatrix& operator*=(double f);
  // this = left * right, resized to left's rows by right's columns. 1 done;
  // 0 (nothing changed) when left's column count is not right's row count.
  int Mul2Matrix(const dmatrix& left, const dmatrix& right);

 private:
  std::vector<dvect> m_rows;
  int m_columns;
};
