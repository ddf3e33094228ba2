// The movable-memory handle table.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "support/capture.h"

TEST(Memory, AllocZeroFillsLocksAndFrees) {
  Leak_Check leaks;
  HGLOBAL h = GlobalAlloc(GHND, 64);
  ASSERT_NE(h, 0u);
  EXPECT_EQ(GlobalSize(h), 64u);
  auto* p = static_cast<unsigned char*>(GlobalLock(h));
  ASSERT_NE(p, nullptr);
  for (int i = 0; i < 64; ++i) EXPECT_EQ(p[i], 0) << i;
  EXPECT_EQ(GlobalLockCount(h), 1);
  EXPECT_NE(GlobalLock(h), nullptr);
  EXPECT_EQ(GlobalLockCount(h), 2);
  EXPECT_TRUE(GlobalUnlock(h));   // still locked once
  EXPECT_FALSE(GlobalUnlock(h));  // unlocked now
  EXPECT_FALSE(GlobalUnlock(h));  // was not locked
  EXPECT_EQ(GlobalFree(h), 0u);
}

TEST(Memory, FreedStaleAndMadeUpHandlesNeverReachABlock) {
  Leak_Check leaks;
  HGLOBAL a = GlobalAlloc(GHND, 16);
  ASSERT_NE(a, 0u);
  GlobalFree(a);
  // A new block may land in the same slot; the stale handle must not reach it.
  std::vector<HGLOBAL> fresh;
  for (int i = 0; i < 100; ++i) fresh.push_back(GlobalAlloc(GHND, 16));
  EXPECT_EQ(GlobalLock(a), nullptr);
  EXPECT_EQ(GlobalSize(a), 0u);
  EXPECT_EQ(GlobalFree(a), a);  // failure returns the handle
  EXPECT_EQ(GlobalReAlloc(a, 32, GMEM_MOVEABLE), 0u);
  EXPECT_EQ(GlobalLockCount(a), -1);
  for (HGLOBAL made_up : {0u, 1u, 0xFFFFFFFFu, 0x00400001u, 0x12345678u, fresh[5] ^ (1u << 22)}) {
    EXPECT_EQ(GlobalLock(made_up), nullptr) << made_up;
    EXPECT_FALSE(GlobalUnlock(made_up));
  }
  for (HGLOBAL h : fresh) EXPECT_EQ(GlobalFree(h), 0u);
}

TEST(Memory, ReAllocKeepsContentsAndZeroFillsGrowth) {
  Leak_Check leaks;
  HGLOBAL h = GlobalAlloc(GHND, 8);
  std::memset(GlobalLock(h), 0xAB, 8);
  GlobalUnlock(h);
  // Grow one byte at a time, far past the first spare room.
  for (SIZE_T n = 9; n <= 4096; ++n) ASSERT_EQ(GlobalReAlloc(h, n, GMEM_MOVEABLE), h);
  auto* p = static_cast<unsigned char*>(GlobalLock(h));
  for (int i = 0; i < 8; ++i) EXPECT_EQ(p[i], 0xAB);
  for (int i = 8; i < 4096; ++i) ASSERT_EQ(p[i], 0) << i;
  std::memset(p, 0xCD, 4096);
  GlobalUnlock(h);
  // Shrinking then growing again must not bring old bytes back.
  ASSERT_EQ(GlobalReAlloc(h, 4, GMEM_MOVEABLE), h);
  ASSERT_EQ(GlobalReAlloc(h, 100, GMEM_MOVEABLE), h);
  p = static_cast<unsigned char*>(GlobalLock(h));
  for (int i = 0; i < 4; ++i) EXPECT_EQ(p[i], 0xCD);
  for (int i = 4; i < 100; ++i) ASSERT_EQ(p[i], 0) << i;
  GlobalUnlock(h);
  GlobalFree(h);
}

TEST(Memory, BoundsAndInjectedFailures) {
  Leak_Check leaks;
  EXPECT_EQ(GlobalAlloc(GHND, SIZE_T{1} << 40), 0u);  // beyond the table's bound
  HGLOBAL empty = GlobalAlloc(GHND, 0);
  ASSERT_NE(empty, 0u);
  EXPECT_EQ(GlobalLock(empty), nullptr);  // a block of no bytes locks to null
  GlobalFree(empty);

  SetGlobalAllocFailure(2);
  HGLOBAL first = GlobalAlloc(GHND, 8);
  EXPECT_NE(first, 0u);
  EXPECT_EQ(GlobalAlloc(GHND, 8), 0u);  // the second one fails
  HGLOBAL third = GlobalAlloc(GHND, 8);
  EXPECT_NE(third, 0u);  // and only that one
  SetGlobalAllocFailure(1);
  EXPECT_EQ(GlobalReAlloc(first, 1 << 20, GMEM_MOVEABLE), 0u);
  EXPECT_EQ(GlobalSize(first), 8u);  // unchanged on failure
  SetGlobalAllocFailure(0);
  GlobalFree(first);
  GlobalFree(third);
}

TEST(Memory, RandomAllocFreeKeepsEveryBlockItsOwn) {
  Leak_Check leaks;
  std::mt19937 rng(7);
  std::vector<std::pair<HGLOBAL, unsigned char>> live;
  for (int step = 0; step < 5000; ++step) {
    if (live.empty() || rng() % 3) {
      auto tag = static_cast<unsigned char>(rng());
      SIZE_T n = 1 + rng() % 200;
      HGLOBAL h = GlobalAlloc(GHND, n);
      std::memset(GlobalLock(h), tag, n);
      GlobalUnlock(h);
      live.push_back({h, tag});
    } else {
      size_t k = rng() % live.size();
      auto [h, tag] = live[k];
      auto* p = static_cast<unsigned char*>(GlobalLock(h));
      ASSERT_NE(p, nullptr);
      for (SIZE_T i = 0; i < GlobalSize(h); ++i) ASSERT_EQ(p[i], tag);
      GlobalUnlock(h);
      GlobalFree(h);
      EXPECT_EQ(GlobalLock(h), nullptr);
      live.erase(live.begin() + static_cast<long>(k));
    }
  }
  for (auto& [h, tag] : live) GlobalFree(h);
}

TEST(MessageBox, HandlerReceivesBoxesAndCanBeRestored) {
  {
    Box_Capture capture;
    EXPECT_EQ(MessageBoxA(nullptr, "text", "caption", MB_ICONHAND), IDOK);
    MessageBeep(0);
    ASSERT_EQ(capture.shown().size(), 1u);
    EXPECT_EQ(capture.shown()[0].text, "text");
    EXPECT_EQ(capture.shown()[0].caption, "caption");
    EXPECT_EQ(capture.shown()[0].type, MB_ICONHAND);
    EXPECT_EQ(capture.beep_count(), 1);
  }
  // Null restores the default handler, which answers IDOK.
  MessageBoxHandler previous = SetMessageBoxHandler(nullptr);
  EXPECT_NE(previous, nullptr);
  SetMessageBoxHandler(previous);
}
