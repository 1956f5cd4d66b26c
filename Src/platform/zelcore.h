// Stand-in for the foundation library the engine links: memory recycler, settings store,
// contract reporting and the CPU-bound executor. Small on purpose: each operation does what
// the engine expects of it and nothing more.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include "Ombrix.h"

namespace zelcore {
namespace utility {

// Recycles large blocks by size class. Frame work asks for the same few sizes over and over, so a
// freed block is kept for the next request of its class; retention is bounded (per class and in
// total bytes) so that a long run cannot grow without limit. Thread-safe.
class MemoryRecycler {
 public:
  static MemoryRecycler& Instance();
  // Returns at least `size` bytes or null; `outSize` receives the size to hand back to Recycle.
  static void* Allocate(uint32_t size, uint32_t& outSize);
  static void Recycle(void* block, uint32_t size);

  // Class size used for a request: the unit of recycling.
  static uint32_t ClassSize(uint32_t size);
  // Bytes held for reuse now, for tests and diagnostics.
  static size_t RetainedBytes();
  static void Purge();

  static constexpr size_t kMaxRetainedBytes = size_t(512) << 20;
  static constexpr size_t kMaxBlocksPerClass = 16;
};

// Allocator for short strings (settings keys and values).
class SmallBlockAllocator {
 public:
  static void* Allocate(size_t size);
  static void Dispose(void* block, size_t size);
};

template <class T>
struct SmallBlockStdAllocator {
  using value_type = T;
  SmallBlockStdAllocator() = default;
  template <class U>
  SmallBlockStdAllocator(const SmallBlockStdAllocator<U>&) {}
  T* allocate(size_t n) { return static_cast<T*>(SmallBlockAllocator::Allocate(n * sizeof(T))); }
  void deallocate(T* p, size_t n) { SmallBlockAllocator::Dispose(p, n * sizeof(T)); }
  template <class U>
  bool operator==(const SmallBlockStdAllocator<U>&) const { return true; }
};

using String = std::basic_string<char, std::char_traits<char>, SmallBlockStdAllocator<char>>;

}  // namespace utility

namespace debug {

// The settings store, exported so that hosts can set entries; the library reads them at start.
class OX_API DebugDatabase {
 public:
  static DebugDatabase& Instance();
  utility::String GetEntry(const char* key, const char* defaultValue) const;
  void SetEntry(const char* key, const char* value);
  void RemoveEntry(const char* key);

 private:
  mutable std::mutex fMutex;
  std::map<std::string, std::string> fEntries;
};

// No dialog exists here: reports false, so the code never breaks into a debugger by itself.
bool BreakAfterContractDialog(const char* condition, const char* file, const char* function, int line);
// True when a tracer (debugger) is attached to the process.
bool IsDebuggerAttached();

}  // namespace debug

namespace config {

class ReplacementValue {
 public:
  ReplacementValue() = default;
  ~ReplacementValue() = default;
};

using ErrorHandler = void (*)(int level, const char* text, int number1, int number2, bool flag);

// Hands the report to the installed handler. The default handler counts the report and returns,
// so the caller goes on past it.
void ThrowError(int level, const char* text, int number1, int number2, bool flag, ReplacementValue& v1,
                       ReplacementValue& v2, ReplacementValue& v3, ReplacementValue& v4);
// Installs a host's handler (null restores the default); returns the previous one. Exported.
OX_API ErrorHandler SetErrorHandler(ErrorHandler handler);
// Number of reports the default handler has seen.
OX_API uint64_t ErrorCount();

}  // namespace config

namespace threads {

// The processor pool. Alive while a shared pointer to it is held.
class AsyncExecutor {
 public:
  AsyncExecutor();
  ~AsyncExecutor();
  int Concurrency() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> fImpl;
  friend void ExecuteCPUBoundTaskOnAllProcessors(const boost::function<void(int)>& task, int count);
};

boost::shared_ptr<AsyncExecutor> CreateCPUBoundExecutor();
// Runs task(i) for every i in 0 .. count-1 exactly once, on all processors, the calling thread
// helping, and returns when all are done. Safe to call from inside a running task.
void ExecuteCPUBoundTaskOnAllProcessors(const boost::function<void(int)>& task, int count);

}  // namespace threads
}  // namespace zelcore
