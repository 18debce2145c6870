// Writes the states that BlockTimes runs with: `BlockChunks FOLDER`. An instance without a host makes them, which the
// build for Windows does not have.

#include <cstdio>
#include <fstream>

#include "Benchmarks/BlockRows.h"

int main(int argc, char** argv) {
    using namespace tarv::bench;
    if (argc != 2) {
        std::fprintf(stderr, "BlockChunks FOLDER: writes the states of all rows\n");
        return 2;
    }
    for (const CBlockRow& row : kBlockRows) {
        const std::string chunk = chunkOf(row.layout);
        std::ofstream out(std::string(argv[1]) + "/" + chunkFileOf(row.layout), std::ios::binary);
        if (chunk.empty() || !out.write(chunk.data(), static_cast<std::streamsize>(chunk.size()))) {
            std::fprintf(stderr, "BlockChunks: cannot write to %s\n", argv[1]);
            return 1;
        }
    }
    return 0;
}
