// How a stack passes from one count of instances to another while audio runs.

#include <algorithm>

#include "Audio/Graph/CAudioProcessStack.h"

namespace tarv {

/// Adds the channels of `source`, `byteOffset` further into their blocks, to an empty port, by reference.
void CAudioProcessStack::copyChannels(CAudioPort& target, const CAudioPort& source, int32_t byteOffset,
                                      CQPLEXContext& context) {
    target.release(context);
    target.rate = source.rate;
    target.layout = source.layout;
    target.samples = source.samples;
    for (const CAudioChannel& channel : source.channels) {
        const CBufferHandle handle = CQPLEXContext::offsetBy(channel.handle, byteOffset);
        context.addReference(handle);
        target.add(channel.group, channel.element, channel.serial, handle);
    }
}

void CAudioProcessStack::runFading(int32_t samples) {
    graph().invalidateRun();
    const int32_t nearer = std::min(count_, formerCount_);
    const int32_t further = std::max(count_, formerCount_);
    runInstances(0, nearer);
    for (int32_t port = 0; port < outputCount(); ++port) {
        copyChannels(*nearer_[port], portBehind(nearer, port), 0, context());
    }
    runInstances(nearer, further);
    giveOutputs();
    mixOutputs(samples);
    for (CAudioPort* port : nearer_) {
        port->release(context());
    }
}

void CAudioProcessStack::mixOutputs(int32_t samples) {
    const bool isGrowing = count_ > formerCount_;
    bool isAlike = true;
    for (int32_t port = 0; port < outputCount(); ++port) {
        isAlike = isAlike && CPortFade::isAlike(output(port), *nearer_[port]);
    }
    if (!isAlike) {
        // Both ends carry different channels or rates: there is nothing to fade between.
        for (int32_t port = 0; port < outputCount() && !isGrowing; ++port) {
            output(port).takeFrom(*nearer_[port], context());
        }
        endFade();
        return;
    }
    for (int32_t port = 0; port < outputCount(); ++port) {
        CAudioPort& out = output(port);
        const CAudioPort& near = *nearer_[port];
        fade_.mix(out, isGrowing ? near : out, isGrowing ? out : near, context());
    }
    fade_.advance(samples, context());
    if (!isFading()) {
        endFade();
    }
}

void CAudioProcessStack::runCut(int32_t samples) {
    constexpr auto kBytes = static_cast<int32_t>(sizeof(double));
    for (int32_t port = 0; port < inputCount(); ++port) {
        whole_[port]->takeFrom(input(port), context());
    }
    for (int32_t position = 0; position < samples;) {
        const int32_t length = isFading() ? std::min(samples - position, fade_.left()) : samples - position;
        for (int32_t port = 0; port < inputCount(); ++port) {
            copyChannels(input(port), *whole_[port], position * kBytes, context());
            input(port).samples = std::min(length, whole_[port]->samples);
        }
        if (isFading()) {
            runFading(length);
        } else {
            runInstances(0, count_);
            giveOutputs();
        }
        appendPiece(position, length, samples);
        position += length;
        startSize();
    }
    for (int32_t port = 0; port < outputCount(); ++port) {
        output(port).takeFrom(*pieces_[port], context());
    }
    for (CAudioPort* port : whole_) {
        port->release(context());
    }
}

/// Copies the outputs of a piece of the block to their place in the whole.
void CAudioProcessStack::appendPiece(int32_t position, int32_t samples, int32_t total) {
    constexpr auto kBytes = static_cast<int32_t>(sizeof(double));
    CQPLEXContext& ctx = context();
    for (int32_t port = 0; port < outputCount(); ++port) {
        CAudioPort& out = output(port);
        CAudioPort& whole = *pieces_[port];
        if (position == 0) {
            whole.release(ctx);
            whole.rate = out.rate;
            whole.layout = out.layout;
            whole.samples = out.samples == CAudioPort::kUnlimited ? out.samples : total;
            for (const CAudioChannel& channel : out.channels) {
                const CBufferHandle block = ctx.takeSignal(total);
                ctx.issue(ctx.commonKernel(CCommonKernel::Fill0), total, 0.0, {block});
                whole.add(channel.group, channel.element, channel.serial, block);
            }
        }
        const int32_t count = std::min(samples, out.samples);
        for (int32_t i = 0; i < std::min(whole.channels.count(), out.channels.count()); ++i) {
            const CBufferHandle place = CQPLEXContext::offsetBy(whole.channels[i].handle, position * kBytes);
            ctx.issue(ctx.commonKernel(CCommonKernel::Copy), count, 0.0, {place, out.channels[i].handle});
        }
        out.release(ctx);
    }
}

}  // namespace tarv
