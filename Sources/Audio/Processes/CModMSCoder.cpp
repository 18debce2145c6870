#include "Audio/Processes/CModMSCoder.h"

#include <cmath>

#include "Audio/Processes/KernelNames.h"
#include "Audio/Processes/MidSideKernels.h"

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
    // Both now carry another signal than an uncoded channel, or a pair with another partner, would.
    const uint64_t partners = static_cast<uint64_t>(first.element) * kMaxElements + second.element + 1;
    const uint64_t serial = mixSerial(mixSerial(first.serial, second.serial), partners);
    first.serial = serial;
    second.serial = mixSerial(serial, 1);
}

void CModMSCoder::process() {
    updateParams();
    forwardInput();
    CAudioPort& out = output(0);
    if (isOff_ || !hasPairs_) {
        return;
    }
    out.layout = mixSerial(out.layout, tableStamp_);
    for (int32_t i = 0; i < out.channels.count(); ++i) {
        const int32_t partner = out.channels[i].element < kMaxElements ? findPartner(out, i) : -1;
        if (partner >= 0) {
            code(out.channels[i], out.channels[partner], out.samples);
        }
    }
    context().flush();
}

}  // namespace tarv
