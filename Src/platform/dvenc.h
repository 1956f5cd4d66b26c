// The DV25 encoder behind its three calls: create (at start), destroy (at end) and encode.
#pragma once

namespace dvenc {

using Handle = void*;

// Creates the encoder's long-lived state; null if it cannot be made.
Handle Create();
// Releases what Create made; a null handle does nothing.
void Destroy(Handle handle);

}  // namespace dvenc
