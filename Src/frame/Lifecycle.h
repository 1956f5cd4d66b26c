// Internal pieces of start-up, exposed for tests and the tool.
#pragma once

#include <optional>
#include <vector>

#include "Ombrix.h"
#include "platform/CacheQuery.h"

namespace OX {

void ProbeProcessorFeatures();
// Sets the cache level and size from the records, or from the fallback when there are none.
void ApplyCacheRecords(const std::optional<std::vector<platform::CacheRecord>>& records);
void ReadSettings();

}  // namespace OX

// Size in bytes of the cache found at start.
OX_EXTERN_C uint32_t OX_GetCacheBytes(void);
