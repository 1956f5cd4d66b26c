// Settings store, contract reporting and debugger detection.
#include <atomic>
#include <cstdio>
#include <cstring>

#include "platform/zelcore.h"

namespace zelcore {
namespace debug {

DebugDatabase& DebugDatabase::Instance() {
  static DebugDatabase* instance = new DebugDatabase;
  return *instance;
}

utility::String DebugDatabase::GetEntry(const char* key, const char* defaultValue) const {
  std::lock_guard<std::mutex> lock(fMutex);
  auto it = fEntries.find(key ? key : "");
  if (it == fEntries.end()) return utility::String(defaultValue ? defaultValue : "");
  return utility::String(it->second.c_str());
}

void DebugDatabase::SetEntry(const char* key, const char* value) {
  std::lock_guard<std::mutex> lock(fMutex);
  fEntries[key ? key : ""] = value ? value : "";
}

void DebugDatabase::RemoveEntry(const char* key) {
  std::lock_guard<std::mutex> lock(fMutex);
  fEntries.erase(key ? key : "");
}

bool BreakAfterContractDialog(const char*, const char*, const char*, int) { return false; }

// Linux reports the tracer's process id in /proc/self/status.
bool IsDebuggerAttached() {
  FILE* f = std::fopen("/proc/self/status", "r");
  if (!f) return false;
  char line[256];
  bool attached = false;
  while (std::fgets(line, sizeof line, f)) {
    if (std::strncmp(line, "TracerPid:", 10) == 0) {
      attached = std::atoi(line + 10) != 0;
      break;
    }
  }
  std::fclose(f);
  return attached;
}

}  // namespace debug

namespace config {
namespace {
std::atomic<uint64_t> gErrorCount{0};
void CountingHandler(int, const char*, int, int, bool) { gErrorCount.fetch_add(1, std::memory_order_relaxed); }
std::atomic<ErrorHandler> gHandler{&CountingHandler};
}  // namespace

void ThrowError(int level, const char* text, int number1, int number2, bool flag, ReplacementValue&,
                ReplacementValue&, ReplacementValue&, ReplacementValue&) {
  gHandler.load()(level, text, number1, number2, flag);
}

ErrorHandler SetErrorHandler(ErrorHandler handler) {
  return gHandler.exchange(handler ? handler : &CountingHandler);
}

uint64_t ErrorCount() { return gErrorCount.load(); }

}  // namespace config
}  // namespace zelcore
