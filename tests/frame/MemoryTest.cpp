// Allocators, the block move and the planar copy.
#include <gtest/gtest.h>

#include <numeric>
#include <set>
#include <random>
#include <thread>
#include <vector>

#include "Ombrix.h"
#include "frame/CopyMemory.h"
#include "frame/Globals.h"
#include "frame/Scratch.h"
#include "platform/CRand.h"
#include "platform/zelcore.h"

namespace OX {
namespace {

TEST(Memory, BlocksStartAtMultiplesOf128AndAreAligned) {
  std::set<size_t> offsets;
  for (int i = 0; i < 2000; ++i) {
    void* base = nullptr;
    uint32_t allocated = 0;
    const uint32_t size = 1 + uint32_t(i * 37 % 5000);
    auto* p = static_cast<uint8_t*>(OX_AllocateTransientMemoryBlock(size, &base, &allocated));
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(p) % 16, 0u);
    const size_t offset = size_t(p - static_cast<uint8_t*>(base));
    // The recycler's blocks are 64-byte aligned, so rounding adds nothing to the offset.
    EXPECT_EQ(offset % 128, 0u);
    EXPECT_LE(offset, 8064u);
    EXPECT_GE(allocated, size + offset + 15);
    p[0] = 1;
    p[size - 1] = 2;
    offsets.insert(offset);
    OX_FreeTransientMemoryBlock(base, allocated);
  }
  EXPECT_EQ(offsets.size(), 64u) << "every offset 0..8064 appears";
}

TEST(Memory, OffsetsFollowTheSmallGenerator) {
  // A new thread starts the generator at seed 1: its first value is 41, so the first block of the
  // thread sits 41 * 128 bytes in.
  size_t offset = 0;
  std::thread([&] {
    void* base = nullptr;
    uint32_t allocated = 0;
    auto* p = static_cast<uint8_t*>(OX_AllocateTransientMemoryBlock(100, &base, &allocated));
    offset = size_t(p - static_cast<uint8_t*>(base));
    OX_FreeTransientMemoryBlock(base, allocated);
  }).join();
  EXPECT_EQ(offset, 41u * 128);
  // The generator's range is 0..32767 and its sequence the linear congruential one.
  crt::SRand(1);
  uint32_t state = 1;
  for (int i = 0; i < 1000; ++i) {
    state = state * 214013u + 2531011u;
    const int r = crt::Rand();
    EXPECT_EQ(r, int((state >> 16) & 0x7FFF));
    EXPECT_LE(r, crt::kRandMax);
  }
}

TEST(Memory, ZeroAndRefusedRequests) {
  void* base = reinterpret_cast<void*>(1);
  uint32_t allocated = 7;
  EXPECT_EQ(OX_AllocateTransientMemoryBlock(0, &base, &allocated), nullptr);
  EXPECT_EQ(base, nullptr);
  EXPECT_EQ(allocated, 0u);
  OX_FreeTransientMemoryBlock(nullptr, 123);  // does nothing
  EXPECT_EQ(OX_FreePixelBuffer(0, nullptr, 0), OX_Success);
}

TEST(Memory, PixelBuffersTakeTheFormatsSize) {
  struct Case {
    OX_PixelFormat f;
    int32_t w, h, rowBytes, size;
  } cases[] = {{OX_PixelFormat_NTSCDV25, 5, 3, 0, 120000},
               {OX_PixelFormat_PAL_DV100_1080i, 0, 0, 0, 576000},
               {OX_PixelFormat_YUV_420_MPEG2_FIELD, 720, 480, 0, (768 + 384) * 480},
               {OX_PixelFormat_BGRA_4444_8u, 17, 3, 128, 384},
               {OX_PixelFormat_V210_422_10u, 49, 2, 256, 512},
               {0x0D000000, 100, 100, 0, 0},
               {OX_PixelFormat_BGRA_4444_8u, 0, 100, 0, 0}};
  for (bool transient : {false, true}) {
    for (const Case& c : cases) {
      void *base = reinterpret_cast<void*>(1), *pixels = reinterpret_cast<void*>(1);
      int32_t rowBytes = -1;
      uint32_t allocated = 1;
      const OX_Result r = transient
                              ? OX_AllocateTransientPixelBuffer(c.f, c.w, c.h, &base, &pixels, &rowBytes, &allocated)
                              : OX_AllocatePixelBuffer(c.f, c.w, c.h, &base, &pixels, &rowBytes, &allocated);
      EXPECT_EQ(r, OX_Success);
      EXPECT_EQ(rowBytes, c.rowBytes) << std::hex << c.f;
      if (c.size == 0) {
        EXPECT_EQ(base, nullptr);
        EXPECT_EQ(pixels, nullptr);
        EXPECT_EQ(allocated, 0u);
        continue;
      }
      ASSERT_NE(pixels, nullptr);
      const size_t offset = size_t(static_cast<uint8_t*>(pixels) - static_cast<uint8_t*>(base));
      EXPECT_GE(allocated, uint32_t(c.size) + offset + 15);
      std::memset(pixels, 0x5A, size_t(c.size));  // the whole size is usable
      EXPECT_EQ(transient ? OX_FreeTransientPixelBuffer(c.f, base, allocated) : OX_FreePixelBuffer(c.f, base, allocated),
                OX_Success);
    }
  }
}

// Every length 0..300 at every alignment of both pointers, on the SSE2 and AVX paths, with and
// without streaming stores; the bytes around the destination must stay untouched.
TEST(Memory, CopyMemoryIsExactAtEveryLengthAndAlignment) {
  const ProcessorFlags savedFlags = gProcessor;
  const uint32_t savedCache = gCacheBytes;
  std::vector<uint8_t> src(512 + 64), dst(512 + 128);
  std::iota(src.begin(), src.end(), uint8_t(3));
  __builtin_cpu_init();
  for (bool avx : {false, true}) {
    if (avx && !__builtin_cpu_supports("avx")) continue;
    gHasAVX = avx;
    for (uint32_t cache : {0u, 0x100000u}) {  // 0: everything streams; 1 MiB: nothing this small does
      gCacheBytes = cache;
      for (uint32_t len = 0; len <= 300; ++len)
        for (int so = 0; so < 32; ++so)
          for (int d0 = 0; d0 < 32; d0 += (len < 140 ? 1 : 3)) {
            std::fill(dst.begin(), dst.end(), 0xEE);
            OX_CopyMemory(dst.data() + 64 + d0, src.data() + so, len);
            ASSERT_EQ(std::memcmp(dst.data() + 64 + d0, src.data() + so, len), 0)
                << "len " << len << " src " << so << " dst " << d0 << " avx " << avx;
            for (int i = 0; i < 64 + d0; ++i) ASSERT_EQ(dst[i], 0xEE);
            for (size_t i = 64 + d0 + len; i < dst.size(); ++i) ASSERT_EQ(dst[i], 0xEE) << len;
          }
    }
  }
  gProcessor = savedFlags;
  gCacheBytes = savedCache;
}

TEST(Memory, CopyPlanarCopiesBlocksOrRows) {
  // 9x5 picture in padded planes, and in tight planes where each plane is one block.
  const int w = 9, h = 5;
  for (bool tight : {false, true}) {
    const int32_t rb[3] = {tight ? w : 16, tight ? w / 2 : 8, tight ? w / 2 : 8};
    std::vector<uint8_t> s[3], d[3];
    for (int p = 0; p < 3; ++p) {
      s[p].resize(64 * 16);
      d[p].assign(64 * 16, 0);
      for (size_t i = 0; i < s[p].size(); ++i) s[p][i] = uint8_t(i * 7 + p * 50 + 1);
    }
    const void* sp[3] = {s[0].data(), s[1].data(), s[2].data()};
    void* dp[3] = {d[0].data(), d[1].data(), d[2].data()};
    EXPECT_EQ(OX_CopyPlanar_8u(sp, rb, dp, rb, w, h), OX_Success);
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) ASSERT_EQ(d[0][y * rb[0] + x], s[0][y * rb[0] + x]);
    for (int p = 1; p < 3; ++p) {
      // Row copies take height / 2 rows of width / 2; the block copy takes (w * h) / 4 bytes.
      const int rows = h / 2, cw = w / 2;
      const size_t copied = tight ? size_t(w * h / 4) : size_t((rows - 1) * rb[p] + cw);
      for (size_t i = 0; i < d[p].size(); ++i) {
        const bool inside = tight ? i < copied : (int(i) / rb[p] < rows && int(i) % rb[p] < cw);
        ASSERT_EQ(d[p][i], inside ? s[p][i] : 0) << "plane " << p << " byte " << i << " tight " << tight;
      }
    }
  }
  // Height 1: one luma row, no chroma unless each chroma plane is a block.
  std::vector<uint8_t> s(256, 9), d0(256, 0), d1(256, 0), d2(256, 0);
  const void* sp[3] = {s.data(), s.data(), s.data()};
  void* dp[3] = {d0.data(), d1.data(), d2.data()};
  const int32_t srb[3] = {64, 32, 32}, drb[3] = {64, 32, 32};
  OX_CopyPlanar_8u(sp, srb, dp, drb, 20, 1);
  EXPECT_EQ(d0[19], 9);
  EXPECT_EQ(d0[20], 0);
  EXPECT_EQ(std::count(d1.begin(), d1.end(), 0), 256);
  EXPECT_EQ(std::count(d2.begin(), d2.end(), 0), 256);
}

