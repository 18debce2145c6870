#pragma once

#include <string>

#include "Benchmarks/CPluginRun.h"

namespace tarv::bench {

/// What is run in the library of each system.
struct CBlockRow {
    const char* name;
    CLayout layout;
    int32_t batch;  ///< blocks whose time is taken together
    int32_t batches;
};

constexpr CBlockRow kBlockRows[] = {
    {"1x, 512 frames", {2, 512, 0, CMoves::None}, 8, 150},
    {"8x, 512", {2, 512, 3, CMoves::None}, 2, 100},
    {"1x, 32 frames", {2, 32, 0, CMoves::None}, 64, 250},
    {"8 channels, 1x, 512", {8, 512, 0, CMoves::None}, 4, 100},
    {"every parameter automated every block, 512", {2, 512, 0, CMoves::All}, 4, 100},
    {"every parameter automated every block, 32", {2, 32, 0, CMoves::All}, 32, 80},
    {"setting 16 parameters before a block, 32", {2, 32, 0, CMoves::All, false, true}, 32, 80},
};

/// The name of the file that BlockChunks writes for a row.
inline std::string chunkFileOf(const CLayout& layout) {
    return std::to_string(layout.channels) + "-" + std::to_string(layout.stages) + ".chunk";
}

}  // namespace tarv::bench
