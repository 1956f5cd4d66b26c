// The warped quad: entry checks, the feather inset, the polygon scan converter, and the portable
// span routines.
#include "motion/Warp.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "Ombrix.h"
#include "composite/CompositeCommon.h"
#include "frame/Globals.h"

namespace OX {

namespace {

inline int32_t ClampByte(int32_t v) { return v < 0 ? 0 : v > 255 ? 255 : v; }

inline int32_t NearestIndex(float p, int32_t lo, int32_t hi) {
  // Pixel centres lie at n + 0.5, so the nearest pixel of position p is round(p - 0.5).
  const int32_t i = RoundToInt(p - 0.5f);
  return i < lo ? lo : i > hi ? hi : i;
}

inline const uint8_t* NearestPixel(const WarpSpanContext& c, float sx, float sy) {
  const int32_t column = NearestIndex(sx, c.fSourceLeft, c.fSourceRight);
  const int32_t row = NearestIndex(sy, c.fSourceTop, c.fSourceBottom);
  return c.fSource + (ptrdiff_t(row) * c.fSourceStride + column) * 4;
}

inline uint8_t* DestinationRow(const WarpSpanContext& c, int32_t row) {
  return c.fDestination + ptrdiff_t(row) * c.fDestinationStride * 4;
}

}  // namespace

void WarpBlendPixel(const WarpSpanContext& c, uint8_t* d, const uint8_t s[3], int32_t sa, int32_t plainAlpha) {
  if (!c.fCompositeOver) {
    d[0] = s[0], d[1] = s[1], d[2] = s[2];
    d[3] = uint8_t(c.fOpacity != 255 ? Mul255(sa, c.fOpacity) : c.fMultiplyAlpha ? sa : plainAlpha);
    return;
  }
  if (c.fOpacity != 255) sa = Mul255(c.fOpacity, sa);
  if (sa == 0) return;
  const int32_t da = d[3];
  if (sa < 255 && da != 0) {
    const int32_t na = sa + da - Mul255(sa, da);
    const int32_t ws = sa * 255, wd = (255 - sa) * da, n = na * 255;
    if (c.fFormat == 4) {
      for (int k = 0; k < 3; ++k) d[k] = uint8_t((s[k] * ws + d[k] * wd) / n);
    } else if (c.fFormat == 2053) {
      // V, U about 128 and Y about 16; the quotient is truncated toward zero.
      for (int k = 0; k < 2; ++k) d[k] = uint8_t(((s[k] - 128) * ws + (d[k] - 128) * wd) / n + 128);
      d[2] = uint8_t(((s[2] - 16) * ws + (d[2] - 16) * wd) / n + 16);
    } else {
      return;
    }
    d[3] = uint8_t(na);
    return;
  }
  d[0] = s[0], d[1] = s[1], d[2] = s[2];
  d[3] = uint8_t(sa);
}

namespace portable {

void NearestCopySpan(const WarpSpanContext& c, const WarpSpan& span) {
  uint8_t* d = DestinationRow(c, span.fRow) + ptrdiff_t(span.fX0) * 4;
  for (int32_t i = 0; i <= span.fX1 - span.fX0; ++i, d += 4) {
    const uint8_t* s = NearestPixel(c, span.fSourceX + float(i + span.fSkip) * span.fStepX, span.fSourceY + float(i + span.fSkip) * span.fStepY);
    std::memcpy(d, s, 4);
  }
}

void NearestBlendSpan(const WarpSpanContext& c, const WarpSpan& span) {
  uint8_t* d = DestinationRow(c, span.fRow) + ptrdiff_t(span.fX0) * 4;
  for (int32_t i = 0; i <= span.fX1 - span.fX0; ++i, d += 4) {
    const uint8_t* s = NearestPixel(c, span.fSourceX + float(i + span.fSkip) * span.fStepX, span.fSourceY + float(i + span.fSkip) * span.fStepY);
    WarpBlendPixel(c, d, s, Mul255(s[3], 255), 255);
  }
}

namespace {
// Four channels of the bilinear sample, rounded; colour clamped, alpha clamped too (it is used).
inline void Sample(const WarpSpanContext& c, float sx, float sy, int32_t out[4]) {
  const WarpFetch f = WarpBilinearFetch(c, sx, sy);
  for (int k = 0; k < 4; ++k) {
    const float top = float(f.fP00[k]) + (float(f.fP01[k]) - float(f.fP00[k])) * f.fFb;
    const float bottom = float(f.fP10[k]) + (float(f.fP11[k]) - float(f.fP10[k])) * f.fFb;
    out[k] = ClampByte(RoundToInt(top + (bottom - top) * f.fFa));
  }
}
}  // namespace

void BilinearDirectSpan(const WarpSpanContext& c, const WarpSpan& span) {
  uint8_t* d = DestinationRow(c, span.fRow) + ptrdiff_t(span.fX0) * 4;
  for (int32_t i = 0; i <= span.fX1 - span.fX0; ++i, d += 4) {
    const float fi = float(i + span.fSkip);
    int32_t p[4];
    Sample(c, span.fSourceX + fi * span.fStepX, span.fSourceY + fi * span.fStepY, p);
    const int32_t va = RoundToInt(span.fAlpha + fi * span.fStepAlpha) & 255;
    for (int k = 0; k < 3; ++k) {
      const int32_t v = p[k] * va + d[k] * (255 - va) + 128;
      d[k] = uint8_t((v + (v >> 8)) >> 8);
    }
    d[3] = uint8_t(p[3]);
  }
}

void BilinearBlendSpan(const WarpSpanContext& c, const WarpSpan& span) {
  uint8_t* d = DestinationRow(c, span.fRow) + ptrdiff_t(span.fX0) * 4;
  for (int32_t i = 0; i <= span.fX1 - span.fX0; ++i, d += 4) {
    const float fi = float(i + span.fSkip);
    int32_t p[4];
    Sample(c, span.fSourceX + fi * span.fStepX, span.fSourceY + fi * span.fStepY, p);
    const float alpha = span.fAlpha + fi * span.fStepAlpha;
    const int32_t va = RoundToInt(alpha) & 255;
    const uint8_t s[3] = {uint8_t(p[0]), uint8_t(p[1]), uint8_t(p[2])};
    WarpBlendPixel(c, d, s, Mul255(va, p[3]), ClampByte(RoundToInt(alpha)));
  }
}

}  // namespace portable

WarpSpanRoutine ChooseWarpSpanRoutine(bool useBilinear, bool directBlend) {
  if (!useBilinear) return directBlend ? portable::NearestCopySpan : portable::NearestBlendSpan;
  if (directBlend) return portable::BilinearDirectSpan;
  return gHasSSE2 ? sse2::BilinearBlendSpan : portable::BilinearBlendSpan;
}

namespace {

// Active-edge scan converter of destination x with source x, source y and alpha interpolated.
class WarpPolygon {
 public:
  WarpPolygon(const WarpSpanContext& context, WarpSpanRoutine span, int32_t left, int32_t top, int32_t right,
              int32_t bottom, int32_t fieldMode)
      : fContext(context), fSpan(span), fLeft(left), fTop(top), fRight(right), fBottom(bottom),
        fFieldMode(fieldMode) {}

