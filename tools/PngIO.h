// PNG files for the tool: 8- and 16-bit RGB(A) in and out.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ombrix_tool {

struct Image {
  int fWidth = 0;
  int fHeight = 0;
  int fBitDepth = 8;  // 8 or 16
  int fChannels = 4;  // RGBA, top-down rows, 16-bit samples in native order
  std::vector<uint8_t> fPixels;
};

bool ReadPng(const std::string& path, Image& out, std::string& error);
bool WritePng(const std::string& path, const Image& image, std::string& error);

// Converts between a bottom-up BGRA_4444_8u buffer and an 8-bit RGBA image.
Image ImageFromBGRA8BottomUp(const uint8_t* pixels, int width, int height, int rowBytes);
void BGRA8BottomUpFromImage(const Image& image, uint8_t* pixels, int rowBytes);

}  // namespace ombrix_tool
