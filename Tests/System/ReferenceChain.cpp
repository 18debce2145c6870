#include "Tests/System/ReferenceChain.h"

#include <cmath>
#include <memory>
#include <numbers>

#include "Tests/System/ReferenceParts.h"

namespace tarv::reference {

namespace {

/// One entry of the stack: peak, high-pass at 6 Hz, saturation fed by the entry's own input.
class CEntry {
public:
    CEntry(const CBand::Values& values, double rate) : band_(values, rate), highPass_(6.0, rate), tube_(rate) {}

    void want(const CBand::Values& values) { band_.want(values); }
    double next(double x) { return tube_.next(highPass_.next(band_.next(x)), x); }

private:
    CFading<CBand> band_;
    COnePoleHighPass highPass_;
    CTube tube_;
};

CBand::Values bandValues(const CGroupSettings& group, int band) {
    const auto i = static_cast<size_t>(band);
    return {group.frequencies[i], group.gains[i]};
}

/// One element of the layout, from the host's sample to the host's sample.
class CElement {
public:
    CElement(const CLayout& layout, int index, const CSettings& first)
        : layout_(layout),
          group_(static_cast<size_t>(layout.grouping[static_cast<size_t>(index)])),
          rate_(std::ldexp(layout.rate, layout.stages)),
          up_(layout.stages),
          down_(layout.stages),
          highPass_(5.0, rate_),
          gain_(gainValues(first), rate_),
          bypass_(bypassValues(first), rate_) {
        pre_.design = designHighShelf(4000.0, factorOf(-20.0), 2.0, rate_);
        post_.design = designHighShelf(4000.0, factorOf(20.0), 2.0, rate_);
        want(first);
    }

    void want(const CSettings& settings) {
        bands_ = settings.groups[group_];
        wantedCount_ = static_cast<size_t>(settings.bandCount);
        for (size_t band = 0; band < entries_.size(); ++band) {
            entries_[band]->want(bandValues(bands_, static_cast<int>(band)));
        }
        gain_.want(gainValues(settings));
        bypass_.want(bypassValues(settings));
    }

    /// The samples of one host frame at the raised rate.
    std::vector<double> raise(double x) { return up_.next(layout_.hasNoise ? noise_.addTo(x) : x); }

    double equalise(double dry) {
        const double x = highPass_.next(post_.next(runEntries(pre_.next(dry))));
        return bypass_.next(gain_.next(x), dry);
    }

    double lower(const std::vector<double>& samples) { return down_.next(samples); }

private:
    /// Both counts run for 15 ms behind a change, and the sound passes from the end of the one to that of the other.
    double runEntries(double x) {
        if (left_ == 0 && count_ != wantedCount_) {
            beginFade();
        }
        double fresh = x;
        double stale = x;
        for (size_t band = 0; band < entries_.size(); ++band) {
            x = entries_[band]->next(x);
            fresh = band + 1 == count_ ? x : fresh;
            stale = band + 1 == formerCount_ ? x : stale;
        }
        hasRun_ = true;
        if (left_ == 0) {
            return fresh;
        }
        const double mixed = ramp_.next(fresh, stale);
        if (--left_ == 0) {
            entries_.resize(count_, nullptr);
        }
        return mixed;
    }

    /// Entries that come begin in silence; those that go take their history with them when the fade has ended.
    void beginFade() {
        formerCount_ = count_;
        count_ = wantedCount_;
        while (entries_.size() < count_) {
            const auto band = static_cast<int>(entries_.size());
            entries_.push_back(std::make_shared<CEntry>(bandValues(bands_, band), rate_));
        }
        if (hasRun_) {
            left_ = fadeLength(rate_);
            ramp_ = CRamp(left_);
        } else {
            entries_.resize(count_, nullptr);
        }
    }

    CGain::Values gainValues(const CSettings& settings) const {
        return {settings.groups[group_].outGain, settings.groups[group_].isMuted};
    }

    CBypass::Values bypassValues(const CSettings& settings) const {
        bool isAnySolo = false;
        for (const CGroupSettings& group : settings.groups) {
            isAnySolo = isAnySolo || group.isSolo;
        }
        // Another group's solo silences a bypassed channel too.
        if (isAnySolo && !settings.groups[group_].isSolo) {
            return CBypass::Values::kNoise;
        }
        return settings.isBypassed ? CBypass::Values::kDry : CBypass::Values::kProcessed;
    }

    CLayout layout_;
    size_t group_;
    double rate_;
    CNoise noise_;
    CUpsampler up_;
    CDownsampler down_;
    CBiquad pre_;
    CGroupSettings bands_;
    std::vector<std::shared_ptr<CEntry>> entries_;
    size_t count_ = 0;
    size_t wantedCount_ = 0;
    size_t formerCount_ = 0;
    bool hasRun_ = false;
    int64_t left_ = 0;
    CRamp ramp_{1};
    CBiquad post_;
    COnePoleHighPass highPass_;
    CFading<CGain> gain_;
    CFading<CBypass> bypass_;
};

struct CPair {
    size_t mid;
    size_t side;
};

/// The whole layout. Elements that the layout lacks are null.
class CChain {
public:
    CChain(const CLayout& layout, const CSettings& first) : layout_(layout), elements_(kChannels) {
        for (int e = 0; e < kChannels; ++e) {
            if (layout.inRouting[static_cast<size_t>(e)] != 0) {
                elements_[static_cast<size_t>(e)] = std::make_unique<CElement>(layout, e, first);
            }
        }
        findPairs();
    }

