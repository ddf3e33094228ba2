// PNG files of bitmaps (libpng's simplified interface; libpng is used
// nowhere else). A build without libpng (TESSALINE_WITH_PNG off, as the
// 32-bit one) keeps the calls, which then fail.
#include <cstring>
#include <new>
#include <vector>

#include "platform/gdi_object.h"

using namespace gdi;

BOOL WriteDCPng(HDC dc, const char* path) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d || d->dc_kind != Dc_Kind::memory) return FALSE;
  return WriteBitmapPng(d->bitmap, path);
}

#if TESSALINE_WITH_PNG
#include <png.h>

BOOL WriteBitmapPng(HBITMAP bitmap, const char* path) {
  Bitmap* b = Lookup_As<Bitmap>(bitmap);
  if (!b || !path) return FALSE;
  try {
    std::vector<png_byte> rgb(b->pixels.size() * 3);
    for (size_t i = 0; i < b->pixels.size(); ++i) {
      const uint32_t p = b->pixels[i];  // 0x00RRGGBB
      rgb[3 * i] = static_cast<png_byte>(p >> 16);
      rgb[3 * i + 1] = static_cast<png_byte>(p >> 8);
      rgb[3 * i + 2] = static_cast<png_byte>(p);
    }
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(b->width);
    image.height = static_cast<png_uint_32>(b->height);
    image.format = PNG_FORMAT_RGB;
    const int ok = png_image_write_to_file(&image, path, 0, rgb.data(), 0, nullptr);
    png_image_free(&image);
    return ok ? TRUE : FALSE;
  } catch (const std::bad_alloc&) {
    return FALSE;
  }
}

HBITMAP ReadBitmapPng(const char* path) {
  if (!path) return nullptr;
  png_image image;
  std::memset(&image, 0, sizeof image);
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&image, path)) return nullptr;
  // Limits of CreateCompatibleBitmap, checked before anything is allocated.
  if (image.width == 0 || image.height == 0 || image.width > 32767 || image.height > 32767 ||
      uint64_t{image.width} * image.height > (uint64_t{1} << 26)) {
    png_image_free(&image);
    return nullptr;
  }
  image.format = PNG_FORMAT_RGB;  // alpha, if any, is composited over black
  HBITMAP bm = nullptr;
  try {
    std::vector<png_byte> rgb(PNG_IMAGE_SIZE(image));
    if (!png_image_finish_read(&image, nullptr, rgb.data(), 0, nullptr)) {
      png_image_free(&image);
      return nullptr;
    }
    bm = CreateCompatibleBitmap(nullptr, static_cast<int>(image.width),
                                static_cast<int>(image.height));
    Bitmap* b = Lookup_As<Bitmap>(bm);
    if (!b) return nullptr;
    for (size_t i = 0; i < b->pixels.size(); ++i) {
      b->pixels[i] =
          (uint32_t{rgb[3 * i]} << 16) | (uint32_t{rgb[3 * i + 1]} << 8) | rgb[3 * i + 2];
    }
  } catch (const std::bad_alloc&) {
    png_image_free(&image);
    if (bm) DeleteObject(bm);
    return nullptr;
  }
  return bm;
}

#else

BOOL WriteBitmapPng(HBITMAP, const char*) {
  return FALSE;
}

HBITMAP ReadBitmapPng(const char*) {
  return nullptr;
}

#endif
