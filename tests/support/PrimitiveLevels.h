// Runs primitive-layer operations at every level of the layer this processor can run, and
// compares each level's result with the base (portable) form.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "primitives/Primitives.h"

namespace OX {
namespace test {

// Sets PrimitiveLevel for its lifetime and restores it after.
class ScopedPrimitiveLevel {
 public:
  explicit ScopedPrimitiveLevel(int32_t level) : fSaved(PrimitiveLevel) { PrimitiveLevel = level; }
  ~ScopedPrimitiveLevel() { PrimitiveLevel = fSaved; }
  ScopedPrimitiveLevel(const ScopedPrimitiveLevel&) = delete;
  ScopedPrimitiveLevel& operator=(const ScopedPrimitiveLevel&) = delete;

 private:
  int32_t fSaved;
};

// Levels 0 up to the highest this processor supports.
std::vector<int32_t> RunnablePrimitiveLevels();

// Calls fn(level) at every runnable level with PrimitiveLevel set, under a GoogleTest trace.
void ForEachPrimitiveLevel(const std::function<void(int32_t level)>& fn);

// Runs `op` on a copy of `input` at level 0 and at every other level and expects the same bytes
// in the copy (the operation works in place or writes into the copy it is given). `what` names
// the case in failures.
void ExpectSameBytesAtEveryLevel(const std::vector<uint8_t>& input, const std::function<void(uint8_t*)>& op,
                                 const std::string& what);

}  // namespace test
}  // namespace OX
