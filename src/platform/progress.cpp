// The progress sink's default: remember the position, show nothing.
#include "tessaline/platform/progress.h"

CProgressDlg::~CProgressDlg() = default;

int CProgressDlg::SetPos(int pos) {
  int previous = m_nPos;
  m_nPos = pos < 0 ? 0 : (pos > 100 ? 100 : pos);
  return previous;
}