  void Draw(const WarpVertex* vertices, int32_t count);

 private:
  // Values at a row are the start vertex's plus the change per row times the distance from it,
  // not sums of per-row steps, so a row gives the same spans whichever row the walk began at
  // (a clipped quad draws what the unclipped one draws there).
  struct Edge {
    int32_t fFrom, fTo;
    float fX, fDx, fSourceX, fDSourceX, fSourceY, fDSourceY, fAlpha, fDAlpha;
    void At(const WarpVertex& a, int32_t row) {
      const float t = float(row) + 0.5f - a.fY;
      fX = a.fX + fDx * t;
      fSourceX = a.fSourceX + fDSourceX * t;
      fSourceY = a.fSourceY + fDSourceY * t;
      fAlpha = a.fAlpha + fDAlpha * t;
    }
  };
  void AddEdge(int32_t from, int32_t to, int32_t row);
  void RemoveEdge(int32_t from, int32_t to);

  const WarpSpanContext& fContext;
  WarpSpanRoutine fSpan;
  int32_t fLeft, fTop, fRight, fBottom;  // inclusive destination bounds
  int32_t fFieldMode;
  const WarpVertex* fVertices = nullptr;
  int32_t fCount = 0;
  std::vector<int32_t> fOrder;
  std::vector<Edge> fActive;
};

void WarpPolygon::AddEdge(int32_t from, int32_t to, int32_t row) {
  const WarpVertex& a = fVertices[from];
  const WarpVertex& b = fVertices[to];
  const float dy = b.fY - a.fY;
  Edge e;
  e.fFrom = from, e.fTo = to;
  e.fDx = (b.fX - a.fX) / dy;
  e.fDSourceX = (b.fSourceX - a.fSourceX) / dy;
  e.fDSourceY = (b.fSourceY - a.fSourceY) / dy;
  e.fDAlpha = (b.fAlpha - a.fAlpha) / dy;
  e.At(a, row);
  fActive.push_back(e);
}

void WarpPolygon::RemoveEdge(int32_t from, int32_t to) {
  for (size_t i = 0; i < fActive.size(); ++i) {
    if (fActive[i].fFrom == from && fActive[i].fTo == to) {
      fActive.erase(fActive.begin() + ptrdiff_t(i));
      return;
    }
  }
}

void WarpPolygon::Draw(const WarpVertex* vertices, int32_t count) {
  for (int32_t i = 0; i < count; ++i)
    if (!std::isfinite(vertices[i].fX) || !std::isfinite(vertices[i].fY)) return;  // nothing to draw
  fVertices = vertices;
  fCount = count;
  fActive.clear();
  fOrder.resize(size_t(count));
  for (int32_t i = 0; i < count; ++i) fOrder[size_t(i)] = i;
  std::stable_sort(fOrder.begin(), fOrder.end(),
                   [&](int32_t a, int32_t b) { return vertices[a].fY < vertices[b].fY; });
  const float lowest = vertices[fOrder.front()].fY, highest = vertices[fOrder.back()].fY;
  // Rows whose centre lies in [lowest, highest): the bottom edge is exclusive, so two polygons
  // sharing an edge never draw a row twice.
  const double firstRow = std::max(std::ceil(double(lowest) - 0.5), double(fTop));
  const double lastRow = std::min(std::ceil(double(highest) - 0.5) - 1.0, double(fBottom));
  size_t next = 0;
  for (double rowValue = firstRow; rowValue <= lastRow; rowValue += 1.0) {
    const int32_t row = int32_t(rowValue);
    const float centre = float(row) + 0.5f;
    // Every vertex up to this centre not yet taken: on a clipped first row, edges that began
    // above the clip enter at the row they cross.
    while (next < fOrder.size() && vertices[fOrder[next]].fY <= centre) {
      const int32_t v = fOrder[next++];
      for (int32_t n : {(v + count - 1) % count, (v + 1) % count}) {
        if (vertices[n].fY > vertices[v].fY) AddEdge(v, n, row);
        else RemoveEdge(n, v);
      }
    }
    for (Edge& e : fActive) e.At(vertices[e.fFrom], row);
    std::sort(fActive.begin(), fActive.end(), [](const Edge& a, const Edge& b) { return a.fX < b.fX; });
    const bool skip = fFieldMode == 1 ? (row & 1) != 0 : fFieldMode == 2 ? (row & 1) == 0 : fFieldMode != 0;
    if (!skip) {
      for (size_t i = 0; i + 1 < fActive.size(); i += 2) {
        const Edge& l = fActive[i];
        const Edge& r = fActive[i + 1];
        // Pixels whose centre lies in [xl, xr): right edge exclusive, as the bottom one.
        const double unclipped = std::ceil(double(l.fX) - 0.5);
        const double x0 = std::max(unclipped, double(fLeft));
        const double x1 = std::min(std::ceil(double(r.fX) - 0.5) - 1.0, double(fRight));
        if (!(x0 <= x1)) continue;
        float w = r.fX - l.fX;
        if (w == 0.0f) w = 1.0f;
        WarpSpan s;
        s.fRow = row;
        s.fX0 = int32_t(x0);
        s.fX1 = int32_t(x1);
        // Far-left starts (beyond the int range) are pinned at the rectangle's left.
        const double start = std::max(unclipped, x0 - double(1 << 30));
        s.fSkip = int32_t(x0 - start);
        const float offset = float(start) + 0.5f - l.fX;
        s.fStepX = (r.fSourceX - l.fSourceX) / w;
        s.fStepY = (r.fSourceY - l.fSourceY) / w;
        s.fStepAlpha = (r.fAlpha - l.fAlpha) / w;
        s.fSourceX = l.fSourceX + offset * s.fStepX;
        s.fSourceY = l.fSourceY + offset * s.fStepY;
        s.fAlpha = l.fAlpha + offset * s.fStepAlpha;
        fSpan(fContext, s);
      }
    }
  }
}

// Moves corner v along its inner bisector by `feather` in destination and source space alike.
WarpVertex Inset(const WarpVertex& v, const WarpVertex& a, const WarpVertex& b, float feather) {
  auto along = [feather](float vx, float vy, float ax, float ay, float bx, float by, float& ox, float& oy) {
    auto unit = [](float x, float y, float& ux, float& uy) {
      float length = std::sqrt(x * x + y * y);
      if (length == 0.0f) length = 1e-9f;
      ux = x / length, uy = y / length;
    };
    float e1x, e1y, e2x, e2y, dx, dy;
    unit(ax - vx, ay - vy, e1x, e1y);
    unit(bx - vx, by - vy, e2x, e2y);
    unit((e1x + e2x) * 0.5f, (e1y + e2y) * 0.5f, dx, dy);
    ox = vx + dx * feather, oy = vy + dy * feather;
  };
  WarpVertex r;
  along(v.fX, v.fY, a.fX, a.fY, b.fX, b.fY, r.fX, r.fY);
  along(v.fSourceX, v.fSourceY, a.fSourceX, a.fSourceY, b.fSourceX, b.fSourceY, r.fSourceX, r.fSourceY);
  r.fAlpha = 255.0f;
  return r;
}

}  // namespace
}  // namespace OX

