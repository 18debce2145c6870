#pragma once

#include <cstdint>
#include <vector>

namespace tarv::host {

/// Every call that a host made to one effect, in its order, as Tools/HostRecorder recorded it and its `condense`
/// shortened it: nothing is added or left out. A line is "tTHREAD CALL"; calls of a loop are joined by '|' behind
/// "TIMESx" (the same again) or "TIMES+" (each index one more each time). A line that ends in '|' goes on in the next.
struct CHostTrace {
    const char* host;
    const char* what;
    // The answers of the host.
    const char* vendor;
    const char* product;
    int32_t masterVersion;
    int32_t processLevel;  ///< while blocks run
    const char* calls;
};

/// The recordings without an editor, host by host.
std::vector<CHostTrace> hostTraces();
/// Those with an editor: shortened by runs of blocks and idle calls.
std::vector<CHostTrace> editorTraces();

}  // namespace tarv::host
