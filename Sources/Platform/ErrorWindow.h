#pragma once

namespace tarv {

/// Shows a failure to the user with the fixed explanation above the details, and returns when it is dismissed.
/// Calling thread: any; runs its own message loop. Without a display both texts go to the standard error stream.
void showErrorWindow(const char16_t* details);

/// The fixed explanation; lines end in LF.
extern const char* const kErrorExplanation;
extern const char* const kErrorTitle;

}  // namespace tarv
