// What equalisers and saturators of Debian cost beside this plug-in, those that are installed: `ComparePeers
// BrindleXEQ.so`. All process the same noise, block by block in turn in one run. They do different things in different
// ways; the table says what a user's session pays for each.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <limits>
#include <random>

#include "Audio/Kernels/Wave/CInstructionSet.h"
#include "Benchmarks/CBlockClock.h"
#include "Benchmarks/Peers/CLadspaPeer.h"
#include "Benchmarks/Peers/CLv2Peer.h"
#include "CPluginLibrary.h"
#include "CVstHost.h"

using namespace tarv;
using namespace tarv::bench;

namespace {

constexpr double kRate = 48000.0;
constexpr int32_t kFrames = 512;
constexpr int32_t kBlocks = 8;  ///< of a plug-in before the next one's turn
constexpr int32_t kRounds = 250;
/// Of the signal, that a plug-in which is set to do something changes at least.
constexpr double kLeastChange = 0.01;

/// This plug-in in a host that plays in 32 bits, with all bands away from 0 dB.
class CVstPeer final : public CPeer {
public:
    static std::unique_ptr<CPeer> create(vst::EntryProc entry, float oversampling) {
        std::unique_ptr<CVstPeer> peer(new CVstPeer);
        host::CVstHost& host = peer->host_;
        if (!host.open(entry) || std::max(host.effect()->numInputs, host.effect()->numOutputs) > kPorts) {
            return nullptr;
        }
        host.setParameter(host.findParameter("Oversmp"), oversampling);
        for (int32_t band = 0; band < 7; ++band) {
            host.setParameter(host.findParameter("EQA" + std::to_string(band)), band % 2 == 0 ? 0.67f : 0.38f);
        }
        host.suspend();
        host.prepare(kRate, kFrames, 0);
        host.resume();
        return peer;
    }
    void process(float* const* in, float* const* out, int32_t frames) override {
        float* inputs[kPorts];
        float* outputs[kPorts];
        std::fill(std::begin(inputs), std::end(inputs), silence_.data());
        std::fill(std::begin(outputs), std::end(outputs), unheard_.data());
        std::copy(in, in + 2, inputs);
        std::copy(out, out + 2, outputs);
        host_.process(inputs, outputs, frames);
    }

private:
    static constexpr int32_t kPorts = 16;

    CVstPeer() = default;

    host::CVstHost host_;
    std::vector<float> silence_ = std::vector<float>(kFrames);
    std::vector<float> unheard_ = std::vector<float>(kFrames);
};

struct CRow {
    const char* name;
    const char* work;
    const char* package;  ///< of Debian; null for ours
    std::unique_ptr<CPeer> peer;
    double least = std::numeric_limits<double>::infinity();
    double change = 0.0;  ///< of the signal
};

void addOwn(std::vector<CRow>& rows, vst::EntryProc entry) {
    constexpr const char* kWork = "7 bells, each with a saturation; 64-bit";
    rows.push_back({"Brindle XEQ, 1x", kWork, nullptr, CVstPeer::create(entry, 0.25f)});
    rows.push_back({"Brindle XEQ, 2x", kWork, nullptr, CVstPeer::create(entry, 0.5f)});
    rows.push_back({"Brindle XEQ, 8x", kWork, nullptr, CVstPeer::create(entry, 1.0f)});
}

void addLadspa(std::vector<CRow>& rows) {
    const auto add = [&](const char* name, const char* work, const char* package, const char* file, const char* label,
                         const std::vector<CPeerSetting>& settings) {
        rows.push_back({name, work, package, CLadspaPeer::create(file, label, settings, kRate)});
    };
    const char* const lsp = "http://lsp-plug.in/plugins/ladspa/para_equalizer_x16_stereo";
    add("LSP Parametric Equalizer x16", "7 bells", "lsp-plugins-ladspa", "lsp-plugins-ladspa*.so", lsp,
        {{"Filter type [0-6]", 1.0f, 1.0f}, {"Gain [0-6] (G)", 1.6f, 0.7f}, {"Quality factor [0-6]", 1.0f, 1.0f}});
    add("TAP Equalizer/BW", "8 bands", "tap-plugins", "tap_eqbw.so", "tap_equalizer_bw",
        {{"Band ? Gain*", 4.0f, -3.0f}});
    add("CAPS Eq10X2", "10 bands", "caps", "caps.so", "Eq10X2", {{"* *Hz", 4.0f, -3.0f}});
    add("TAP TubeWarmth", "saturator", "tap-plugins", "tap_tubewarmth.so", "tap_tubewarmth", {{"Drive", 5.0f, 5.0f}});
    add("SWH Valve saturation", "saturator", "swh-plugins", "valve_1209.so", "valve",
        {{"Distortion level", 0.5f, 0.5f}, {"Distortion character", 0.3f, 0.3f}});
    add("CAPS Saturate", "saturator at 8x", "caps", "caps.so", "Saturate", {{"gain*", 12.0f, 12.0f}});
    add("ZamAutoSat", "saturator", "zam-plugins", "ZamAutoSat-ladspa.so", "ZamAutoSat", {});
}

void addLv2(std::vector<CRow>& rows, CLv2World& world) {
    const auto add = [&](const char* name, const char* work, const char* package, const char* uri,
                         const std::vector<CPeerSetting>& settings) {
        rows.push_back({name, work, package, CLv2Peer::create(world, uri, settings)});
    };
    add("Calf Equalizer 12 Band", "7 bells", "calf-plugins", "http://calf.sourceforge.net/plugins/Equalizer12Band",
        {{"p[1-7]_active", 1.0f, 1.0f}, {"p[1-7]_level", 1.6f, 0.7f}});
    add("EQ10Q", "10 bells", "eq10q", "http://eq10q.sourceforge.net/eq/eq10qs",
        {{"filter*_enable", 1.0f, 1.0f}, {"filter*_type", 11.0f, 11.0f}, {"filter*_gain", 4.0f, -3.0f}});
    add("fil4", "4 bells, 2 shelves", "x42-plugins", "http://gareus.org/oss/lv2/fil4#stereo",
        {{"gain[1-4]", 4.0f, -3.0f}, {"?Sgain", 4.0f, -3.0f}});
    add("Calf Saturator", "saturator", "calf-plugins", "http://calf.sourceforge.net/plugins/Saturator",
        {{"drive", 5.0f, 5.0f}});
}

/// Two channels of a block.
struct CBlock {
    std::vector<float> samples[2] = {std::vector<float>(kFrames), std::vector<float>(kFrames)};
    float* channels[2] = {samples[0].data(), samples[1].data()};

