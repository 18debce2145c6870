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
    bool isRealtime = false;  ///< the process level is playback, not off-line rendering
    std::string load;         ///< a file with a state: a preset or a bank
    std::string preset;       ///< name of a program to choose behind that
    std::string save;         ///< files for the state at the end: the current program, the bank
    std::string saveBank;
    bool isSilent = false;  ///< renders nothing: only the state is of interest
    bool isList = false;
    bool isPresetList = false;
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
