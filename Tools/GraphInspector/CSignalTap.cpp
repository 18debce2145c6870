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
            const double* const signal = process.context().signal(channel.handle);
            const double silence = 0.0;
            std::fwrite(signal != nullptr ? signal + i : &silence, sizeof(double), 1, file_);
        }
    }
}

}  // namespace tarv
