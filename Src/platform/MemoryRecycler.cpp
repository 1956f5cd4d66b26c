// Size-class block recycler with bounded retention.
#include <cstdlib>
#include <vector>

#include "platform/zelcore.h"

namespace zelcore {
namespace utility {
namespace {

struct RecyclerState {
  std::mutex fMutex;
  std::map<uint32_t, std::vector<void*>> fFree;  // class size -> blocks ready for reuse
  size_t fRetained = 0;
};

RecyclerState& State() {
  static RecyclerState* state = new RecyclerState;  // never destroyed: used from static teardown
  return *state;
}

}  // namespace

MemoryRecycler& MemoryRecycler::Instance() {
  static MemoryRecycler instance;
  return instance;
}

// Classes: 4 KiB steps up to 64 KiB, then eight steps per power of two, so a class wastes at most
// an eighth of the request while frames of one size always meet the same class.
uint32_t MemoryRecycler::ClassSize(uint32_t size) {
  if (size <= 65536) return (size + 4095u) & ~4095u;
  int top = 31 - __builtin_clz(size);
  uint32_t step = 1u << (top - 3);
  uint64_t rounded = (uint64_t(size) + step - 1) & ~uint64_t(step - 1);
  return rounded > 0xFFFFFFFFull ? 0 : uint32_t(rounded);
}

void* MemoryRecycler::Allocate(uint32_t size, uint32_t& outSize) {
  uint32_t cls = ClassSize(size == 0 ? 1 : size);
  if (cls == 0) return nullptr;
  {
    RecyclerState& s = State();
    std::lock_guard<std::mutex> lock(s.fMutex);
    auto it = s.fFree.find(cls);
    if (it != s.fFree.end() && !it->second.empty()) {
      void* block = it->second.back();
      it->second.pop_back();
      s.fRetained -= cls;
      outSize = cls;
      return block;
    }
  }
  void* block = std::aligned_alloc(64, cls);
  if (block) outSize = cls;
  return block;
}

void MemoryRecycler::Recycle(void* block, uint32_t size) {
  if (!block) return;
  RecyclerState& s = State();
  {
    std::lock_guard<std::mutex> lock(s.fMutex);
    auto& list = s.fFree[size];
    if (list.size() < kMaxBlocksPerClass && s.fRetained + size <= kMaxRetainedBytes) {
      list.push_back(block);
      s.fRetained += size;
      return;
    }
  }
  std::free(block);
}

size_t MemoryRecycler::RetainedBytes() {
  RecyclerState& s = State();
  std::lock_guard<std::mutex> lock(s.fMutex);
  return s.fRetained;
}

void MemoryRecycler::Purge() {
  RecyclerState& s = State();
  std::lock_guard<std::mutex> lock(s.fMutex);
  for (auto& [cls, list] : s.fFree)
    for (void* b : list) std::free(b);
  s.fFree.clear();
  s.fRetained = 0;
}

void* SmallBlockAllocator::Allocate(size_t size) { return std::malloc(size ? size : 1); }
void SmallBlockAllocator::Dispose(void* block, size_t) { std::free(block); }

}  // namespace utility
}  // namespace zelcore
