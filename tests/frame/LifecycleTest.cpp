// Counted start and end, debug flags, settings and the cache rules.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "Ombrix.h"
#include "frame/CopyMemory.h"
#include "frame/Globals.h"
#include "frame/Lifecycle.h"
#include "platform/zelcore.h"

namespace OX {
namespace {

// Restores the flags and cache globals that a test changes.
struct SavedGlobals {
  ProcessorFlags fFlags = gProcessor;
  uint32_t fLevel = gCacheLevel, fBytes = gCacheBytes;
  bool fMotion = gDebugMotionFlag, fOrigin = gForceTopLeftOrigin;
  ~SavedGlobals() {
    gProcessor = fFlags;
    gCacheLevel = fLevel;
    gCacheBytes = fBytes;
    gDebugMotionFlag = fMotion;
    gForceTopLeftOrigin = fOrigin;
  }
};

TEST(Lifecycle, StartAndEndAreCounted) {
  ASSERT_EQ(gInitCount, 1);  // the test environment started the library once
  ASSERT_TRUE(gCPUExecutor);
  EXPECT_EQ(OX_Initialize(), OX_Success);
  EXPECT_EQ(gInitCount, 2);
  EXPECT_EQ(OX_Terminate(), OX_Success);
  EXPECT_TRUE(gCPUExecutor) << "one terminate of two initializes keeps the library running";
  EXPECT_EQ(OX_Terminate(), OX_Success);
  EXPECT_FALSE(gCPUExecutor);
  EXPECT_EQ(gDVEncoderHandle, nullptr);
  // A terminate with nothing running drives the count negative; the next initialize only brings
  // it back to 0 and starts nothing; the one after that starts the library again.
  EXPECT_EQ(OX_Terminate(), OX_Success);
  EXPECT_EQ(gInitCount, -1);
  EXPECT_EQ(OX_Initialize(), OX_Success);
  EXPECT_EQ(gInitCount, 0);
  EXPECT_FALSE(gCPUExecutor);
  EXPECT_EQ(OX_Initialize(), OX_Success);
  EXPECT_EQ(gInitCount, 1);
  EXPECT_TRUE(gCPUExecutor);
  EXPECT_NE(gDVEncoderHandle, nullptr);
}

TEST(Lifecycle, DebugFlagsSetTheirGlobalAndIgnoreTheRest) {
  SavedGlobals saved;
  const ProcessorFlags before = gProcessor;
  EXPECT_EQ(OX_SetDebugFlag(11, 1), OX_Success);
  EXPECT_EQ(OX_SetDebugFlag(1, 1), OX_Success);
  EXPECT_EQ(OX_SetDebugFlag(0xFFFFFFFFu, 1), OX_Success);
  EXPECT_EQ(std::memcmp(&before, &gProcessor, sizeof before), 0);
  struct Case {
    uint32_t index;
    bool* flag;
  } cases[] = {{0, &gDebugMotionFlag}, {2, &gHasSSE}, {3, &gHasSSE2},   {4, &gHasSSE3},  {5, &gHasSSSE3},
               {6, &gHasSSE41},        {7, &gHasSSE42}, {8, &gHasAVX}, {9, &gHasAVX2}, {10, &gForceTopLeftOrigin}};
  for (const Case& c : cases) {
    OX_SetDebugFlag(c.index, 0);
    EXPECT_FALSE(*c.flag) << c.index;
    OX_SetDebugFlag(c.index, -7);  // any non-zero value is true
    EXPECT_TRUE(*c.flag) << c.index;
  }
  OX_SetDebugFlag(6, 0);
  EXPECT_FALSE(OX_hasSSE4());
  OX_SetDebugFlag(8, 1);
  EXPECT_TRUE(OX_hasAVX());
  OX_SetDebugFlag(9, 0);
  EXPECT_FALSE(OX_hasAVX2());
}

TEST(Lifecycle, ProbeSetsButNeverClears) {
  SavedGlobals saved;
  gProcessor = {};
  OX_SetDebugFlag(9, 1);  // AVX2 is never probed: only the host's flag turns it on
  OX_SetDebugFlag(7, 1);
  ProbeProcessorFeatures();
  EXPECT_TRUE(gHasAVX2);
  EXPECT_FALSE(gHasAVX);
  EXPECT_TRUE(gHasSSE42);
  __builtin_cpu_init();
  EXPECT_EQ(gHasSSE2, bool(__builtin_cpu_supports("sse2")));
  EXPECT_EQ(gHasSSSE3, bool(__builtin_cpu_supports("ssse3")));
  EXPECT_EQ(gHasSSE41, bool(__builtin_cpu_supports("sse4.1")));
}

TEST(Lifecycle, SettingsAreComparedExactly) {
  SavedGlobals saved;
  auto& db = zelcore::debug::DebugDatabase::Instance();
  struct Case {
    const char *avx, *avx2;
    bool expectAVX, expectAVX2;
  } cases[] = {{"true", nullptr, false, true},  {"TRUE", nullptr, true, true}, {"True", "true", true, false},
               {"true ", "1", true, true},      {nullptr, nullptr, true, true}, {"true", "true", false, false}};
  for (const Case& c : cases) {
    gHasAVX = gHasAVX2 = true;
    if (c.avx) db.SetEntry("OX.disableAVX", c.avx); else db.RemoveEntry("OX.disableAVX");
    if (c.avx2) db.SetEntry("OX.disableAVX2", c.avx2); else db.RemoveEntry("OX.disableAVX2");
    ReadSettings();
    EXPECT_EQ(gHasAVX, c.expectAVX) << (c.avx ? c.avx : "(absent)");
    EXPECT_EQ(gHasAVX2, c.expectAVX2) << (c.avx2 ? c.avx2 : "(absent)");
  }
  db.RemoveEntry("OX.disableAVX");
  db.RemoveEntry("OX.disableAVX2");
}

TEST(Lifecycle, CacheRecordsAndFallback) {
  SavedGlobals saved;
  using platform::CacheRecord;
  // No description at all: the fallback by flags, and the copy threshold is half of it.
  gProcessor = {};
  gHasSSE2 = true;
  ApplyCacheRecords(std::nullopt);
  EXPECT_EQ(gCacheBytes, 0x100000u);
  EXPECT_EQ(gCacheLevel, 2u);
  EXPECT_FALSE(PlanCopyMemory(0x7FFFF).fStream);
  EXPECT_TRUE(PlanCopyMemory(0x80000).fStream);
  gHasAVX = true;
  ApplyCacheRecords(std::nullopt);
  EXPECT_EQ(gCacheBytes, 0x300000u);
  gProcessor = {};
  ApplyCacheRecords(std::nullopt);
  EXPECT_EQ(gCacheBytes, 0u);
  // A description with no unified cache keeps 0 and does not fall back; every vector copy streams.
  gHasSSE2 = true;
  ApplyCacheRecords(std::vector<CacheRecord>{{1, 32768, false}, {2, 262144, false}});
  EXPECT_EQ(gCacheBytes, 0u);
  EXPECT_EQ(gCacheLevel, 0u);
  EXPECT_TRUE(PlanCopyMemory(128).fStream);
  EXPECT_EQ(PlanCopyMemory(127).fPath, CopyPlan::kBlockMove);
  // The first unified cache of the highest level wins.
  ApplyCacheRecords(std::vector<CacheRecord>{
      {1, 32768, false}, {2, 1 << 20, true}, {3, 8 << 20, true}, {3, 16 << 20, true}, {2, 4 << 20, true}});
  EXPECT_EQ(gCacheLevel, 3u);
  EXPECT_EQ(gCacheBytes, 8u << 20);
}

TEST(Lifecycle, CacheQueryReadsSysfsShapedRecords) {
  namespace fs = std::filesystem;
  const fs::path dir = fs::temp_directory_path() / ("ombrix-cache-" + std::to_string(::getpid()));
  fs::remove_all(dir);
  auto write = [&](int index, const char* level, const char* type, const char* size) {
    fs::create_directories(dir / ("index" + std::to_string(index)));
    std::ofstream(dir / ("index" + std::to_string(index)) / "level") << level << "\n";
    std::ofstream(dir / ("index" + std::to_string(index)) / "type") << type << "\n";
    std::ofstream(dir / ("index" + std::to_string(index)) / "size") << size << "\n";
  };
  write(0, "1", "Data", "48K");
  write(1, "1", "Instruction", "32K");
  write(2, "2", "Unified", "2048K");
  write(3, "3", "Unified", "30M");
  auto records = platform::QueryCacheRecordsAt(dir.c_str());
  ASSERT_TRUE(records);
  ASSERT_EQ(records->size(), 4u);
  EXPECT_EQ((*records)[0].fBytes, 48u * 1024);
  EXPECT_FALSE((*records)[0].fUnified);
  EXPECT_TRUE((*records)[3].fUnified);
  EXPECT_EQ((*records)[3].fBytes, 30u << 20);
  EXPECT_EQ((*records)[3].fLevel, 3u);
  EXPECT_FALSE(platform::QueryCacheRecordsAt((dir / "missing").c_str()));
  fs::remove_all(dir);
}

}  // namespace
}  // namespace OX
