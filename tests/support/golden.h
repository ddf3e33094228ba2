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

#if !TESSALINE_WITH_PNG
#include <zlib.h>

#include <fstream>
#include <iterator>
#endif

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

#if !TESSALINE_WITH_PNG
// The pixels (0x00RRGGBB) of a non-interlaced 8-bit RGB or RGBA PNG, the
// kinds WriteBitmapPng and the golden files are; empty for anything else.
inline std::vector<uint32_t> Read_Png(const std::filesystem::path& path, int* w, int* h) {
  std::ifstream in(path, std::ios::binary);
  const std::string file((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  auto be32 = [&](size_t at) {
    return uint32_t{static_cast<unsigned char>(file[at])} << 24 |
           uint32_t{static_cast<unsigned char>(file[at + 1])} << 16 |
           uint32_t{static_cast<unsigned char>(file[at + 2])} << 8 |
           uint32_t{static_cast<unsigned char>(file[at + 3])};
  };
  std::string packed;
  uint32_t width = 0, height = 0, channels = 0;
  for (size_t at = 8; at + 12 <= file.size();) {
    const uint32_t n = be32(at);
    if (n > file.size() - at - 12) return {};
    const std::string type = file.substr(at + 4, 4);
    if (type == "IHDR" && n >= 13) {
      width = be32(at + 8);
      height = be32(at + 12);
      const int depth = file[at + 16], colour = file[at + 17], interlace = file[at + 20];
      if (depth != 8 || interlace != 0 || (colour != 2 && colour != 6)) return {};
      channels = colour == 2 ? 3 : 4;
    } else if (type == "IDAT") {
      packed += file.substr(at + 8, n);
    }
    at += 12 + size_t{n};
  }
  if (channels == 0 || width == 0 || height == 0 || width > 32767 || height > 32767) return {};
  const size_t stride = size_t{width} * channels;
  std::vector<unsigned char> raw(size_t{height} * (stride + 1));
  uLongf raw_size = static_cast<uLongf>(raw.size());
  if (uncompress(raw.data(), &raw_size, reinterpret_cast<const Bytef*>(packed.data()),
                 static_cast<uLong>(packed.size())) != Z_OK ||
      raw_size != raw.size()) {
    return {};
  }
  // Undo each row's filter (none, sub, up, average, Paeth) in place.
  std::vector<uint32_t> px(size_t{width} * height);
  for (size_t y = 0; y < height; ++y) {
    unsigned char* row = &raw[y * (stride + 1) + 1];
    const unsigned char* up = y > 0 ? row - (stride + 1) : nullptr;
    const int filter = row[-1];
    for (size_t i = 0; i < stride; ++i) {
      const int a = i >= channels ? row[i - channels] : 0, b = up ? up[i] : 0;
      const int c = up && i >= channels ? up[i - channels] : 0;
      int add = 0;
      if (filter == 1) add = a;
      if (filter == 2) add = b;
      if (filter == 3) add = (a + b) / 2;
      if (filter == 4) {
        const int p = a + b - c, pa = std::abs(p - a), pb = std::abs(p - b), pc = std::abs(p - c);
        add = pa <= pb && pa <= pc ? a : (pb <= pc ? b : c);
      }
      row[i] = static_cast<unsigned char>(row[i] + add);
    }
    for (size_t x = 0; x < width; ++x) {
      const unsigned char* p = row + x * channels;
      px[y * width + x] = uint32_t{p[0]} << 16 | uint32_t{p[1]} << 8 | p[2];
    }
  }
  *w = static_cast<int>(width);
  *h = static_cast<int>(height);
  return px;
}
#endif

// Compares the bitmap with the golden image `name`.
inline ::testing::AssertionResult Matches_Golden(HBITMAP bm, const std::string& name) {
  const std::filesystem::path golden_path =
      std::filesystem::path(TESSALINE_TEST_DATA) / "golden" / (name + ".png");
  int w = 0, h = 0, gw = 0, gh = 0;
  const std::vector<uint32_t> got = Pixels_Of(bm, &w, &h);
#if TESSALINE_WITH_PNG
  HBITMAP gold = ReadBitmapPng(golden_path.string().c_str());
  const std::vector<uint32_t> want = Pixels_Of(gold, &gw, &gh);
  if (gold) DeleteObject(gold);
#else
  const std::vector<uint32_t> want = Read_Png(golden_path, &gw, &gh);
#endif
  if (!want.empty() && w == gw && h == gh && got == want) return ::testing::AssertionSuccess();
#if !TESSALINE_WITH_PNG
  if (want.empty() || w != gw || h != gh) {
    return ::testing::AssertionFailure()
           << "no golden image of size " << w << " x " << h << " at " << golden_path;
  }
  size_t first = 0;
  while (got[first] == want[first]) ++first;
  return ::testing::AssertionFailure()
         << "pixel (" << first % static_cast<size_t>(w) << ", " << first / static_cast<size_t>(w)
         << ") and maybe others differ from " << golden_path << " (a build without libpng)";
#endif

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
