#include "CSignalTap.h"

#include "Audio/Graph/CAudioProcessBase.h"

namespace tarv {

void CSignalTap::processed(CAudioProcessBase& process) {
    if (process.path() != path_ || process.stackIndex() != stackIndex_) {
        return;
    }
    process.context().flush();
    const CAudioPort& port = process.output(0);
    channels_ = port.channels.count();
    rate_ = port.rate;
    frames_ += port.samples;
    for (int32_t i = 0; i < port.samples; ++i) {
        for (const CAudioChannel& channel : port.channels) {
            std::fwrite(process.context().signal(channel.handle) + i, sizeof(double), 1, file_);
        }
    }
}

}  // namespace tarv