OX_Result OX_WarpAffineQuad(int32_t, int32_t, const void* source, int32_t sourceRowBytes, const int32_t* sourceRect,
                            const double* sourceQuad, void* destination, int32_t destinationRowBytes,
                            const int32_t* destinationRect, const double* destinationQuad, int32_t quality,
                            uint32_t opacity, bool compositeOver, bool multiplyAlpha, OX_PixelFormat format,
                            int32_t fieldMode, bool sourceIsFrame, bool directBlend, float feather) {
  using namespace OX;
  if (!destination) return OX_ErrNullDest;
  if (!source) return OX_ErrNullSource;
  if (destinationRowBytes == 0 || sourceRowBytes == 0) return OX_ErrNoRoute;
  if (!sourceRect || !destinationRect || !sourceQuad || !destinationQuad) return OX_ErrBadRect;
  // An empty source rectangle has no pixel to fetch.
  if (sourceRect[2] <= sourceRect[0] || sourceRect[3] <= sourceRect[1]) return OX_ErrBadRect;

  WarpSpanContext context;
  context.fDestination = static_cast<uint8_t*>(destination);
  context.fDestinationStride = destinationRowBytes / 4;
  context.fSource = static_cast<const uint8_t*>(source);
  context.fSourceStride = sourceRowBytes / 4;
  context.fOpacity = int32_t(std::min<uint32_t>(opacity, 255));
  context.fCompositeOver = compositeOver;
  context.fMultiplyAlpha = multiplyAlpha;
  context.fFieldMode = fieldMode;
  context.fSourceIsFrame = sourceIsFrame;
  context.fFormat = format;
  context.fSourceLeft = sourceRect[0];
  context.fSourceTop = sourceRect[1];
  context.fSourceRight = sourceRect[2] - 1;
  context.fSourceBottom = sourceRect[3] - 1;

  // V3, V2, V1, V0: the polygon is drawn in this order.
  WarpVertex given[4];
  for (int i = 0; i < 4; ++i) {
    given[3 - i] = {float(destinationQuad[2 * i]), float(destinationQuad[2 * i + 1]), float(sourceQuad[2 * i]),
                    float(sourceQuad[2 * i + 1]), 255.0f};
  }
  auto V = [&](int i) -> const WarpVertex& { return given[3 - i]; };
  // Negative and NaN feathers count as none.
  const bool feathered = feather > 0.0f;
  const bool useBilinear = quality >= 3;
  WarpPolygon polygon(context, ChooseWarpSpanRoutine(useBilinear, directBlend), destinationRect[0],
                      destinationRect[1], destinationRect[2] - 1, destinationRect[3] - 1, fieldMode);
  if (!feathered) {
    polygon.Draw(given, 4);
    return OX_Success;
  }
  // The neighbour pairs are fixed: V2 takes V0 and V1 (not V3), and the inset quad's shape
  // depends on that choice.
  WarpVertex inset[4];  // V3', V2', V1', V0'
  inset[0] = Inset(V(3), V(0), V(2), feather);
  inset[1] = Inset(V(2), V(0), V(1), feather);
  inset[2] = Inset(V(1), V(2), V(0), feather);
  inset[3] = Inset(V(0), V(1), V(3), feather);
  auto I = [&](int i) -> const WarpVertex& { return inset[3 - i]; };
  polygon.Draw(inset, 4);
  if (!useBilinear) return OX_Success;
  // Four fades from alpha 0 at the given edges to 255 at the inset ones; each inset vertex keeps
  // its own (inset) source position, so the texture runs on across the inner quad's edges.
  const int pairs[4][2] = {{3, 2}, {2, 1}, {1, 0}, {0, 3}};
  for (const auto& p : pairs) {
    WarpVertex fade[4] = {V(p[0]), V(p[1]), I(p[1]), I(p[0])};
    fade[0].fAlpha = fade[1].fAlpha = 0.0f;
    polygon.Draw(fade, 4);
  }
  return OX_Success;
}
