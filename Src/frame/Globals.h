// Process-wide library state: processor flags read by every kernel chooser at each call, debug
// flags, the cache found at start and the handles that start-up creates.
#pragma once

#include <cstdint>

#include <boost/shared_ptr.hpp>

namespace zelcore::threads { class AsyncExecutor; }

namespace OX {

extern int32_t gInitCount;
extern uint32_t gCacheLevel;
extern uint32_t gCacheBytes;

// Eight adjacent bytes in this order; kernels test them newest first.
struct ProcessorFlags {
  bool fSSE, fSSE2, fSSE3, fSSSE3, fSSE41, fSSE42, fAVX, fAVX2;
};
extern ProcessorFlags gProcessor;
// The names every chooser uses.
inline bool& gHasSSE = gProcessor.fSSE;
inline bool& gHasSSE2 = gProcessor.fSSE2;
inline bool& gHasSSE3 = gProcessor.fSSE3;
inline bool& gHasSSSE3 = gProcessor.fSSSE3;
inline bool& gHasSSE41 = gProcessor.fSSE41;
inline bool& gHasSSE42 = gProcessor.fSSE42;
inline bool& gHasAVX = gProcessor.fAVX;
inline bool& gHasAVX2 = gProcessor.fAVX2;

extern bool gDebugMotionFlag;     // debug flag 0
extern bool gForceTopLeftOrigin;  // debug flag 10

extern void* gDVEncoderHandle;
extern boost::shared_ptr<zelcore::threads::AsyncExecutor> gCPUExecutor;
extern void* gDVEntropyTableA;
extern void* gDVEntropyTableB;

}  // namespace OX
