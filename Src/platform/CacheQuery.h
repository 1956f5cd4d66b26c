// The processor's cache description, read from the operating system.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace OX {
namespace platform {

struct CacheRecord {
  uint32_t fLevel;
  uint32_t fBytes;
  bool fUnified;
};

// The cache records of the first processor, or nothing when the system offers no description.
// An empty list is a successful answer that found no caches.
std::optional<std::vector<CacheRecord>> QueryCacheRecords();
// Reads the records from a sysfs-shaped directory (".../cache"); exposed for tests.
std::optional<std::vector<CacheRecord>> QueryCacheRecordsAt(const char* cacheDirectory);

}  // namespace platform
}  // namespace OX
