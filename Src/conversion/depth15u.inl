// 15u with 8u and 32f. Every sample, alpha included, takes the same formula, so a pixel is four
// independent samples and the channel order does not matter.

namespace {

constexpr float k15uTo8u = 0.0077819824f;  // 255 / 32768, rounded as the constant stands
constexpr float k15uTo32f = 1.0f / 32768.0f;
constexpr float k8uTo15u = 128.50196f;     // 32768 / 255 for the vector forms

void Up8uTo15u(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  uint16_t* d = static_cast<uint16_t*>(out);
#if defined(OX_PIXELVEC_PORTABLE)
  // Exact integer division, truncated: 255 gives 32768, 1 gives 128.
  for (int32_t i = 0; i < 4 * width; ++i) {
    const uint16_t v = uint16_t((uint32_t(s[i]) * 32768u) / 255u);
    std::memcpy(d + i, &v, 2);
  }
#else
  // v x 128.50196 + 0.5, truncated: one more than the integer division for most codes, and the
  // same 0 and 32768 at the ends.
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V x = Add(Mul(Vec<V>::LoadU8(s + 4 * i), Vec<V>::Set1(k8uTo15u)), Vec<V>::Set1(0.5f));
    StoreU16(d + 4 * i, TruncF(x));
  });
#endif
}

void Down15uTo8u(const void* in, void* out, int32_t width) {
  const uint16_t* s = static_cast<const uint16_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    StoreU8(d + 4 * i, RoundF(Clamp(Mul(Vec<V>::LoadU16(s + 4 * i), Vec<V>::Set1(k15uTo8u)), 0.0f, 255.0f)));
  });
}

void Up15uTo32f(const void* in, void* out, int32_t width) {
  const uint16_t* s = static_cast<const uint16_t*>(in);
  float* d = static_cast<float*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    StoreF32(d + 4 * i, Mul(Vec<V>::LoadU16(s + 4 * i), Vec<V>::Set1(k15uTo32f)));
  });
}

// Clamp to 0.0-1.0, times 32768, + 0.5, truncated. Above-range values saturate at 32768.
void Down32fTo15u(const void* in, void* out, int32_t width) {
  const float* s = static_cast<const float*>(in);
  uint16_t* d = static_cast<uint16_t*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V x = Mul(Clamp(Vec<V>::LoadF32(s + 4 * i), 0.0f, 1.0f), Vec<V>::Set1(32768.0f));
    StoreU16(d + 4 * i, TruncF(Add(x, Vec<V>::Set1(0.5f))));
  });
}

}  // namespace

const RowConverter kDepth15u[kDepth15uCount] = {&Up8uTo15u, &Down15uTo8u, &Up15uTo32f, &Down32fTo15u};
