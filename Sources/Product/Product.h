#pragma once

namespace tarv {

/// Starts the application with the product's classes and resources at the first call, and sees to it that the library
/// finishes it when it is unloaded. Any thread. A failure is shown to the user; CApplication::exists() returns false
/// then. Called by each entry point and not at load: under the loader's lock file and window calls can hang a host.
void ensureProductStarted();

}  // namespace tarv
