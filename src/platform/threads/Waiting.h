#pragma once

namespace varnith {

// Waits until a descriptor is ready for reading, or for writing too if asked for, but for a few milliseconds
// at most, and not at all while a thread of the program is ready to run. The rest of the caller's time slice
// is given up, so the yield point that follows lets the threads run. A descriptor below 0 is never ready.
// Returns whether it is ready; one that has failed is.
bool WaitBriefly(int descriptor, bool for_writing);

}  // namespace varnith
