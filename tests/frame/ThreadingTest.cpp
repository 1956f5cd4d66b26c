// Slice threading: every slice exactly once, nesting, and the library used from many threads.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <random>
#include <thread>
#include <vector>
#include <mutex>
#include <set>

#include "Ombrix.h"
#include "platform/zelcore.h"

namespace OX {
namespace {

class CountingTask : public Threading::Task {
 public:
  explicit CountingTask(int count) : fCount(count), fRuns(size_t(count > 0 ? count : 0)) {}
  int SliceCount() override { return fCount; }
  void RunSlice(int index) override {
    ASSERT_GE(index, 0);
    ASSERT_LT(index, fCount);
    fRuns[size_t(index)].fetch_add(1);
  }
  int fCount;
  std::vector<std::atomic<int>> fRuns;
};

TEST(Threading, EverySliceRunsExactlyOnce) {
  for (int count : {0, 1, 2, 3, 4, 33, 1000}) {
    CountingTask task(count);
    Threading::RunTask(task);
    for (int i = 0; i < count; ++i) ASSERT_EQ(task.fRuns[size_t(i)].load(), 1) << "slice " << i << " of " << count;
  }
}

// A slice that runs a task of its own: the pool must not deadlock, and the inner slices each run once.
class NestingTask : public Threading::Task {
 public:
  int SliceCount() override { return 8; }
  void RunSlice(int) override {
    CountingTask inner(16);
    Threading::RunTask(inner);
    for (auto& r : inner.fRuns)
      if (r.load() == 1) fInnerOk.fetch_add(1);
  }
  std::atomic<int> fInnerOk{0};
};

TEST(Threading, NestedTasksComplete) {
  NestingTask task;
  Threading::RunTask(task);
  EXPECT_EQ(task.fInnerOk.load(), 8 * 16);
}

TEST(Threading, SlicesRunOnSeveralThreads) {
  struct ThreadsTask : Threading::Task {
    std::mutex m;
    std::set<std::thread::id> ids;
    int SliceCount() override { return 64; }
    void RunSlice(int) override {
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
      std::lock_guard<std::mutex> lock(m);
      ids.insert(std::this_thread::get_id());
    }
  } task;
  Threading::RunTask(task);
  if (std::thread::hardware_concurrency() > 1) {
    EXPECT_GT(task.ids.size(), 1u);
  }
}

// Allocation, copy and tasks from 8 threads at once for a while: every result stays correct.
TEST(Threading, LibraryUnderEightThreads) {
  std::atomic<int> failures{0};
  std::atomic<long> rounds{0};
  const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(1500);
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([&, t] {
      std::mt19937 rng(unsigned(t) * 7919u + 1);
      std::vector<uint8_t> src(1 << 20);
      for (auto& b : src) b = uint8_t(rng());
      while (std::chrono::steady_clock::now() < until) {
        const uint32_t size = 1 + rng() % (1 << 20);
        void* base = nullptr;
        uint32_t allocated = 0;
        auto* p = static_cast<uint8_t*>(OX_AllocateTransientMemoryBlock(size, &base, &allocated));
        if (!p) {
          ++failures;
          continue;
        }
        OX_CopyMemory(p, src.data(), size);
        if (std::memcmp(p, src.data(), size) != 0) ++failures;
        OX_FreeTransientMemoryBlock(base, allocated);
        CountingTask task(int(rng() % 50));
        Threading::RunTask(task);
        for (auto& r : task.fRuns)
          if (r.load() != 1) ++failures;
        ++rounds;
      }
    });
  }
  for (auto& th : threads) th.join();
  EXPECT_EQ(failures.load(), 0);
  EXPECT_GT(rounds.load(), 8);
}

}  // namespace
}  // namespace OX
