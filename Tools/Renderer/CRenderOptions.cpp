// Reads the command line by a table of options.

#include "CRenderOptions.h"

#include <cstdlib>
#include <cstring>

namespace tarv::host {

namespace {

constexpr int32_t kRandomBlockMost = 4096;

bool toReal(const std::string& text, double least, double most, double& value) {
    char* end = nullptr;
    value = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == 0 && value >= least && value <= most;
}

template <class Integer>
bool toWhole(const std::string& text, double least, double most, Integer& value) {
    double real = 0.0;
    if (!toReal(text, least, most, real) || real != static_cast<double>(static_cast<Integer>(real))) {
        return false;
    }
    value = static_cast<Integer>(real);
    return true;
}

bool toChange(const std::string& text, CRenderChange& change) {
    const size_t sign = text.find('=');
    if (sign == std::string::npos || sign == 0 || sign + 1 == text.size()) {
        return false;
    }
    change.name = text.substr(0, sign);
    change.value = text.substr(sign + 1);
    return true;
}

bool readBlock(CRenderOptions& o, const std::string& text) {
    constexpr const char* kRandom = "random:";
    o.isRandom = text.compare(0, std::strlen(kRandom), kRandom) == 0;
    if (!o.isRandom) {
        return toWhole(text, 1, 1 << 20, o.block);
    }
    o.block = kRandomBlockMost;
    return toWhole(text.substr(std::strlen(kRandom)), 0, 4294967295.0, o.seed);
}

bool readSetting(CRenderOptions& o, const std::string& text) {
    return toChange(text, o.settings.emplace_back());
}

bool readTimedChange(CRenderOptions& o, const std::string& text) {
    CRenderChange& change = o.changes.emplace_back();
    const size_t colon = text.find(':');
    return colon != std::string::npos && toReal(text.substr(0, colon), 0.0, 1e9, change.seconds) &&
           toChange(text.substr(colon + 1), change);
}

bool readOversampling(CRenderOptions& o, const std::string& text) {
    for (const char* word : {"Auto", "1x", "2x", "4x", "8x"}) {
        if (text == word) {
            o.settings.push_back({0.0, "Oversmp", text});
            return true;
        }
    }
    return false;
}

struct COptionRow {
    const char* name;
    const char* wanted;  ///< null for a switch without a value
    bool (*read)(CRenderOptions& options, const std::string& text);
};

constexpr COptionRow kRows[] = {
    {"--plugin", "a file", [](CRenderOptions& o, const std::string& t) { return !(o.plugin = t).empty(); }},
    {"--channels", "a number from 1 to 32",
     [](CRenderOptions& o, const std::string& t) { return toWhole(t, 1, 32, o.channels); }},
    {"--rate", "a rate from 1000 to 1e7 Hz",
     [](CRenderOptions& o, const std::string& t) { return toReal(t, 1e3, 1e7, o.rate); }},
    {"--block", "a number of frames from 1 to 1048576, or random:SEED", &readBlock},
    {"--precision", "32 or 64",
     [](CRenderOptions& o, const std::string& t) {
         return toWhole(t, 32, 64, o.precision) && (o.precision == 32 || o.precision == 64);
     }},
    {"--set", "NAME=VALUE", &readSetting},
    {"--at", "SECONDS:NAME=VALUE", &readTimedChange},
    {"--oversampling", "Auto, 1x, 2x, 4x or 8x", &readOversampling},
    {"--load", "a file", [](CRenderOptions& o, const std::string& t) { return !(o.load = t).empty(); }},
    {"--preset", "a name", [](CRenderOptions& o, const std::string& t) { return !(o.preset = t).empty(); }},
    {"--save", "a file", [](CRenderOptions& o, const std::string& t) { return !(o.save = t).empty(); }},
    {"--save-bank", "a file", [](CRenderOptions& o, const std::string& t) { return !(o.saveBank = t).empty(); }},
    {"--no-audio", nullptr, [](CRenderOptions& o, const std::string&) { return o.isSilent = true; }},
    {"--tail", "seconds", [](CRenderOptions& o, const std::string& t) { return toReal(t, 0.0, 1e6, o.tail); }},
    {"--expect", "seconds", [](CRenderOptions& o, const std::string& t) { return toReal(t, 0.0, 1e9, o.expected); }},
    {"--realtime", nullptr, [](CRenderOptions& o, const std::string&) { return o.isRealtime = true; }},
    {"--progress", nullptr, [](CRenderOptions& o, const std::string&) { return o.isProgress = true; }},
    {"--list", nullptr, [](CRenderOptions& o, const std::string&) { return o.isList = true; }},
    {"--list-presets", nullptr, [](CRenderOptions& o, const std::string&) { return o.isPresetList = true; }},
    {"--help", nullptr, [](CRenderOptions& o, const std::string&) { return o.isHelp = true; }},
};

const COptionRow* findRow(const std::string& name) {
    for (const COptionRow& row : kRows) {
        if (name == row.name) {
            return &row;
        }
    }
    return nullptr;
}

}  // namespace

bool parseOptions(int argc, const char* const* argv, CRenderOptions& options, std::string& error) {
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        const COptionRow* row = findRow(name);
        if (!row && options.plugin.empty() && name.compare(0, 1, "-") != 0) {
            options.plugin = name;
            continue;
        }
        if (!row) {
            error = "unknown option '" + name + "'";
            return false;
        }
        if (row->wanted && i + 1 >= argc) {
            error = name + " needs " + row->wanted;
            return false;
        }
        const std::string value = row->wanted ? argv[++i] : "";
        if (!row->read(options, value)) {
            error = name + " needs " + row->wanted + ", not '" + value + "'";
            return false;
        }
    }
    if (options.plugin.empty() && !options.isHelp) {
        error = "which plug-in?";
        return false;
    }
    return true;
}

const char* renderHelp() {
    return "Renderer FILE [options] <input >output\n"
           "\n"
           "Runs a VST 2 effect over raw audio: 64-bit floats, channels interleaved, on standard input and output.\n"
           "\n"
           "  --plugin FILE             the effect, if it isn't the first argument\n"
           "  --list                    print what the effect is and its parameters, and stop\n"
           "  --list-presets            print the programs, and stop\n"
           "  --load FILE               a state before everything else: a preset, a bank or a host's chunk of either\n"
           "  --preset NAME             choose a program\n"
           "  --save FILE               write the current program as it is at the end\n"
           "  --save-bank FILE          write the bank\n"
           "  --no-audio                render nothing\n"
           "  --channels N              channels in the stream (2)\n"
           "  --rate HZ                 sample rate (44100)\n"
           "  --block N | random:SEED   frames a block (512), or sizes from 1 to 4096\n"
           "  --precision 32 | 64       format in which the effect gets its samples (64)\n"
           "  --set NAME=VALUE          a parameter before the first block\n"
           "  --at SECONDS:NAME=VALUE   a parameter while it runs; blocks are cut at its frame\n"
           "  --oversampling X          Auto, 1x, 2x, 4x or 8x: sets the parameter named Oversmp\n"
           "  --realtime                say that this is playback (otherwise: off-line rendering)\n"
           "  --tail SECONDS            silence behind the input (0)\n"
           "  --progress                show how far it is; with --expect SECONDS in per cent\n"
           "\n"
           "A VALUE without a unit is a position from 0 to 1. With one it is in the parameter's own units (+3dB), and "
           "a\n"
           "word (4x, On) is one that the parameter shows.\n"
           "\n"
           "Exit codes: 0 done, 1 bad command line, 2 no such plug-in, 3 bad parameter, value or state, 4 input or "
           "output.\n";
}

}  // namespace tarv::host
