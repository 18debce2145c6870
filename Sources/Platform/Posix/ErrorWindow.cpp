// The error window of systems without one: the standard error stream.

#include "Platform/ErrorWindow.h"

#include <cstdio>

#include "Platform/Posix/PathText.h"

namespace tarv {

// Does not wait: the stream keeps the text for its reader.
void showErrorWindow(const char16_t* details) {
    std::fprintf(stderr, "%s\n%s\n\n%s\n", kErrorTitle, kErrorExplanation, utf16ToUtf8(details).c_str());
}

}  // namespace tarv
