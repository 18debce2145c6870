#include "Audio/Modules/CModMSCoder.h"

#include <cmath>

#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/MidSideKernels.h"
#include "Audio/Modules/CAudioProcessTerminalBase.h"

namespace tarv {

CAudioProcessBase* CModMSCoderDef::createProcess() const {
    return new CModMSCoder;
}

CError* CModMSCoder::init() {
    TARV_TRY(CAudioProcessBase::init());
    needInput(0);
    needOutput(0);
    encodeKernel_ = context().findKernel(KernelName::kMsEnc);
    decodeKernel_ = context().findKernel(KernelName::kMsDec);
    readTables();
    return nullptr;
}

void CModMSCoder::registerKernels() {
    registerMidSideKernels(context());
}

void CModMSCoder::slotChanged(CAudioParamSlot&) {
    readTables();
}

void CModMSCoder::readTables() {
    hasPairs_ = false;
    tableStamp_ = 0;
    for (int32_t e = 0; e < kMaxElements; ++e) {
        pairs_[e] = slotNumber(slot(0), e);
        hasPairs_ |= pairs_[e] != 0;
        tableStamp_ = mixSerial(tableStamp_, static_cast<uint64_t>(pairs_[e]));
    }
    isDecoder_ = std::round(slotValue(slot(1), 0, 0, 0.0)) == 1.0;
    isOff_ = slotValue(slot(2), 0, 0, 0.0) > 0.5;
}

int32_t CModMSCoder::findPartner(const CAudioPort& in, int32_t first) const {
    const int32_t pair = pairs_[in.channels[first].element];
    if (pair == 0) {
        return -1;
    }
    int32_t partner = -1;
    for (int32_t i = 0; i < in.channels.count(); ++i) {
        if (pairs_[in.channels[i].element] == pair) {
            if (i < first) {
                return -1;
            }
            if (i > first && partner < 0) {
                partner = i;
            }
        }
    }
    return partner;
}

void CModMSCoder::code(CAudioChannel& first, CAudioChannel& second, int32_t samples) {
    CQPLEXContext& ctx = context();
    const CBufferHandle out1 = ctx.takeSignal(samples);
    const CBufferHandle out2 = ctx.takeSignal(samples);
    ctx.issue(isDecoder_ ? decodeKernel_ : encodeKernel_, samples, 0.0, {out1, out2, first.handle, second.handle});
    ctx.releaseReference(first.handle);
    ctx.releaseReference(second.handle);
    first.handle = out1;
    second.handle = out2;
    // The signal differs from that of an uncoded channel and of a pair with another partner.
    const uint64_t partners = static_cast<uint64_t>(first.element) * kMaxElements + second.element + 1;
    const uint64_t serial = mixSerial(mixSerial(first.serial, second.serial), partners);
    first.serial = serial;
    second.serial = mixSerial(serial, 1);
}

void CModMSCoder::codePairs(CAudioPort& out) {
    out.layout = mixSerial(out.layout, tableStamp_);
    for (int32_t i = 0; i < out.channels.count(); ++i) {
        const int32_t partner = out.channels[i].element < kMaxElements ? findPartner(out, i) : -1;
        if (partner >= 0) {
            code(out.channels[i], out.channels[partner], out.samples);
        }
    }
}

void CModMSCoder::beginRise(CArrival& arrival, double rate) {
    endRise(arrival);
    arrival.left = CAudioProcessTerminalBase::samplesOf(kRiseSeconds, rate);
    arrival.ramp = context().takeBuffer(3 * static_cast<int32_t>(sizeof(double)));
    context().issue(context().commonKernel(CCommonKernel::Xfadei), arrival.left, 0.0, {arrival.ramp});
}

void CModMSCoder::endRise(CArrival& arrival) {
    context().releaseReference(arrival.ramp);
    arrival.ramp = kNoBuffer;
    arrival.left = 0;
}

void CModMSCoder::raise(CAudioChannel& channel, CArrival& arrival, int32_t samples) {
    CQPLEXContext& ctx = context();
    graph().invalidateRun();
    const int32_t length = samples < arrival.left ? samples : arrival.left;
    const CBufferHandle silence = ctx.takeSignal(length);
    ctx.issue(ctx.commonKernel(CCommonKernel::Fill0), length, 0.0, {silence});
    const CBufferHandle out = ctx.takeSignal(samples);
    ctx.issue(ctx.commonKernel(CCommonKernel::Xfade), length, 0.0, {out, arrival.ramp, channel.handle, silence});
    const int32_t offset = length * static_cast<int32_t>(sizeof(double));
    ctx.issue(ctx.commonKernel(CCommonKernel::Copy), samples - length, 0.0,
              {CQPLEXContext::offsetBy(out, offset), CQPLEXContext::offsetBy(channel.handle, offset)});
    ctx.releaseReference(silence);
    ctx.releaseReference(channel.handle);
    channel.handle = out;
    arrival.left -= length;
    if (arrival.left == 0) {
        endRise(arrival);
    }
}

void CModMSCoder::raiseChannels(CAudioPort& out) {
    const bool isSudden = graph().isRunning() && !isFresh_;
    bool isSeen[kMaxElements] = {};
    for (CAudioChannel& channel : out.channels) {
        if (channel.element >= kMaxElements) {
            continue;
        }
        CArrival& arrival = arrivals_[channel.element];
        isSeen[channel.element] = true;
        if (!arrival.isThere || !arrival.channel.isSameAs(channel) || out.rate != rate_) {
            arrival.isThere = true;
            arrival.channel = channel;
            if (isSudden) {
                beginRise(arrival, out.rate);
            }
        }
        if (arrival.left > 0) {
            raise(channel, arrival, out.samples);
        }
    }
    for (int32_t e = 0; e < kMaxElements; ++e) {
        if (arrivals_[e].isThere && !isSeen[e]) {
            endRise(arrivals_[e]);
            arrivals_[e].isThere = false;
        }
    }
    rate_ = out.rate;
    isFresh_ = isFresh_ && out.samples == 0;
}

void CModMSCoder::reset() {
    CAudioProcessBase::reset();
    for (CArrival& arrival : arrivals_) {
        endRise(arrival);
        arrival.isThere = false;
    }
    isFresh_ = true;
}

CModMSCoder::~CModMSCoder() {
    for (CArrival& arrival : arrivals_) {
        if (arrival.ramp != kNoBuffer) {
            endRise(arrival);
        }
    }
}

void CModMSCoder::process() {
    updateParams();
    forwardInput();
    CAudioPort& out = output(0);
    if (!isOff_ && hasPairs_) {
        codePairs(out);
    }
    if (!isDecoder_) {
        raiseChannels(out);
    }
    context().endProcess();
}

}  // namespace tarv
