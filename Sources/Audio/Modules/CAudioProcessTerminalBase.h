#pragma once

#include "Audio/Graph/CAudioProcessBase.h"

namespace tarv {

/// What the terminal processes of all modules share: ports, slots, the length of a fade. Audio thread behind init.
class CAudioProcessTerminalBase : public CAudioProcessBase {
public:
    static constexpr double kDefaultFade = 0.015;  ///< seconds
    static constexpr double kShortestFade = 0.0001;

    [[nodiscard]] CError* init() override;
    /// Changes of values that modules do not take yet change no operation.
    void updateParams() override {
        if (hasChanges()) {
            takeChanges();
        }
    }

    /// Sets `binding` to one slot, for a module. A slot without an entry in the definition stays empty and leaves a
    /// line in the log.
    void regModuleParam(int32_t index, const CAudioParamSlot*& binding) const;
    /// The block of a port for a channel: of the same group and element, else the last one of the same element, else
    /// kNoBuffer. Tries `position` first.
    CBufferHandle findBlock(int32_t port, int32_t position, const CAudioChannel& channel) const {
        const CChannelList& channels = input(port).channels;
        if (position < channels.count() && channels[position].element == channel.element &&
            channels[position].group == channel.group) {
            return channels[position].handle;
        }
        return searchBlock(port, channel);
    }

    /// Seconds.
    double fadeSeconds() const { return fadeSeconds_; }
    /// Samples of a fade at a rate in Hz, at least 1.
    int32_t fadeSamples(double rate) const { return samplesOf(fadeSeconds_, rate); }
    static int32_t samplesOf(double seconds, double rate);

protected:
    void slotChanged(CAudioParamSlot&) override { slotsChanged_ = true; }

    bool slotsChanged_ = false;

private:
    CBufferHandle searchBlock(int32_t port, const CAudioChannel& channel) const;

    double fadeSeconds_ = kDefaultFade;
};

}  // namespace tarv
