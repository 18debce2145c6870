#include "Benchmarks/CPluginRun.h"

#include <cmath>
#include <memory>
#include <random>

#include "Audio/Parameters/CAudioParamCollector.h"
#include "CPlainInstance.h"

namespace tarv::bench {

namespace {

constexpr int32_t kBands = 7;
constexpr int32_t kGroups = 8;

double gainOf(int32_t band) {
    return std::pow(10.0, (1.92 * band - 4.8) / 20.0);
}

}  // namespace

std::string chunkOf(const CLayout& layout) {
    CError* error = nullptr;
    const std::unique_ptr<CPlainInstance> instance(CPlainInstance::create(error));
    if (!instance) {
        showError(error);
        return {};
    }
    const CString io = "plugin.modMain.io-params.";
    for (int32_t e = 0; e < kMostChannels; ++e) {
        const double source = e < layout.channels ? e + 1 : 0;
        instance->set(io + "in-routing", 0, e, source);
        instance->set(io + "out-routing", 0, e, source);
    }
    for (int32_t group = 0; group < kGroups; ++group) {
        for (int32_t band = 0; band < kBands; ++band) {
            instance->set("plugin.modMain.modBrindleXEQ.xeq-gains", group, band, gainOf(band));
        }
    }
    instance->set("plugin.modMain.oversampling", 0, 0, layout.stages + 1);
    CByteBuffer bytes;
    error = instance->getState(bytes, true);
    if (error != nullptr) {
        showError(error);
        return {};
    }
    return std::string(reinterpret_cast<const char*>(bytes.data()), static_cast<size_t>(bytes.count()));
}

CInput::CInput(double level) : samples_(kPorts * kLength), pointers_(kPorts) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> noise(-1.0, 1.0);
    for (double& sample : samples_) {
        sample = level * noise(random);
    }
}

double* const* CInput::block(int64_t round, int32_t frames) {
    const int64_t start = round % (kLength / frames) * frames;
    for (size_t c = 0; c < pointers_.size(); ++c) {
        pointers_[c] = samples_.data() + static_cast<int64_t>(c) * kLength + start;
    }
    return pointers_.data();
}

bool CPluginRun::open(vst::EntryProc entry) {
    return host_.open(entry) && host_.effect()->numOutputs <= kPorts && host_.effect()->numInputs <= kPorts;
}

bool CPluginRun::configure(const CLayout& layout, const std::string& chunk) {
    frames_ = layout.frames;
    out_.assign(kPorts, std::vector<double>(static_cast<size_t>(frames_)));
    outputs_.clear();
    for (std::vector<double>& channel : out_) {
        outputs_.push_back(channel.data());
    }
    findMoved(layout.moves);
    host_.suspend();
    host_.prepare(kRate, frames_, 1);
    return host_.setChunk(chunk, true);
}

bool CPluginRun::start(vst::EntryProc entry, const CLayout& layout, const std::string& chunk) {
    if (!open(entry) || !configure(layout, chunk)) {
        return false;
    }
    resume();
    return true;
}

void CPluginRun::findMoved(CMoves moves) {
    moved_.clear();
    const bool isAll = moves == CMoves::All;
    for (const std::string group : {"A", "B"}) {
        if (moves == CMoves::None || (group == "B" && !isAll)) {
            return;
        }
        for (int32_t band = 0; band < kBands; ++band) {
            moved_.push_back(host_.findParameter("EQ" + group + std::to_string(band)));
        }
        if (isAll) {
            moved_.push_back(host_.findParameter("OGain" + group));
        }
    }
}

void CPluginRun::move(int64_t round) {
    float value = 0.3f + 0.004f * static_cast<float>(round % 100);
    for (const int32_t parameter : moved_) {
        host_.setParameter(parameter, value);
        value += 0.01f;
    }
}

double CPluginRun::process(CInput& input, int64_t round, CBlockClock& clock) {
    // The host's interface takes inputs that may be written; the plug-in writes outputs alone.
    auto** const inputs = const_cast<double**>(input.block(round, frames_));
    clock.start();
    host_.process(inputs, outputs_.data(), frames_);
    return clock.stop();
}

}  // namespace tarv::bench
