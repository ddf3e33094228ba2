// Framework stand-ins for a device context and a rectangle: thin wrappers
// over the handle calls, with the framework's names.
#pragma once

#include "tessaline/platform/dib.h"
#include "tessaline/platform/gdi.h"
#include "tessaline/platform/win_types.h"

class CRect : public RECT {
 public:
  CRect() : RECT{0, 0, 0, 0} {}
  CRect(int l, int t, int r, int b) : RECT{l, t, r, b} {}
  explicit CRect(const RECT& r) : RECT(r) {}
  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  operator RECT*() { return this; }
  operator const RECT*() const { return this; }
};

// A device context object. It owns the context it made with
// CreateCompatibleDC (freed by DeleteDC or the destructor); a context given
// to Attach stays the caller's.
class CDC {
 public:
  CDC() = default;
  explicit CDC(HDC dc) : m_hDC(dc) {}
  ~CDC() {
    if (m_hDC && owned_) ::DeleteDC(m_hDC);
  }
  CDC(const CDC&) = delete;
  CDC& operator=(const CDC&) = delete;

  HDC m_hDC = nullptr;

  HDC GetSafeHdc() const { return m_hDC; }
  operator HDC() const { return m_hDC; }
  BOOL Attach(HDC dc) {
    if (m_hDC || !dc) return FALSE;
    m_hDC = dc;
    owned_ = false;
    return TRUE;
  }
  HDC Detach() {
    HDC dc = m_hDC;
    m_hDC = nullptr;
    owned_ = false;
    return dc;
  }
  BOOL CreateCompatibleDC(CDC* dc) {
    if (m_hDC) return FALSE;
    m_hDC = ::CreateCompatibleDC(dc ? dc->m_hDC : nullptr);
    owned_ = m_hDC != nullptr;
    return m_hDC ? TRUE : FALSE;
  }
  BOOL DeleteDC() {
    if (!m_hDC) return FALSE;
    BOOL ok = owned_ ? ::DeleteDC(m_hDC) : TRUE;
    m_hDC = nullptr;
    owned_ = false;
    return ok;
  }
  HGDIOBJ SelectObject(HGDIOBJ obj) { return ::SelectObject(m_hDC, obj); }
  HPALETTE SelectPalette(HPALETTE p, BOOL background) {
    return ::SelectPalette(m_hDC, p, background);
  }
  UINT RealizePalette() { return ::RealizePalette(m_hDC); }
  int SaveDC() { return ::SaveDC(m_hDC); }
  BOOL RestoreDC(int level) { return ::RestoreDC(m_hDC, level); }
  int SetStretchBltMode(int mode) { return ::SetStretchBltMode(m_hDC, mode); }
  BOOL BitBlt(int x, int y, int w, int h, CDC* src, int xs, int ys, DWORD rop) {
    return ::BitBlt(m_hDC, x, y, w, h, src ? src->m_hDC : nullptr, xs, ys, rop);
  }
  int GetDeviceCaps(int index) const { return ::GetDeviceCaps(m_hDC, index); }
  BOOL Rectangle(int l, int t, int r, int b) { return ::Rectangle(m_hDC, l, t, r, b); }
  COLORREF GetPixel(int x, int y) const { return ::GetPixel(m_hDC, x, y); }

 private:
  bool owned_ = false;
};
