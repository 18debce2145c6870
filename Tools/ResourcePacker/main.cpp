// Command line of the packer of resources.

#include <cstdio>
#include <string>
#include <vector>

#include "DefinitionCompiler.h"
#include "ResourcePacker.h"

namespace {

constexpr char kUsage[] =
    "usage: ResourcePacker TABLE.xml FILE_ROOT ASSEMBLY.S ROWS.cpp\n"
    "\n"
    "Writes the sources that put the named byte ranges of the table into the library.\n";

tarv::CDefinitionFailure pack(char** paths) {
    std::vector<tarv::CPackedResource> resources;
    if (auto failure = tarv::readResourceTable(paths[0], paths[1], resources)) {
        return failure;
    }
    if (auto failure = tarv::writeFile(paths[2], tarv::resourceAssembly(resources))) {
        return failure;
    }
    return tarv::writeFile(paths[3], tarv::resourceRows(resources));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    if (const auto failure = pack(argv + 1)) {
        std::fprintf(stderr, "%s\n", failure->message().c_str());
        return 1;
    }
    return 0;
}
