// Command line of the compiler of factory banks.

#include <cstdio>

#include "DefinitionCompiler.h"
#include "FactoryCompiler.h"

namespace {

constexpr char kUsage[] =
    "usage: FactoryCompiler SOURCE.xml OUTPUT\n"
    "\n"
    "Compiles a bank or a list of presets to the compressed block that the library carries.\n";

tarv::CDefinitionFailure compile(const char* source, const char* output) {
    tarv::CFactoryStream stream;
    if (auto failure = tarv::compileFactoryData(source, stream)) {
        return failure;
    }
    std::string block;
    if (auto failure = tarv::packBlock(stream.bytes, stream.id.c_str(), block)) {
        return failure;
    }
    return tarv::writeFile(output, block);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    if (const auto failure = compile(argv[1], argv[2])) {
        std::fprintf(stderr, "%s\n", failure->message().c_str());
        std::remove(argv[2]);
        return 1;
    }
    return 0;
}
