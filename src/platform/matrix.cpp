// Dense vectors and matrices of the matrix-library stand-in.
#include "tessaline/platform/matrix.h"

#include <algorithm>

dvect::dvect(int n) : m_v(static_cast<size_t>(std::max(n, 0)), 0.0) {}

void dvect::SetValue(double v) {
  std::fill(m_v.begin(), m_v.end(), v);
}

int dvect::MulMatrVect(const dmatrix& m, const dvect& v) {
  if (m.Columns() != v.Size()) return 0;
  std::vector<double> out(static_cast<size_t>(m.Rows()), 0.0);
  for (int i = 0; i < m.Rows(); ++i) {
    double s = 0.0;
    for (int j = 0; j < v.Size(); ++j) s += m[i][j] * v[j];
    out[static_cast<size_t>(i)] = s;
  }
  m_v = std::move(out);  // v may be this vector
  return 1;
}

dmatrix::dmatrix(int rows, int columns, CProgressDlg* /*progress*/)
    : m_rows(static_cast<size_t>(std::max(rows, 0)), dvect(std::max(columns, 0))),
      m_columns(std::max(columns, 0)) {}

int dmatrix::Size(int* rows, int* columns) const {
  if (rows) *rows = Rows();
  if (columns) *columns = m_columns;
  return Rows() * m_columns;
}

void dmatrix::SetValue(double v) {
  for (dvect& r : m_rows) r.SetValue(v);
}

dmatrix& dmatrix::operator*=(double f) {
  for (dvect& r : m_rows) {
    for (int j = 0; j < m_columns; ++j) r[j] *= f;
  }
  return *this;
}

int dmatrix::Mul2Matrix(const dmatrix& left, const dmatrix& right) {
  if (left.Columns() != right.Rows()) return 0;
  dmatrix out(left.Rows(), right.Columns());
  for (int i = 0; i < left.Rows(); ++i) {
    for (int k = 0; k < left.Columns(); ++k) {
      const double a = left[i][k];
      for (int j = 0; j < right.Columns(); ++j) out[i][j] += a * right[k][j];
    }
  }
  *this = std::move(out);  // left or right may be this matrix
  return 1;
}
