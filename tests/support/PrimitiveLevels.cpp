#include "support/PrimitiveLevels.h"

#include <cstring>

#include <gtest/gtest.h>

namespace OX {
namespace test {

std::vector<int32_t> RunnablePrimitiveLevels() {
  std::vector<int32_t> levels;
  for (int32_t l = 0; l <= HighestSupportedPrimitiveLevel(); ++l) levels.push_back(l);
  return levels;
}

void ForEachPrimitiveLevel(const std::function<void(int32_t level)>& fn) {
  for (int32_t level : RunnablePrimitiveLevels()) {
    ScopedPrimitiveLevel scoped(level);
    SCOPED_TRACE("primitive level " + std::to_string(level));
    fn(level);
  }
}

void ExpectSameBytesAtEveryLevel(const std::vector<uint8_t>& input, const std::function<void(uint8_t*)>& op,
                                 const std::string& what) {
  std::vector<uint8_t> reference = input;
  {
    ScopedPrimitiveLevel scoped(0);
    op(reference.data());
  }
  for (int32_t level : RunnablePrimitiveLevels()) {
    if (level == 0) continue;
    std::vector<uint8_t> out = input;
    {
      ScopedPrimitiveLevel scoped(level);
      op(out.data());
    }
    if (out != reference) {
      size_t i = 0;
      while (out[i] == reference[i]) ++i;
      ADD_FAILURE() << what << ": level " << level << " differs from the base form at byte " << i << " ("
                    << int(out[i]) << " vs " << int(reference[i]) << ")";
      return;
    }
  }
}

}  // namespace test
}  // namespace OX
