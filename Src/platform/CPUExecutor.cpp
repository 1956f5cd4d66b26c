// The processor pool on oneTBB. One arena for the process while an executor lives; work from a
// slice that itself runs slices joins the same arena, where TBB lets the waiting thread help, so
// nesting cannot deadlock.
#include <algorithm>
#include <vector>

#include <oneapi/tbb/blocked_range.h>
#include <oneapi/tbb/info.h>
#include <oneapi/tbb/parallel_for.h>
#include <oneapi/tbb/task_arena.h>

#include "platform/zelcore.h"

namespace zelcore {
namespace threads {

struct AsyncExecutor::Impl {
  tbb::task_arena fArena;
  Impl() : fArena(tbb::info::default_concurrency()) {}
};

namespace {
// Live executors; the newest one's arena runs the work. Never destroyed, so that an executor still
// held by a global at process exit (a host that never ends the library) can unregister itself.
struct LiveExecutors {
  std::mutex fMutex;
  std::vector<AsyncExecutor*> fList;
};
LiveExecutors& Live() {
  static LiveExecutors* live = new LiveExecutors;
  return *live;
}
}  // namespace

AsyncExecutor::AsyncExecutor() : fImpl(new Impl) {
  std::lock_guard<std::mutex> lock(Live().fMutex);
  Live().fList.push_back(this);
}

AsyncExecutor::~AsyncExecutor() {
  std::lock_guard<std::mutex> lock(Live().fMutex);
  auto& list = Live().fList;
  list.erase(std::remove(list.begin(), list.end(), this), list.end());
}

int AsyncExecutor::Concurrency() const { return fImpl->fArena.max_concurrency(); }

boost::shared_ptr<AsyncExecutor> CreateCPUBoundExecutor() { return boost::shared_ptr<AsyncExecutor>(new AsyncExecutor); }

void ExecuteCPUBoundTaskOnAllProcessors(const boost::function<void(int)>& task, int count) {
  if (count <= 0) return;
  if (count == 1) {
    task(0);
    return;
  }
  auto body = [&] {
    tbb::parallel_for(0, count, 1, [&](int i) { task(i); }, tbb::simple_partitioner());
  };
  tbb::task_arena* arena = nullptr;
  {
    std::lock_guard<std::mutex> lock(Live().fMutex);
    if (!Live().fList.empty()) arena = &Live().fList.back()->fImpl->fArena;
  }
  if (arena)
    arena->execute(body);
  else
    body();
}

}  // namespace threads
}  // namespace zelcore
