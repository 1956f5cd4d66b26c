#include "TestCard.h"

#include <algorithm>
#include <cmath>

namespace ombrix_tool {

std::vector<uint8_t> DrawTestCard(int width, int height) {
  std::vector<uint8_t> px(size_t(width) * height * 4);
  auto put = [&](int x, int y, int r, int g, int b, int a) {
    uint8_t* p = px.data() + (size_t(height - 1 - y) * width + x) * 4;  // bottom-up buffer
    p[0] = uint8_t(std::clamp(b, 0, 255));
    p[1] = uint8_t(std::clamp(g, 0, 255));
    p[2] = uint8_t(std::clamp(r, 0, 255));
    p[3] = uint8_t(std::clamp(a, 0, 255));
  };
  // 75% colour bars: white, yellow, cyan, green, magenta, red, blue, black.
  static const int kBars[8][3] = {{191, 191, 191}, {191, 191, 0}, {0, 191, 191}, {0, 191, 0},
                                  {191, 0, 191},   {191, 0, 0},   {0, 0, 191},   {0, 0, 0}};
  const int barsEnd = height / 2;
  const int rampEnd = height * 5 / 8;
  const int colourEnd = height * 3 / 4;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      if (y < barsEnd) {
        const int* c = kBars[std::min(7, x * 8 / std::max(1, width))];
        put(x, y, c[0], c[1], c[2], 255);
      } else if (y < rampEnd) {
        const int v = width > 1 ? x * 255 / (width - 1) : 0;
        put(x, y, v, v, v, 255);
      } else if (y < colourEnd) {
        // Hue sweep at full saturation, and an alpha ramp across it.
        const double h = 6.0 * x / std::max(1, width);
        const int seg = int(h) % 6;
        const double f = h - std::floor(h);
        int r = 0, g = 0, b = 0;
        const int up = int(255 * f), down = 255 - up;
        switch (seg) {
          case 0: r = 255; g = up; break;
          case 1: r = down; g = 255; break;
          case 2: g = 255; b = up; break;
          case 3: g = down; b = 255; break;
          case 4: r = up; b = 255; break;
          default: r = 255; b = down; break;
        }
        put(x, y, r, g, b, 255 - (y - rampEnd) * 255 / std::max(1, colourEnd - rampEnd));
      } else {
        // Zone plate: frequency grows with the distance from the centre of the strip.
        const double cx = x - width / 2.0, cy = y - (colourEnd + height) / 2.0;
        const double v = 0.5 + 0.5 * std::cos((cx * cx + cy * cy) * 3.14159265 / (2.0 * width));
        const int g = int(std::lround(16 + 219 * v));
        put(x, y, g, g, g, 255);
      }
    }
  }
  return px;
}

}  // namespace ombrix_tool
