// Progress of long computations (the finite-element split, the torsion
// solve). The library reports percentages to a sink that the host, or the
// command-line program, derives from; a null sink means nobody listens.
#pragma once

#include "tessaline/export.h"

// Stand-in for the progress dialog of the in-house dialog library. The base
// keeps the last position and does nothing else; a host overrides SetPos to
// move its bar. Positions run from 0 to 100: the split reports 0 to 50, the
// solve 50 to 100.
class TESSALINE_API CProgressDlg {
 public:
  CProgressDlg() = default;
  CProgressDlg(const CProgressDlg&) = delete;
  CProgressDlg& operator=(const CProgressDlg&) = delete;
  virtual ~CProgressDlg();

  // Moves the bar to pos (clamped to 0..100); returns the previous position.
  virtual int SetPos(int pos);
  int GetPos() const { return m_nPos; }

 protected:
  int m_nPos = 0;
};
