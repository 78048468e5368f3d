#pragma once

namespace varnith {

// Waits up to 5 ms until a descriptor is ready for reading or, with `for_writing`, for reading or writing. If
// a Thread of the program is ready to run, it doesn't wait. Ends the caller's time slice, so the next yield
// point lets the threads run. Returns whether the descriptor is ready, which it also is after an error
// (poll(2)). A negative descriptor is never ready.
bool WaitBriefly(int descriptor, bool for_writing);

}  // namespace varnith
