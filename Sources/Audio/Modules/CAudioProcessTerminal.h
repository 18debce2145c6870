#pragma once

#include "Audio/Kernels/CrossfadeKernels.h"
#include "Audio/Modules/CAudioModule.h"
#include "Audio/Modules/CAudioProcessTerminalBase.h"

namespace tarv {

/// A process whose work is done by one module of class T for each channel. While a parameter change is faded in, a
/// channel has two: the one with the old values and the one with the new. The core ends its runs where fades end, so
/// that a waiting change starts at that sample, independent of how the host cuts its blocks; where it can't, the
/// process cuts its own block.
///
/// T derives from CAudioModule and has
///   bool differs() const              the slots hold other values than the module was designed with
///   void design(double rate, T* from) takes the slots' values; from: null for silence, itself for an update in place,
///                                     another module whose history is taken over where that makes sense
///   CBufferHandle run(CBufferHandle in, CBufferHandle second, int32_t count)   a block with one reference
///   void retire()                     releases its state
///   void makeReady(const T* like)     allocates what a design as that of `like` needs; null: of anything
///   int32_t latency() const           samples
template <class T>
class CAudioProcessTerminal : public CAudioProcessTerminalBase {
public:
    ~CAudioProcessTerminal() override;
    void process() override;
    bool takeQuietChanges() override;
    void reset() override;
    void makeSpares() override;
    int32_t placeDelay(int32_t inputDelay) override;

    /// Channels that are being served, and those of them in a fade.
    int32_t voiceCount() const { return voices_.count(); }
    int32_t fadeCount() const;
    const T& module(int32_t voice) const { return *voices_[voice].current; }

private:
    struct CVoice {
        CAudioChannel channel;
        T* current = nullptr;
        T* old = nullptr;
        CBufferHandle ramp = kNoBuffer;
        // Within a step.
        CBufferHandle input = kNoBuffer;
        CBufferHandle oldOutput = kNoBuffer;
        int32_t fadePosition = 0;
        bool isPending = false;
    };

    T* makeModule();
    T* takeModule(const CAudioChannel& channel);
    void retireModule(T*& module);
    void endFade(CVoice& voice);
    void retireVoices();
    void syncVoices(const CAudioPort& in);
    void rebuildVoices(const CAudioPort& in);
    void applyChanges();
    void servePending();
    void startFade(CVoice& voice);
    int32_t segmentLength(int32_t left) const;
    CBufferHandle fade(const CVoice& voice, CBufferHandle current, CBufferHandle old, int32_t count);
    void runWhole(int32_t count);
    void runCut(int32_t count);
    void advanceFades(int64_t count);
    void catchUp();
    void noteFades();
    /// Delay of the modules as they are designed now, in host samples.
    int32_t ownDelay() const;
    /// Invalidates the graph's delays if a design changed this one.
    void noteDelay();

    /// The block of port 1 for the channel at a position of port 0.
    CBufferHandle secondBlock(int32_t position, const CAudioChannel& channel) const {
        return inputCount() > 1 ? findBlock(1, position, channel) : kNoBuffer;
    }

