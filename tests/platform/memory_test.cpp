// The movable-memory handle table.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "support/capture.h"

namespace {

void Fill(HGLOBAL h, SIZE_T n, unsigned char v) {
  std::memset(GlobalLock(h), v, n);
  GlobalUnlock(h);
}

// Whether the block locks and bytes [from, to) all hold v.
bool Bytes_Are(HGLOBAL h, SIZE_T from, SIZE_T to, unsigned char v) {
  auto* p = static_cast<unsigned char*>(GlobalLock(h));
  bool same = p != nullptr;
  for (SIZE_T i = from; same && i < to; ++i) same = p[i] == v;
  if (p) GlobalUnlock(h);
  return same;
}

}  // namespace

TEST(Memory, AllocAndReAllocZeroFillAndKeepContents) {
  Leak_Check leaks;
  HGLOBAL h = GlobalAlloc(GHND, 8);
  EXPECT_TRUE(Bytes_Are(h, 0, 8, 0));
  // Locks nest: unlocking answers TRUE while the block stays locked.
  GlobalLock(h);
  GlobalLock(h);
  EXPECT_TRUE(GlobalUnlock(h));
  EXPECT_FALSE(GlobalUnlock(h));
  EXPECT_FALSE(GlobalUnlock(h));  // was not locked
  Fill(h, 8, 0xAB);
  // Grow one byte at a time, far past the first spare room.
  for (SIZE_T n = 9; n <= 4096; ++n) ASSERT_EQ(GlobalReAlloc(h, n, GMEM_MOVEABLE), h);
  EXPECT_TRUE(Bytes_Are(h, 0, 8, 0xAB) && Bytes_Are(h, 8, 4096, 0));
  Fill(h, 4096, 0xCD);
  // Shrinking then growing again must not bring old bytes back.
  ASSERT_EQ(GlobalReAlloc(h, 4, GMEM_MOVEABLE), h);
  ASSERT_EQ(GlobalReAlloc(h, 100, GMEM_MOVEABLE), h);
  EXPECT_EQ(GlobalSize(h), 100u);
  EXPECT_TRUE(Bytes_Are(h, 0, 4, 0xCD) && Bytes_Are(h, 4, 100, 0));
  EXPECT_EQ(GlobalFree(h), 0u);
}

TEST(Memory, FreedStaleAndMadeUpHandlesNeverReachABlock) {
  Leak_Check leaks;
  HGLOBAL a = GlobalAlloc(GHND, 16);
  GlobalFree(a);
  // A new block may land in the same slot; the stale handle must not reach it.
  std::vector<HGLOBAL> fresh;
  for (int i = 0; i < 100; ++i) fresh.push_back(GlobalAlloc(GHND, 16));
  EXPECT_EQ(GlobalSize(a), 0u);
  EXPECT_EQ(GlobalFree(a), a);  // failure returns the handle
  EXPECT_EQ(GlobalReAlloc(a, 32, GMEM_MOVEABLE), 0u);
  EXPECT_EQ(GlobalLockCount(a), -1);
  for (HGLOBAL bad : {a, 0u, 1u, 0xFFFFFFFFu, 0x00400001u, 0x12345678u, fresh[5] ^ (1u << 22)}) {
    EXPECT_EQ(GlobalLock(bad), nullptr) << bad;
    EXPECT_FALSE(GlobalUnlock(bad));
  }
  for (HGLOBAL h : fresh) EXPECT_EQ(GlobalFree(h), 0u);
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
  EXPECT_EQ(GlobalAlloc(GHND, 8), 0u);  // the second one fails
  HGLOBAL third = GlobalAlloc(GHND, 8);
  EXPECT_TRUE(first && third);  // and only that one
  SetGlobalAllocFailure(1);
  EXPECT_EQ(GlobalReAlloc(first, 1 << 20, GMEM_MOVEABLE), 0u);
  EXPECT_EQ(GlobalSize(first), 8u);  // unchanged on failure
  SetGlobalAllocFailure(0);
  GlobalFree(first);
  GlobalFree(third);
}
