// Golden images: a rendering is compared pixel for pixel with
// tests/data/golden/<name>.png. On a mismatch (or a missing golden file)
// the rendering is written to <build>/golden/<name>.out.png, and beside it
// <name>.diff.png with differing pixels in red over a faded copy of the
// golden image. scripts/accept-golden.sh copies .out.png files over the
// goldens when a change of picture is meant.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <tessaline/tessaline.h>

namespace golden {

inline std::vector<uint32_t> Pixels_Of(HBITMAP bm, int* w, int* h) {
  BITMAP info{};
  if (!bm || GetObjectA(bm, sizeof info, &info) == 0) return {};
  *w = info.bmWidth;
  *h = info.bmHeight;
  std::vector<uint32_t> px(static_cast<size_t>(info.bmWidth) * info.bmHeight);
  GetBitmapBits(bm, static_cast<LONG>(px.size() * 4), px.data());
  return px;
}

inline std::filesystem::path Output_Dir() {
  const char* build = std::getenv("TESSALINE_BUILD_DIR");
  std::filesystem::path dir = build ? build : ".";
  dir /= "golden";
  std::filesystem::create_directories(dir);
  return dir;
}

// Compares the bitmap with the golden image `name`.
inline ::testing::AssertionResult Matches_Golden(HBITMAP bm, const std::string& name) {
  const std::filesystem::path golden_path =
      std::filesystem::path(TESSALINE_TEST_DATA) / "golden" / (name + ".png");
  int w = 0, h = 0, gw = 0, gh = 0;
  const std::vector<uint32_t> got = Pixels_Of(bm, &w, &h);
  HBITMAP gold = ReadBitmapPng(golden_path.string().c_str());
  const std::vector<uint32_t> want = Pixels_Of(gold, &gw, &gh);
  if (gold) DeleteObject(gold);
  if (!want.empty() && w == gw && h == gh && got == want) return ::testing::AssertionSuccess();

  const std::filesystem::path dir = Output_Dir();
  const std::string out = (dir / (name + ".out.png")).string();
  WriteBitmapPng(bm, out.c_str());
  auto failure = ::testing::AssertionFailure();
  if (want.empty() || w != gw || h != gh) {
    return failure << "no golden image of size " << w << " x " << h << " at " << golden_path
                   << "; rendering written to " << out;
  }
  std::vector<uint32_t> diff(got.size());
  size_t differing = 0;
  for (size_t i = 0; i < got.size(); ++i) {
    if (got[i] != want[i]) {
      ++differing;
      diff[i] = 0xFF0000;
    } else {
      // Fade toward white: every channel a quarter of the way from 255.
      const uint32_t p = want[i];
      uint32_t faded = 0;
      for (int shift = 0; shift <= 16; shift += 8) {
        faded |= ((((p >> shift) & 0xFF) + 3 * 255) / 4) << shift;
      }
      diff[i] = faded;
    }
  }
  HBITMAP d = CreateCompatibleBitmap(nullptr, w, h);
  SetBitmapBits(d, static_cast<DWORD>(diff.size() * 4), diff.data());
  const std::string diff_path = (dir / (name + ".diff.png")).string();
  WriteBitmapPng(d, diff_path.c_str());
  DeleteObject(d);
  return failure << differing << " pixel(s) differ from " << golden_path << "; see " << out
                 << " and " << diff_path;
}

}  // namespace golden
