#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Benchmarks/CPluginRun.h"
#include "CVstHost.h"

namespace tarv::bench {

/// Numbers of the parameters that a host sets before every block, in the order in which it sets them. For programs that
/// link no more than a host, as BlockTimes, too.
inline std::vector<int32_t> movedParameters(host::CVstHost& host, CMoves moves) {
    std::vector<int32_t> moved;
    const bool isAll = moves == CMoves::All;
    for (const std::string group : {"A", "B"}) {
        if (moves == CMoves::None || (group == "B" && !isAll)) {
            break;
        }
        for (int32_t band = 0; band < kBands; ++band) {
            moved.push_back(host.findParameter("EQ" + group + std::to_string(band)));
        }
        if (isAll) {
            moved.push_back(host.findParameter("OGain" + group));
        }
    }
    return moved;
}

}  // namespace tarv::bench