    CBlock() = default;
    CBlock(const CBlock&) = delete;
};

double changeOf(const CBlock& in, const CBlock& out) {
    double most = 0.0;
    for (int32_t c = 0; c < 2; ++c) {
        for (size_t i = 0; i < kFrames; ++i) {
            const double change = std::abs(static_cast<double>(out.samples[c][i]) - in.samples[c][i]);
            // What is no number has no order.
            most = change <= most ? most : change;
        }
    }
    return most;
}

void measure(std::vector<CRow>& rows) {
    std::minstd_rand random(1);
    std::uniform_real_distribution<float> noise(-0.5f, 0.5f);
    CBlock in;
    CBlock out;
    CBlockClock clock(CBlockClock::kWall);
    for (int32_t round = 0; round < kRounds; ++round) {
        for (std::vector<float>& channel : in.samples) {
            std::generate(channel.begin(), channel.end(), [&] { return noise(random); });
        }
        for (CRow& row : rows) {
            for (int32_t block = 0; row.peer && block < kBlocks; ++block) {
                clock.start();
                row.peer->process(in.channels, out.channels, kFrames);
                row.least = std::min(row.least, clock.stop());
            }
            row.change = changeOf(in, out);
        }
    }
}

/// False if a plug-in that is there does nothing: its figure would mean nothing.
bool print(const std::vector<CRow>& rows) {
    bool isGood = true;
    std::printf("Brindle XEQ runs with %s here.\n\n", nameOf(usedSet()));
    std::printf("| %-30s | %-40s | %-20s | ns a stereo frame |\n| --- | --- | --- | --- |\n",
                "stereo, 48 kHz, 512 frames", "set to", "package");
    for (const CRow& row : rows) {
        std::printf("| %-30s | %-40s | %-20s |", row.name, row.work, row.package == nullptr ? "" : row.package);
        if (!row.peer) {
            std::printf(" %-17s |\n", row.package == nullptr ? "does not load" : "not installed");
            isGood = isGood && row.package != nullptr;
            continue;
        }
        const bool isAtWork = row.change >= kLeastChange;
        isGood = isGood && isAtWork;
        std::printf(isAtWork ? " %17.1f |\n" : " %.1f, BUT IT DOES NOTHING |\n", row.least / kFrames);
    }
    return isGood;
}

}  // namespace

int main(int argc, char** argv) {
    host::CPluginLibrary library;
    std::string error = "ComparePeers PLUGIN: the plug-in, built for this system";
    if (argc != 2 || !library.load(argv[1], error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 2;
    }
    CLv2World world(kRate, kFrames);
    std::vector<CRow> rows;
    addOwn(rows, library.entry());
    addLadspa(rows);
    addLv2(rows, world);
    measure(rows);
    return print(rows) ? 0 : 1;
}
