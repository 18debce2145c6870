// Command line of the builder of graphics.

#include <cstdio>

#include "DefinitionCompiler.h"
#include "GfxBuilder.h"

namespace {

constexpr char kUsage[] =
    "usage: GfxBuilder SOURCE OUTPUT\n"
    "\n"
    "Builds an image set, a font, a brush set or a palette from its drawable source (.svg, .font, .brush, .palette).\n";

tarv::CDefinitionFailure build(const char* source, const char* output) {
    std::string bytes;
    if (auto failure = tarv::buildGraphics(source, bytes)) {
        return failure;
    }
    return tarv::writeFile(output, bytes);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    if (const auto failure = build(argv[1], argv[2])) {
        std::fprintf(stderr, "%s\n", failure->message().c_str());
        std::remove(argv[2]);
        return 1;
    }
    return 0;
}