    void want(const CSettings& settings) {
        for (const auto& element : elements_) {
            if (element) {
                element->want(settings);
            }
        }
    }

    /// One frame of the host's channels in, one out.
    std::vector<double> next(const std::vector<double>& frame) {
        std::vector<std::vector<double>> samples(kChannels);
        for (size_t e = 0; e < kChannels; ++e) {
            if (elements_[e]) {
                samples[e] = elements_[e]->raise(inputOf(frame, layout_.inRouting[e]));
            }
        }
        for (size_t i = 0; i < size_t{1} << layout_.stages; ++i) {
            runRaised(samples, i);
        }
        std::vector<double> outputs(kChannels, 0.0);
        for (size_t e = 0; e < kChannels; ++e) {
            if (elements_[e]) {
                outputs[e] = elements_[e]->lower(samples[e]);
            }
        }
        return route(outputs);
    }

private:
    static double inputOf(const std::vector<double>& frame, int channel) {
        const auto i = static_cast<size_t>(channel - 1);
        return i < frame.size() && std::isfinite(frame[i]) ? frame[i] : 0.0;
    }

    /// The first two elements of each number.
    void findPairs() {
        for (int number = 1; number <= 4; ++number) {
            std::vector<size_t> members;
            for (size_t e = 0; e < kChannels; ++e) {
                if (elements_[e] && layout_.pairs[e] == number) {
                    members.push_back(e);
                }
            }
            if (members.size() >= 2) {
                pairs_.push_back({members[0], members[1]});
            }
        }
    }

    void runRaised(std::vector<std::vector<double>>& samples, size_t i) {
        for (const CPair& pair : pairs_) {
            const double a = samples[pair.mid][i];
            const double b = samples[pair.side][i];
            const double d = (b - a) * -0.5;
            samples[pair.mid][i] = b + d;
            samples[pair.side][i] = d;
        }
        const double level = riseLevel();
        for (size_t e = 0; e < kChannels; ++e) {
            if (elements_[e]) {
                samples[e][i] = elements_[e]->equalise(samples[e][i] * level);
            }
        }
        for (const CPair& pair : pairs_) {
            const double a = samples[pair.mid][i];
            const double b = samples[pair.side][i];
            samples[pair.mid][i] = a + b;
            samples[pair.side][i] = a - b;
        }
    }

    /// Of the next sample at the raised rate: a raised cosine.
    double riseLevel() {
        const auto length = static_cast<double>(fadeLength(std::ldexp(layout_.rate, layout_.stages)));
        const auto position = static_cast<double>(raised_++);
        const bool isOver = !layout_.hasRise || position >= length;
        return isOver ? 1.0 : 0.5 - 0.5 * std::cos(std::numbers::pi * position / length);
    }

    bool exists(int element) const {
        return element >= 1 && element <= kChannels && elements_[static_cast<size_t>(element - 1)];
    }

    /// An element goes to the channel of its entry. A channel without one whose own entry belongs to no element copies
    /// the element that this entry names.
    std::vector<double> route(const std::vector<double>& outputs) const {
        const auto hostChannels = static_cast<size_t>(layout_.hostChannels);
        std::vector<double> frame(hostChannels, 0.0);
        std::vector<bool> isReached(hostChannels, false);
        for (size_t e = 0; e < kChannels; ++e) {
            const auto channel = static_cast<size_t>(layout_.outRouting[e]);
            if (elements_[e] && channel >= 1 && channel <= hostChannels) {
                frame[channel - 1] = outputs[e];
                isReached[channel - 1] = true;
            }
        }
        for (size_t h = 0; h < hostChannels; ++h) {
            const int named = h < kChannels && !elements_[h] ? layout_.outRouting[h] : 0;
            if (!isReached[h] && exists(named)) {
                frame[h] = outputs[static_cast<size_t>(named - 1)];
            }
        }
        return frame;
    }

    CLayout layout_;
    std::vector<std::unique_ptr<CElement>> elements_;
    std::vector<CPair> pairs_;
    int64_t raised_ = 0;
};

}  // namespace

CSignal render(const CLayout& layout, const CSettings& first, const std::vector<CChange>& changes, const CSignal& input,
               int64_t frames) {
    CChain chain(layout, first);
    CSignal output(static_cast<size_t>(layout.hostChannels));
    auto change = changes.begin();
    for (int64_t i = 0; i < frames; ++i) {
        for (; change != changes.end() && change->frame <= i; ++change) {
            chain.want(change->settings);
        }
        std::vector<double> frame;
        for (const std::vector<double>& row : input) {
            frame.push_back(static_cast<size_t>(i) < row.size() ? row[static_cast<size_t>(i)] : 0.0);
        }
        const std::vector<double> result = chain.next(frame);
        for (size_t h = 0; h < output.size(); ++h) {
            output[h].push_back(result[h]);
        }
    }
    return output;
}

}  // namespace tarv::reference
