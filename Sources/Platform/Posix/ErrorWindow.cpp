#include "Platform/ErrorWindow.h"

#include <cstdio>

namespace tarv {

void showErrorWindow(const char16_t* details) {
    std::fprintf(stderr, "%s\n%s\n\n", kErrorTitle, kErrorExplanation);
    for (; *details; ++details) {
        std::fputc(*details < 0x80 ? static_cast<char>(*details) : '?', stderr);
    }
}

}  // namespace tarv
