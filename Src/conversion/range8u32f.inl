// Range and depth between 8u and 32f in the same colour model. Every sample is (code - offset) x
// reciprocal going up and round(scale x value) + offset going down, with per-channel constants, so
// VUYA, UYVY, YUYV and RGB share one body and differ only in where Y, U, V and A sit.

namespace {

struct ChannelScale {
  float fOffset[4];
  float fUp[4];    // reciprocal multiplied in going to 32f
  float fDown[4];  // scale going to 8u
};
// Offsets and steps by channel in memory order.
constexpr float kRcpY = 0.00456621f, kRcpC = 0.004464286f, kRcpA = 0.003921569f;
constexpr ChannelScale kVuyaScale = {{128, 128, 16, 0}, {kRcpC, kRcpC, kRcpY, kRcpA}, {224, 224, 219, 255}};
constexpr ChannelScale kUyvyScale = {{128, 16, 128, 16}, {kRcpC, kRcpY, kRcpC, kRcpY}, {224, 219, 224, 219}};
constexpr ChannelScale kYuyvScale = {{16, 128, 16, 128}, {kRcpY, kRcpC, kRcpY, kRcpC}, {219, 224, 219, 224}};
constexpr ChannelScale kRgbScale = {{0, 0, 0, 0}, {kRcpA, kRcpA, kRcpA, kRcpA}, {255, 255, 255, 255}};

template <const ChannelScale& S>
void Up(const uint8_t* in, float* out, int32_t groups) {
  ForEachGroup(groups, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V off = Vec<V>::Set(S.fOffset[0], S.fOffset[1], S.fOffset[2], S.fOffset[3]);
    const V k = Vec<V>::Set(S.fUp[0], S.fUp[1], S.fUp[2], S.fUp[3]);
    StoreF32(out + 4 * i, Mul(Sub(Vec<V>::LoadU8(in + 4 * i), off), k));
  });
}

// round(scale x) + offset, clamped to 0-255: clamping the scaled value to -offset..255-offset
// first is the same, since both bounds are whole numbers, and it keeps NaN and huge values away
// from the conversion.
template <const ChannelScale& S>
void Down(const float* in, uint8_t* out, int32_t groups) {
  ForEachGroup(groups, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V off = Vec<V>::Set(S.fOffset[0], S.fOffset[1], S.fOffset[2], S.fOffset[3]);
    const V k = Vec<V>::Set(S.fDown[0], S.fDown[1], S.fDown[2], S.fDown[3]);
    const V lo = Sub(Vec<V>::Set1(0), off);
    const V hi = Sub(Vec<V>::Set1(255), off);
    const V x = RoundF(ClampV(Mul(Vec<V>::LoadF32(in + 4 * i), k), lo, hi));
    StoreU8(out + 4 * i, Add(x, off));
  });
}

int32_t Pairs(int32_t width) { return width > 0 ? (width + 1) / 2 : 0; }
int32_t Pixels(int32_t width) { return width > 0 ? width : 0; }

template <const ChannelScale& S, int32_t (*Groups)(int32_t)>
void UpRow(const void* in, void* out, int32_t width) {
  Up<S>(static_cast<const uint8_t*>(in), static_cast<float*>(out), Groups(width));
}
template <const ChannelScale& S, int32_t (*Groups)(int32_t)>
void DownRow(const void* in, void* out, int32_t width) {
  Down<S>(static_cast<const float*>(in), static_cast<uint8_t*>(out), Groups(width));
}

}  // namespace

const RowConverter kRange8u32f[kRange8u32fCount] = {
    &UpRow<kVuyaScale, Pixels>, &DownRow<kVuyaScale, Pixels>, &UpRow<kUyvyScale, Pairs>, &DownRow<kUyvyScale, Pairs>,
    &UpRow<kYuyvScale, Pairs>,  &DownRow<kYuyvScale, Pairs>,  &UpRow<kRgbScale, Pixels>,  &DownRow<kRgbScale, Pixels>};
