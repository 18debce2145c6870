#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarv::host {

/// A parameter change: "NAME=VALUE" at a time in seconds.
struct CRenderChange {
    double seconds = 0.0;
    std::string name;
    std::string value;
};

/// What the command line asks for.
struct CRenderOptions {
    std::string plugin;
    int32_t channels = 2;
    double rate = 44100.0;
    int32_t block = 512;    ///< frames; the longest one when sizes are random
    bool isRandom = false;  ///< block sizes from 1 to `block`, drawn from `seed`
    uint32_t seed = 0;
    int32_t precision = 64;
    double tail = 0.0;        ///< seconds of silence behind the input
    double expected = 0.0;    ///< seconds of input that progress counts against, 0 if not known
    bool isRealtime = false;  ///< tells the plug-in that it plays, not that it renders
    bool isList = false;
    bool isProgress = false;
    bool isHelp = false;
    std::vector<CRenderChange> settings;  ///< before the first block
    std::vector<CRenderChange> changes;   ///< while it runs, in the order given
};

/// Reads the command line. False with what is wrong and at which argument.
bool parseOptions(int argc, const char* const* argv, CRenderOptions& options, std::string& error);

/// The text of --help.
const char* renderHelp();

}  // namespace tarv::host
