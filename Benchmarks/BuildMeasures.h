#pragma once

#include <limits>
#include <string>
#include <vector>

#include "Benchmarks/CPluginRun.h"

namespace tarv::bench {

/// Files of the plug-in, as two commits build it.
struct CBuilds {
    std::string before;
    std::string after;
};

/// The least that something takes: what other programs take comes on top of it.
struct CCosts {
    double before = std::numeric_limits<double>::infinity();
    double after = std::numeric_limits<double>::infinity();
    bool isSame = true;  ///< the blocks had the same bits

    double ratio() const { return after / before; }
    void lower(const CCosts& other);
};

/// A layout, with the state that brings an instance there.
struct CCase {
    CLayout layout;
    std::string chunk;
    int32_t rounds;
};

/// These run in a child process, since the set of instructions is chosen once a process. They return nothing if a build
/// does not load or gives no instance.

/// Both builds in turn, block by block; a frame, in units of CBlockClock.
std::vector<CCosts> compareBlocks(const CBuilds& builds, const CCase& c, const char* set);
/// A signal of each of these levels, in turn with noise in a second instance (as `before`).
std::vector<CCosts> compareLevels(const std::string& build, const CCase& c, const std::vector<double>& levels,
                                  const char* set);
/// An instance beside one that exists, in seconds: made and opened; resumed; its first block; the seven behind it.
std::vector<CCosts> compareStarts(const CBuilds& builds, const CCase& c, const char* set);
/// Bytes that a playing instance takes from the system, the mean of several.
std::vector<CCosts> compareMemory(const CBuilds& builds, const CCase& c, const char* set);

/// Prints what is wrong if one does not load.
bool canLoad(const CBuilds& builds);
/// Whether times are cycles here.
bool countsCycles();

}  // namespace tarv::bench