    CArray<CVoice, 8> voices_;
    CArray<T*, 16> spares_;
    double rate_ = 0.0;
    uint64_t layout_ = 0;
    int32_t fadeLength_ = 1;
    int32_t rampLength_ = 0;  ///< of the fade that rampStart_ begins; 0: none yet
    CRampStart rampStart_;
    int64_t lastRun_ = 0;   ///< of the graph, at the last step
    bool mayFade_ = false;  ///< a voice is in a fade or has a change waiting
};

template <class T>
CAudioProcessTerminal<T>::~CAudioProcessTerminal() {
    retireVoices();
    for (T* module : spares_) {
        delete module;
    }
}

template <class T>
int32_t CAudioProcessTerminal<T>::fadeCount() const {
    int32_t count = 0;
    for (const CVoice& voice : voices_) {
        count += voice.old != nullptr ? 1 : 0;
    }
    return count;
}

template <class T>
T* CAudioProcessTerminal<T>::makeModule() {
    T* module = new T;
    module->attach(*this);
    module->bindParams();
    module->resolveKernels();
    return module;
}

template <class T>
T* CAudioProcessTerminal<T>::takeModule(const CAudioChannel& channel) {
    if (spares_.isEmpty()) {
        spares_.append(makeModule());
    }
    T* module = spares_.last();
    spares_.removeLast();
    module->assign(channel.group, channel.element);
    return module;
}

template <class T>
void CAudioProcessTerminal<T>::retireModule(T*& module) {
    module->retire();
    spares_.append(module);
    module = nullptr;
}

template <class T>
void CAudioProcessTerminal<T>::endFade(CVoice& voice) {
    retireModule(voice.old);
    context().releaseReference(voice.ramp);
    voice.ramp = kNoBuffer;
    voice.fadePosition = 0;
}

template <class T>
void CAudioProcessTerminal<T>::retireVoices() {
    for (CVoice& voice : voices_) {
        if (voice.old != nullptr) {
            endFade(voice);
        }
        retireModule(voice.current);
    }
    voices_.clear();
}

template <class T>
void CAudioProcessTerminal<T>::reset() {
    CAudioProcessBase::reset();
    // The next step makes new voices: designed with the current values, without history, without a fade.
    retireVoices();
}

template <class T>
void CAudioProcessTerminal<T>::makeSpares() {
    const int32_t wanted = def().isSmoothUpdate() ? voices_.count() : 0;
    while (spares_.count() < wanted) {
        spares_.append(makeModule());
    }
    if (spares_.capacity() < 3 * voices_.count()) {
        spares_.reserve(3 * voices_.count());
    }
    for (T* module : spares_) {
        module->makeReady(voices_.isEmpty() ? nullptr : voices_[0].current);
    }
    graph().noteUse(voices_.count(), rate_);
}

template <class T>
int32_t CAudioProcessTerminal<T>::placeDelay(int32_t inputDelay) {
    setDelays(inputDelay, inputDelay + ownDelay());
    return outputDelay();
}

template <class T>
int32_t CAudioProcessTerminal<T>::ownDelay() const {
    int32_t own = 0;
    for (const CVoice& voice : voices_) {
        own = voice.current->latency() > own ? voice.current->latency() : own;
    }
    const double hostFrames = rate_ > 0.0 ? own * graph().hostRate / rate_ : 0.0;
    return static_cast<int32_t>(hostFrames + 0.5);
}

template <class T>
void CAudioProcessTerminal<T>::noteDelay() {
    if (ownDelay() != outputDelay() - inputDelay()) {
        graph().invalidateDelays();
    }
}

template <class T>
void CAudioProcessTerminal<T>::syncVoices(const CAudioPort& in) {
    if (in.rate != rate_) {
        retireVoices();
        rate_ = in.rate;
        fadeLength_ = fadeSamples(rate_);
        graph().requestRoom();
    }
    layout_ = in.layout;
    graph().invalidateRun();
    bool isSame = in.channels.count() == voices_.count();
    for (int32_t i = 0; isSame && i < voices_.count(); ++i) {
        isSame = voices_[i].channel.isSameAs(in.channels[i]);
    }
    if (!isSame) {
        graph().requestRoom();
        rebuildVoices(in);
        noteDelay();
    }
}

template <class T>
void CAudioProcessTerminal<T>::rebuildVoices(const CAudioPort& in) {
    CArray<CVoice, 8> former = std::move(voices_);
    voices_.clear();
    for (const CAudioChannel& channel : in.channels) {
        CVoice voice;
        for (CVoice& candidate : former) {
            if (candidate.current != nullptr && candidate.channel.isSameAs(channel)) {
                voice = candidate;
                candidate.current = nullptr;
                candidate.old = nullptr;
                break;
            }
        }
        if (voice.current == nullptr) {
            voice.channel = channel;
            voice.current = takeModule(channel);
            voice.current->design(rate_, nullptr);
        }
        voices_.append(voice);
    }
    for (CVoice& voice : former) {
        if (voice.current != nullptr) {
            if (voice.old != nullptr) {
                endFade(voice);
            }
            retireModule(voice.current);
        }
    }
}

}  // namespace tarv

#include "Audio/Modules/CAudioProcessTerminalSteps.h"
