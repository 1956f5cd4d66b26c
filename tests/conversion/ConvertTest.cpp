// OX_Convert as a whole: the same-format copy, row bytes of either sign and with padding, origins
// of both sides, result codes, and the same bytes from many threads as from one.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "conversion/ConvertPipeline.h"
#include "conversion/RowConverterChain.h"
#include "frame/PixelFormat.h"

namespace OX {
namespace {

std::vector<uint8_t> RandomBytes(size_t n, unsigned seed) {
  std::mt19937 rng(seed);
  std::vector<uint8_t> v(n);
  for (auto& b : v) b = uint8_t(rng());
  return v;
}

// Fills a raw buffer with valid samples of its format: random bytes, floats in -0.1..1.1 at 32f,
// at most 32768 at 15u, so that every converter sees in-range and out-of-range values.
std::vector<uint8_t> RandomPicture(OX_PixelFormat format, int width, int height, int32_t rowBytes, unsigned seed) {
  std::vector<uint8_t> v = RandomBytes(size_t(rowBytes) * height, seed);
  std::mt19937 rng(seed + 1);
  if (DepthOf(format) == kDepth32f) {
    float* f = reinterpret_cast<float*>(v.data());
    for (size_t i = 0; i < v.size() / 4; ++i) f[i] = float(int(rng() % 1201) - 100) / 1000.0f;
  } else if (DepthOf(format) == kDepth15u) {
    uint16_t* s = reinterpret_cast<uint16_t*>(v.data());
    for (size_t i = 0; i < v.size() / 2; ++i) s[i] = uint16_t(rng() % 32769);
  }
  return v;
}

TEST(ConvertSameFormat, BlockAndRowCopies) {
  struct Case {
    const char* fName;
    OX_PixelFormat fFormat;
    int fWidth, fHeight;
    int fPadSource, fPadDestination;  // bytes added to the tight row bytes
    bool fNegative;
  };
  const Case cases[] = {
      {"tight", OX_PixelFormat_BGRA_4444_8u, 17, 5, 0, 0, false},
      {"tight, negative", OX_PixelFormat_BGRA_4444_8u, 17, 5, 0, 0, true},
      {"equal padded rows", OX_PixelFormat_UYVY_422_8u, 9, 4, 12, 12, false},
      {"equal padded rows, negative", OX_PixelFormat_VUYA_4444_32f, 3, 4, 16, 16, true},
      {"source padded", OX_PixelFormat_V210_422_10u, 7, 3, 96, 0, false},
      {"destination padded", OX_PixelFormat_RGB_444_10u, 11, 6, 0, 20, false},
      {"both padded, unequal", OX_PixelFormat_XRGB_4444_15u, 5, 3, 8, 24, true},
  };
  for (const Case& c : cases) {
    const int32_t tight = TightRowBytes(c.fFormat, c.fWidth);
    const int32_t sRow = tight + c.fPadSource, dRow = tight + c.fPadDestination;
    std::vector<uint8_t> src = RandomBytes(size_t(sRow) * c.fHeight, 1);
    std::vector<uint8_t> dst(size_t(dRow) * c.fHeight, 0x5A);
    const uint8_t* s = src.data();
    uint8_t* d = dst.data();
    int32_t sStep = sRow, dStep = dRow;
    if (c.fNegative) {
      s += size_t(sRow) * (c.fHeight - 1);
      d += size_t(dRow) * (c.fHeight - 1);
      sStep = -sRow;
      dStep = -dRow;
    }
    ASSERT_EQ(OX_Convert(s, sStep, c.fFormat, d, dStep, c.fFormat, c.fWidth, c.fHeight, 3), OX_Success) << c.fName;
    // Row y of the walk is row y in memory from the start pointer; both walks agree on rows.
    for (int y = 0; y < c.fHeight; ++y) {
      for (int x = 0; x < dRow; ++x) {
        const uint8_t expected = x < tight ? src[size_t(y) * sRow + x] : 0x5A;
        ASSERT_EQ(dst[size_t(y) * dRow + x], expected) << c.fName << " row " << y << " byte " << x;
      }
    }
  }
}

TEST(ConvertSameFormat, ContainersAndEmptyPictures) {
  std::vector<uint8_t> frame = RandomBytes(144000, 3), out(144000 + 16, 0);
  EXPECT_EQ(OX_Convert(frame.data(), 0, OX_PixelFormat_PALDV25, out.data(), 0, OX_PixelFormat_PALDV25, 720, 576, 3), 0);
  EXPECT_EQ(std::memcmp(frame.data(), out.data(), frame.size()), 0);
  EXPECT_EQ(out[144000], 0);

  const int32_t planarSize = OX_PixelFormatSize(OX_PixelFormat_YUV_420_MPEG2_FRAME, 64, 32);
  std::vector<uint8_t> planar = RandomBytes(size_t(planarSize), 4), planarOut(size_t(planarSize), 0);
  EXPECT_EQ(OX_Convert(planar.data(), 0, OX_PixelFormat_YUV_420_MPEG2_FRAME, planarOut.data(), 0,
                       OX_PixelFormat_YUV_420_MPEG2_FRAME, 64, 32, 3),
            0);
  EXPECT_EQ(planar, planarOut);

  // An unknown container byte: row bytes as the size when equal, -13 otherwise.
  const OX_PixelFormat unknown = 0x0D000000 | OX_PixelFormat_UYVY_422_8u;
  std::vector<uint8_t> small = RandomBytes(40, 5), smallOut(48, 0);
  EXPECT_EQ(OX_Convert(small.data(), 40, unknown, smallOut.data(), 40, unknown, 1, 1, 3), 0);
  EXPECT_EQ(std::memcmp(small.data(), smallOut.data(), 40), 0);
  EXPECT_EQ(smallOut[40], 0);
  EXPECT_EQ(OX_Convert(small.data(), 40, unknown, smallOut.data(), 44, unknown, 1, 1, 3), OX_ErrSizeMismatch);

  // Height 0 or less writes nothing.
  std::vector<uint8_t> untouched(64, 0x77);
  for (int h : {0, -3}) {
    EXPECT_EQ(OX_Convert(small.data(), 16, OX_PixelFormat_BGRA_4444_8u, untouched.data(), 16,
                         OX_PixelFormat_BGRA_4444_8u, 4, h, 3),
              0);
    EXPECT_EQ(OX_Convert(small.data(), 16, OX_PixelFormat_BGRA_4444_8u, untouched.data(), 16,
                         OX_PixelFormat_UYVY_422_8u, 4, h, 3),
              0);
  }
  EXPECT_EQ(untouched, std::vector<uint8_t>(64, 0x77));
}

TEST(Convert, ResultCodes) {
  std::vector<uint8_t> a(4096, 1), b(4096, 0);
  struct Case {
    OX_PixelFormat fFrom, fTo;
    int fHeight;
    OX_Result fResult;
  };
  const Case cases[] = {
      {0x44, OX_PixelFormat_BGRA_4444_8u, 2, OX_ErrNoRoute},  // no row for a 10u BGRA code
      {OX_PixelFormat_BGRA_4444_8u, 0x845, 2, OX_ErrNoRoute},
      {0x44, OX_PixelFormat_BGRA_4444_8u, 0, OX_ErrNoRoute},  // the route is checked before the height
      {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_VUYA_4444_8u, 0, OX_Success},
  };
  for (const Case& c : cases)
    EXPECT_EQ(OX_Convert(a.data(), 64, c.fFrom, b.data(), 64, c.fTo, 16, c.fHeight, 3), c.fResult);
  // Nothing to write: a width of 0 or less; missing buffers with rows to write are refused.
  for (int w : {0, -5})
    EXPECT_EQ(OX_Convert(a.data(), 64, OX_PixelFormat_BGRA_4444_8u, b.data(), 64, OX_PixelFormat_UYVY_422_8u, w, 4, 3),
              OX_Success);
  EXPECT_EQ(OX_Convert(nullptr, 64, OX_PixelFormat_BGRA_4444_8u, b.data(), 64, OX_PixelFormat_UYVY_422_8u, 16, 4, 3),
            OX_ErrNullSource);
  EXPECT_EQ(OX_Convert(a.data(), 64, OX_PixelFormat_BGRA_4444_8u, nullptr, 64, OX_PixelFormat_UYVY_422_8u, 16, 4, 3),
            OX_ErrNullDest);
  EXPECT_EQ(OX_Convert(nullptr, 64, OX_PixelFormat_BGRA_4444_8u, b.data(), 64, OX_PixelFormat_BGRA_4444_8u, 16, 4, 3),
            OX_ErrNullSource);
  EXPECT_EQ(b, std::vector<uint8_t>(4096, 0));
  // The raw road refuses containers outright.
  EXPECT_EQ(OX_ConvertRows(a.data(), 64, OX_PixelFormat_NTSCDV25, b.data(), 64, OX_PixelFormat_BGRA_4444_8u, 16, 2, 3),
            OX_ErrBadSourceFormat);
  EXPECT_EQ(OX_ConvertRows(a.data(), 64, OX_PixelFormat_BGRA_4444_8u, b.data(), 64, OX_PixelFormat_YUV_420_MPEG2_FRAME,
                           16, 2, 3),
            OX_ErrBadDestFormat);
}

// A bottom-up BGRA picture whose rows are distinct greys goes to top-down 4:2:2 and back upright.
TEST(Convert, OriginsKeepThePictureUpright) {
  const int width = 6, height = 5;
  std::vector<uint8_t> bgra(size_t(width) * 4 * height);
  // Picture row r (0 = top) is stored at memory row height - 1 - r and has grey 40 r + 20.
  for (int r = 0; r < height; ++r)
    for (int x = 0; x < width; ++x) {
      uint8_t* p = &bgra[size_t(height - 1 - r) * width * 4 + x * 4];
      p[0] = p[1] = p[2] = uint8_t(40 * r + 20);
      p[3] = 255;
    }
  for (OX_PixelFormat yuv : {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_YUYV_422_8u_709}) {
    const int32_t yuvRow = TightRowBytes(yuv, width);
    std::vector<uint8_t> packed(size_t(yuvRow) * height);
    ASSERT_EQ(OX_Convert(bgra.data(), width * 4, OX_PixelFormat_BGRA_4444_8u, packed.data(), yuvRow, yuv, width,
                         height, 3),
              0);
    const int lumaOffset = (yuv & kOrderBit) ? 0 : 1;
    for (int r = 0; r < height; ++r) {
      // Studio-range luma of a grey: 16 + 219 g / 255, whatever the matrix.
      const double expected = 16.0 + 219.0 * (40 * r + 20) / 255.0;
      EXPECT_NEAR(packed[size_t(r) * yuvRow + lumaOffset], expected, 1.0) << "picture row " << r;
    }
    std::vector<uint8_t> back(bgra.size());
    ASSERT_EQ(OX_Convert(packed.data(), yuvRow, yuv, back.data(), width * 4, OX_PixelFormat_BGRA_4444_8u, width,
                         height, 3),
              0);
    for (size_t i = 0; i < back.size(); ++i) ASSERT_NEAR(back[i], bgra[i], 1) << "byte " << i;
  }
}

// Row bytes above the tight value and negative row bytes give the same pixels as tight rows.
TEST(Convert, PaddedAndNegativeRowBytes) {
  struct Case {
    OX_PixelFormat fFrom, fTo;
  };
  const Case cases[] = {
      {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_UYVY_422_8u},
      {OX_PixelFormat_V210_422_10u, OX_PixelFormat_BGRA_4444_32f},
      {OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_RGB_444_10u},
      {OX_PixelFormat_ARGB_4444_15u, OX_PixelFormat_VUYX_4444_8u_709},
  };
  const int width = 13, height = 7;
  for (const Case& c : cases) {
    const int32_t sTight = TightRowBytes(c.fFrom, width), dTight = TightRowBytes(c.fTo, width);
    const std::vector<uint8_t> src = RandomPicture(c.fFrom, width, height, sTight, 11);
    std::vector<uint8_t> reference(size_t(dTight) * height);
    ASSERT_EQ(OX_Convert(src.data(), sTight, c.fFrom, reference.data(), dTight, c.fTo, width, height, 3), 0);

    // Padded copies of the same picture on both sides.
    const int32_t sPad = sTight + 48, dPad = dTight + 80;
    std::vector<uint8_t> srcPadded(size_t(sPad) * height, 0xC3), dstPadded(size_t(dPad) * height, 0x3C);
    for (int y = 0; y < height; ++y) std::memcpy(&srcPadded[size_t(y) * sPad], &src[size_t(y) * sTight], sTight);
    ASSERT_EQ(OX_Convert(srcPadded.data(), sPad, c.fFrom, dstPadded.data(), dPad, c.fTo, width, height, 3), 0);
    for (int y = 0; y < height; ++y) {
      ASSERT_EQ(std::memcmp(&dstPadded[size_t(y) * dPad], &reference[size_t(y) * dTight], dTight), 0) << "row " << y;
      for (int x = dTight; x < dPad; ++x) ASSERT_EQ(dstPadded[size_t(y) * dPad + x], 0x3C);
    }

    // The same buffers walked backward: memory rows reversed on both sides, the same picture.
    std::vector<uint8_t> srcReversed(src.size()), dstReversed(reference.size());
    for (int y = 0; y < height; ++y)
      std::memcpy(&srcReversed[size_t(height - 1 - y) * sTight], &src[size_t(y) * sTight], sTight);
    ASSERT_EQ(OX_Convert(&srcReversed[size_t(height - 1) * sTight], -sTight, c.fFrom,
                         &dstReversed[size_t(height - 1) * dTight], -dTight, c.fTo, width, height, 3),
              0);
    for (int y = 0; y < height; ++y)
      ASSERT_EQ(std::memcmp(&dstReversed[size_t(height - 1 - y) * dTight], &reference[size_t(y) * dTight], dTight), 0)
          << "row " << y;
  }
}

// Rows wider than 16384 pixels take their scratch from transient blocks; the result is the chain's.
TEST(Convert, WideRowsUseTransientScratch) {
  const int width = 20000, height = 2;
  const int32_t sRow = width * 4, dRow = TightRowBytes(OX_PixelFormat_UYVY_422_8u, width);
  const std::vector<uint8_t> src = RandomBytes(size_t(sRow) * height, 8);
  std::vector<uint8_t> dst(size_t(dRow) * height, 0);
  ASSERT_EQ(OX_Convert(src.data(), sRow, OX_PixelFormat_BGRA_4444_8u, dst.data(), dRow, OX_PixelFormat_UYVY_422_8u,
                       width, height, 3),
            0);
  const RowConverterChain chain(OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_UYVY_422_8u, 3);
  ASSERT_EQ(chain.Count(), 3);
  std::vector<uint8_t> a(size_t(width) * 16), b(size_t(width) * 16), row(size_t(dRow) + 0);
  for (int y = 0; y < height; ++y) {
    // Bottom-up source row y is picture row height - 1 - y, stored top-down in the destination.
    chain.ApplyWithScratch(&src[size_t(y) * sRow], row.data(), width, a.data(), b.data());
    EXPECT_EQ(std::memcmp(row.data(), &dst[size_t(height - 1 - y) * dRow], size_t(dRow)), 0) << "row " << y;
  }
}

TEST(Convert, ManyThreadsGiveTheSameBytesAsOne) {
  const OX_PixelFormat pairs[][2] = {
      {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_UYVY_422_8u},
      {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_BGRA_4444_8u},
      {OX_PixelFormat_V210_422_10u, OX_PixelFormat_BGRA_4444_8u},
      {OX_PixelFormat_PRGB_4444_32f_Linear, OX_PixelFormat_YUYV_422_8u},
      {OX_PixelFormat_VUYA_4444_32f, OX_PixelFormat_BGRA_4444_8u},
      {OX_PixelFormat_RGB_444_10u, OX_PixelFormat_V210_422_10u_709},
  };
  const int width = 301, height = 37;
  struct Job {
    OX_PixelFormat fFrom, fTo;
    std::vector<uint8_t> fSource, fExpected;
    int32_t fSourceRow, fDestinationRow;
  };
  std::vector<Job> jobs;
  for (const auto& p : pairs) {
    Job j{p[0], p[1], {}, {}, PaddedRowBytes(p[0], width), PaddedRowBytes(p[1], width)};
    j.fSource = RandomPicture(p[0], width, height, j.fSourceRow, unsigned(jobs.size() + 20));
    j.fExpected.assign(size_t(j.fDestinationRow) * height, 0);
    ASSERT_EQ(OX_Convert(j.fSource.data(), j.fSourceRow, j.fFrom, j.fExpected.data(), j.fDestinationRow, j.fTo, width,
                         height, 3),
              0);
    jobs.push_back(std::move(j));
  }
  std::vector<int> mismatches(8, 0);
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([&, t] {
      for (int round = 0; round < 6; ++round) {
        const Job& j = jobs[size_t(t + round) % jobs.size()];
        std::vector<uint8_t> out(j.fExpected.size(), 0);
        if (OX_Convert(j.fSource.data(), j.fSourceRow, j.fFrom, out.data(), j.fDestinationRow, j.fTo, width, height,
                       3) != 0 ||
            out != j.fExpected)
          ++mismatches[size_t(t)];
      }
    });
  }
  for (auto& th : threads) th.join();
  for (int t = 0; t < 8; ++t) EXPECT_EQ(mismatches[size_t(t)], 0) << "thread " << t;
}

}  // namespace
}  // namespace OX
