// The platform layer: settings store, error path, contract reports and the executor.
#include <gtest/gtest.h>

#include <atomic>

#include "frame/Contract.h"
#include "platform/zelcore.h"

namespace {

TEST(Platform, SettingsStoreReturnsDefaultsForAbsentKeys) {
  auto& db = zelcore::debug::DebugDatabase::Instance();
  EXPECT_EQ(db.GetEntry("OX.test.absent", "fallback"), "fallback");
  db.SetEntry("OX.test.key", "value");
  EXPECT_EQ(db.GetEntry("OX.test.key", "fallback"), "value");
  db.RemoveEntry("OX.test.key");
  EXPECT_EQ(db.GetEntry("OX.test.key", "x"), "x");
  EXPECT_EQ(&db, &zelcore::debug::DebugDatabase::Instance());
}

int gSeenLevel = -1, gSeenA = 0, gSeenB = 0;
std::string gSeenText;
void Recording(int level, const char* text, int a, int b, bool) {
  gSeenLevel = level;
  gSeenText = text;
  gSeenA = a;
  gSeenB = b;
}

TEST(Platform, ContractFailuresReportAndGoOn) {
  const uint64_t before = zelcore::config::ErrorCount();
  OX_CONTRACT(1 + 1 == 3, "OX::ResampleKernel::ScaleForUpSample", 440);
  EXPECT_EQ(zelcore::config::ErrorCount(), before + 1) << "the default handler counts and returns";
  OX_CONTRACT(1 + 1 == 2, "OX::ResampleKernel::ScaleForUpSample", 440);
  EXPECT_EQ(zelcore::config::ErrorCount(), before + 1) << "a holding contract reports nothing";
  auto previous = zelcore::config::SetErrorHandler(&Recording);
  OX_CONTRACT(false, "OX::ResampleKernel::CalculateDefaultKernel", 377);
  zelcore::config::SetErrorHandler(previous);
  EXPECT_EQ(gSeenLevel, 0);
  EXPECT_EQ(gSeenText,
            "$$$/zelcore/utility/Error/Contract/InputContractViolation=An input contract violation has occurred!");
  EXPECT_EQ(gSeenA, 105);
  EXPECT_EQ(gSeenB, 25);
  EXPECT_FALSE(zelcore::debug::BreakAfterContractDialog("c", "f", "fn", 1));
}

TEST(Platform, ExecutorRunsEachIndexOnceWithoutAPool) {
  // Outside the library's start, the executor still runs every index (on TBB's own arena).
  std::vector<std::atomic<int>> seen(300);
  zelcore::threads::ExecuteCPUBoundTaskOnAllProcessors([&](int i) { seen[size_t(i)]++; }, 300);
  for (auto& s : seen) EXPECT_EQ(s.load(), 1);
  auto pool = zelcore::threads::CreateCPUBoundExecutor();
  EXPECT_GE(pool->Concurrency(), 1);
  zelcore::threads::ExecuteCPUBoundTaskOnAllProcessors([&](int) { FAIL(); }, 0);
}

}  // namespace
