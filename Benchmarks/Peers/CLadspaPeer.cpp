#include "Benchmarks/Peers/CLadspaPeer.h"

#include <dlfcn.h>
#include <glob.h>

#include <cmath>

namespace tarv::bench {

namespace {

std::string findFile(const std::string& pattern) {
    glob_t found = {};
    std::string path;
    if (glob(("/usr/lib/ladspa/" + pattern).c_str(), 0, nullptr, &found) == 0 && found.gl_pathc > 0) {
        path = found.gl_pathv[0];
    }
    globfree(&found);
    return path;
}

/// Between two bounds by the weight of the upper one.
float between(float low, float high, float weight, bool isLogarithmic) {
    return isLogarithmic ? std::exp(std::log(low) * (1.0f - weight) + std::log(high) * weight)
                         : low * (1.0f - weight) + high * weight;
}

}  // namespace

std::unique_ptr<CPeer> CLadspaPeer::create(const std::string& file, const std::string& label,
                                           const std::vector<CPeerSetting>& settings, double rate) {
    const std::string path = findFile(file);
    void* const library = path.empty() ? nullptr : dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        return nullptr;
    }
    std::unique_ptr<CLadspaPeer> peer(new CLadspaPeer(library));
    if (!peer->open(label, settings, rate)) {
        return nullptr;
    }
    return peer;
}

CLadspaPeer::~CLadspaPeer() {
    for (const CInstance& instance : instances_) {
        if (descriptor_->deactivate != nullptr) {
            descriptor_->deactivate(instance.handle);
        }
        descriptor_->cleanup(instance.handle);
    }
    dlclose(library_);
}

bool CLadspaPeer::open(const std::string& label, const std::vector<CPeerSetting>& settings, double rate) {
    const auto describe = reinterpret_cast<LADSPA_Descriptor_Function>(dlsym(library_, "ladspa_descriptor"));
    for (unsigned long i = 0; describe != nullptr && descriptor_ == nullptr; ++i) {
        const LADSPA_Descriptor* const next = describe(i);
        if (next == nullptr) {
            return false;
        }
        descriptor_ = label == next->Label ? next : nullptr;
    }
    if (descriptor_ == nullptr || !addInstance(settings, rate)) {
        return false;
    }
    return instances_[0].in.size() == 2 || (addInstance(settings, rate) && instances_[0].in.size() == 1);
}

bool CLadspaPeer::addInstance(const std::vector<CPeerSetting>& settings, double rate) {
    const LADSPA_Handle handle = descriptor_->instantiate(descriptor_, static_cast<unsigned long>(rate));
    if (handle == nullptr) {
        return false;
    }
    instances_.emplace_back();
    CInstance& instance = instances_.back();
    instance.handle = handle;
    instance.controls.resize(descriptor_->PortCount);
    CPeerSettings values(settings);
    for (unsigned long port = 0; port < descriptor_->PortCount; ++port) {
        const LADSPA_PortDescriptor kind = descriptor_->PortDescriptors[port];
        if (LADSPA_IS_PORT_AUDIO(kind)) {
            (LADSPA_IS_PORT_INPUT(kind) ? instance.in : instance.out).push_back(port);
            continue;
        }
        instance.controls[port] = values.valueOf(descriptor_->PortNames[port], defaultOf(port, rate));
        descriptor_->connect_port(handle, port, &instance.controls[port]);
    }
    if (descriptor_->activate != nullptr) {
        descriptor_->activate(handle);
    }
    return instance.in.size() == instance.out.size();
}

float CLadspaPeer::defaultOf(unsigned long port, double rate) const {
    const LADSPA_PortRangeHint& range = descriptor_->PortRangeHints[port];
    const LADSPA_PortRangeHintDescriptor hint = range.HintDescriptor;
    const float scale = LADSPA_IS_HINT_SAMPLE_RATE(hint) ? static_cast<float>(rate) : 1.0f;
    const float low = range.LowerBound * scale;
    const float high = range.UpperBound * scale;
    const bool isLogarithmic = LADSPA_IS_HINT_LOGARITHMIC(hint);
    switch (hint & LADSPA_HINT_DEFAULT_MASK) {
        case LADSPA_HINT_DEFAULT_MINIMUM:
            return low;
        case LADSPA_HINT_DEFAULT_LOW:
            return between(low, high, 0.25f, isLogarithmic);
        case LADSPA_HINT_DEFAULT_MIDDLE:
            return between(low, high, 0.5f, isLogarithmic);
        case LADSPA_HINT_DEFAULT_HIGH:
            return between(low, high, 0.75f, isLogarithmic);
        case LADSPA_HINT_DEFAULT_MAXIMUM:
            return high;
        case LADSPA_HINT_DEFAULT_1:
            return 1.0f;
        case LADSPA_HINT_DEFAULT_100:
            return 100.0f;
        case LADSPA_HINT_DEFAULT_440:
            return 440.0f;
        default:
            return 0.0f;
    }
}

void CLadspaPeer::process(float* const* in, float* const* out, int32_t frames) {
    size_t channel = 0;
    for (const CInstance& instance : instances_) {
        for (size_t c = 0; c < instance.in.size(); ++c, ++channel) {
            descriptor_->connect_port(instance.handle, instance.in[c], in[channel]);
            descriptor_->connect_port(instance.handle, instance.out[c], out[channel]);
        }
        descriptor_->run(instance.handle, static_cast<unsigned long>(frames));
    }
}

}  // namespace tarv::bench
