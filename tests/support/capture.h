// Test helpers: capture the message boxes and beeps the library shows, and
// check that a test leaves no memory block behind.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <tessaline/tessaline.h>

struct Shown_Box {
  std::string text;
  std::string caption;
  UINT type;
};

// While alive, every MessageBoxA is recorded instead of printed and every
// MessageBeep is counted.
class Box_Capture {
 public:
  Box_Capture() {
    boxes().clear();
    beeps() = 0;
    previous_box_ = SetMessageBoxHandler(&Record);
    previous_beep_ = SetMessageBeepHandler(&Count);
  }
  ~Box_Capture() {
    SetMessageBoxHandler(previous_box_);
    SetMessageBeepHandler(previous_beep_);
  }
  const std::vector<Shown_Box>& shown() const { return boxes(); }
  int beep_count() const { return beeps(); }
  // True when exactly the element guard ("Messsage" / "pElem==NULL") was shown n times.
  bool guard_shown(size_t n) const {
    if (boxes().size() != n) return false;
    for (const auto& b : boxes()) {
      if (b.text != "Messsage" || b.caption != "pElem==NULL" || b.type != MB_OK) return false;
    }
    return true;
  }

 private:
  static std::vector<Shown_Box>& boxes() {
    static std::vector<Shown_Box> v;
    return v;
  }
  static int& beeps() {
    static int n = 0;
    return n;
  }
  static int Record(HWND, const char* text, const char* caption, UINT type) {
    boxes().push_back({text ? text : "", caption ? caption : "", type});
    return IDOK;
  }
  static void Count(UINT) { ++beeps(); }

  MessageBoxHandler previous_box_;
  MessageBeepHandler previous_beep_;
};

// Fails the test when the number of live memory blocks differs at the end.
class Leak_Check {
 public:
  Leak_Check() : before_(GlobalBlockCount()) {}
  ~Leak_Check() { EXPECT_EQ(GlobalBlockCount(), before_) << "memory blocks leaked"; }

 private:
  long before_;
};
