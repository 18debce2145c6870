#include "Platform/ErrorWindow.h"

#include <cstdio>

#include "Platform/Posix/PathText.h"

namespace tarv {

// Nothing to wait for: whoever reads the stream reads it when he likes.
void showErrorWindow(const char16_t* details) {
    std::fprintf(stderr, "%s\n%s\n\n%s\n", kErrorTitle, kErrorExplanation, utf16ToUtf8(details).c_str());
}

}  // namespace tarv
