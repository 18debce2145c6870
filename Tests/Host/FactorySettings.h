#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "ChunkBytes.h"
#include "Tests/Product/FactoryTables.h"
#include "Tests/System/ReferenceChain.h"

namespace tarv::host {

using factory::CFactoryPreset;
using factory::CRoutingPreset;
using factory::kFactoryCount;
using factory::kFactoryPresets;
using factory::kRoutingCount;
using factory::kRoutingPresets;

/// The factory's tables in the forms of the reference and of stored programs.

/// Settings of a factory preset for the reference.
inline reference::CSettings settingsOf(const CFactoryPreset& preset) {
    reference::CSettings settings;
    for (size_t band = 0; band < 7; ++band) {
        settings.groups[0].gains[band] = std::pow(10.0, preset.groupA[band] / 20.0);
        settings.groups[1].gains[band] = preset.hasGroupB ? std::pow(10.0, preset.groupB[band] / 20.0) : 1.0;
    }
    settings.groups[1].outGain = std::pow(10.0, preset.outGainB / 20.0);
    return settings;
}

inline std::vector<double> numbersOf(const factory::CRow& row) {
    return {row.begin(), row.end()};
}

/// Puts a routing preset's table into a stored program.
inline void addRouting(const CRoutingPreset& routing, CStoredParams& params) {
    const std::string io = "io-params.";
    const std::string definition = "audio.modMain.io-params.";
    params[io + "grouping"] = {definition + "grouping", {numbersOf(routing.grouping)}, {}};
    params[io + "in-routing"] = {definition + "in-routing", {numbersOf(routing.inRouting)}, {}};
    params[io + "out-routing"] = {definition + "out-routing", {numbersOf(routing.outRouting)}, {}};
    params[io + "ms-pairs"] = {definition + "ms-pairs", {numbersOf(routing.pairs)}, {}};
    params[io + "group-names"] = {
        definition + "group-names", {}, {routing.groupNames.begin(), routing.groupNames.end()}};
}

inline void applyRouting(const CRoutingPreset& routing, reference::CLayout& layout) {
    layout.grouping = routing.grouping;
    layout.inRouting = routing.inRouting;
    layout.outRouting = routing.outRouting;
    layout.pairs = routing.pairs;
}

}  // namespace tarv::host
