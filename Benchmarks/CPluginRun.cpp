#include "Benchmarks/CPluginRun.h"

#include <cmath>
#include <memory>
#include <random>

#include "Audio/Parameters/CAudioParamCollector.h"
#include "Benchmarks/MovedParameters.h"
#include "CPlainInstance.h"

namespace tarv::bench {

namespace {

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

CInput::CInput(double level) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> noise(-1.0, 1.0);
    for (size_t i = 0; i < doubles_.samples().size(); ++i) {
        doubles_.samples()[i] = level * noise(random);
        floats_.samples()[i] = static_cast<float>(doubles_.samples()[i]);
    }
}

bool CPluginRun::open(vst::EntryProc entry) {
    return host_.open(entry) && host_.effect()->numOutputs <= kPorts && host_.effect()->numInputs <= kPorts;
}

bool CPluginRun::configure(const CLayout& layout, const std::string& chunk) {
    frames_ = layout.frames;
    isFloat_ = layout.isFloat;
    doubles_ = CHostBuffers<double>(isFloat_ ? 0 : frames_);
    floats_ = CHostBuffers<float>(isFloat_ ? frames_ : 0);
    moved_ = movedParameters(host_, layout.moves);
    host_.suspend();
    host_.prepare(kRate, frames_, isFloat_ ? 0 : 1);
    return host_.setChunk(chunk, true);
}

bool CPluginRun::start(vst::EntryProc entry, const CLayout& layout, const std::string& chunk) {
    if (!open(entry) || !configure(layout, chunk)) {
        return false;
    }
    resume();
    return true;
}

double CPluginRun::move(int64_t round, CBlockClock& clock) {
    clock.start();
    float value = 0.3f + 0.004f * static_cast<float>(round % 100);
    for (const int32_t parameter : moved_) {
        host_.setParameter(parameter, value);
        value += 0.01f;
    }
    return clock.stop();
}

double CPluginRun::process(CInput& input, int64_t round, CBlockClock& clock) {
    float** const floatsIn = input.block<float>(round, frames_);
    double** const doublesIn = input.block<double>(round, frames_);
    float** const floatsOut = floats_.at(0);
    double** const doublesOut = doubles_.at(0);
    clock.start();
    if (isFloat_) {
        host_.process(floatsIn, floatsOut, frames_);
    } else {
        host_.process(doublesIn, doublesOut, frames_);
    }
    return clock.stop();
}

}  // namespace tarv::bench
