#pragma once

// The steps of CAudioProcessTerminal.h: changes, fades, and the modules' runs. Included at its end.

#include "Audio/Modules/CAudioProcessTerminal.h"

#include <cmath>
#include <cstdint>

namespace tarv {

template <class T>
void CAudioProcessTerminal<T>::applyChanges() {
    slotsChanged_ = false;
    const bool isFaded = def().isSmoothUpdate() && graph().isRunning();
    for (CVoice& voice : voices_) {
        if (voice.old != nullptr) {
            voice.isPending = true;
        } else if (voice.current->differs()) {
            if (isFaded) {
                startFade(voice);
            } else {
                graph().invalidateRun();
                voice.current->design(rate_, voice.current);
            }
        }
    }
    noteDelay();
}

template <class T>
void CAudioProcessTerminal<T>::servePending() {
    // Behind updateParams, so that a change that is due at the sample where a fade ends is included.
    mayFade_ = false;
    for (CVoice& voice : voices_) {
        if (voice.isPending && voice.old == nullptr) {
            voice.isPending = false;
            if (voice.current->differs()) {
                startFade(voice);
            }
        }
        mayFade_ |= voice.old != nullptr;
    }
    noteDelay();
}

template <class T>
void CAudioProcessTerminal<T>::startFade(CVoice& voice) {
    graph().invalidateRun();
    mayFade_ = true;
    T* next = takeModule(voice.channel);
    next->design(rate_, voice.current);
    voice.old = voice.current;
    voice.current = next;
    voice.fadePosition = 0;
    voice.isPending = false;
    if (rampLength_ != fadeLength_) {
        rampLength_ = fadeLength_;
        rampStart_ = rampStart(fadeLength_, 0.0);
    }
    voice.ramp = context().takeBuffer(CRampStart::kBytes);
    if (voice.ramp != kNoBuffer) {
        *static_cast<CRampStart*>(context().data(voice.ramp)) = rampStart_;
    }
}

template <class T>
int32_t CAudioProcessTerminal<T>::segmentLength(int32_t left) const {
    for (const CVoice& voice : voices_) {
        if (voice.old != nullptr && fadeLength_ - voice.fadePosition < left) {
            left = fadeLength_ - voice.fadePosition;
        }
    }
    return left;
}

template <class T>
CBufferHandle CAudioProcessTerminal<T>::fade(const CVoice& voice, CBufferHandle current, CBufferHandle old,
                                             int32_t count) {
    const CBufferHandle out = context().takeSignal(count);
    context().issue(context().commonKernel(CCommonKernel::Xfade), count, 0.0, {out, voice.ramp, current, old});
    context().releaseReference(current);
    context().releaseReference(old);
    return out;
}

/// Kernel by kernel, so that equal ones of several channels run together.
template <class T>
void CAudioProcessTerminal<T>::runWhole(int32_t count) {
    CQPLEXContext& ctx = context();
    CChannelList& channels = output(0).channels;
    for (int32_t i = 0; i < voices_.count(); ++i) {
        CVoice& voice = voices_[i];
        voice.input = channels[i].handle;
        channels[i].handle = voice.current->run(voice.input, secondBlock(i, channels[i]), count);
    }
    for (int32_t i = 0; mayFade_ && i < voices_.count(); ++i) {
        CVoice& voice = voices_[i];
        voice.oldOutput =
            voice.old != nullptr ? voice.old->run(voice.input, secondBlock(i, channels[i]), count) : kNoBuffer;
    }
    for (int32_t i = 0; i < voices_.count(); ++i) {
        CVoice& voice = voices_[i];
        if (voice.old != nullptr) {
            channels[i].handle = fade(voice, channels[i].handle, voice.oldOutput, count);
        }
        ctx.releaseReference(voice.input);
    }
    if (mayFade_) {
        advanceFades(count);
    }
}

template <class T>
void CAudioProcessTerminal<T>::runCut(int32_t count) {
    CQPLEXContext& ctx = context();
    constexpr auto kBytes = static_cast<int32_t>(sizeof(double));
    CChannelList& channels = output(0).channels;
    for (int32_t i = 0; i < voices_.count(); ++i) {
        voices_[i].channel.handle = channels[i].handle;
        channels[i].handle = ctx.takeSignal(count);
    }
    for (int32_t position = 0; position < count;) {
        const int32_t length = segmentLength(count - position);
        const int32_t offset = position * kBytes;
        for (int32_t i = 0; i < voices_.count(); ++i) {
            const CBufferHandle in = CQPLEXContext::offsetBy(voices_[i].channel.handle, offset);
            const CBufferHandle second = CQPLEXContext::offsetBy(secondBlock(i, channels[i]), offset);
            CBufferHandle piece = voices_[i].current->run(in, second, length);
            if (voices_[i].old != nullptr) {
                piece = fade(voices_[i], piece, voices_[i].old->run(in, second, length), length);
            }
            ctx.issue(ctx.commonKernel(CCommonKernel::Copy), length, 0.0,
                      {CQPLEXContext::offsetBy(channels[i].handle, offset), piece});
            ctx.releaseReference(piece);
        }
        advanceFades(length);
        position += length;
        if (position < count) {
            servePending();
        }
    }
    for (CVoice& voice : voices_) {
        ctx.releaseReference(voice.channel.handle);
        voice.channel.handle = kNoBuffer;
    }
}

template <class T>
void CAudioProcessTerminal<T>::advanceFades(int64_t count) {
    for (CVoice& voice : voices_) {
        if (voice.old == nullptr) {
            continue;
        }
        if (count >= fadeLength_ - voice.fadePosition) {
            graph().invalidateRun();
            endFade(voice);
        } else {
            voice.fadePosition += static_cast<int32_t>(count);
        }
    }
}

/// Fades of the last run went on while it was repeated.
template <class T>
void CAudioProcessTerminal<T>::catchUp() {
    const bool wasInLastRun = lastRun_ + 1 == graph().runNumber();
    lastRun_ = graph().runNumber();
    if (wasInLastRun && mayFade_ && graph().repeatedFrames() > 0) {
        const double frames = static_cast<double>(graph().repeatedFrames());
        advanceFades(static_cast<int64_t>(std::round(frames * rate_ / graph().hostRate)));
    }
}

template <class T>
void CAudioProcessTerminal<T>::noteFades() {
    const double scale = graph().hostRate / rate_;
    for (const CVoice& voice : voices_) {
        if (voice.old != nullptr) {
            graph().noteFade((fadeLength_ - voice.fadePosition) * scale);
        }
    }
}

template <class T>
bool CAudioProcessTerminal<T>::takeQuietChanges() {
    updateParams();
    if (!slotsChanged_) {
        return true;
    }
    for (const CVoice& voice : voices_) {
        if (voice.old == nullptr && voice.current->differs()) {
            return false;
        }
    }
    slotsChanged_ = false;
    for (CVoice& voice : voices_) {
        voice.isPending |= voice.old != nullptr;
    }
    return true;
}

template <class T>
void CAudioProcessTerminal<T>::process() {
    catchUp();
    updateParams();
    const int32_t count = stepLength();
    CAudioPort& in = input(0);
    CAudioPort& out = output(0);
    if (in.layout != layout_ || in.rate != rate_ || in.channels.count() != voices_.count()) {
        syncVoices(in);
    }
    if (slotsChanged_) {
        applyChanges();
    }
    if (mayFade_) {
        servePending();
    }
    // The list moves to the output; each block in it is then replaced by its module's output.
    out.takeFrom(in, context());
    out.samples = count;
    if (!mayFade_ || segmentLength(count) == count) {
        runWhole(count);
    } else {
        graph().invalidateRun();
        runCut(count);
    }
    if (mayFade_) {
        noteFades();
    }
    if (inputCount() > 1) {
        releaseInputs();
    }
    context().endProcess();
}

}  // namespace tarv
