// DV25 encoder state: created once at start and shared by every encode call, which keeps its
// per-call work on its own stack, so one handle serves any number of threads.
#include "platform/dvenc.h"

#include <new>

namespace dvenc {
namespace {
struct EncoderState {
  unsigned fMagic = 0x44564543;  // identifies a live handle
};
}  // namespace

Handle Create() { return new (std::nothrow) EncoderState; }

void Destroy(Handle handle) { delete static_cast<EncoderState*>(handle); }

}  // namespace dvenc
