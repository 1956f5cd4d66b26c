// Cache records from sysfs: one index directory per cache with its level, type and size.
#include "platform/CacheQuery.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <dirent.h>

namespace OX {
namespace platform {
namespace {

bool ReadLine(const std::string& path, std::string& out) {
  FILE* f = std::fopen(path.c_str(), "r");
  if (!f) return false;
  char buf[128];
  bool ok = std::fgets(buf, sizeof buf, f) != nullptr;
  std::fclose(f);
  if (!ok) return false;
  out = buf;
  while (!out.empty() && (out.back() == '\n' || out.back() == '\r' || out.back() == ' ')) out.pop_back();
  return true;
}

// "32K", "1024K", "8M" or a plain number of bytes.
uint32_t ParseSize(const std::string& text) {
  char* end = nullptr;
  unsigned long long v = std::strtoull(text.c_str(), &end, 10);
  if (end && (*end == 'K' || *end == 'k')) v <<= 10;
  else if (end && (*end == 'M' || *end == 'm')) v <<= 20;
  else if (end && (*end == 'G' || *end == 'g')) v <<= 30;
  return v > 0xFFFFFFFFull ? 0xFFFFFFFFu : uint32_t(v);
}

}  // namespace

std::optional<std::vector<CacheRecord>> QueryCacheRecordsAt(const char* cacheDirectory) {
  DIR* dir = opendir(cacheDirectory);
  if (!dir) return std::nullopt;
  std::vector<std::string> names;
  while (dirent* e = readdir(dir))
    if (std::strncmp(e->d_name, "index", 5) == 0) names.push_back(e->d_name);
  closedir(dir);
  // The system lists index0, index1, ...; keep that order, since the first of equal level wins.
  std::vector<CacheRecord> records;
  for (size_t i = 0; i < names.size() + 8; ++i) {
    std::string base = std::string(cacheDirectory) + "/index" + std::to_string(i) + "/";
    std::string level, type, size;
    if (!ReadLine(base + "level", level)) continue;
    if (!ReadLine(base + "type", type) || !ReadLine(base + "size", size)) continue;
    records.push_back({uint32_t(std::atoi(level.c_str())), ParseSize(size), type == "Unified"});
  }
  return records;
}

std::optional<std::vector<CacheRecord>> QueryCacheRecords() {
  return QueryCacheRecordsAt("/sys/devices/system/cpu/cpu0/cache");
}

}  // namespace platform
}  // namespace OX
