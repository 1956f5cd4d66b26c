// Counted start and end of the library, the processor probe and the debug flags.
#include <cpuid.h>

#include "frame/Globals.h"
#include "frame/Lifecycle.h"
#include "frame/Startup.h"
#include "platform/CacheQuery.h"
#include "dv/dvenc.h"
#include "platform/zelcore.h"

namespace OX {

int32_t gInitCount = 0;
uint32_t gCacheLevel = 0;
uint32_t gCacheBytes = 0;
ProcessorFlags gProcessor = {};
bool gDebugMotionFlag = false;
bool gForceTopLeftOrigin = false;
void* gDVEncoderHandle = nullptr;
boost::shared_ptr<zelcore::threads::AsyncExecutor> gCPUExecutor;
void* gDVEntropyTableA = nullptr;
void* gDVEntropyTableB = nullptr;

void ProbeProcessorFeatures() {
  unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
  if (!__get_cpuid(1, &eax, &ebx, &ecx, &edx)) return;
  // Set, never clear: a flag forced on through the debug flags survives the probe.
  if (edx & (1u << 25)) gHasSSE = true;
  if (edx & (1u << 26)) gHasSSE2 = true;
  if (ecx & (1u << 0)) gHasSSE3 = true;
  if (ecx & (1u << 9)) gHasSSSE3 = true;
  if (ecx & (1u << 19)) gHasSSE41 = true;
  if (ecx & (1u << 20)) gHasSSE42 = true;
}

void ApplyCacheRecords(const std::optional<std::vector<platform::CacheRecord>>& records) {
  if (records) {
    // The first unified cache of the highest level; a later one of the same level does not
    // replace it. Finding none leaves the size at 0: this path never takes the fallback.
    uint32_t bestLevel = 0;
    gCacheBytes = 0;
    for (const platform::CacheRecord& r : *records) {
      if (r.fUnified && r.fLevel > bestLevel) {
        bestLevel = r.fLevel;
        gCacheBytes = r.fBytes;
      }
    }
    gCacheLevel = bestLevel;
    return;
  }
  if (gHasAVX || gHasAVX2) {
    gCacheLevel = 3;
    gCacheBytes = 0x300000;
  } else if (gHasSSE2) {
    gCacheLevel = 2;
    gCacheBytes = 0x100000;
  } else {
    gCacheLevel = 0;
    gCacheBytes = 0;
  }
}

void ReadSettings() {
  auto& db = zelcore::debug::DebugDatabase::Instance();
  // Exact comparison: "TRUE" or "True" does not count.
  if (db.GetEntry("OX.disableAVX", "false") == "true") gHasAVX = false;
  if (db.GetEntry("OX.disableAVX2", "false") == "true") gHasAVX2 = false;
}

}  // namespace OX

using namespace OX;

OX_Result OX_Initialize(void) {
  if (++gInitCount != 1) return OX_Success;
  ProbeProcessorFeatures();
  ApplyCacheRecords(platform::QueryCacheRecords());
  ReadSettings();
  StartPrimitiveLayer();
  gDVEncoderHandle = dvenc::Create();
  BuildDVDequantisationTables();
  BuildDVCoderTables();
  BuildDVEntropyTableA();
  gCPUExecutor = zelcore::threads::CreateCPUBoundExecutor();
  return OX_Success;
}

OX_Result OX_Terminate(void) {
  if (gInitCount-- != 1) return OX_Success;
  dvenc::Destroy(gDVEncoderHandle);
  gDVEncoderHandle = nullptr;
  FreeDVEntropyTableB();
  FreeDVEntropyTableA();
  // Clear the global before the last reference goes, so nothing sees a dying pool.
  boost::shared_ptr<zelcore::threads::AsyncExecutor> pool;
  pool.swap(gCPUExecutor);
  pool.reset();
  return OX_Success;
}

OX_Result OX_SetDebugFlag(uint32_t index, int32_t value) {
  const bool on = value != 0;
  switch (index) {
    case 0: gDebugMotionFlag = on; break;
    case 2: gHasSSE = on; break;
    case 3: gHasSSE2 = on; break;
    case 4: gHasSSE3 = on; break;
    case 5: gHasSSSE3 = on; break;
    case 6: gHasSSE41 = on; break;
    case 7: gHasSSE42 = on; break;
    case 8: gHasAVX = on; break;
    case 9: gHasAVX2 = on; break;
    case 10: gForceTopLeftOrigin = on; break;
    default: break;  // 1 and anything above 10 are ignored
  }
  return OX_Success;
}

bool OX_hasSSE4(void) { return gHasSSE41; }
bool OX_hasAVX(void) { return gHasAVX; }
bool OX_hasAVX2(void) { return gHasAVX2; }
uint32_t OX_GetCacheBytes(void) { return gCacheBytes; }
