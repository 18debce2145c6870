// Streams audio through an effect and makes changes at their frames.

#include "CRenderer.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "CParameterText.h"

namespace tarv::host {

namespace {

double now() {
    using Clock = std::chrono::steady_clock;
    return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

/// Buffers of one run: as many channels as the effect wants; those beyond the stream are silent or dropped.
template <class Sample>
struct CChannels {
    CChannels(int32_t count, int32_t frames) : samples(static_cast<size_t>(count) * (frames + kStagger)) {
        for (int32_t c = 0; c < count; ++c) {
            pointers.push_back(samples.data() + static_cast<size_t>(c) * (frames + kStagger));
        }
    }
    // Channels at equal offsets in a page would evict each other's cache lines.
    static constexpr int32_t kStagger = 24;
    std::vector<Sample> samples;
    std::vector<Sample*> pointers;
};

template <class Sample>
void split(const std::vector<double>& stream, const std::vector<Sample*>& to, int32_t channels, int32_t count) {
    for (int32_t c = 0; c < channels; ++c) {
        for (int32_t i = 0; i < count; ++i) {
            to[c][i] = static_cast<Sample>(stream[static_cast<size_t>(i) * channels + c]);
        }
    }
}

template <class Sample>
void join(const std::vector<Sample*>& from, std::vector<double>& stream, int32_t channels, int32_t count) {
    for (int32_t c = 0; c < channels; ++c) {
        for (int32_t i = 0; i < count; ++i) {
            stream[static_cast<size_t>(i) * channels + c] = from[c][i];
        }
    }
}

}  // namespace

bool CRenderer::resolve(std::string& error) {
    CParameterText texts(host_);
    const auto add = [&](const CRenderChange& change, std::vector<CFrameChange>& list) {
        CFrameChange& made = list.emplace_back();
        made.frame = std::llround(change.seconds * options_.rate);
        made.index = host_.findParameter(change.name);
        if (made.index < 0) {
            error = "no parameter is named '" + change.name + "'; --list shows the names";
            return false;
        }
        if (!texts.find(made.index, change.value, made.value, error)) {
            error = change.name + ": " + error;
            return false;
        }
        return true;
    };
    for (const CRenderChange& change : options_.settings) {
        if (!add(change, settings_)) {
            return false;
        }
    }
    for (const CRenderChange& change : options_.changes) {
        if (!add(change, changes_)) {
            return false;
        }
    }
    std::stable_sort(changes_.begin(), changes_.end(),
                     [](const CFrameChange& a, const CFrameChange& b) { return a.frame < b.frame; });
    return true;
}

void CRenderer::applySettings() {
    for (const CFrameChange& setting : settings_) {
        host_.setParameter(setting.index, setting.value);
    }
}

bool CRenderer::renderAll(std::FILE* input, std::FILE* output, std::string& error) {
    const bool isDouble = options_.precision == 64;
    if (isDouble && !(host_.effect()->flags & vst::kFlagCanDoubleReplacing)) {
        error = "the plug-in does not process 64-bit samples";
        return false;
    }
    host_.prepare(options_.rate, options_.block, isDouble ? vst::kPrecision64 : vst::kPrecision32);
    applySettings();
    random_ = options_.seed;
    host_.resume();
    const double start = now();
    const bool done = isDouble ? run<double>(input, output, error) : run<float>(input, output, error);
    elapsed_ = now() - start;
    if (options_.isProgress) {
        showProgress(true);
    }
    host_.suspend();
    return done;
}

template <class Sample>
bool CRenderer::run(std::FILE* input, std::FILE* output, std::string& error) {
    const vst::AEffect& effect = *host_.effect();
    const int32_t channels = options_.channels;
    CChannels<Sample> in(std::max(channels, effect.numInputs), options_.block);
    CChannels<Sample> out(std::max(channels, effect.numOutputs), options_.block);
    std::vector<double> stream(static_cast<size_t>(channels) * options_.block);
    int64_t tail = std::llround(options_.tail * options_.rate);
    bool isInput = true;
    while (isInput || tail > 0) {
        applyChanges();
        const int32_t wanted = cutAtChange(nextBlock());
        int32_t count = 0;
        if (isInput && !readFrames(input, stream, wanted, count, error)) {
            return false;
        }
        isInput = isInput && count == wanted;
        if (count == 0) {
            count = static_cast<int32_t>(std::min<int64_t>(wanted, tail));
            tail -= count;
            std::fill(stream.begin(), stream.end(), 0.0);
        }
        if (count == 0) {
            break;
        }
        split(stream, in.pointers, channels, count);
        host_.process(in.pointers.data(), out.pointers.data(), count);
        join(out.pointers, stream, channels, count);
        const size_t size = static_cast<size_t>(count) * channels;
        if (std::fwrite(stream.data(), sizeof(double), size, output) != size) {
            error = "cannot write the output";
            return false;
        }
        frames_ += count;
        if (options_.isProgress) {
            showProgress(false);
        }
    }
    error = "cannot write the output";
    return std::fflush(output) == 0;
}

bool CRenderer::readFrames(std::FILE* input, std::vector<double>& stream, int32_t wanted, int32_t& count,
                           std::string& error) const {
    const auto channels = static_cast<size_t>(options_.channels);
    const size_t got = std::fread(stream.data(), sizeof(double), static_cast<size_t>(wanted) * channels, input);
    count = static_cast<int32_t>(got / channels);
    error = std::ferror(input) ? "cannot read the input" : "the input ends inside a frame";
    return !std::ferror(input) && got % channels == 0;
}

int32_t CRenderer::nextBlock() {
    if (!options_.isRandom) {
        return options_.block;
    }
    // Knuth's constants for a 64-bit congruential generator; its high bits are the good ones.
    random_ = random_ * 6364136223846793005u + 1442695040888963407u;
    return 1 + static_cast<int32_t>((random_ >> 33) % static_cast<uint64_t>(options_.block));
}

int32_t CRenderer::cutAtChange(int32_t frames) const {
    if (nextChange_ >= changes_.size()) {
        return frames;
    }
    return static_cast<int32_t>(std::min<int64_t>(frames, changes_[nextChange_].frame - frames_));
}

void CRenderer::applyChanges() {
    for (; nextChange_ < changes_.size() && changes_[nextChange_].frame <= frames_; ++nextChange_) {
        host_.setParameter(changes_[nextChange_].index, changes_[nextChange_].value);
    }
}

void CRenderer::showProgress(bool isLast) {
    const double time = now();
    if (!isLast && time - shownAt_ < 0.25) {
        return;
    }
    shownAt_ = time;
    if (options_.expected > 0.0) {
        std::fprintf(stderr, "\r%5.1f s  %3.0f %%", seconds(), std::min(100.0, 100.0 * seconds() / options_.expected));
    } else {
        std::fprintf(stderr, "\r%5.1f s", seconds());
    }
    std::fputs(isLast ? "\n" : "", stderr);
    std::fflush(stderr);
}

void printList(CVstHost& host, std::FILE* output) {
    const vst::AEffect& e = *host.effect();
    const auto id = static_cast<uint32_t>(e.uniqueId);
    const auto version = static_cast<int32_t>(host.dispatch(vst::kEffectGetVendorVersion));
    std::fprintf(output, "name      %s\n", host.text(vst::kEffectGetEffectName).c_str());
    std::fprintf(output, "vendor    %s\n", host.text(vst::kEffectGetVendorString).c_str());
    std::fprintf(output, "product   %s\n", host.text(vst::kEffectGetProductString).c_str());
    std::fprintf(output, "version   %d.%d.%d\n", version >> 16, version >> 8 & 255, version & 255);
    std::fprintf(output, "id        %c%c%c%c\n", id >> 24 & 255, id >> 16 & 255, id >> 8 & 255, id & 255);
    std::fprintf(output, "category  %d\n", static_cast<int>(host.dispatch(vst::kEffectGetPlugCategory)));
    std::fprintf(output, "inputs    %d\noutputs   %d\n", e.numInputs, e.numOutputs);
    std::fprintf(output, "samples   %s\n", e.flags & vst::kFlagCanDoubleReplacing ? "32 and 64 bits" : "32 bits");
    std::fprintf(output, "editor    %s\n", e.flags & vst::kFlagHasEditor ? "yes" : "no");
    std::fprintf(output, "chunks    %s\n", e.flags & vst::kFlagProgramChunks ? "yes" : "no");
    std::fprintf(output, "latency   %d frames\n", e.initialDelay);
    std::fprintf(output, "programs  %d, current '%s'\n", e.numPrograms, host.text(vst::kEffectGetProgramName).c_str());
    std::fprintf(output, "params    %d\n", e.numParams);
    for (int32_t i = 0; i < e.numParams; ++i) {
        std::fprintf(output, "%3d  %-8s %9.6f  %s %s\n", i, host.text(vst::kEffectGetParamName, i).c_str(),
                     static_cast<double>(host.parameter(i)), host.text(vst::kEffectGetParamDisplay, i).c_str(),
                     host.text(vst::kEffectGetParamLabel, i).c_str());
    }
}

}  // namespace tarv::host
