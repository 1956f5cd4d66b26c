#include "PngIO.h"

#include <cstdio>
#include <cstring>

#include <png.h>

namespace ombrix_tool {

bool ReadPng(const std::string& path, Image& out, std::string& error) {
  png_image image;
  std::memset(&image, 0, sizeof image);
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&image, path.c_str())) {
    error = image.message;
    return false;
  }
  const bool sixteen = (image.format & PNG_FORMAT_FLAG_LINEAR) != 0;
  image.format = sixteen ? PNG_FORMAT_LINEAR_RGB_ALPHA : PNG_FORMAT_RGBA;
  out.fWidth = int(image.width);
  out.fHeight = int(image.height);
  out.fBitDepth = sixteen ? 16 : 8;
  out.fChannels = 4;
  out.fPixels.resize(PNG_IMAGE_SIZE(image));
  if (!png_image_finish_read(&image, nullptr, out.fPixels.data(), 0, nullptr)) {
    error = image.message;
    png_image_free(&image);
    return false;
  }
  return true;
}

bool WritePng(const std::string& path, const Image& in, std::string& error) {
  png_image image;
  std::memset(&image, 0, sizeof image);
  image.version = PNG_IMAGE_VERSION;
  image.width = png_uint_32(in.fWidth);
  image.height = png_uint_32(in.fHeight);
  image.format = in.fBitDepth == 16 ? PNG_FORMAT_LINEAR_RGB_ALPHA : PNG_FORMAT_RGBA;
  if (!png_image_write_to_file(&image, path.c_str(), 0, in.fPixels.data(), 0, nullptr)) {
    error = image.message;
    return false;
  }
  return true;
}

Image ImageFromBGRA8BottomUp(const uint8_t* pixels, int width, int height, int rowBytes) {
  Image img;
  img.fWidth = width;
  img.fHeight = height;
  img.fPixels.resize(size_t(width) * height * 4);
  for (int y = 0; y < height; ++y) {
    const uint8_t* s = pixels + ptrdiff_t(height - 1 - y) * rowBytes;
    uint8_t* d = img.fPixels.data() + size_t(y) * width * 4;
    for (int x = 0; x < width; ++x) {
      d[4 * x + 0] = s[4 * x + 2];
      d[4 * x + 1] = s[4 * x + 1];
      d[4 * x + 2] = s[4 * x + 0];
      d[4 * x + 3] = s[4 * x + 3];
    }
  }
  return img;
}

void BGRA8BottomUpFromImage(const Image& img, uint8_t* pixels, int rowBytes) {
  for (int y = 0; y < img.fHeight; ++y) {
    const uint8_t* s = img.fPixels.data() + size_t(y) * img.fWidth * 4;
    uint8_t* d = pixels + ptrdiff_t(img.fHeight - 1 - y) * rowBytes;
    for (int x = 0; x < img.fWidth; ++x) {
      d[4 * x + 0] = s[4 * x + 2];
      d[4 * x + 1] = s[4 * x + 1];
      d[4 * x + 2] = s[4 * x + 0];
      d[4 * x + 3] = s[4 * x + 3];
    }
  }
}

}  // namespace ombrix_tool