TEST(Memory, ScratchComesFromTheStackUpToTheLimit) {
  {
    ScratchBuffer none(0);
    EXPECT_EQ(none.Get(), nullptr);
  }
  {
    ScratchBuffer small(kScratchStackLimit);
    EXPECT_TRUE(small.FromStack());
    EXPECT_EQ(reinterpret_cast<uintptr_t>(small.Get()) % 16, 0u);
    small.Get()[kScratchStackLimit - 1] = 1;
  }
  const size_t retained = zelcore::utility::MemoryRecycler::RetainedBytes();
  {
    ScratchBuffer large(kScratchStackLimit + 1);
    ASSERT_NE(large.Get(), nullptr);
    EXPECT_FALSE(large.FromStack());
    EXPECT_EQ(reinterpret_cast<uintptr_t>(large.Get()) % 16, 0u);
    large.Get()[kScratchStackLimit] = 1;
  }
  // The large block went back to the recycler when the scratch left its scope.
  EXPECT_GT(zelcore::utility::MemoryRecycler::RetainedBytes(), retained);
}

TEST(Memory, RecyclerReusesAndBoundsRetention) {
  using zelcore::utility::MemoryRecycler;
  uint32_t size1 = 0, size2 = 0;
  void* a = MemoryRecycler::Allocate(1000000, size1);
  ASSERT_NE(a, nullptr);
  EXPECT_GE(size1, 1000000u);
  EXPECT_LE(size1, 1000000u + 1000000u / 8);
  MemoryRecycler::Recycle(a, size1);
  void* b = MemoryRecycler::Allocate(size1 - 100, size2);
  EXPECT_EQ(a, b) << "a block of the same class is reused";
  EXPECT_EQ(size1, size2);
  MemoryRecycler::Recycle(b, size2);
  // Many blocks of one class: at most the per-class bound is kept.
  std::vector<std::pair<void*, uint32_t>> blocks;
  for (size_t i = 0; i < MemoryRecycler::kMaxBlocksPerClass * 3; ++i) {
    uint32_t s = 0;
    blocks.push_back({MemoryRecycler::Allocate(70000, s), s});
  }
  const size_t before = MemoryRecycler::RetainedBytes();
  for (auto& [p, s] : blocks) MemoryRecycler::Recycle(p, s);
  EXPECT_LE(MemoryRecycler::RetainedBytes() - before, MemoryRecycler::kMaxBlocksPerClass * blocks[0].second);
  EXPECT_LE(MemoryRecycler::RetainedBytes(), MemoryRecycler::kMaxRetainedBytes);
}

}  // namespace
}  // namespace OX
