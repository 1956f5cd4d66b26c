// The primitive layer's level: the processor code, the feature bits and the choice of the slot
// every entry function dispatches on.
#include <cpuid.h>

#include <cstring>

#include "primitives/Primitives.h"

namespace OX {

int32_t PrimitiveLevel = 0;

namespace {

struct CpuId {
  unsigned fEax = 0, fEbx = 0, fEcx = 0, fEdx = 0;
};

bool Query(unsigned leaf, unsigned subleaf, CpuId& out) {
  if (__get_cpuid_max(0, nullptr) < leaf) return false;
  __cpuid_count(leaf, subleaf, out.fEax, out.fEbx, out.fEcx, out.fEdx);
  return true;
}

bool Bit(unsigned word, int bit) { return (word >> bit) & 1u; }

// Whether the operating system saves the wide registers (XCR0 bits 1 and 2).
bool OSSavesWideRegisters(const CpuId& leaf1) {
  if (!Bit(leaf1.fEcx, 27)) return false;
  unsigned lo, hi;
  __asm__ volatile("xgetbv" : "=a"(lo), "=d"(hi) : "c"(0));
  return (lo & 6u) == 6u;
}

uint32_t ProbeFeatureBits() {
  CpuId l1, l7;
  if (!Query(1, 0, l1)) return 0;
  const bool hasLeaf7 = Query(7, 0, l7);
  uint32_t bits = 0;
  auto set = [&](int bit, bool on) { bits |= on ? 1u << bit : 0u; };
  set(0, Bit(l1.fEdx, 23));
  set(1, Bit(l1.fEdx, 25));
  set(2, Bit(l1.fEdx, 26));
  set(3, Bit(l1.fEcx, 0));
  set(4, Bit(l1.fEcx, 9));
  set(5, Bit(l1.fEcx, 22));
  set(6, Bit(l1.fEcx, 19));
  set(7, Bit(l1.fEcx, 20));
  set(8, Bit(l1.fEcx, 28));
  set(9, OSSavesWideRegisters(l1));
  set(10, Bit(l1.fEcx, 25));
  set(11, Bit(l1.fEcx, 1));
  set(13, Bit(l1.fEcx, 30));
  set(14, Bit(l1.fEcx, 29));
  set(15, hasLeaf7 && Bit(l7.fEbx, 5) && Bit(l1.fEcx, 12) && Bit(l7.fEbx, 3) && Bit(l7.fEbx, 8));
  return bits;
}

bool Has(uint32_t bits, uint32_t mask) { return (bits & mask) == mask; }

// What each level needs, and what it must not have, from level 6 down.
int32_t LevelForFeatures(uint32_t bits) {
  constexpr uint32_t kWide = (1u << 8) | (1u << 9);
  if (Has(bits, kWide | (1u << 15))) return 6;
  if (Has(bits, kWide) && !Has(bits, 1u << 15)) return 5;
  if (Has(bits, 1u << 6)) return 4;
  if (Has(bits, (1u << 4) | (1u << 5))) return 3;
  if (Has(bits, 1u << 4) && !Has(bits, 1u << 5)) return 2;
  if (Has(bits, 1u << 2)) return 1;
  return 0;
}

int32_t CoreCount() {
  CpuId l4;
  if (!Query(4, 0, l4)) return 1;
  return int32_t(l4.fEax >> 26) + 1;
}

}  // namespace

uint32_t PrimitiveFeatureBits() {
  static const uint32_t bits = ProbeFeatureBits();
  return bits;
}

int32_t HighestSupportedPrimitiveLevel() { return LevelForFeatures(PrimitiveFeatureBits()); }

int32_t GetProcessorCode() {
  CpuId l0, l1, l7;
  if (!Query(0, 0, l0) || !Query(1, 0, l1)) return 0;
  Query(7, 0, l7);
  char vendor[13] = {};
  std::memcpy(vendor, &l0.fEbx, 4);
  std::memcpy(vendor + 4, &l0.fEdx, 4);
  std::memcpy(vendor + 8, &l0.fEcx, 4);
  const bool sse3 = Bit(l1.fEcx, 0), ssse3 = Bit(l1.fEcx, 9), sse41 = Bit(l1.fEcx, 19), sse42 = Bit(l1.fEcx, 20);
  const bool movbe = Bit(l1.fEcx, 22), avx = Bit(l1.fEcx, 28) && OSSavesWideRegisters(l1);
  const bool fma = Bit(l1.fEcx, 12), avx2 = Bit(l7.fEbx, 5), bmi1 = Bit(l7.fEbx, 3), bmi2 = Bit(l7.fEbx, 8);
  // Built for x86-64: the processor runs in 64-bit mode.
  constexpr bool kLongMode = sizeof(void*) == 8;

  if (std::strcmp(vendor, "GenuineIntel") == 0) {
    int family = int((l1.fEax >> 8) & 0xF);
    int model = int((l1.fEax >> 4) & 0xF);
    if (family == 15) family += int((l1.fEax >> 20) & 0xFF);
    if (family == 6 || family >= 15) model += int((l1.fEax >> 16) & 0xF) * 16;
    if (family == 5) {
      if (model == 1 || model == 2) return 1;
      if (model == 4) return 2;
    } else if (family == 6) {
      switch (model) {
        case 1: return 3;
        case 3: case 5: case 6: return 4;
        case 7: case 8: case 10: case 11: return 5;
        case 9: case 13: return 9;
        case 14: return CoreCount() < 2 ? 10 : 11;
        case 15: if (ssse3) return CoreCount() < 3 ? 33 : 34; break;
        case 23: if (sse41) return 35; break;
        case 26:
          if (avx) return 70;
          if (sse42) return 37;
          break;
        case 28: if (ssse3 && movbe) return 36; break;
        case 60: if (fma && avx2 && bmi1 && bmi2) return 74; break;
        default: break;
      }
    } else if (family == 15) {
      if (!sse3) {
        const bool htt = Bit(l1.fEdx, 28);
        const unsigned logical = htt ? (l1.fEbx >> 16) & 0xFF : 1;
        return logical > 1 ? 7 : 6;
      }
      return kLongMode ? 32 : 8;
    }
  }
  if (avx) return 70;
  if (sse42) return 69;
  if (sse41) return 68;
  if (ssse3) return 67;
  if (sse3) return 66;
  if (Bit(l1.fEdx, 26)) return 65;
  if (Bit(l1.fEdx, 25)) return 64;
  if (kLongMode) return 96;
  return 0;
}

int32_t SelectPrimitiveLevel(int32_t request) {
  int32_t level;
  switch (request) {
    case -1: level = HighestSupportedPrimitiveLevel(); break;
    case 0: case 1: case 2: case 3: case 4: case 5: case 64: case 96: level = 0; break;
    case 6: case 7: case 8: case 9: case 10: case 11: case 32: case 65: case 66: level = 1; break;
    case 33: case 34: case 67: level = 2; break;
    case 36: level = 3; break;
    case 35: case 37: case 38: case 68: case 69: case 71: level = 4; break;
    case 70: case 73: level = 5; break;
    case 74: case 75: level = 6; break;
    case 16: case 17: return 36;
    default: return 21;
  }
  PrimitiveLevel = level;
  return 0;
}

}  // namespace OX
